#pragma once

#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Plates a metal on the surfaces of a conducting material only. Other filled cells neither start
/// the film nor carry it, but it grows past them.
class Electrodeposition final
{
public:
    /// `material` is the id of the film's material, `conductingMaterial` that of what it grows on;
    /// `thickness` in drawing units: 0, negative or not a number deposits nothing. The volume is
    /// not owned; its cells are not touched yet.
    Electrodeposition(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                      std::uint32_t conductingMaterial, float thickness);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDeposition();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDepositionStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    std::uint32_t m_material;
    std::uint32_t m_conductingMaterial;
    float m_thickness;
    DistanceFront m_front;
};

} // namespace Core::Operations
