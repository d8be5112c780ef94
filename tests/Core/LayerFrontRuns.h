#pragma once

#include "LayerFrontRule.h"
#include "LayerFrontSample.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <random>
#include <vector>

/// Runs of the two Moore engines beside the rule, for the tests of either.
namespace LayerFrontRule {

/// What a run gets. Printed by tests that fail.
struct Case
{
    Support::Grid grid;
    Materials materials;
    Process process;
};

inline std::ostream &operator<<(std::ostream &stream, const Case &given)
{
    return stream << (given.process.etching ? "etching of " : "deposition of ")
                  << given.process.material << ", " << given.process.steps << " steps, "
                  << given.grid.sizeX << " x " << given.grid.sizeY << " x " << given.grid.sizeZ
                  << " cells";
}

inline Case caseOf(const Support::Grid &grid, const Process &process,
                   const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), process};
}

inline Sample::Engine engineOf(const Process &process)
{
    return [process](TotalVolume *volume, const std::function<void()> &inBetween) {
        if (process.etching) {
            Core::Operations::MooreNeighborhoodEtching engine(volume, process.material,
                                                              process.steps);
            inBetween();
            engine.runEtching();
        } else {
            Core::Operations::MooreNeighborhoodDeposition engine(volume, process.material,
                                                                 process.steps);
            inBetween();
            engine.runDeposition();
        }
    };
}

inline Sample sampleAfter(const Case &given, int threads)
{
    Sample sample(given.grid, given.materials);
    sample.run(threads, engineOf(given.process));
    return sample;
}

inline Rule ruleOf(const Case &given, const std::vector<Strip> &strips)
{
    Rule rule(given.grid, given.process, strips, leftovers(given.materials),
              nextLeftovers(given.materials));
    rule.run();
    return rule;
}

/// Both arrays hold these materials, and nothing else has changed in them.
inline void expectCells(const Case &given, const Sample &sample, const Materials &expected)
{
    EXPECT_TRUE(
        agree(given.grid, sample.voxels(), withMaterials(leftovers(given.materials), expected)))
        << given;
    EXPECT_TRUE(agree(given.grid, sample.nextVoxels(),
                      withMaterials(nextLeftovers(given.materials), expected)))
        << given;
}

/// Runs with one strip, on the pool and on the calling thread, and expects these materials.
inline void expectMaterials(const Case &given, const Materials &expected)
{
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        expectCells(given, sampleAfter(given, threads), expected);
    }
}
inline void expectMaterials(const Case &given, const Support::MaterialRule &expected)
{
    expectMaterials(given, Support::materialsBy(given.grid, expected));
}

/// Runs with one strip and compares with the lists of the rule, and with dilation or erosion.
inline void expectRule(const Case &given)
{
    const Rule rule = ruleOf(given, stripsOf(given.grid, 1));
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
        const Sample sample = sampleAfter(given, threads);
        EXPECT_TRUE(agree(given.grid, sample.voxels(), rule.voxels()));
        EXPECT_TRUE(agree(given.grid, sample.nextVoxels(), rule.nextVoxels()));
        EXPECT_EQ(sample.materials(), movedByCubes(given.grid, given.materials, given.process));
    }
}

inline void expectUnchanged(const Case &given)
{
    for (const int threads : {1, 2, 3, int(given.grid.sizeX) / 2 + 1})
        expectCells(given, sampleAfter(given, threads), given.materials);
}

/// Runs the strips one after the other and compares with the rule for those strips.
inline void expectRuleOfStrips(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Rule rule = ruleOf(given, stripsOf(given.grid, threads));
    std::optional<BusyPool> pool;
    Sample sample(given.grid, given.materials);
    sample.run(threads, engineOf(given.process), [&] { pool.emplace(); });
    EXPECT_TRUE(pool->isBusy());
    EXPECT_TRUE(agree(given.grid, sample.voxels(), rule.voxels()));
    EXPECT_TRUE(agree(given.grid, sample.nextVoxels(), rule.nextVoxels()));
}

/// Expects what holds for every order in which threads may run the strips. A cell that a strip
/// hands to its neighbour may come late or never, but never early. So what changes is no more than
/// with one strip, and no less than if no strip heard of another.
inline void expectGuarantees(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const std::vector<Strip> strips = stripsOf(given.grid, threads);
    const Materials most = movedByCubes(given.grid, given.materials, given.process);
    const Materials least = movedWithinStrips(given.grid, given.materials, given.process, strips);
    const Sample sample = sampleAfter(given, threads);
    const Materials actual = sample.materials();
    for (std::size_t cell = 0; cell < actual.size(); ++cell) {
        const Place at = placeOf(given.grid, int(cell));
        ASSERT_TRUE(actual[cell] == most[cell] || actual[cell] == least[cell])
            << "cell (" << at.x << ", " << at.y << ", " << at.z << ") is " << actual[cell]
            << ", with one strip " << most[cell] << ", without news of others " << least[cell];
    }
    expectCells(given, sample, actual);
}

/// Runs on so many threads, where nothing that a strip may hear of another matters, and expects
/// what one strip gives.
inline void expectOneStripsResult(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const std::vector<Strip> strips = stripsOf(given.grid, threads);
    const Materials expected = movedByCubes(given.grid, given.materials, given.process);
    ASSERT_EQ(movedWithinStrips(given.grid, given.materials, given.process, strips), expected);
    expectCells(given, sampleAfter(given, threads), expected);
}

/// A process on random cells of a random size, with up to twelve steps.
inline Case randomCase(std::uint32_t seed, bool etching)
{
    std::mt19937 random(seed);
    const auto below = [&](std::uint32_t limit) { return std::uint32_t(random() % limit); };
    Support::Grid grid;
    grid.sizeX = 1 + below(11);
    grid.sizeY = 1 + below(11);
    grid.sizeZ = below(5) == 0 ? 60 + below(10) : 1 + below(13);
    if (below(3) == 0)
        grid.cellSizeZ = 0.35f;
    const std::vector<std::uint32_t> percents = {0, 1, 3, 30, 70, 95, 99, 100};
    const std::uint32_t percent = percents[below(8)];
    const std::uint32_t material = 1 + below(5);
    const std::int32_t steps = std::int32_t(below(13));
    Materials materials = randomMaterials(grid, seed, percent);
    // Large pieces of one material, which an etching takes many steps to go through.
    if (below(2) == 0)
        for (std::uint32_t &id : materials)
            if (id != 0 && random() % 16 != 0)
                id = material;
    return {grid, materials, {etching, material, steps}};
}

} // namespace LayerFrontRule
