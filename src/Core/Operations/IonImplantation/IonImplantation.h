#pragma once

#include "Core/Operations/CellularProcess/CompatibleMaterials.h"
#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Places a thin doped layer at a depth below the top of each column, as an implanter does, and
/// spreads it by an annealing distance. A mask on top shifts the layer up with it.
class IonImplantation final
{
public:
    /// `material` is the id of what the cells become; both lengths in drawing units. The depth
    /// counts from one cell above the highest filled cell of a column. What can be doped is what is
    /// compatible with the process "Simple Doping", on purpose not "Ion Implantation". The volume
    /// is not owned; its cells are not touched yet.
    IonImplantation(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                    float implantationDepth, float annealingDistance);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runImplantation();

private:
    using Voxel = Model::Automaton::Voxel;

    void runPartialInitialization(std::uint32_t start, std::uint32_t end, std::uint32_t strip);
    void runPartialDopingStep(std::uint32_t start, std::uint32_t end, std::uint32_t strip);
    void readBorderColumn(std::uint32_t start, std::uint32_t end);
    /// Walks a column down from one cell above its surface: writes its cells but the lowest, which
    /// a void column writes, too, and a full or void one the lowest of the next column. Lists the
    /// neighbours of what is implanted, and marks that in `carriers`, a bit a cell.
    void implantColumn(std::uint32_t x, std::uint32_t y, std::uint32_t strip,
                       std::vector<FrontWord> &carriers);
    void enqueueNeighbors(std::size_t c, std::uint32_t strip);

    std::uint32_t m_material;
    float m_implantationDepth;
    float m_annealingDistance;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    float m_cellSizeZ;
    CompatibleMaterials m_compatibleSet;
    DistanceFront m_front;
};

} // namespace Core::Operations
