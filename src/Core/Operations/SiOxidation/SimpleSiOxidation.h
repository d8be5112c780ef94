#pragma once

#include "Core/Operations/CellularProcess/CompatibleMaterials.h"
#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Oxidizes silicon thermally: the oxide grows out of the free surface of what is compatible with
/// the process "Simple Si Oxidation", and into it. The steps move distances; oxide is written in
/// one pass at the end, and not at all in a volume with fewer than two layers of x a thread.
class SimpleSiOxidation final
{
public:
    /// The oxide, "Thermal Si02".
    static constexpr std::uint32_t OxideMaterial = 3;

    /// Cell units per micron, for oxidateFor(). The volume is not owned; its cells are not touched
    /// yet.
    SimpleSiOxidation(Model::Automaton::TotalVolume *volume, double cellUnitsPerMicron);

    /// Oxidizes under furnace conditions: hours, kelvin, atmospheres. Called once, or oxidateTo().
    void oxidateFor(double time, double temperature, double pressure);
    /// Oxidizes to a thickness of oxide in cell units. One that is not above the smallest edge of a
    /// cell, or not a number, changes nothing. Runs to the end, on the global thread pool and the
    /// calling thread. Called once.
    void oxidateTo(double thickness);

private:
    using Voxel = Model::Automaton::Voxel;

    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialOxidationStep(std::int32_t start, std::int32_t end, std::uint32_t strip);
    /// Writes `reached` and the distances of the cells of a word of a column.
    void initializeCells(std::uint32_t x, std::uint32_t y, std::uint32_t word, FrontWord sources,
                         FrontWord open);
    void convertToOxide(std::int32_t start, std::int32_t end, std::uint32_t strip);

    Model::Automaton::TotalVolume *m_volume;
    double m_thickness = 0.0;
    double m_cellUnitsPerMicron;
    CompatibleMaterials m_compatibleSet;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    DistanceFront m_front;
};

} // namespace Core::Operations
