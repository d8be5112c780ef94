#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"

#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/bind/bind.hpp>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

namespace Core::Operations {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

/// Where the front runs once it has started.
struct DirectionalRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Face;

    float thickness;

    bool takesPart(const Voxel & /*cell*/) const { return true; }
    float limit(const Voxel & /*cell*/) const { return thickness * thickness; }
};

/// One of the arrays with its lock. The later one is given back first.
struct TakenArray
{
    template <typename Take>
    TakenArray(Take &&take, std::function<void()> releaseArray)
        : cells(take()),
          release(std::move(releaseArray))
    {}
    ~TakenArray() { release(); }
    TakenArray(const TakenArray &) = delete;
    TakenArray &operator=(const TakenArray &) = delete;

    Voxel *cells;
    std::function<void()> release;
};

/// A ratio below 1 stretches the steps sideways. Their signs are the reverse of other processes',
/// which no length shows.
DistanceFront::Metric metricOf(const TotalVolume &volume, float horizontalRatio)
{
    DistanceFront::Metric metric =
        DistanceFront::metricOf(volume.cellSizeX() / horizontalRatio,
                                volume.cellSizeY() / horizontalRatio, volume.cellSizeZ());
    for (auto &vector : metric.stepVectors)
        for (float &component : vector)
            component = -component;
    return metric;
}

} // namespace

QString AnisotropicFilmDeposition::depositionModeText(std::uint32_t mode)
{
    switch (mode) {
    case OnTop:
        return QStringLiteral("On Top");
    case OnBottom:
        return QStringLiteral("On Bottom");
    case OnTopAndBottom:
        return QStringLiteral("On Top and Bottom");
    default:
        return {};
    }
}

AnisotropicFilmDeposition::AnisotropicFilmDeposition(TotalVolume *volume, std::uint32_t material,
                                                     float thickness, float horizontalRatio,
                                                     std::uint32_t depositionMode)
    : m_volume(volume),
      m_material(material),
      m_thickness(thickness),
      m_depositionMode(depositionMode),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_front(volume, metricOf(*volume, horizontalRatio)),
      m_pending(m_front.strips().threads())
{}

void AnisotropicFilmDeposition::runDeposition()
{
    using namespace boost::placeholders;
    const TakenArray voxels([this] { return m_volume->voxels(); },
                            [this] { m_volume->releaseVoxels(); });
    m_voxels = voxels.cells;
    m_front.setVoxels(m_voxels);
    const std::uint64_t stepCount = m_front.stepCount(m_thickness);
    m_front.strips().runPhase(
        boost::bind(&AnisotropicFilmDeposition::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&AnisotropicFilmDeposition::runPartialDepositionStep, this, _1, _2, _3));
    // The other array has had no part in it so far.
    const TakenArray nextVoxels([this] { return m_volume->nextVoxels(); },
                                [this] { m_volume->releaseNextVoxels(); });
    std::copy_n(m_voxels, m_front.indexOf(m_sizeX, 0, 0), nextVoxels.cells);
}

void AnisotropicFilmDeposition::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                         std::uint32_t strip)
{
    m_front.openStrip(start, end, strip);
    CellFront &cells = m_front.cells();
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    const std::uint32_t words = cells.wordsInColumn();
    // Void cells that have a filled neighbour across a face, also beside walls, from which nothing
    // starts.
    cells.listFirstCells(
        Neighborhood::Face, start, end, strip,
        [&](std::uint32_t x, CellFront::Plane &starting, CellFront::Plane &open) {
            for (std::uint32_t y = 0; y < m_sizeY; ++y) {
                Voxel *column = m_voxels + m_front.indexOf(x, y, 0);
                const bool isOwn = x >= firstX && x < endX;
                if (isOwn)
                    initializeColumn(column);
                for (std::uint32_t word = 0; word < words; ++word) {
                    const FrontWord isVoid =
                        cellsOf(column, m_sizeZ, word,
                                [](std::uint32_t material) { return material == 0; });
                    starting[std::size_t{y} * words + word] =
                        wordRange(0, std::min(FrontWordBits, m_sizeZ - word * FrontWordBits)) &
                        ~isVoid;
                    if (!isOwn)
                        continue;
                    cells.setPassable(x, y, word, isVoid);
                    open[std::size_t{y} * words + word] = isVoid;
                    m_front.carriers().set(x, y, word, sourcesOf(column, word));
                }
            }
        });
}

void AnisotropicFilmDeposition::initializeColumn(Voxel *column) const
{
    const float far = m_thickness;
    for (std::uint32_t z = 0; z < m_sizeZ; ++z) {
        if (column[z].material() == 0)
            column[z].setFront({false, far, far, far});
        else if (isSource(column, z))
            column[z].setFront({true, 0.0f, 0.0f, 0.0f});
        else
            column[z].setFront({true, far, far, far});
    }
}

FrontWord AnisotropicFilmDeposition::sourcesOf(const Voxel *column, std::uint32_t word) const
{
    FrontWord sources = 0;
    forEachRun(column, m_sizeZ, word,
               [&](std::uint32_t first, std::uint32_t end, std::uint32_t material) {
                   for (std::uint32_t bit = first; material != 0 && bit < end; ++bit)
                       if (isSource(column, word * FrontWordBits + bit))
                           sources |= FrontWord{1} << bit;
               });
    return sources;
}

bool AnisotropicFilmDeposition::isSource(const Voxel *column, std::uint32_t z) const
{
    const bool onTop = m_depositionMode == OnTop || m_depositionMode == OnTopAndBottom;
    const bool onBottom = m_depositionMode == OnBottom || m_depositionMode == OnTopAndBottom;
    if (onTop && z + 1 < m_sizeZ)
        return column[z + 1].material() == 0;
    // With both sides, that is for the top layer alone: a known limit that stays.
    if (onBottom && z >= 1)
        return column[z - 1].material() == 0;
    return false;
}

void AnisotropicFilmDeposition::runPartialDepositionStep(std::int32_t start, std::int32_t end,
                                                         std::uint32_t strip)
{
    std::vector<Pending> &pending = m_pending[strip];
    pending.clear();
    m_front.stepStrip(
        DirectionalRules{m_thickness}, start, end, strip,
        [&](const DistanceFront::Place &place, const Voxel::Front &candidate) {
            const std::uint32_t present = m_voxels[place.index].material();
            pending.push_back({place, present == 0 ? m_material : present, candidate});
        },
        // Only what was taken is written, and `reached` stays.
        [&] {
            for (const Pending &cell : pending) {
                Voxel &voxel = m_voxels[cell.place.index];
                voxel.setMaterial(cell.material);
                voxel.setDistance(cell.front.distanceX, cell.front.distanceY, cell.front.distanceZ);
                m_front.cells().setPassable(cell.place.x, {cell.place.y, cell.place.z},
                                            cell.material == 0);
            }
        });
}

} // namespace Core::Operations
