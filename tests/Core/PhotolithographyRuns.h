#pragma once

#include "Core/Operations/Photolithography/Photolithography.h"

#include "LayerFrontRule.h"
#include "LayerFrontSample.h"
#include "PhotolithographyRule.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Runs of photolithography beside its rule, and the shapes of its tests.
namespace PhotolithographyRule {

using LayerFrontRule::agree;
using LayerFrontRule::randomMaterials;
using LayerFrontRule::Sample;
using LayerFrontRule::TotalVolume;

/// Any other material.
constexpr std::uint32_t other = 2;

constexpr Grid grid = {5, 4, 12};

inline Sample::Engine engineOf(const Lithography &given)
{
    return [given](TotalVolume *volume, const std::function<void()> &inBetween) {
        // They change before the run, which needs its own.
        Mask bottom = given.bottom;
        Mask top = given.top;
        Core::Operations::Photolithography engine(volume, given.film, bottom.bits, bottom.width,
                                                  bottom.height, top.bits, top.width, top.height);
        bottom.bits.flip();
        top.bits.flip();
        inBetween();
        engine.runDevelopment();
    };
}

/// Every field of every cell of both arrays is that of the rule, however many strips there are; and
/// nothing goes to the log.
inline void expectRule(const Lithography &given,
                       const std::vector<int> &threadCounts = {1, 2, 3, 4, 7})
{
    const DevelopmentRule rule(given);
    EXPECT_EQ(LayerFrontRule::materialsOf(rule.voxels()), developedByStretches(given)) << given;
    for (const int threads : threadCounts) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given));
        EXPECT_TRUE(agree(given.grid, sample.voxels(), rule.voxels())) << given;
        EXPECT_TRUE(agree(given.grid, sample.nextVoxels(), rule.nextVoxels())) << given;
        EXPECT_TRUE(sample.isInPlace());
        EXPECT_EQ(sample.logLines(), std::vector<std::string>());
    }
}

inline void expectMaterials(const Lithography &given, const Support::MaterialRule &expected)
{
    for (const int threads : {1, 3}) {
        Sample sample(given.grid, given.materials);
        sample.run(threads, engineOf(given));
        const Materials materials = Support::materialsBy(given.grid, expected);
        EXPECT_EQ(sample.materials(), materials) << given;
        EXPECT_EQ(sample.nextMaterials(), materials) << given;
    }
    expectRule(given);
}

inline void expectUnchanged(const Lithography &given)
{
    expectMaterials(given, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return given.materials[given.grid.index(x, y, z)];
    });
}

inline Lithography lithographyOf(std::uint32_t film, const Support::MaterialRule &rule,
                                 const Mask &bottom = {}, const Mask &top = {})
{
    return {grid, Support::materialsBy(grid, rule), film, bottom, top};
}

/// Film from `bottom` to below `top`, and void around it.
inline Support::MaterialRule plate(std::uint32_t film, std::uint32_t bottom, std::uint32_t top)
{
    return [=](auto, auto, auto z) { return z >= bottom && z < top ? film : 0U; };
}
/// Film from the third layer to below `top`, on a floor of another material.
inline Support::MaterialRule coated(std::uint32_t film, std::uint32_t top)
{
    return [=](auto, auto, auto z) { return z < 2 ? other : z < top ? film : 0U; };
}
/// What is left of the film in these columns alone.
inline Support::MaterialRule leftWhere(const Picture &stays, std::uint32_t film,
                                       const Support::MaterialRule &before)
{
    return [=](auto x, auto y, auto z) {
        const std::uint32_t id = before(x, y, z);
        return id == film && !stays(x, y) ? 0U : id;
    };
}

/// Not the same after a turn or a reflection.
inline bool figure(std::uint32_t x, std::uint32_t y)
{
    return x == 0 || (y == 0 && x < 3) || (x == 2 && y == 2);
}

const Mask clear = plainMask(5, 4, false);
const Mask opaque = plainMask(5, 4, true);

} // namespace PhotolithographyRule
