#include "Model/Process/Process.h"

#include "Model/Materials/MaterialFactory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Model::Process::Process;

namespace {

using Ids = std::vector<std::uint32_t>;

class ProcessTest : public ::testing::Test
{
protected:
    void TearDown() override { MaterialFactory::instance()->loadDefaultMaterials(); }
};

Ids idsOf(const std::vector<Material> &materials)
{
    Ids result;
    for (const Material &material : materials) {
        result.push_back(material.id());
    }
    return result;
}

} // namespace

TEST_F(ProcessTest, DefaultIsTheEmptyRecord)
{
    const Process process;
    EXPECT_EQ(process.name(), QString());
    EXPECT_EQ(process.id(), 0U);
    EXPECT_EQ(process.compatibleMaterialIds(), Ids());
    EXPECT_TRUE(process.compatibleMaterials().empty());
}

TEST_F(ProcessTest, ConstructionKeepsNameIdAndList)
{
    const Process without(QStringLiteral("CVD"), 3);
    EXPECT_EQ(without.name(), QStringLiteral("CVD"));
    EXPECT_EQ(without.id(), 3U);
    EXPECT_EQ(without.compatibleMaterialIds(), Ids());

    const Process with(QStringLiteral("CVD"), 3, {16, 3});
    EXPECT_EQ(with.name(), QStringLiteral("CVD"));
    EXPECT_EQ(with.id(), 3U);
    EXPECT_EQ(with.compatibleMaterialIds(), (Ids{16, 3}));
}

TEST_F(ProcessTest, AddingAppendsAlsoWhatIsThereAlready)
{
    Process process(QStringLiteral("CVD"), 3, {16});
    process.addCompatibleMaterial(3);
    process.addCompatibleMaterial(16);
    process.addCompatibleMaterial(0);
    EXPECT_EQ(process.compatibleMaterialIds(), (Ids{16, 3, 16, 0}));
}

TEST_F(ProcessTest, SettingReplacesTheWholeList)
{
    Process process(QStringLiteral("CVD"), 3, {16, 3});
    process.setCompatibleMaterialIds({5, 4});
    EXPECT_EQ(process.compatibleMaterialIds(), (Ids{5, 4}));
}

TEST_F(ProcessTest, TheListIsHandedOutAsACopy)
{
    const Process process(QStringLiteral("CVD"), 3, {16});
    process.compatibleMaterialIds().push_back(1);
    EXPECT_EQ(process.compatibleMaterialIds(), Ids{16});
}

TEST_F(ProcessTest, MaterialsComeInListOrderWithRepeats)
{
    const Process process(QStringLiteral("PVD"), 4, {9, 4, 9});
    const std::vector<Material> materials = process.compatibleMaterials();
    ASSERT_EQ(idsOf(materials), (Ids{9, 4, 9}));
    EXPECT_EQ(materials[0].name(), QStringLiteral("Au (bulk)"));
    EXPECT_EQ(materials[1].name(), QStringLiteral("Al (bulk)"));
}

TEST_F(ProcessTest, UnknownMaterialsAreLeftOutButStayInTheRecord)
{
    const Process process(QStringLiteral("PVD"), 4, {4, 2, 999, 0, 5});
    EXPECT_EQ(idsOf(process.compatibleMaterials()), (Ids{4, 5}));
    EXPECT_EQ(process.compatibleMaterialIds(), (Ids{4, 2, 999, 0, 5}));
}

TEST_F(ProcessTest, MaterialsAreLookedUpAtEachCall)
{
    const Process process(QStringLiteral("PVD"), 4, {999});
    EXPECT_TRUE(process.compatibleMaterials().empty());
    MaterialFactory::instance()->updateMaterial(
        Material(999, QStringLiteral("New"), 0, 0, 0, nullptr));
    EXPECT_EQ(idsOf(process.compatibleMaterials()), Ids{999});
}
