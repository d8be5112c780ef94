#pragma once

#include "AnisotropicDepositionRule.h"
#include "DistanceFrontRuns.h"
#include "FrontGuarantees.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>

/// Runs of the engine beside the rule.
namespace AnisotropicDepositionRule {

using DistanceFrontRule::agree;
using DistanceFrontRule::BusyPool;
using DistanceFrontRule::FrontGuarantees;
using DistanceFrontRule::hasSameFields;
using DistanceFrontRule::leftovers;
using DistanceFrontRule::Materials;
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
    return stream << given.base() << ", ratio " << given.process.horizontalRatio << ", mode "
                  << given.process.mode;
}

inline Rule ruleOf(const Case &given, int threads)
{
    Rule rule(given.grid, given.process, stripsOf(given.grid, threads), leftovers(given.base()));
    rule.run();
    return rule;
}

/// A volume of leftovers after a run whose engine was built for so many threads.
inline Sample deposited(
    const Case &given, int threads, const std::function<void()> &inBetween = [] {})
{
    Sample sample(given.base());
    sample.runWith(threads, [&](TotalVolume &volume) {
        const Process &process = given.process;
        Core::Operations::AnisotropicFilmDeposition engine(
            &volume, process.material, process.thickness, process.horizontalRatio, process.mode);
        inBetween();
        engine.runDeposition();
    });
    return sample;
}

/// Every field of both arrays is that of the rule.
inline void expectAgrees(const Case &given, const Sample &sample, const Rule &rule)
{
    EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameFields));
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.voxels(), hasSameFields));
}

/// Runs with one strip, on the pool and on the calling thread, and compares with the rule.
inline void expectRule(const Case &given)
{
    const Rule rule = ruleOf(given, 1);
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
        expectAgrees(given, deposited(given, threads), rule);
    }
}

/// Runs the strips one after the other and compares with the rule for those strips.
inline void expectRuleOfStrips(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    std::optional<BusyPool> pool;
    const Sample sample = deposited(given, threads, [&] { pool.emplace(); });
    EXPECT_TRUE(pool->isBusy());
    expectAgrees(given, sample, ruleOf(given, threads));
}

/// Runs on as many threads as told and expects what holds for every order of the strips.
inline void expectGuarantees(const Case &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Rule rule = ruleOf(given, 1);
    const FrontGuarantees guarantees({given.grid, given.process.material, given.process.thickness,
                                      stepCountOf(given.grid, given.process),
                                      stepVectorsOf(given.grid, given.process.horizontalRatio),
                                      stripsOf(given.grid, threads), rule.initialized(),
                                      rule.firstCells(), rule.voxels()});
    const Sample sample = deposited(given, threads);
    guarantees.expectFor(sample.voxels());
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), sample.voxels(), hasSameFields));
    EXPECT_TRUE(agree(given.base(), sample.voxels(), leftovers(given.base()),
                      DistanceFrontRule::hasSameAtoms));
}

} // namespace AnisotropicDepositionRule
