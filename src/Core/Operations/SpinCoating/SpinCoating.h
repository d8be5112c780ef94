#pragma once

#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/Voxel.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Pours a liquid: fills every void cell up to a height above the floor of the volume, also those
/// that no liquid would reach from above.
class SpinCoating final
{
public:
    /// `material` is the id of what is poured, `height` in layers of cells; what is above the
    /// volume is cut off. The volume is not owned; its cells are not touched yet.
    SpinCoating(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                std::uint32_t height);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDeposition();

private:
    void fillStrip(std::uint32_t strip);
    /// x in [start, end), z below `height`.
    void fillStrip(std::int32_t start, std::int32_t end, std::uint32_t height);

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_material;
    std::uint32_t m_depositionHeight;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    Model::Automaton::Voxel *m_voxels = nullptr;
    Model::Automaton::Voxel *m_nextVoxels = nullptr;
    StripRun m_strips;
};

} // namespace Core::Operations
