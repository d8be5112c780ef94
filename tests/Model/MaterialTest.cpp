#include "Model/Materials/Material.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <vector>

using Model::Materials::Material;

namespace {

std::vector<float> colorOf(const Material &material)
{
    return std::vector<float>(material.color(), material.color() + 4);
}

Material copper()
{
    const float color[] = {1.0F, 0.75F, 0.25F, 0.5F};
    return Material(5, QStringLiteral("Cu"), 8960.0F, 128e9F, 0.36F, color);
}

} // namespace

TEST(MaterialTest, DefaultIsTheEmptyMaterial)
{
    const Material material;
    EXPECT_EQ(material.id(), 0U);
    EXPECT_EQ(material.name(), QStringLiteral("Empty"));
    EXPECT_EQ(material.density(), 0.0F);
    EXPECT_EQ(material.youngModulus(), 0.0F);
    EXPECT_EQ(material.poissonRatio(), 0.0F);
    EXPECT_EQ(colorOf(material), (std::vector<float>{0.5F, 0.5F, 0.5F, 1.0F}));
}

TEST(MaterialTest, FullConstructionKeepsEveryValue)
{
    const Material material = copper();
    EXPECT_EQ(material.id(), 5U);
    EXPECT_EQ(material.name(), QStringLiteral("Cu"));
    EXPECT_EQ(material.density(), 8960.0F);
    EXPECT_EQ(material.youngModulus(), 128e9F);
    EXPECT_EQ(material.poissonRatio(), 0.36F);
    EXPECT_EQ(colorOf(material), (std::vector<float>{1.0F, 0.75F, 0.25F, 0.5F}));
}

TEST(MaterialTest, NullColorGivesOpaqueGrey)
{
    const Material material(5, QStringLiteral("Cu"), 1.0F, 1.0F, 1.0F, nullptr);
    EXPECT_EQ(colorOf(material), (std::vector<float>{0.5F, 0.5F, 0.5F, 1.0F}));

    Material recolored = copper();
    recolored.setColor(nullptr);
    EXPECT_EQ(colorOf(recolored), (std::vector<float>{0.5F, 0.5F, 0.5F, 1.0F}));
}

TEST(MaterialTest, EachSetterChangesItsValueOnly)
{
    const float color[] = {0.1F, 0.2F, 0.3F, 0.4F};
    Material material;
    material.setId(4000000000U);
    material.setName(QStringLiteral("Ångström"));
    material.setDensity(1.5F);
    material.setPoissonRatio(2.5F);
    material.setYoungModulus(3.5F);
    material.setColor(color);
    EXPECT_EQ(material.id(), 4000000000U);
    EXPECT_EQ(material.name(), QStringLiteral("Ångström"));
    EXPECT_EQ(material.density(), 1.5F);
    EXPECT_EQ(material.poissonRatio(), 2.5F);
    EXPECT_EQ(material.youngModulus(), 3.5F);
    EXPECT_EQ(colorOf(material), (std::vector<float>{0.1F, 0.2F, 0.3F, 0.4F}));
}

TEST(MaterialTest, ColorIsCopiedFromTheCaller)
{
    std::array<float, 4> color{0.1F, 0.2F, 0.3F, 0.4F};
    Material material;
    material.setColor(color.data());
    color.fill(0.9F);
    EXPECT_EQ(colorOf(material), (std::vector<float>{0.1F, 0.2F, 0.3F, 0.4F}));

    const Material copy = material;
    EXPECT_NE(copy.color(), material.color());
    EXPECT_EQ(colorOf(copy), colorOf(material));

    material.setColor(material.color());
    EXPECT_EQ(colorOf(material), colorOf(copy));
}

TEST(MaterialTest, DifferentIdsAreNotEqual)
{
    Material other = copper();
    other.setId(6);
    EXPECT_FALSE(copper() == other);
    EXPECT_TRUE(copper() != other);
}

TEST(MaterialTest, NamesInAnotherCaseAreNotEqual)
{
    Material other = copper();
    other.setName(QStringLiteral("CU"));
    EXPECT_FALSE(copper() == other);
    EXPECT_TRUE(copper() != other);
}

TEST(MaterialTest, MechanicalConstantsDoNotCountForEquality)
{
    Material other = copper();
    other.setDensity(1.0F);
    other.setYoungModulus(2.0F);
    other.setPoissonRatio(3.0F);
    EXPECT_TRUE(copper() == other);
    EXPECT_FALSE(copper() != other);
}

TEST(MaterialTest, EveryChannelMayDifferByOneIn256AndNoMore)
{
    // Sums of few powers of two, so that the differences are exact.
    constexpr float limit = 0.00390625F;
    constexpr float more = limit + 0.0000152587890625F;
    for (int channel = 0; channel < 4; ++channel) {
        for (const float sign : {1.0F, -1.0F}) {
            SCOPED_TRACE(::testing::Message() << "channel " << channel << ", sign " << sign);
            float color[] = {0.5F, 0.5F, 0.5F, 0.5F};
            const Material reference(1, QStringLiteral("Si"), 0, 0, 0, color);

            color[channel] = 0.5F + sign * limit;
            const Material atLimit(1, QStringLiteral("Si"), 0, 0, 0, color);
            EXPECT_TRUE(reference == atLimit);
            EXPECT_FALSE(reference != atLimit);

            color[channel] = 0.5F + sign * more;
            const Material beyond(1, QStringLiteral("Si"), 0, 0, 0, color);
            EXPECT_FALSE(reference == beyond);
            EXPECT_TRUE(reference != beyond);
        }
    }
}

TEST(MaterialTest, ChannelThatIsNoNumberEqualsNothing)
{
    const float color[] = {0.5F, 0.5F, std::numeric_limits<float>::quiet_NaN(), 1.0F};
    const Material material(1, QStringLiteral("Si"), 0, 0, 0, color);
    EXPECT_FALSE(material == Material(1, QStringLiteral("Si"), 0, 0, 0, nullptr));
}
