#include "Core/Operations/SiEtching/ContinuosWetEtching.h"

#include "Model/Automaton/TotalVolume.h"

#include <QDebug>

#include <cstddef>

namespace Core::Operations {

using Model::Automaton::SiAtom;

namespace {

struct Configuration
{
    unsigned ns1;
    unsigned nb1;
    unsigned ns2;
    unsigned nb2;
    double rate;
};

constexpr std::array<Configuration, AtomicConfigurations> Configurations = {{
    {0, 3, 4, 7, 0.00867}, {0, 3, 6, 5, 0.00867}, {0, 3, 3, 7, 0.00867}, {0, 3, 5, 5, 0.00867},
    {0, 3, 2, 7, 0.00867}, {0, 3, 4, 5, 0.00867}, {0, 3, 6, 3, 0.00867}, {1, 2, 3, 6, 4.115},
    {1, 2, 2, 6, 4.208},   {1, 2, 3, 5, 6.449},   {1, 2, 2, 5, 3.932},   {1, 2, 4, 3, 6.449},
    {2, 1, 4, 5, 5.223},   {2, 1, 1, 6, 4.115},   {2, 1, 2, 5, 4.115},   {2, 1, 4, 3, 5.223},
    {2, 1, 0, 6, 4.847},   {2, 1, 1, 5, 4.847},   {0, 2, 5, 5, 3.188},   {0, 2, 2, 6, 3.188},
    {0, 2, 3, 5, 3.188},   {0, 2, 4, 4, 3.188},   {0, 2, 3, 4, 7.0},     {0, 2, 5, 2, 7.0},
    {1, 1, 4, 5, 6.5},     {1, 1, 2, 5, 6.5},     {1, 1, 3, 4, 5.49},    {1, 1, 2, 4, 5.0},
    {1, 1, 3, 3, 5.0},     {0, 1, 6, 3, 6.0},     {0, 1, 4, 3, 6.0},     {0, 1, 5, 2, 6.0},
    {0, 1, 6, 1, 4.115},
}};

constexpr unsigned FirstCounts = SiAtom::Bonds + 1;
/// Each of four neighbours has three of its own.
constexpr unsigned SecondCounts = SiAtom::Bonds * (SiAtom::Bonds - 1) + 1;
using ByCounts =
    std::array<AtomicConfiguration, FirstCounts * FirstCounts * SecondCounts * SecondCounts>;

std::size_t indexOf(unsigned ns1, unsigned nb1, unsigned ns2, unsigned nb2)
{
    return ((std::size_t{ns1} * FirstCounts + nb1) * SecondCounts + ns2) * SecondCounts + nb2;
}

ByCounts makeByCounts()
{
    ByCounts table{};
    table.fill(Unexpected);
    for (unsigned i = 0; i < AtomicConfigurations; ++i) {
        const Configuration &row = Configurations[i];
        table[indexOf(row.ns1, row.nb1, row.ns2, row.nb2)] = static_cast<AtomicConfiguration>(i);
    }
    return table;
}

/// Below this nothing is left of an atom.
constexpr double LeastMass = 1e-6;

} // namespace

ContinuosWetEtching::ContinuosWetEtching(Model::Automaton::TotalVolume *volume, double depth)
    : m_front(volume, depth),
      m_rates{}
{
    for (unsigned i = 0; i < AtomicConfigurations; ++i)
        m_rates[i] = Configurations[i].rate;
}

void ContinuosWetEtching::runEtching()
{
    m_front.run([this](std::uint32_t thread) { runPartialInitialization(thread); },
                [this](std::uint32_t thread) { runPartialEtchingStep(thread); });
}

void ContinuosWetEtching::runPartialInitialization(std::uint32_t thread)
{
    m_front.initializeStrip(thread, [](SiAtom &atom) { atom.setMass(1.0f); });
}

void ContinuosWetEtching::runPartialEtchingStep(std::uint32_t thread)
{
    m_front.stepStrip(thread, [this](const SiAtom &atom, float &mass) {
        std::uint32_t ns1 = 0;
        std::uint32_t nb1 = 0;
        atom.firstNeighbourCounts(ns1, nb1);
        if (ns1 + nb1 >= SiAtom::Bonds)
            return false;
        std::uint32_t ns2 = 0;
        std::uint32_t nb2 = 0;
        atom.secondNeighbourCounts(ns2, nb2);
        const double loss = rate(getAtomicConfiguration(ns1, nb1, ns2, nb2)) * m_timeStep;
        const double remaining = static_cast<double>(mass) - loss;
        const bool isUsedUp = remaining < LeastMass;
        mass = isUsedUp ? 0.0f : static_cast<float>(remaining);
        return isUsedUp;
    });
}

AtomicConfiguration ContinuosWetEtching::getAtomicConfiguration(unsigned ns1, unsigned nb1,
                                                                unsigned ns2, unsigned nb2) const
{
    static const ByCounts Table = makeByCounts();
    if (ns1 < FirstCounts && nb1 < FirstCounts && ns2 < SecondCounts && nb2 < SecondCounts) {
        const AtomicConfiguration configuration = Table[indexOf(ns1, nb1, ns2, nb2)];
        if (configuration != Unexpected)
            return configuration;
    }
    qDebug().nospace() << "Unexpected configuration found (ns1, nb1, ns2, nb2): (" << ns1 << ","
                       << nb1 << "," << ns2 << "," << nb2 << ")";
    return Unexpected;
}

} // namespace Core::Operations
