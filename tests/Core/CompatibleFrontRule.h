#pragma once

#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

/// The rules of the processes that a list of compatible materials decides about, stated plainly:
/// one list of cells a strip, two arrays, every test for every cell. Slow, and meant to be read.
namespace CompatibleFrontRule {

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
using MaterialSet = std::set<std::uint32_t>;

/// In the order of faceNeighbors.
inline std::vector<Vector> stepVectorsOf(const Support::Grid &grid)
{
    const float x = grid.cellSizeX;
    const float y = grid.cellSizeY;
    const float z = grid.cellSizeZ;
    return {{0, 0, -z}, {0, 0, z}, {0, -y, 0}, {0, y, 0}, {-x, 0, 0}, {x, 0, 0}};
}

/// What these processes have in common: a run in which each strip finishes its part of a phase or a
/// step before the next strip begins. With one strip that is every run.
class Front
{
public:
    virtual ~Front() = default;
    Front(const Front &) = default;
    Front &operator=(const Front &) = delete;

    void run()
    {
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            initialize(strip);
        m_initialized = m_voxels;
        m_initializedNext = m_nextVoxels;
        for (const std::vector<int> &list : m_surface)
            m_firstCells.insert(m_firstCells.end(), list.begin(), list.end());
        const std::uint32_t steps = stepCount();
        for (std::uint32_t i = 0; i < steps; ++i)
            for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
                step(strip);
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            finish(strip);
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }
    /// Both arrays before the first step, and the cells that it visits, strip by strip.
    const Cells &initialized() const { return m_initialized; }
    const Cells &initializedNext() const { return m_initializedNext; }
    const std::vector<int> &firstCells() const { return m_firstCells; }
    const std::vector<Strip> &strips() const { return m_strips; }

    virtual std::uint32_t stepCount() const = 0;
    /// The longest squared vector that a cell may take.
    virtual float limit2(const Cell &cell) const = 0;
    /// What a cell that is taken becomes, but for its vector.
    virtual Cell taken(const Cell &cell) const = 0;

protected:
    /// The cells of both arrays as they stand before the run.
    Front(const Support::Grid &grid, const MaterialSet &compatible,
          const std::vector<Strip> &strips, const Cells &voxels, const Cells &nextVoxels)
        : m_grid(grid),
          m_compatible(compatible),
          m_strips(strips),
          m_voxels(voxels),
          m_nextVoxels(nextVoxels),
          m_surface(strips.size()),
          m_forPrevious(strips.size()),
          m_forNext(strips.size())
    {}

    virtual void initialize(std::size_t strip) = 0;
    virtual bool takesPart(const Cell &cell) const = 0;
    virtual bool passes(std::uint32_t material) const = 0;
    virtual bool listsCorners() const = 0;
    virtual void finish(std::size_t) {}

    bool isCompatible(std::uint32_t material) const { return m_compatible.count(material) != 0; }

    void setFront(int cell, bool reached, const Vector &distance)
    {
        m_voxels[cell].reached = reached;
        m_voxels[cell].distance = distance;
        m_nextVoxels[cell].reached = reached;
        m_nextVoxels[cell].distance = distance;
    }

    void enqueueNeighbors(const Place &at, std::size_t strip, std::vector<int> &list)
    {
        std::vector<Place> offsets(faceNeighbors.begin(), faceNeighbors.end());
        if (listsCorners())
            offsets.assign(mooreNeighbors.begin(), mooreNeighbors.end());
        for (const Place &offset : offsets) {
            const Place other = at + offset;
            if (!isInside(m_grid, other))
                continue;
            const int cell = indexOf(m_grid, other);
            if (!passes(m_voxels[cell].material))
                continue;
            if (other.x >= m_strips[strip].end)
                m_forNext[strip].push_back(cell);
            else if (other.x < m_strips[strip].start)
                m_forPrevious[strip].push_back(cell);
            else
                list.push_back(cell);
        }
    }

    /// What the strips beside this one have found in it goes to the list, which is sorted then.
    void takeFromNeighbors(std::size_t strip, std::vector<int> &list)
    {
        if (strip > 0)
            moveToEnd(list, m_forNext[strip - 1]);
        if (strip + 1 < m_strips.size())
            moveToEnd(list, m_forPrevious[strip + 1]);
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }

    Support::Grid m_grid;
    MaterialSet m_compatible;
    std::vector<Strip> m_strips;
    Cells m_voxels;
    Cells m_nextVoxels;
    std::vector<std::vector<int>> m_surface;

private:
    void step(std::size_t strip)
    {
        m_forPrevious[strip].clear();
        m_forNext[strip].clear();
        std::vector<int> list;
        for (const int cell : m_surface[strip]) {
            const Cell &before = m_voxels[cell];
            if (before.reached || !takesPart(before))
                continue;
            Vector candidate = {};
            if (!findCandidate(cell, candidate))
                continue;
            const Cell after = taken(before);
            m_nextVoxels[cell].material = after.material;
            m_nextVoxels[cell].reached = after.reached;
            m_nextVoxels[cell].distance = candidate;
            enqueueNeighbors(placeOf(m_grid, cell), strip, list);
        }
        takeFromNeighbors(strip, list);
        for (const int cell : m_surface[strip])
            m_voxels[cell] = m_nextVoxels[cell];
        m_surface[strip] = list;
    }

    bool findCandidate(int cell, Vector &candidate) const
    {
        const std::vector<Vector> stepVectors = stepVectorsOf(m_grid);
        const float limit = limit2(m_voxels[cell]);
        float best = squaredLength(m_voxels[cell].distance);
        bool found = false;
        for (std::size_t k = 0; k < faceNeighbors.size(); ++k) {
            const Place other = placeOf(m_grid, cell) + faceNeighbors[k];
            if (!isInside(m_grid, other))
                continue;
            const Vector &from = m_voxels[indexOf(m_grid, other)].distance;
            Vector v;
            for (std::size_t axis = 0; axis < 3; ++axis)
                v[axis] = from[axis] + stepVectors[k][axis];
            const float s = squaredLength(v);
            if (s < best && s <= limit) {
                best = s;
                candidate = v;
                found = true;
            }
        }
        return found;
    }

    static void moveToEnd(std::vector<int> &list, std::vector<int> &from)
    {
        list.insert(list.end(), from.begin(), from.end());
        from.clear();
    }

    Cells m_initialized;
    Cells m_initializedNext;
    std::vector<int> m_firstCells;
    std::vector<std::vector<int>> m_forPrevious;
    std::vector<std::vector<int>> m_forNext;
};

} // namespace CompatibleFrontRule
