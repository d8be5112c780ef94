#pragma once

#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <vector>

/// The rule of deposition from a direction, stated plainly: one ordered set of cells a strip, one
/// array, every test for every cell. Slow, and meant to be read.
namespace AnisotropicDepositionRule {

using DistanceFrontRule::Cell;
using DistanceFrontRule::Cells;
using DistanceFrontRule::faceNeighbors;
using DistanceFrontRule::indexOf;
using DistanceFrontRule::isInside;
using DistanceFrontRule::Place;
using DistanceFrontRule::placeOf;
using DistanceFrontRule::squaredLength;
using DistanceFrontRule::Strip;
using DistanceFrontRule::Vector;

struct Process
{
    std::uint32_t material;
    /// In drawing units.
    float thickness;
    float horizontalRatio;
    /// 1 on top, 2 on the bottom, 3 both.
    std::uint32_t mode;
};

/// The grid with the cell sizes that distances are measured in.
inline Support::Grid scaled(const Support::Grid &grid, float horizontalRatio)
{
    Support::Grid result = grid;
    result.cellSizeX = grid.cellSizeX / horizontalRatio;
    result.cellSizeY = grid.cellSizeY / horizontalRatio;
    return result;
}

inline std::uint32_t stepCountOf(const Support::Grid &grid, const Process &process)
{
    return DistanceFrontRule::stepCountOf(scaled(grid, process.horizontalRatio),
                                          {false, process.material, process.thickness});
}

/// In the order of faceNeighbors; the vectors point away from the source.
inline std::vector<Vector> stepVectorsOf(const Support::Grid &grid, float horizontalRatio)
{
    const Support::Grid by = scaled(grid, horizontalRatio);
    const float x = by.cellSizeX;
    const float y = by.cellSizeY;
    const float z = by.cellSizeZ;
    return {{0, 0, z}, {0, 0, -z}, {0, y, 0}, {0, -y, 0}, {x, 0, 0}, {-x, 0, 0}};
}

/// A run in which each strip finishes its part of a step before the next strip begins. With one
/// strip that is every run. Afterwards the other array is a copy of this one.
class Rule final
{
public:
    /// The cells of `voxels` as they stand before the run; only `material` and `atoms` count.
    Rule(const Support::Grid &grid, const Process &process, const std::vector<Strip> &strips,
         const Cells &voxels)
        : m_grid(grid),
          m_process(process),
          m_strips(strips),
          m_voxels(voxels),
          m_stepVectors(stepVectorsOf(grid, process.horizontalRatio)),
          m_surface(strips.size()),
          m_forPrevious(strips.size()),
          m_forNext(strips.size())
    {}

    void run()
    {
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            initialize(strip);
        m_initialized = m_voxels;
        for (const Set &set : m_surface)
            m_firstCells.insert(m_firstCells.end(), set.begin(), set.end());
        const std::uint32_t steps = stepCountOf(m_grid, m_process);
        for (std::uint32_t i = 0; i < steps; ++i)
            for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
                step(strip);
    }

    const Cells &voxels() const { return m_voxels; }
    /// `voxels` before the first step, and the cells that it visits, ascending.
    const Cells &initialized() const { return m_initialized; }
    const std::vector<int> &firstCells() const { return m_firstCells; }

private:
    using Set = std::set<int>;

    void initialize(std::size_t strip)
    {
        const float t = m_process.thickness;
        for (int x = m_strips[strip].start; x < m_strips[strip].end; ++x) {
            for (int y = 0; y < int(m_grid.sizeY); ++y) {
                for (int z = 0; z < int(m_grid.sizeZ); ++z) {
                    const Place at = {x, y, z};
                    const int index = indexOf(m_grid, at);
                    Cell &cell = m_voxels[index];
                    cell.reached = cell.material != 0;
                    if (cell.material != 0 && isSource(at))
                        cell.distance = {0.0f, 0.0f, 0.0f};
                    else
                        cell.distance = {t, t, t};
                    if (cell.material == 0 && hasFilledFaceNeighbor(at))
                        m_surface[strip].insert(index);
                }
            }
        }
    }

    bool isVoid(const Place &at) const { return m_voxels[indexOf(m_grid, at)].material == 0; }

    /// A filled cell.
    bool isSource(const Place &at) const
    {
        const std::uint32_t mode = m_process.mode;
        if ((mode == 1 || mode == 3) && at.z < int(m_grid.sizeZ) - 1)
            return isVoid({at.x, at.y, at.z + 1});
        if ((mode == 2 || mode == 3) && at.z >= 1)
            return isVoid({at.x, at.y, at.z - 1});
        return false;
    }

    bool hasFilledFaceNeighbor(const Place &at) const
    {
        for (const Place &face : faceNeighbors) {
            const Place other = at + face;
            if (isInside(m_grid, other) && !isVoid(other))
                return true;
        }
        return false;
    }

    void step(std::size_t strip)
    {
        m_forPrevious[strip].clear();
        m_forNext[strip].clear();
        std::map<int, std::uint32_t> pendingMaterial;
        std::map<int, Vector> pendingDistance;
        Set set;
        const float limit2 = m_process.thickness * m_process.thickness;
        for (const int cell : m_surface[strip]) {
            if (m_voxels[cell].reached)
                continue;
            const Place at = placeOf(m_grid, cell);
            float best = squaredLength(m_voxels[cell].distance);
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
                    pendingDistance[cell] = v;
                }
            }
            if (pendingDistance.count(cell) == 0)
                continue;
            const std::uint32_t material = m_voxels[cell].material;
            pendingMaterial[cell] = material == 0 ? m_process.material : material;
            enqueueNeighbors(at, strip, set);
        }
        if (strip > 0)
            moveInto(set, m_forNext[strip - 1]);
        if (strip + 1 < m_strips.size())
            moveInto(set, m_forPrevious[strip + 1]);
        for (const auto &[cell, distance] : pendingDistance) {
            m_voxels[cell].material = pendingMaterial[cell];
            m_voxels[cell].distance = distance;
        }
        m_surface[strip] = set;
    }

    void enqueueNeighbors(const Place &at, std::size_t strip, Set &set)
    {
        for (const Place &face : faceNeighbors) {
            const Place other = at + face;
            if (!isInside(m_grid, other) || !isVoid(other))
                continue;
            const int cell = indexOf(m_grid, other);
            if (other.x >= m_strips[strip].end)
                m_forNext[strip].insert(cell);
            else if (other.x < m_strips[strip].start)
                m_forPrevious[strip].insert(cell);
            else
                set.insert(cell);
        }
    }

    static void moveInto(Set &set, Set &from)
    {
        set.insert(from.begin(), from.end());
        from.clear();
    }

    Support::Grid m_grid;
    Process m_process;
    std::vector<Strip> m_strips;
    Cells m_voxels;
    Cells m_initialized;
    std::vector<int> m_firstCells;
    std::vector<Vector> m_stepVectors;
    std::vector<Set> m_surface;
    std::vector<Set> m_forPrevious;
    std::vector<Set> m_forNext;
};

} // namespace AnisotropicDepositionRule
