#include "Core/Operations/CellularProcess/TakenVoxels.h"

#include "Model/Automaton/TotalVolume.h"

namespace Core::Operations {

TakenVoxels::TakenVoxels(Model::Automaton::TotalVolume &volume, Model::Automaton::Voxel *&voxels,
                         Model::Automaton::Voxel *&nextVoxels)
    : m_volume(volume)
{
    voxels = volume.voxels();
    nextVoxels = volume.nextVoxels();
}

TakenVoxels::~TakenVoxels()
{
    m_volume.releaseVoxels();
    m_volume.releaseNextVoxels();
}

} // namespace Core::Operations
