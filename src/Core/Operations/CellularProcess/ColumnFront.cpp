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

} // namespace Core::Operations
