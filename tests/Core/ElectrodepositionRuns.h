#pragma once

#include "DistanceFrontRuns.h"
#include "ElectrodepositionRule.h"
#include "FrontGuarantees.h"

#include "Core/Operations/Electrodeposition/Electrodeposition.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>

/// Runs of the engine beside the rule.
namespace ElectrodepositionRule {

using DistanceFrontRule::agree;
using DistanceFrontRule::BusyPool;
using DistanceFrontRule::FrontGuarantees;
using DistanceFrontRule::hasSameMaterial;
using DistanceFrontRule::hasSameMaterialAndFront;
using DistanceFrontRule::leftovers;
using DistanceFrontRule::Materials;
using DistanceFrontRule::nextLeftovers;
using DistanceFrontRule::Sample;
using DistanceFrontRule::stripsOf;
using DistanceFrontRule::TotalVolume;

/// What a run gets. Printed by tests that fail.
struct Case
{
    Support::Grid grid;
    Materials materials;
    Process process;

    /// The same, for what is shared with other processes.
    DistanceFrontRule::Case base() const
    {
        return {grid, materials, {false, process.material, process.thickness}};
    }
};

inline std::ostream &operator<<(std::ostream &stream, const Case &given)
{
    return stream << given.base() << ", on " << given.process.conductingMaterial;
}

inline Rule ruleOf(const Case &given, int threads, Steps steps = Steps::Unsigned)
{
    Rule rule(given.grid, given.process, stripsOf(given.grid, threads), leftovers(given.base()),
              nextLeftovers(given.base()), steps);
    rule.run();
    return rule;
}

/// A volume of leftovers after a run whose engine was built for so many threads.
inline Sample plated(
    const Case &given, int threads, const std::function<void()> &inBetween = [] {})
{
    Sample sample(given.base());
    sample.runWith(threads, [&](TotalVolume &volume) {
        Core::Operations::Electrodeposition engine(&volume, given.process.material,
                                                   given.process.conductingMaterial,
                                                   given.process.thickness);
        inBetween();
        engine.runDeposition();
    });
    return sample;
}

/// Runs with one strip, on the pool and on the calling thread, and compares with the rule.
inline void expectRule(const Case &given)
{
    const Rule rule = ruleOf(given, 1);
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
        const Sample sample = plated(given, threads);
        EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

/// Runs the strips one after the other and compares with the rule for those strips.
inline void expectRuleOfStrips(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Rule rule = ruleOf(given, threads);
    std::optional<BusyPool> pool;
    const Sample sample = plated(given, threads, [&] { pool.emplace(); });
    EXPECT_TRUE(pool->isBusy());
    EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
}

inline FrontGuarantees guaranteesOf(const Case &given, int threads)
{
    const Rule rule = ruleOf(given, 1);
    return FrontGuarantees(
        {given.grid, given.process.material, given.process.thickness,
         stepCountOf(given.grid, given.process), stepVectorsOf(given.grid, Steps::Unsigned),
         stripsOf(given.grid, threads), rule.initialized(), rule.firstCells(), rule.voxels()});
}

/// Runs on as many threads as told and expects what holds for every order of the strips.
inline void expectGuarantees(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Sample sample = plated(given, threads);
    guaranteesOf(given, threads).expectFor(sample.voxels());
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), sample.voxels(), hasSameMaterial));
}

} // namespace ElectrodepositionRule
