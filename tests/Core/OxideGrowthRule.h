#pragma once

#include <QString>

#include <cmath>
#include <string>
#include <vector>

/// The growth of oxide in long double, solved for the thickness in the form without a difference,
/// and with each of the two Arrhenius laws written as one exponent.
namespace OxideGrowthRule {

/// Hours, kelvin, atmospheres.
struct Furnace
{
    double time;
    double temperature;
    double pressure;
};

struct Growth
{
    long double parabolicRateAtOneAtmosphere;
    long double parabolicRate;
    long double linearRate;
    long double a;
    long double tau;
    long double thickness;
};

inline Growth growthOf(const Furnace &furnace)
{
    const long double temperature = furnace.temperature;
    Growth growth{};
    growth.parabolicRateAtOneAtmosphere =
        std::exp(std::log(1297.907373L) - 14923.66568L / temperature);
    growth.parabolicRate =
        0.999264839884312L * growth.parabolicRateAtOneAtmosphere * furnace.pressure;
    growth.linearRate = std::exp(std::log(7973245.767L) - 23439.65534L / temperature);
    growth.a = growth.parabolicRate / growth.linearRate;
    // The initial oxide passes both laws one after the other.
    growth.tau = 0.025L / growth.linearRate + 0.025L * 0.025L / growth.parabolicRate;
    const long double grown = growth.parabolicRate * (furnace.time + growth.tau);
    const long double half = growth.a / 2;
    growth.thickness = grown / (std::sqrt(half * half + grown) + half);
    return growth;
}

inline std::string lineOf(const char *name, long double value)
{
    return "debug: " + std::string(name) + ' ' +
           QString::number(double(value), 'g', 6).toStdString();
}

/// What the furnace writes to the log.
inline std::vector<std::string> linesOf(const Furnace &furnace, double unitsPerMicron)
{
    const Growth growth = growthOf(furnace);
    return {lineOf("Time:", furnace.time),
            lineOf("Temperature:", furnace.temperature),
            lineOf("Pressure:", furnace.pressure),
            lineOf("B (1 atm)", growth.parabolicRateAtOneAtmosphere),
            lineOf("B", growth.parabolicRate),
            lineOf("B/A", growth.linearRate),
            lineOf("A", growth.a),
            lineOf("tau", growth.tau),
            lineOf("Oxide thickness in microns", growth.thickness),
            lineOf("Oxide thickness in cell units", growth.thickness * unitsPerMicron)};
}

} // namespace OxideGrowthRule
