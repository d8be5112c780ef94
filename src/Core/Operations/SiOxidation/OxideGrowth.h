#pragma once

namespace Core::Operations {

/// Thermal oxidation of silicon by the linear-parabolic law of Deal and Grove, x^2 + A x = B (t +
/// tau): what it computes for one set of furnace conditions. Lengths in microns, times in hours.
struct OxideGrowth
{
    /// The parabolic rate at one atmosphere, and at the pressure of the furnace.
    double parabolicRateAtOneAtmosphere;
    double parabolicRate;
    /// B / A, which takes no pressure.
    double linearRate;
    double a;
    /// The time that the initial oxide of 0.025 microns stands for.
    double tau;
    double thickness;
};

/// Time in hours, temperature in kelvin, pressure in atmospheres. A temperature or pressure of 0
/// gives a thickness that is not a number.
OxideGrowth growOxide(double time, double temperature, double pressure);

} // namespace Core::Operations
