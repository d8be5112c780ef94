#include "Core/Operations/IonImplantation/IonImplantation.h"

#include "Core/Operations/CellularProcess/CellRuns.h"
#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"
#include "Model/Automaton/TotalVolume.h"

#include <QString>

#include <boost/bind/bind.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Core::Operations {

namespace {

/// Where the implanted layer spreads.
struct AnnealingRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Face;

    std::uint32_t material;
    float distance;
    const CompatibleMaterials &compatibleSet;

    bool takesPart(const Model::Automaton::Voxel &cell) const
    {
        return compatibleSet.contains(cell.material());
    }
    float limit(const Model::Automaton::Voxel & /*cell*/) const { return distance * distance; }
    void accept(const Model::Automaton::Voxel & /*cell*/, Model::Automaton::Voxel &next) const
    {
        next.setMaterial(material);
    }
    bool passes(std::uint32_t present) const { return compatibleSet.contains(present); }
};

} // namespace

IonImplantation::IonImplantation(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                                 float implantationDepth, float annealingDistance)
    : m_material(material),
      m_implantationDepth(implantationDepth),
      m_annealingDistance(annealingDistance),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_cellSizeZ(volume->cellSizeZ()),
      m_compatibleSet(QStringLiteral("Simple Doping")),
      m_front(volume)
{}

void IonImplantation::runImplantation()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(m_annealingDistance);
    m_front.strips().runPhase(
        boost::bind(&IonImplantation::runPartialInitialization, this, _1, _2, _3));
    m_front.strips().runPhase(boost::bind(&IonImplantation::readBorderColumn, this, _1, _2));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&IonImplantation::runPartialDopingStep, this, _1, _2, _3));
}

void IonImplantation::runPartialInitialization(std::uint32_t start, std::uint32_t end,
                                               std::uint32_t strip)
{
    CellFront &cells = m_front.cells();
    const std::uint32_t words = cells.wordsInColumn();
    {
        // Under the mutex also the opening: a neighbour may be taking from the lists already.
        const CellFront::Pass pass(cells, strip);
        m_front.openStrip(static_cast<std::int32_t>(start), static_cast<std::int32_t>(end), strip);
        std::vector<FrontWord> carriers(words);
        for (std::uint32_t x = start; x < end; ++x)
            for (std::uint32_t y = 0; y < m_sizeY; ++y) {
                std::fill(carriers.begin(), carriers.end(), 0);
                // The bottom layer takes part with whatever it holds.
                carriers.front() = 1;
                implantColumn(x, y, strip, carriers);
                const Voxel *column = m_front.voxels() + m_front.indexOf(x, y, 0);
                for (std::uint32_t word = 0; word < words; ++word) {
                    cells.setPassable(x, y, word,
                                      cellsOf(column, m_sizeZ, word, [&](std::uint32_t material) {
                                          return m_compatibleSet.contains(material);
                                      }));
                    m_front.carriers().set(x, y, word, carriers[word]);
                }
            }
    }
    cells.takeFromNeighbors(strip);
    cells.replaceSurfaceCells(strip);
}

// The last column of the strip before may have implanted the bottom cell of the first column of
// this one, whether or not this strip had been there.
void IonImplantation::readBorderColumn(std::uint32_t start, std::uint32_t end)
{
    if (start >= end)
        return;
    m_front.cells().setPassable(
        start, 0, 0,
        cellsOf(m_front.voxels() + m_front.indexOf(start, 0, 0), m_sizeZ, 0,
                [this](std::uint32_t material) { return m_compatibleSet.contains(material); }));
}

void IonImplantation::implantColumn(std::uint32_t x, std::uint32_t y, std::uint32_t strip,
                                    std::vector<FrontWord> &carriers)
{
    const float far = m_annealingDistance;
    const Voxel::Front blocked{true, far, far, far};
    const Voxel::Front open{false, far, far, far};
    const std::size_t base = m_front.indexOf(x, y, 0);
    const std::size_t cellCount = m_front.indexOf(m_sizeX, 0, 0);
    Voxel *voxels = m_front.voxels();
    Voxel *nextVoxels = m_front.nextVoxels();

    std::uint32_t top = m_sizeZ;
    while (top > 0 && voxels[base + top - 1].material() == 0) {
        --top;
        voxels[base + top].setFront(blocked);
        nextVoxels[base + top].setFront(blocked);
    }
    // One cell above the surface; in a void column, as in one that is filled to the top, that is
    // the bottom cell of the next one.
    if (top == 0)
        top = m_sizeZ;
    std::uint32_t i = 0;
    std::uint32_t lastMaterial = 0;
    bool isCompatible = m_compatibleSet.contains(lastMaterial);
    for (std::uint32_t z = top; z >= 1; --z, ++i) {
        const std::size_t c = base + z;
        if (c >= cellCount)
            continue;
        // Cells come in runs of a material.
        if (voxels[c].material() != lastMaterial) {
            lastMaterial = voxels[c].material();
            isCompatible = m_compatibleSet.contains(lastMaterial);
        }
        if (!isCompatible) {
            voxels[c].setFront(blocked);
            nextVoxels[c].setFront(blocked);
            continue;
        }
        const float e = std::abs(static_cast<float>(i) * m_cellSizeZ - m_implantationDepth);
        if (static_cast<double>(e) > static_cast<double>(m_cellSizeZ) * 0.5) {
            voxels[c].setFront(open);
            nextVoxels[c].setFront(open);
            continue;
        }
        voxels[c].setFront({true, 0.0f, 0.0f, 0.0f});
        voxels[c].setMaterial(m_material);
        nextVoxels[c].setFront(blocked);
        nextVoxels[c].setMaterial(m_material);
        enqueueNeighbors(c, strip);
        if (z < m_sizeZ)
            carriers[z / FrontWordBits] |= FrontWord{1} << z % FrontWordBits;
    }
}

// Looks at the materials as they are now, while columns that come later are not implanted yet. So
// implanted cells come into the list, too, and the first step gives them the far value.
void IonImplantation::enqueueNeighbors(std::size_t c, std::uint32_t strip)
{
    const std::size_t plane = std::size_t{m_sizeY} * m_sizeZ;
    const auto x = static_cast<std::uint32_t>(c / plane);
    const auto y = static_cast<std::uint32_t>(c % plane / m_sizeZ);
    const auto z = static_cast<std::uint32_t>(c % m_sizeZ);
    for (const CellOffset &offset : faceNeighbors) {
        // Below 0 wraps to beyond every size.
        const std::uint32_t nx = x + static_cast<std::uint32_t>(offset.dx);
        const std::uint32_t ny = y + static_cast<std::uint32_t>(offset.dy);
        const std::uint32_t nz = z + static_cast<std::uint32_t>(offset.dz);
        if (nx >= m_sizeX || ny >= m_sizeY || nz >= m_sizeZ)
            continue;
        if (m_compatibleSet.contains(m_front.voxels()[m_front.indexOf(nx, ny, nz)].material()))
            m_front.cells().enqueue(nx, {ny, nz}, strip);
    }
}

void IonImplantation::runPartialDopingStep(std::uint32_t start, std::uint32_t end,
                                           std::uint32_t strip)
{
    m_front.stepStrip(AnnealingRules{m_material, m_annealingDistance, m_compatibleSet},
                      static_cast<std::int32_t>(start), static_cast<std::int32_t>(end), strip);
}

} // namespace Core::Operations
