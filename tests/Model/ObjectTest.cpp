#include "Model/Object.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/ColorTable.h"
#include "RegistryTestSupport.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <memory>
#include <type_traits>

using Model::ColorTable;
using Model::Object;
using Util::Vector3D;
using Util::Vector4D;

namespace {

const char *const freshProcessVariable = "LITHARA_TEST_FRESH_PROCESS";

class PlainObject final : public Object
{
public:
    std::uint32_t objectType() const override { return 77; }
    void draw(bool, bool) override {}
    void drawForPicking() override {}
    PlainObject *clone() override { return new PlainObject; }
    void translate(const Vector3D &) override {}
    void unusedVectorPair(const Vector3D &, const Vector3D &) override {}
};

class ObjectTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        ColorTable::setCurrentScheme(ColorTable::DefaultScheme);
        ColorTable::setCustomColor(ColorTable::ObjectColor, {1, 0, 0, 1});
    }
};

void expectComponents(const Vector4D &actual, const std::array<double, 4> &expected)
{
    for (unsigned i = 0; i < 4; ++i)
        EXPECT_EQ(actual[i], expected[i]) << "component " << i;
}

} // namespace

TEST_F(ObjectTest, StartsUnselected)
{
    EXPECT_FALSE(PlainObject().isSelected());
}

TEST_F(ObjectTest, StartsWithTheObjectAndOutlineColorsOfTheDefaultScheme)
{
    const PlainObject object;
    expectComponents(object.color(), {0, 0, 0, 1});
    // The outline colour is handed out as a Vector3D, so without its alpha.
    expectComponents(object.outlineColor(), {1, 1, 1, 0});
}

TEST_F(ObjectTest, CurrentSchemeHasNoSayInTheFirstColors)
{
    ColorTable::setCustomColor(ColorTable::ObjectColor, {0.1, 0.2, 0.3, 0.4});
    for (const std::uint32_t scheme : {ColorTable::LowScheme, ColorTable::CustomScheme}) {
        SCOPED_TRACE(scheme);
        ColorTable::setCurrentScheme(scheme);
        const PlainObject object;
        expectComponents(object.color(), {0, 0, 0, 1});
        expectComponents(object.outlineColor(), {1, 1, 1, 0});
    }
}

TEST_F(ObjectTest, KeepsTheColorsThatItIsGiven)
{
    PlainObject object;
    object.setColor({0.1, 0.2, 0.3, 0.4});
    object.setOutlineColor({0.5, 0.6, 0.7, 0.8});
    expectComponents(object.color(), {0.1, 0.2, 0.3, 0.4});
    expectComponents(object.outlineColor(), {0.5, 0.6, 0.7, 0});
    static_assert(std::is_same_v<decltype(object.color()), Vector4D>);
    static_assert(std::is_same_v<decltype(object.outlineColor()), Vector3D>);
}

TEST_F(ObjectTest, ColorsAreHandedOutByValue)
{
    const PlainObject object;
    Vector4D color = object.color();
    color[0] = 0.5;
    Vector3D outlineColor = object.outlineColor();
    outlineColor[0] = 0.5;
    expectComponents(object.color(), {0, 0, 0, 1});
    expectComponents(object.outlineColor(), {1, 1, 1, 0});
}

TEST_F(ObjectTest, CanBeSelectedAndUnselected)
{
    PlainObject object;
    object.setSelected(true);
    EXPECT_TRUE(object.isSelected());
    object.setSelected(true);
    EXPECT_TRUE(object.isSelected());
    object.setSelected(false);
    EXPECT_FALSE(object.isSelected());
}

TEST_F(ObjectTest, StartsAtRestWithoutDisplacement)
{
    const PlainObject object;
    EXPECT_FALSE(object.isMoving());
    expectComponents(object.displacement(), {0, 0, 0, 0});
}

TEST_F(ObjectTest, KeepsItsDragState)
{
    PlainObject object;
    object.setMoving(true);
    object.setDisplacement({1, -2, 3});
    EXPECT_TRUE(object.isMoving());
    expectComponents(object.displacement(), {1, -2, 3, 0});
    EXPECT_FALSE(object.isSelected());
    object.setMoving(false);
    EXPECT_FALSE(object.isMoving());
    expectComponents(object.displacement(), {1, -2, 3, 0});
}

TEST_F(ObjectTest, SecondObjectGetsAnIdOneAboveTheFirst)
{
    const PlainObject first;
    const PlainObject second;
    EXPECT_EQ(second.id(), first.id() + 1);
    EXPECT_EQ(first.id(), second.id() - 1);
}

TEST_F(ObjectTest, IdOfAnObjectThatIsGoneIsNotUsedAgain)
{
    auto first = std::make_unique<PlainObject>();
    const std::uint32_t firstId = first->id();
    first.reset();
    EXPECT_EQ(PlainObject().id(), firstId + 1);
    EXPECT_EQ(PlainObject().id(), firstId + 2);
}

TEST_F(ObjectTest, ClonesAndVolumesCountToo)
{
    PlainObject first;
    const std::unique_ptr<Object> clone(first.clone());
    const auto volume = Support::makeVolume({}, std::vector<std::uint32_t>{1});
    const std::unique_ptr<Object> volumeClone(volume->clone());
    const PlainObject last;
    EXPECT_EQ(clone->id(), first.id() + 1);
    EXPECT_EQ(volume->id(), first.id() + 2);
    EXPECT_EQ(volumeClone->id(), first.id() + 3);
    EXPECT_EQ(last.id(), first.id() + 4);
}

// Says nothing of a process that has made objects before, so it goes on in a new one.
TEST_F(ObjectTest, FirstObjectOfAProcessHasIdZero)
{
    if (qEnvironmentVariableIsSet(freshProcessVariable)) {
        EXPECT_EQ(PlainObject().id(), 0U);
        EXPECT_EQ(PlainObject().id(), 1U);
    } else {
        EXPECT_TRUE(passesInNewProcess("ObjectTest.FirstObjectOfAProcessHasIdZero",
                                       {{freshProcessVariable, "1"}}));
    }
}

TEST_F(ObjectTest, TypesHaveTheNumbersThatArchiversAreKeyedOn)
{
    EXPECT_EQ(Object::TotalVolumeType, 1U);
    EXPECT_EQ(Object::ExtractedModelType, 2U);
}

TEST_F(ObjectTest, IsDestroyedThroughItsBase)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<Object>);
    EXPECT_TRUE(std::is_abstract_v<Object>);
}
