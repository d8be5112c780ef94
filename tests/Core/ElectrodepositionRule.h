#pragma once

#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The rule of plating, stated plainly: one list of cells a strip, two arrays, every test for every
/// cell. Slow, and meant to be read.
namespace ElectrodepositionRule {

using DistanceFrontRule::Cell;
using DistanceFrontRule::Cells;
using DistanceFrontRule::faceNeighbors;
using DistanceFrontRule::indexOf;
using DistanceFrontRule::isInside;
using DistanceFrontRule::mooreNeighbors;
using DistanceFrontRule::Place;
using DistanceFrontRule::placeOf;
using DistanceFrontRule::squaredLength;
using DistanceFrontRule::Strip;
using DistanceFrontRule::Vector;

/// What a step adds to a vector: plating counts the way along each axis, so that a way back makes
/// it longer. The other kind is here to show where that can be seen.
enum class Steps
{
    Unsigned,
    Signed
};

struct Process
{
    std::uint32_t material;
    std::uint32_t conductingMaterial;
    /// In drawing units.
    float thickness;
};

inline std::uint32_t stepCountOf(const Support::Grid &grid, const Process &process)
{
    return DistanceFrontRule::stepCountOf(grid, {false, process.material, process.thickness});
}

/// In the order of faceNeighbors.
inline std::vector<Vector> stepVectorsOf(const Support::Grid &grid, Steps steps)
{
    const float x = grid.cellSizeX;
    const float y = grid.cellSizeY;
    const float z = grid.cellSizeZ;
    if (steps == Steps::Signed)
        return {{0, 0, -z}, {0, 0, z}, {0, -y, 0}, {0, y, 0}, {-x, 0, 0}, {x, 0, 0}};
    return {{0, 0, z}, {0, 0, z}, {0, y, 0}, {0, y, 0}, {x, 0, 0}, {x, 0, 0}};
}

/// A run in which each strip finishes its part of a step before the next strip begins. With one
/// strip that is every run.
class Rule final
{
public:
    /// The cells of both arrays as they stand before the run; only `material` and `atoms` count.
    Rule(const Support::Grid &grid, const Process &process, const std::vector<Strip> &strips,
         const Cells &voxels, const Cells &nextVoxels, Steps steps = Steps::Unsigned)
        : m_grid(grid),
          m_process(process),
          m_strips(strips),
          m_voxels(voxels),
          m_nextVoxels(nextVoxels),
          m_stepVectors(stepVectorsOf(grid, steps)),
          m_surface(strips.size()),
          m_forPrevious(strips.size()),
          m_forNext(strips.size())
    {}

    void run()
    {
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            initialize(strip);
        m_initialized = m_voxels;
        for (const std::vector<int> &list : m_surface)
            m_firstCells.insert(m_firstCells.end(), list.begin(), list.end());
        const std::uint32_t steps = stepCountOf(m_grid, m_process);
        for (std::uint32_t i = 0; i < steps; ++i)
            for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
                step(strip);
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }
    /// `voxels` before the first step, and the cells that it visits, ascending.
    const Cells &initialized() const { return m_initialized; }
    const std::vector<int> &firstCells() const { return m_firstCells; }

private:
    void initialize(std::size_t strip)
    {
        const float t = m_process.thickness;
        for (int x = m_strips[strip].start; x < m_strips[strip].end; ++x) {
            for (int y = 0; y < int(m_grid.sizeY); ++y) {
                for (int z = 0; z < int(m_grid.sizeZ); ++z) {
                    const int cell = indexOf(m_grid, {x, y, z});
                    const std::uint32_t material = m_voxels[cell].material;
                    if (material == m_process.conductingMaterial)
                        setFront(cell, true, {0.0f, 0.0f, 0.0f});
                    else if (material != 0)
                        setFront(cell, true, {t, t, t});
                    else
                        setFront(cell, false, {t, t, t});
                    if (material == 0 && hasNeighborThatDoesNotConduct({x, y, z}))
                        m_surface[strip].push_back(cell);
                }
            }
        }
    }

    void setFront(int cell, bool reached, const Vector &distance)
    {
        m_voxels[cell].reached = reached;
        m_voxels[cell].distance = distance;
        m_nextVoxels[cell].reached = reached;
        m_nextVoxels[cell].distance = distance;
    }

    bool hasNeighborThatDoesNotConduct(const Place &at) const
    {
        for (const Place &offset : mooreNeighbors) {
            const Place other = at + offset;
            if (!isInside(m_grid, other))
                continue;
            if (m_voxels[indexOf(m_grid, other)].material != m_process.conductingMaterial)
                return true;
        }
        return false;
    }

    void step(std::size_t strip)
    {
        m_forPrevious[strip].clear();
        m_forNext[strip].clear();
        std::vector<int> list;
        const float limit2 = m_process.thickness * m_process.thickness;
        for (const int cell : m_surface[strip]) {
            if (m_voxels[cell].reached)
                continue;
            const Place at = placeOf(m_grid, cell);
            float best = squaredLength(m_voxels[cell].distance);
            int candidateRow = -1;
            Vector candidate = {};
            for (int k = 0; k < 6; ++k) {
                const Place other = at + faceNeighbors[k];
                if (!isInside(m_grid, other))
                    continue;
                const Vector &from = m_voxels[indexOf(m_grid, other)].distance;
                Vector v;
                for (int axis = 0; axis < 3; ++axis)
                    v[axis] = from[axis] + m_stepVectors[k][axis];
                const float s = squaredLength(v);
                if (s < best && s <= limit2) {
                    best = s;
                    candidate = v;
                    candidateRow = k;
                }
            }
            if (candidateRow < 0)
                continue;
            if (m_voxels[cell].material == 0)
                m_nextVoxels[cell].material = m_process.material;
            m_nextVoxels[cell].reached = false;
            m_nextVoxels[cell].distance = candidate;
            enqueueNeighbors(at, strip, list);
        }
        if (strip > 0)
            moveToEnd(list, m_forNext[strip - 1]);
        if (strip + 1 < m_strips.size())
            moveToEnd(list, m_forPrevious[strip + 1]);
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
        for (const int cell : m_surface[strip])
            m_voxels[cell] = m_nextVoxels[cell];
        m_surface[strip] = list;
    }

    void enqueueNeighbors(const Place &at, std::size_t strip, std::vector<int> &list)
    {
        for (const Place &offset : mooreNeighbors) {
            const Place other = at + offset;
            if (!isInside(m_grid, other))
                continue;
            const int cell = indexOf(m_grid, other);
            if (m_voxels[cell].material != 0)
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
    Cells m_initialized;
    std::vector<int> m_firstCells;
    std::vector<Vector> m_stepVectors;
    std::vector<std::vector<int>> m_surface;
    std::vector<std::vector<int>> m_forPrevious;
    std::vector<std::vector<int>> m_forNext;
};

} // namespace ElectrodepositionRule
