#pragma once

#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The rule of Moore deposition and etching, stated plainly and more than once: as the lists of its
/// strips, as dilation and erosion by a cube, and as the reach of the front within its strip. Slow,
/// and meant to be read.
namespace LayerFrontRule {

using DistanceFrontRule::Cell;
using DistanceFrontRule::Cells;
using DistanceFrontRule::indexOf;
using DistanceFrontRule::isInside;
using DistanceFrontRule::mooreNeighbors;
using DistanceFrontRule::Place;
using DistanceFrontRule::placeOf;
using DistanceFrontRule::Strip;
using DistanceFrontRule::stripsOf;
using Materials = std::vector<std::uint32_t>;

/// One of the two processes with its values.
struct Process
{
    bool etching;
    std::uint32_t material;
    /// In cells.
    std::int32_t steps;

    /// A cell that the front may be handed on to, and what a step makes of it.
    bool isTarget(std::uint32_t id) const { return id == (etching ? material : 0); }
    std::uint32_t changed() const { return etching ? 0 : material; }
    /// A cell that the front starts from.
    bool isSource(std::uint32_t id) const { return etching ? id == 0 : id != 0; }
};

/// Whether a cell of the Moore neighbourhood, within the volume, satisfies the test of its index.
template <typename Test>
bool hasNeighbor(const Support::Grid &grid, int cell, Test test)
{
    const Place at = placeOf(grid, cell);
    return std::any_of(mooreNeighbors.begin(), mooreNeighbors.end(), [&](const Place &offset) {
        const Place other = at + offset;
        return isInside(grid, other) && test(indexOf(grid, other));
    });
}

/// The cells after as many dilations of what is filled, or erosions of the film from the void that
/// it touches, by a cube of 3 x 3 x 3 cells.
inline Materials movedByCubes(const Support::Grid &grid, const Materials &materials,
                              const Process &process)
{
    Materials now = materials;
    for (std::int32_t step = 0; step < process.steps; ++step) {
        const Materials before = now;
        for (int cell = 0; cell < int(before.size()); ++cell) {
            const auto touches = [&](int other) { return process.isSource(before[other]); };
            if (process.isTarget(before[cell]) && hasNeighbor(grid, cell, touches))
                now[cell] = process.changed();
        }
    }
    return now;
}

/// The cells after a run in which no strip ever hears of another: the front starts from every
/// source, wherever that is, and then goes through the targets of its own strip only.
inline Materials movedWithinStrips(const Support::Grid &grid, const Materials &materials,
                                   const Process &process, const std::vector<Strip> &strips)
{
    const auto stripOf = [&](int cell) {
        std::size_t strip = 0;
        while (placeOf(grid, cell).x >= strips[strip].end)
            ++strip;
        return strip;
    };
    // The step that each target changes in, 0 for never.
    std::vector<std::int32_t> changedIn(materials.size(), 0);
    for (std::int32_t step = 1; step <= process.steps; ++step) {
        for (int cell = 0; cell < int(materials.size()); ++cell) {
            if (!process.isTarget(materials[cell]) || changedIn[cell] != 0)
                continue;
            const bool listed = hasNeighbor(grid, cell, [&](int other) {
                if (step == 1)
                    return process.isSource(materials[other]);
                return changedIn[other] == step - 1 && stripOf(other) == stripOf(cell);
            });
            if (listed)
                changedIn[cell] = step;
        }
    }
    Materials result = materials;
    for (std::size_t cell = 0; cell < result.size(); ++cell)
        if (changedIn[cell] != 0)
            result[cell] = process.changed();
    return result;
}

/// A run in which each strip finishes its part of a step before the next strip begins. With one
/// strip that is every run.
class Rule final
{
public:
    /// The cells of both arrays as they stand before the run.
    Rule(const Support::Grid &grid, const Process &process, const std::vector<Strip> &strips,
         const Cells &voxels, const Cells &nextVoxels)
        : m_grid(grid),
          m_process(process),
          m_strips(strips),
          m_voxels(voxels),
          m_nextVoxels(nextVoxels),
          m_surface(strips.size()),
          m_forPrevious(strips.size()),
          m_forNext(strips.size())
    {}

    void run()
    {
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            initialize(strip);
        for (std::int32_t i = 0; i < m_process.steps; ++i)
            for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
                step(strip);
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }

private:
    void initialize(std::size_t strip)
    {
        for (int cell = 0; cell < int(m_voxels.size()); ++cell) {
            const Place at = placeOf(m_grid, cell);
            if (at.x < m_strips[strip].start || at.x >= m_strips[strip].end)
                continue;
            const auto isSource = [&](int other) {
                return m_process.isSource(m_voxels[other].material);
            };
            if (m_process.isTarget(m_voxels[cell].material) && hasNeighbor(m_grid, cell, isSource))
                m_surface[strip].push_back(cell);
        }
    }

    void step(std::size_t strip)
    {
        m_forPrevious[strip].clear();
        m_forNext[strip].clear();
        std::vector<int> list;
        for (const int cell : m_surface[strip]) {
            if (m_process.isTarget(m_voxels[cell].material))
                m_nextVoxels[cell].material = m_process.changed();
            enqueueNeighbors(placeOf(m_grid, cell), strip, list);
        }
        if (strip > 0)
            moveToEnd(list, m_forNext[strip - 1]);
        if (strip + 1 < m_strips.size())
            moveToEnd(list, m_forPrevious[strip + 1]);
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
        for (const int cell : m_surface[strip])
            m_voxels[cell].material = m_nextVoxels[cell].material;
        m_surface[strip] = list;
    }

    void enqueueNeighbors(const Place &at, std::size_t strip, std::vector<int> &list)
    {
        for (const Place &offset : mooreNeighbors) {
            const Place other = at + offset;
            if (!isInside(m_grid, other))
                continue;
            const int cell = indexOf(m_grid, other);
            if (!m_process.isTarget(m_voxels[cell].material))
                continue;
            if (other.x >= m_strips[strip].end)
                m_forNext[strip].push_back(cell);
            else if (other.x < m_strips[strip].start)
                m_forPrevious[strip].push_back(cell);
            else
                list.push_back(cell);
        }
    }

    static void moveToEnd(std::vector<int> &list, std::vector<int> &from)
    {
        list.insert(list.end(), from.begin(), from.end());
        from.clear();
    }

    Support::Grid m_grid;
    Process m_process;
    std::vector<Strip> m_strips;
    Cells m_voxels;
    Cells m_nextVoxels;
    std::vector<std::vector<int>> m_surface;
    std::vector<std::vector<int>> m_forPrevious;
    std::vector<std::vector<int>> m_forNext;
};

} // namespace LayerFrontRule
