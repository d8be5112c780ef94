#include "Core/Operations/SiOxidation/OxideGrowth.h"

#include <cmath>

namespace Core::Operations {

OxideGrowth growOxide(double time, double temperature, double pressure)
{
    const double x = 1000.0 / temperature;
    OxideGrowth growth{};
    growth.parabolicRateAtOneAtmosphere = 1297.907373 * std::exp(-14.92366568 * x);
    growth.parabolicRate = pressure * 0.999264839884312 * growth.parabolicRateAtOneAtmosphere;
    growth.linearRate = 7973245.767 * std::exp(-23.43965534 * x);
    growth.a = growth.parabolicRate / growth.linearRate;
    // The initial oxide, and its square.
    growth.tau = (growth.a * 0.025 + 0.000625) / growth.parabolicRate;
    growth.thickness =
        (std::sqrt(growth.a * growth.a + 4.0 * growth.parabolicRate * (time + growth.tau)) -
         growth.a) *
        0.5;
    return growth;
}

} // namespace Core::Operations
