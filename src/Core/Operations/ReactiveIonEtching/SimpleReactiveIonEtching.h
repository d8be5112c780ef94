#pragma once

#include "Core/Operations/CellularProcess/ColumnFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Etches a film along z, column by column, one cell a step, from its open ends: never sideways and
/// never through another material.
class SimpleReactiveIonEtching final
{
public:
    /// Bits of `etchDirections`.
    static constexpr std::uint8_t FromTop = 1;
    static constexpr std::uint8_t FromBelow = 2;

    /// `material` is the id of the film's material, `steps` in cells. Other bits of
    /// `etchDirections` than the two mean nothing; with neither of them nothing is etched. The
    /// volume is not owned; its cells are not touched yet.
    SimpleReactiveIonEtching(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                             std::uint32_t steps, std::uint8_t etchDirections);

    /// Runs to the end, on the global thread pool. Called once.
    void runEtching();

private:
    void runPhase(void (SimpleReactiveIonEtching::*function)(std::uint32_t));
    void runPartialInitialization(std::uint32_t strip);
    void runPartialEtchingStep(std::uint32_t strip);
    /// The range of x of a strip.
    std::uint32_t start(std::uint32_t strip) const;
    std::uint32_t end(std::uint32_t strip) const;

    std::uint32_t m_steps;
    std::uint8_t m_etchDirections;
    std::uint32_t m_threads;
    ColumnFront m_front;
};

} // namespace Core::Operations
