#pragma once

namespace Model::Automaton {

class TotalVolume;
class Voxel;

/// Holds one cell array of a volume with its lock, and gives it back on every path out of a scope.
/// Who needs both takes `Voxels` first.
class TakenCells final
{
public:
    enum Array
    {
        Voxels,
        NextVoxels
    };

    explicit TakenCells(TotalVolume &volume, Array array = Voxels);
    ~TakenCells();
    TakenCells(const TakenCells &) = delete;
    TakenCells &operator=(const TakenCells &) = delete;

    Voxel *cells() const { return m_cells; }

private:
    TotalVolume &m_volume;
    Array m_array;
    Voxel *m_cells;
};

} // namespace Model::Automaton
