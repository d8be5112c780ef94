#include "Core/Operations/SiOxidation/OxideGrowth.h"

#include "OxideGrowthRule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using Core::Operations::growOxide;
using Core::Operations::OxideGrowth;
using OxideGrowthRule::Furnace;

namespace {

const std::vector<Furnace> &furnaces()
{
    static const std::vector<Furnace> all = {
        {2.0, 1273.0, 1.0},   {0.0, 1273.0, 1.0},   {0.5, 1073.0, 1.0},   {1.0, 1173.0, 1.0},
        {10.0, 1373.0, 1.0},  {24.0, 1473.0, 1.0},  {0.1, 1273.0, 0.1},   {3.0, 1273.0, 5.0},
        {8.0, 1223.15, 20.0}, {100.0, 973.0, 1.0},  {0.001, 1500.0, 2.5}, {1000.0, 1273.0, 1.0},
        {5.0, 1323.15, 0.5},  {2.0, 1600.0, 100.0}, {48.0, 900.0, 25.0},  {1.5, 1273.15, 1.0}};
    return all;
}

void expectNear(double actual, long double expected)
{
    EXPECT_NEAR(actual, double(expected), std::abs(double(expected)) * 1e-11);
}

} // namespace

TEST(OxideGrowthTest, TwoHoursAtAThousandDegreesCelsiusGiveATenthOfAMicron)
{
    const OxideGrowth growth = growOxide(2.0, 1273.0, 1.0);
    // Six figures each.
    EXPECT_NEAR(growth.parabolicRate, 0.0105097, 0.5e-7);
    EXPECT_NEAR(growth.a, 0.130795, 0.5e-6);
    EXPECT_NEAR(growth.tau, 0.370595, 0.5e-6);
    EXPECT_NEAR(growth.thickness, 0.105457, 0.5e-6);
}

TEST(OxideGrowthTest, NoTimeGivesTheInitialOxide)
{
    for (const Furnace &furnace : furnaces())
        EXPECT_NEAR(growOxide(0.0, furnace.temperature, furnace.pressure).thickness, 0.025, 1e-13);
}

TEST(OxideGrowthTest, FurnacesFollowTheLinearParabolicLaw)
{
    ASSERT_GE(furnaces().size(), 12U);
    for (const Furnace &furnace : furnaces()) {
        SCOPED_TRACE(testing::Message() << furnace.time << " h, " << furnace.temperature << " K, "
                                        << furnace.pressure << " atm");
        const OxideGrowth growth = growOxide(furnace.time, furnace.temperature, furnace.pressure);
        const OxideGrowthRule::Growth expected = OxideGrowthRule::growthOf(furnace);
        expectNear(growth.parabolicRateAtOneAtmosphere, expected.parabolicRateAtOneAtmosphere);
        expectNear(growth.parabolicRate, expected.parabolicRate);
        expectNear(growth.linearRate, expected.linearRate);
        expectNear(growth.a, expected.a);
        expectNear(growth.tau, expected.tau);
        // The difference of two numbers near each other costs figures where the oxide is thin.
        const long double thickness = expected.thickness;
        const double lost = 1.0 + double(expected.a / thickness);
        EXPECT_NEAR(growth.thickness, double(thickness), double(thickness) * 1e-13 * lost * lost);
        // And x^2 + A x = B (t + tau) holds.
        const long double x = growth.thickness;
        EXPECT_NEAR(double((x * x + expected.a * x) / expected.parabolicRate - expected.tau),
                    furnace.time, (furnace.time + double(expected.tau)) * 1e-10);
    }
}

TEST(OxideGrowthTest, PressureActsOnTheParabolicRateAlone)
{
    const OxideGrowth one = growOxide(2.0, 1273.0, 1.0);
    for (const double pressure : {0.01, 0.5, 2.0, 25.0}) {
        const OxideGrowth growth = growOxide(2.0, 1273.0, pressure);
        EXPECT_EQ(growth.parabolicRateAtOneAtmosphere, one.parabolicRateAtOneAtmosphere);
        EXPECT_EQ(growth.linearRate, one.linearRate);
        EXPECT_DOUBLE_EQ(growth.parabolicRate, one.parabolicRate * pressure);
        EXPECT_DOUBLE_EQ(growth.a, one.a * pressure);
    }
    EXPECT_DOUBLE_EQ(one.parabolicRate, 0.999264839884312 * one.parabolicRateAtOneAtmosphere);
}

TEST(OxideGrowthTest, TemperatureZeroGivesAThicknessThatIsNotANumber)
{
    for (const double time : {0.0, 2.0})
        for (const double pressure : {0.0, 1.0})
            EXPECT_TRUE(std::isnan(growOxide(time, 0.0, pressure).thickness));
}

TEST(OxideGrowthTest, PressureZeroGivesAThicknessThatIsNotANumber)
{
    for (const double time : {0.0, 2.0})
        EXPECT_TRUE(std::isnan(growOxide(time, 1273.0, 0.0).thickness));
}
