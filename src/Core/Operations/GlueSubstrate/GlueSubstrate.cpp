#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"

#include "Core/Operations/CellularProcess/CellStreams.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/CellCount.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"
#include "Util/FutureGroup.h"

#include <QThreadPool>
#include <QtConcurrentRun>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Core::Operations {

using Model::Automaton::TakenCells;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

/// Below that many layers of x a thread, in either volume, one thread does it alone.
constexpr std::uint32_t NarrowestStrip = 2;

/// The layers of z that hold filled cells, [lowest, end). With none, `lowest` is the size along z
/// and `end` is 0.
struct Body
{
    std::uint32_t lowest;
    std::uint32_t end;
};

bool hasItsCells(const TotalVolume &volume)
{
    return Model::Automaton::countCells(volume.sizeX(), volume.sizeY(), volume.sizeZ()).has_value();
}

bool isEmpty(const Voxel *column, std::uint32_t first, std::uint32_t end)
{
    std::uint32_t filled = 0;
    for (std::uint32_t z = first; z < end; ++z)
        filled |= column[z].material();
    return filled == 0;
}

/// Widens `body` by the filled cells of columns. What lies between filled cells already found
/// cannot change it.
void widen(Body &body, const Voxel *column, std::size_t columns, std::uint32_t sizeZ)
{
    for (; columns > 0; --columns, column += sizeZ) {
        const bool nothingBelow = isEmpty(column, 0, body.lowest);
        passOver(column, body.lowest, body.end);
        if (isEmpty(column, body.end, sizeZ) && nothingBelow)
            continue;
        std::uint32_t z = 0;
        while (z < body.lowest && column[z].material() == 0)
            ++z;
        body.lowest = z;
        z = sizeZ;
        while (z > body.end && column[z - 1].material() == 0)
            --z;
        body.end = z;
    }
}

Body bodyOf(TotalVolume &volume)
{
    const std::uint32_t sizeZ = volume.sizeZ();
    Body whole{sizeZ, 0};
    if (!hasItsCells(volume))
        return whole;
    const TakenCells voxels(volume);
    const StripRun strips(StripRun::layersOf(volume), NarrowestStrip);
    std::vector<Body> bodies(strips.strips(), whole);
    strips.runPhase([&](std::int32_t start, std::int32_t end, std::uint32_t strip) {
        const std::size_t inLayer = volume.sizeY();
        widen(bodies[strip], voxels.cells() + static_cast<std::size_t>(start) * inLayer * sizeZ,
              static_cast<std::size_t>(end - start) * inLayer, sizeZ);
    });
    for (const Body &body : bodies) {
        whole.lowest = std::min(whole.lowest, body.lowest);
        whole.end = std::max(whole.end, body.end);
    }
    return whole;
}

/// Cells of a row of `size` that starts at `start`, as far as `limit` reaches.
std::uint32_t cutOff(std::uint32_t size, std::uint32_t start, std::uint32_t limit)
{
    return start < limit ? std::min(size, limit - start) : 0;
}

} // namespace

GlueMeasures GlueSubstrate::measure(TotalVolume &base, TotalVolume &top)
{
    const Body baseBody = bodyOf(base);
    const Body topBody = bodyOf(top);
    GlueMeasures measures;
    measures.baseHeight = std::max(baseBody.end, 1u);
    measures.topLowest = topBody.lowest;
    measures.topHeight = std::max(topBody.end, 1u);
    measures.topEmpty = topBody.end == 0;
    measures.minimumX = std::max(base.sizeX(), top.sizeX());
    measures.minimumY = std::max(base.sizeY(), top.sizeY());
    measures.minimumZ = measures.baseHeight + measures.topHeight - measures.topLowest;
    measures.maximumDisplacementX = measures.minimumX - top.sizeX();
    measures.maximumDisplacementY = measures.minimumY - top.sizeY();
    return measures;
}

GlueSubstrate::GlueSubstrate(TotalVolume *base, TotalVolume *top, const GlueMeasures &measures,
                             const GlueChoices &choices)
    : m_base(base),
      m_top(top),
      m_measures(measures),
      m_choices(choices),
      m_baseX(base->sizeX()),
      m_baseY(base->sizeY()),
      m_baseZ(base->sizeZ()),
      m_topX(top->sizeX()),
      m_topY(top->sizeY()),
      m_topZ(top->sizeZ())
{}

bool GlueSubstrate::fits() const
{
    const auto cells =
        Model::Automaton::countCells(m_choices.finalX, m_choices.finalY, m_choices.finalZ);
    const auto baseCells = Model::Automaton::countCells(m_baseX, m_baseY, m_baseZ);
    const auto topCells = Model::Automaton::countCells(m_topX, m_topY, m_topZ);
    return cells && baseCells && topCells &&
           Model::Automaton::fitIntoMemory(std::uint64_t{*cells} + *baseCells + *topCells);
}

std::vector<std::uint32_t> GlueSubstrate::glue()
{
    const TakenCells baseVoxels(*m_base);
    const TakenCells topVoxels(*m_top);
    m_baseVoxels = baseVoxels.cells();
    m_topVoxels = topVoxels.cells();
    m_ids.assign(std::size_t{m_choices.finalX} * m_choices.finalY * m_choices.finalZ, 0);
    m_threads =
        static_cast<std::uint32_t>(std::max(1, QThreadPool::globalInstance()->maxThreadCount()));
    if (std::min(m_baseX, m_topX) / m_threads < NarrowestStrip) {
        m_threads = 1;
        worker(0);
    } else {
        Util::FutureGroup runs;
        for (std::uint32_t thread = 0; thread < m_threads; ++thread)
            runs.add(QtConcurrent::run(this, &GlueSubstrate::worker, thread));
        runs.wait();
    }
    return std::move(m_ids);
}

void GlueSubstrate::worker(std::uint32_t thread)
{
    const bool last = thread + 1 == m_threads;
    const std::uint32_t baseWidth = m_baseX / m_threads;
    copyBase(thread * baseWidth, last ? m_baseX : (thread + 1) * baseWidth);
    const std::uint32_t topWidth = m_topX / m_threads;
    copyTop(thread * topWidth, last ? m_topX : (thread + 1) * topWidth);
}

void GlueSubstrate::copyBase(std::uint32_t start, std::uint32_t end)
{
    const std::uint32_t endX = std::min(end, m_choices.finalX);
    const std::uint32_t endY = std::min(m_baseY, m_choices.finalY);
    const std::uint32_t endZ = std::min({m_measures.baseHeight, m_baseZ, m_choices.finalZ});
    if (endZ == 0)
        return;
    for (std::uint32_t x = start; x < endX; ++x) {
        for (std::uint32_t y = 0; y < endY; ++y) {
            const Voxel *from = m_baseVoxels + (std::size_t{x} * m_baseY + y) * m_baseZ;
            std::uint32_t *to =
                m_ids.data() + (std::size_t{x} * m_choices.finalY + y) * m_choices.finalZ;
            for (std::uint32_t z = 0; z < endZ; ++z)
                to[z] = from[z].material();
            passOver(from, endZ, m_baseZ);
        }
    }
}

void GlueSubstrate::copyTop(std::uint32_t start, std::uint32_t end)
{
    if (m_measures.topEmpty)
        return;
    const std::uint32_t columnsX = cutOff(m_topX, m_choices.displacementX, m_choices.finalX);
    const std::uint32_t endY = cutOff(m_topY, m_choices.displacementY, m_choices.finalY);
    const std::uint32_t endZ = cutOff(m_measures.topHeight - m_measures.topLowest,
                                      m_measures.baseHeight, m_choices.finalZ);
    // With no room above the base, its first cell there would lie behind the list.
    if (endZ == 0)
        return;
    for (std::uint32_t x = start; x < end; ++x) {
        const std::uint32_t column = m_choices.invertTop ? m_topX - 1 - x : x;
        if (column >= columnsX)
            continue;
        for (std::uint32_t y = 0; y < endY; ++y) {
            const Voxel *cells = m_topVoxels + (std::size_t{x} * m_topY + y) * m_topZ;
            passOver(cells, 0, m_measures.topLowest);
            std::uint32_t *to =
                m_ids.data() +
                ((std::size_t{m_choices.displacementX} + column) * m_choices.finalY +
                 m_choices.displacementY + y) *
                    m_choices.finalZ +
                m_measures.baseHeight;
            // The way out of the joint, from the layer that comes to lie on the base.
            if (m_choices.invertTop) {
                const Voxel *from = cells + m_measures.topHeight - 1;
                for (std::uint32_t z = 0; z < endZ; ++z)
                    to[z] = (from - z)->material();
            } else {
                const Voxel *from = cells + m_measures.topLowest;
                for (std::uint32_t z = 0; z < endZ; ++z)
                    to[z] = from[z].material();
            }
            passOver(cells, m_measures.topHeight, m_topZ);
        }
    }
}

} // namespace Core::Operations
