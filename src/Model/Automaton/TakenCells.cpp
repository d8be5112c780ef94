#include "Model/Automaton/TakenCells.h"

#include "Model/Automaton/TotalVolume.h"

namespace Model::Automaton {

TakenCells::TakenCells(TotalVolume &volume, Array array)
    : m_volume(volume),
      m_array(array),
      m_cells(array == Voxels ? volume.voxels() : volume.nextVoxels())
{}

TakenCells::~TakenCells()
{
    if (m_array == Voxels)
        m_volume.releaseVoxels();
    else
        m_volume.releaseNextVoxels();
}

} // namespace Model::Automaton
