#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"

#include "Core/Operations/CellularProcess/CellRuns.h"
#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"
#include "Core/Operations/SiOxidation/OxideGrowth.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>
#include <QString>

#include <boost/bind/bind.hpp>

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

namespace {

using Model::Automaton::TotalVolume;

/// The square of a fraction of the thickness, in 32-bit float.
float squaredPart(double thickness, double fraction)
{
    const auto length = static_cast<float>(thickness * fraction);
    return length * length;
}

/// Where the front runs once it has started, and how far: further out into the void than into what
/// is filled. The steps change no material.
struct OxidationRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Face;

    float voidLimit;
    float solidLimit;

    bool takesPart(const Model::Automaton::Voxel & /*cell*/) const { return true; }
    float limit(const Model::Automaton::Voxel &cell) const
    {
        return cell.material() != 0 ? solidLimit : voidLimit;
    }
    void accept(const Model::Automaton::Voxel & /*cell*/, Model::Automaton::Voxel & /*next*/) const
    {}
    /// Asked where a material has changed.
    bool passes(std::uint32_t /*material*/) const { return true; }
};

double smallestCellSize(const TotalVolume &volume)
{
    return static_cast<double>(
        std::min({volume.cellSizeX(), volume.cellSizeY(), volume.cellSizeZ()}));
}

} // namespace

SimpleSiOxidation::SimpleSiOxidation(TotalVolume *volume, double cellUnitsPerMicron)
    : m_volume(volume),
      m_cellUnitsPerMicron(cellUnitsPerMicron),
      m_compatibleSet(QStringLiteral("Simple Si Oxidation")),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_front(volume)
{}

void SimpleSiOxidation::oxidateFor(double time, double temperature, double pressure)
{
    const OxideGrowth growth = growOxide(time, temperature, pressure);
    const double cellUnits = growth.thickness * m_cellUnitsPerMicron;
    qDebug() << "Time:" << time;
    qDebug() << "Temperature:" << temperature;
    qDebug() << "Pressure:" << pressure;
    qDebug() << "B (1 atm)" << growth.parabolicRateAtOneAtmosphere;
    qDebug() << "B" << growth.parabolicRate;
    qDebug() << "B/A" << growth.linearRate;
    qDebug() << "A" << growth.a;
    qDebug() << "tau" << growth.tau;
    qDebug() << "Oxide thickness in microns" << growth.thickness;
    qDebug() << "Oxide thickness in cell units" << cellUnits;
    oxidateTo(cellUnits);
}

void SimpleSiOxidation::oxidateTo(double thickness)
{
    using namespace boost::placeholders;
    // Also so for what is not a number.
    if (!(thickness > smallestCellSize(*m_volume)))
        return;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(thickness);
    m_thickness = thickness;
    m_front.strips().runPhase(
        boost::bind(&SimpleSiOxidation::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&SimpleSiOxidation::runPartialOxidationStep, this, _1, _2, _3));
    // A volume too thin for several strips comes out as it went in, on purpose.
    if (!m_front.strips().isSingle())
        m_front.strips().runPhase(
            boost::bind(&SimpleSiOxidation::convertToOxide, this, _1, _2, _3));
}

void SimpleSiOxidation::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                 std::uint32_t strip)
{
    m_front.openStrip(start, end, strip);
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    if (firstX >= endX)
        return;
    CellFront &cells = m_front.cells();
    const std::uint32_t words = cells.wordsInColumn();
    // Whether a cell is at the surface depends on its neighbours, and whether one is listed on
    // theirs: two layers beyond the strip.
    const std::uint32_t originX = firstX - std::min(firstX, 2u);
    const std::uint32_t lastX = std::min(endX + 2, m_sizeX);
    CellBits isVoid(lastX - originX, m_sizeY, m_sizeZ);
    CellBits isOxidisable(lastX - originX, m_sizeY, m_sizeZ);
    for (std::uint32_t x = originX; x < lastX; ++x)
        for (std::uint32_t y = 0; y < m_sizeY; ++y) {
            const Voxel *column = m_front.voxels() + m_front.indexOf(x, y, 0);
            for (std::uint32_t word = 0; word < words; ++word) {
                isVoid.set(x - originX, y, word,
                           cellsOf(column, m_sizeZ, word,
                                   [](std::uint32_t material) { return material == 0; }));
                isOxidisable.set(x - originX, y, word,
                                 cellsOf(column, m_sizeZ, word, [this](std::uint32_t material) {
                                     return m_compatibleSet.contains(material);
                                 }));
            }
        }
    cells.listFirstCells(
        Neighborhood::Face, start, end, strip,
        [&](std::uint32_t x, CellFront::Plane &surface, CellFront::Plane &open) {
            const std::uint32_t at = x - originX;
            for (std::uint32_t y = 0; y < m_sizeY; ++y)
                for (std::uint32_t word = 0; word < words; ++word) {
                    const FrontWord oxidisable = isOxidisable.at(at, y, word);
                    const FrontWord voids = isVoid.at(at, y, word);
                    const FrontWord sources = oxidisable & isVoid.touched(at, y, word);
                    surface[std::size_t{y} * words + word] = sources;
                    if (x < firstX || x >= endX)
                        continue;
                    const FrontWord openCells = (oxidisable | voids) & ~sources;
                    open[std::size_t{y} * words + word] = openCells;
                    initializeCells(x, y, word, sources, openCells);
                    m_front.carriers().set(x, y, word, sources);
                    const Voxel *column = m_front.voxels() + m_front.indexOf(x, y, 0);
                    const FrontWord oxide =
                        cellsOf(column, m_sizeZ, word,
                                [](std::uint32_t material) { return material == OxideMaterial; });
                    cells.setPassable(x, y, word, oxidisable | voids | oxide);
                }
        });
}

void SimpleSiOxidation::initializeCells(std::uint32_t x, std::uint32_t y, std::uint32_t word,
                                        FrontWord sources, FrontWord open)
{
    const auto far = static_cast<float>(m_thickness);
    const std::size_t first = m_front.indexOf(x, y, word * FrontWordBits);
    const std::uint32_t count = std::min(FrontWordBits, m_sizeZ - word * FrontWordBits);
    for (std::uint32_t bit = 0; bit < count; ++bit) {
        const bool isSource = (sources >> bit & 1) != 0;
        const bool isOpen = (open >> bit & 1) != 0;
        const float distance = isSource ? 0.0f : far;
        const Voxel::Front front{!isOpen, distance, distance, distance};
        m_front.voxels()[first + bit].setFront(front);
        m_front.nextVoxels()[first + bit].setFront(front);
    }
}

void SimpleSiOxidation::runPartialOxidationStep(std::int32_t start, std::int32_t end,
                                                std::uint32_t strip)
{
    m_front.stepStrip(
        OxidationRules{squaredPart(m_thickness, 0.56), squaredPart(m_thickness, 0.44)}, start, end,
        strip);
}

void SimpleSiOxidation::convertToOxide(std::int32_t start, std::int32_t end, std::uint32_t strip)
{
    m_front.cells().surfaceCells(strip).clear();
    const float solidLimit = squaredPart(m_thickness, 0.3);
    const float voidLimit = squaredPart(m_thickness, 0.6);
    const std::size_t first = m_front.indexOf(static_cast<std::uint32_t>(start), 0, 0);
    const std::size_t last = m_front.indexOf(static_cast<std::uint32_t>(end), 0, 0);
    for (std::size_t c = first; c < last; ++c) {
        Voxel &cell = m_front.voxels()[c];
        const std::uint32_t material = cell.material();
        // An oxidisable void, which a registry may name, goes by both limits, so by the longer.
        const bool oxidisable = m_compatibleSet.contains(material);
        if (!oxidisable && material != 0)
            continue;
        const Voxel::Front &front = cell.front();
        const float squared =
            (front.distanceX * front.distanceX + front.distanceY * front.distanceY) +
            front.distanceZ * front.distanceZ;
        if ((oxidisable && solidLimit > squared) || (material == 0 && voidLimit > squared)) {
            cell.setMaterial(OxideMaterial);
            m_front.nextVoxels()[c].setMaterial(OxideMaterial);
        }
    }
}

} // namespace Core::Operations
