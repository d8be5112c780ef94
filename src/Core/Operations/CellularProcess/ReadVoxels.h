#pragma once

#include "Model/Automaton/TotalVolume.h"

namespace Core::Operations {

/// Holds `voxels` of a volume with their lock, for reading, and gives them back on every path out.
class ReadVoxels final
{
public:
    explicit ReadVoxels(Model::Automaton::TotalVolume &volume)
        : m_volume(volume),
          m_cells(volume.voxels())
    {}
    ~ReadVoxels() { m_volume.releaseVoxels(); }
    ReadVoxels(const ReadVoxels &) = delete;
    ReadVoxels &operator=(const ReadVoxels &) = delete;

    const Model::Automaton::Voxel *cells() const { return m_cells; }

private:
    Model::Automaton::TotalVolume &m_volume;
    const Model::Automaton::Voxel *m_cells;
};

} // namespace Core::Operations
