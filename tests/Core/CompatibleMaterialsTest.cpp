#include "Core/Operations/CellularProcess/CompatibleMaterials.h"

#include "CompatibleRuns.h"

#include "Model/Process/ProcessFactory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>

using CompatibleFrontRule::ChangedRegistry;
using Core::Operations::CompatibleMaterials;
using Model::Process::ProcessFactory;

namespace {

/// Those of the ids around every bound that are in the set.
std::set<std::uint32_t> among(const CompatibleMaterials &materials)
{
    std::set<std::uint32_t> result;
    for (std::uint32_t id = 0; id <= 300; ++id)
        if (materials.contains(id))
            result.insert(id);
    for (const std::uint32_t id : {4095U, 4096U, 65534U, 65535U, 65536U, 65537U, 131072U,
                                   2147483647U, 2147483648U, 4294967294U, 4294967295U})
        if (materials.contains(id))
            result.insert(id);
    return result;
}

} // namespace

TEST(CompatibleMaterialsTest, RecordOfTheNameGivesTheMaterials)
{
    const std::set<std::uint32_t> silicon = {1, 14, 15, 16};
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), silicon);
    EXPECT_EQ(among(CompatibleMaterials("Simple Si Oxidation")), silicon);
    EXPECT_EQ(among(CompatibleMaterials("CVD")), (std::set<std::uint32_t>{3, 16}));
}

TEST(CompatibleMaterialsTest, EmptyRecordGivesNone)
{
    EXPECT_TRUE(among(CompatibleMaterials("Planarization")).empty());
}

TEST(CompatibleMaterialsTest, UnknownNameGivesNone)
{
    for (const char *name : {"", "simple doping", "Simple Doping ", "Doping"})
        EXPECT_TRUE(among(CompatibleMaterials(name)).empty()) << name;
}

TEST(CompatibleMaterialsTest, RenamedProcessIsUnknown)
{
    ChangedRegistry registry;
    registry.rename("Simple Doping", "Diffusion");
    EXPECT_TRUE(among(CompatibleMaterials("Simple Doping")).empty());
    EXPECT_EQ(among(CompatibleMaterials("Diffusion")), (std::set<std::uint32_t>{1, 14, 15, 16}));
}

TEST(CompatibleMaterialsTest, IdsMayBeOfAnySize)
{
    const std::set<std::uint32_t> ids = {0,     2,     255,         256,        65534,
                                         65535, 65536, 2147483648U, 4294967295U};
    const ChangedRegistry registry("Simple Doping", ids);
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), ids);
    for (const std::uint32_t id : ids) {
        const ChangedRegistry single("Simple Doping", {id});
        EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), (std::set<std::uint32_t>{id}));
    }
}

TEST(CompatibleMaterialsTest, OrderAndRepetitionDoNotMatter)
{
    const ChangedRegistry registry;
    ASSERT_TRUE(ProcessFactory::instance()->updateProcess(
        {"Simple Doping", 13, {70000, 9, 1, 9, 70000, 3}}));
    EXPECT_EQ(CompatibleMaterials("Simple Doping").contains(70000), true);
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), (std::set<std::uint32_t>{1, 3, 9}));
}

TEST(CompatibleMaterialsTest, LowestIdOfTheNameCounts)
{
    const ChangedRegistry registry;
    ASSERT_TRUE(ProcessFactory::instance()->updateProcess({"Simple Doping", 20, {7}}));
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")),
              (std::set<std::uint32_t>{1, 14, 15, 16}));
    ASSERT_TRUE(ProcessFactory::instance()->updateProcess({"Simple Doping", 2, {8}}));
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), (std::set<std::uint32_t>{8}));
}

TEST(CompatibleMaterialsTest, LaterChangesOfTheRegistryDoNotMatter)
{
    const CompatibleMaterials before("Simple Doping");
    const ChangedRegistry registry("Simple Doping", {2});
    EXPECT_EQ(among(before), (std::set<std::uint32_t>{1, 14, 15, 16}));
    EXPECT_EQ(among(CompatibleMaterials("Simple Doping")), (std::set<std::uint32_t>{2}));
}
