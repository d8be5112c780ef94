#pragma once

#include "Model/Automaton/Voxel.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Empties all cells of a volume at or above one height and below another, as polishing does.
class Planarization final
{
public:
    /// Heights in layers of cells. What is beyond the volume is cut off; a minimum above the
    /// maximum empties all. The volume is not owned; its cells are not touched yet.
    Planarization(Model::Automaton::TotalVolume *volume, std::uint32_t maximumHeight,
                  std::uint32_t minimumHeight);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runPlanarization();

private:
    void runThread(std::uint32_t thread);

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_maximumHeight;
    std::uint32_t m_minimumHeight;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    Model::Automaton::Voxel *m_voxels = nullptr;
    Model::Automaton::Voxel *m_nextVoxels = nullptr;
    std::int32_t m_threads;
};

} // namespace Core::Operations
