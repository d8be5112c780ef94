#include "Core/Operations/CellularProcess/ColumnFront.h"

#include "Model/Automaton/TotalVolume.h"

namespace Core::Operations {

ColumnFront::ColumnFront(Model::Automaton::TotalVolume *volume, std::uint32_t film,
                         std::uint32_t strips)
    : m_volume(volume),
      m_film(film),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_surfaceCells(strips)
{}

ColumnFront::TakenVoxels::TakenVoxels(ColumnFront &front) : m_volume(front.m_volume)
{
    front.m_voxels = m_volume->voxels();
    front.m_nextVoxels = m_volume->nextVoxels();
}

ColumnFront::TakenVoxels::~TakenVoxels()
{
    m_volume->releaseVoxels();
    m_volume->releaseNextVoxels();
}

} // namespace Core::Operations
