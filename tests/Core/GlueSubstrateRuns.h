#pragma once

#include "GlueSubstrateRule.h"
#include "SourceVolume.h"

#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

/// Runs of the engine beside the rule.
namespace GlueSubstrateRule {

using Core::Operations::GlueSubstrate;

constexpr int threadCounts[] = {1, 2, 3, 5};

inline Wafer waferOf(const Support::Grid &grid, const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule)};
}

/// The same filled layers in every column: those from `lowest` on, so many.
inline Wafer layered(const Support::Grid &grid, std::uint32_t lowest, std::uint32_t layers,
                     std::uint32_t material)
{
    return waferOf(grid, [=](auto, auto, std::uint32_t z) {
        return z >= lowest && z < lowest + layers ? material : 0U;
    });
}

/// Cells from all materials and void, between two layers at random.
inline Wafer randomWafer(std::mt19937 &random, const Support::Grid &grid)
{
    const std::uint32_t filled = std::vector<std::uint32_t>{3, 20, 60, 100}[random() % 4];
    const std::uint32_t lowest = random() % grid.sizeZ;
    const std::uint32_t highest = lowest + random() % (grid.sizeZ - lowest);
    return waferOf(grid, [&](auto, auto, std::uint32_t z) -> std::uint32_t {
        const bool isFilled = random() % 100 < filled;
        const std::uint32_t material = 1 + random() % 5;
        return isFilled && z >= lowest && z <= highest ? material : 0U;
    });
}

inline Support::Grid randomGrid(std::mt19937 &random, std::uint32_t limit)
{
    const auto size = [&] { return 1 + std::uint32_t(random() % limit); };
    const auto edge = [&] { return (1.0f + float(random() % 8)) / 4.0f; };
    return {size(), size(), size(), edge(), edge(), edge()};
}

inline bool isEmpty(const Wafer &wafer)
{
    for (const std::uint32_t id : wafer.materials)
        if (id != 0)
            return false;
    return true;
}

inline GlueChoices smallest(const Wafer &base, const Wafer &top, bool invert = false)
{
    const GlueMeasures measures = measuresOf(base, top);
    return {measures.minimumX, measures.minimumY, measures.minimumZ, 0, 0, invert};
}

inline void expectMeasures(const GlueMeasures &actual, const GlueMeasures &expected)
{
    EXPECT_EQ(actual.baseHeight, expected.baseHeight);
    EXPECT_EQ(actual.topLowest, expected.topLowest);
    EXPECT_EQ(actual.topHeight, expected.topHeight);
    EXPECT_EQ(actual.minimumX, expected.minimumX);
    EXPECT_EQ(actual.minimumY, expected.minimumY);
    EXPECT_EQ(actual.minimumZ, expected.minimumZ);
    EXPECT_EQ(actual.maximumDisplacementX, expected.maximumDisplacementX);
    EXPECT_EQ(actual.maximumDisplacementY, expected.maximumDisplacementY);
    EXPECT_EQ(actual.topEmpty, expected.topEmpty);
}

/// The working array has materials of its own.
inline SourceVolume sourceOf(const Wafer &wafer, const Util::Vector3D &position = {})
{
    return SourceVolume(wafer.grid, wafer.materials, 99, position);
}

inline Materials glue(const Wafer &base, const Wafer &top, const GlueChoices &choices, int threads)
{
    SourceVolume first = sourceOf(base);
    SourceVolume second = sourceOf(top);
    const Support::PoolThreads pool(threads);
    const GlueMeasures measures = GlueSubstrate::measure(*first.volume(), *second.volume());
    expectMeasures(measures, measuresOf(base, top));
    GlueSubstrate engine(first.volume().get(), second.volume().get(), measures, choices);
    EXPECT_TRUE(engine.fits());
    const Materials ids = engine.glue();
    first.expectUnchanged();
    second.expectUnchanged();
    return ids;
}

inline void expectRule(const Wafer &base, const Wafer &top, const GlueChoices &choices)
{
    const Materials expected = glued(base, top, choices);
    for (const int threads : threadCounts) {
        SCOPED_TRACE(testing::Message() << base << " and " << top << ", " << textOf(choices) << ", "
                                        << threads << " threads");
        EXPECT_EQ(glue(base, top, choices, threads), expected);
    }
}

/// Expects these cells of a volume without room to spare.
inline void expectGlued(const Wafer &base, const Wafer &top, bool invert,
                        const Support::MaterialRule &expected)
{
    const GlueChoices choices = smallest(base, top, invert);
    const Support::Grid grid{choices.finalX, choices.finalY, choices.finalZ};
    for (const int threads : threadCounts)
        EXPECT_EQ(glue(base, top, choices, threads), Support::materialsBy(grid, expected))
            << threads << " threads";
    expectRule(base, top, choices);
}

} // namespace GlueSubstrateRule
