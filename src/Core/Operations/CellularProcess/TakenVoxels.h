#pragma once

namespace Model::Automaton {
class TotalVolume;
class Voxel;
} // namespace Model::Automaton

namespace Core::Operations {

/// Holds both cell arrays of a volume with their locks, `voxels` first, for the controlling thread
/// of a run, and gives them back in that order on every path out of it.
class TakenVoxels final
{
public:
    /// Writes the arrays to the two pointers.
    TakenVoxels(Model::Automaton::TotalVolume &volume, Model::Automaton::Voxel *&voxels,
                Model::Automaton::Voxel *&nextVoxels);
    ~TakenVoxels();
    TakenVoxels(const TakenVoxels &) = delete;
    TakenVoxels &operator=(const TakenVoxels &) = delete;

private:
    Model::Automaton::TotalVolume &m_volume;
};

} // namespace Core::Operations
