#pragma once

#include "DistanceFrontRule.h"
#include "DistanceFrontRuns.h"

#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

namespace DistanceFrontRule {

/// What is known of a run that takes cells for a film, before it runs.
struct FilmFront
{
    Support::Grid grid;
    std::uint32_t film;
    float thickness;
    std::uint32_t steps;
    /// What a step adds to the vector of the face neighbor of that row. For sums of them to be
    /// exact they have to be powers of two.
    std::vector<Vector> stepVectors;
    std::vector<Strip> strips;
    /// The cells of `voxels` when the run begins, those that the first step visits, and the result
    /// of one strip.
    Cells initialized;
    std::vector<int> firstCells;
    Cells oneStrip;
    /// What a cell that is taken becomes, but for its vector: of the film, if there is no function.
    std::function<Cell(const Cell &)> taken = nullptr;
    /// The longest squared vector that a cell may take: that of the thickness, if there is none.
    std::function<float(const Cell &)> limit2 = nullptr;
    /// The cells of `nextVoxels` when the run begins, if they differ from `voxels`: a step may copy
    /// those of its list without taking them.
    Cells initializedNext = {};
};

/// What holds of a film for every order in which threads may run the strips. A cell at the border
/// of a strip may be listed late or never, and may be read before or after its strip has written
/// it, so that the cells around it can come out otherwise than with one strip, in either direction.
/// But: - Only cells that are open to the front change, which a film finds empty, and to what they
/// are to
///   become.
/// - The vector of a cell is that of a face neighbor and a step, for that neighbor's vector at some
///   moment. So it is the sum along a way through open cells from what a cell held at the beginning,
///   none of whose parts is longer than the thickness.
/// - What the first step visits, with a source at a face, changes then. Where the arrays differ, a
///   source of another strip may be gone by then.
/// - News go one cell a step, so that a cell further from every border than there are steps is that
///   of one strip.
class FrontGuarantees final
{
public:
    explicit FrontGuarantees(const FilmFront &front) : m_front(front) { findWays(); }

    void expectFor(const Cells &voxels) const
    {
        for (int cell = 0; cell < int(m_front.grid.cells()); ++cell) {
            const Place at = placeOf(m_front.grid, cell);
            ASSERT_TRUE(isKept(cell, voxels[cell]))
                << m_front.strips.size() << " strips, cell (" << at.x << ", " << at.y << ", "
                << at.z << "): " << voxels[cell];
        }
    }

    bool isBeyondNews(int cell) const
    {
        const int x = placeOf(m_front.grid, cell).x;
        for (std::size_t i = 1; i < m_front.strips.size(); ++i) {
            const int border = m_front.strips[i].start;
            const int layersBetween = x < border ? border - 1 - x : x - border;
            if (layersBetween < int(m_front.steps))
                return false;
        }
        return true;
    }

private:
    /// A cell with one of its vectors.
    struct Reached
    {
        int cell;
        Vector distance;
        bool operator<(const Reached &other) const
        {
            return cell != other.cell ? cell < other.cell : distance < other.distance;
        }
    };

    bool isSource(int cell) const
    {
        const Cell &first = m_front.initialized[cell];
        return first.reached && first.distance == Vector{0.0f, 0.0f, 0.0f};
    }

    bool isInStripOf(int cell, const Place &other) const
    {
        const int x = placeOf(m_front.grid, cell).x;
        for (const Strip &strip : m_front.strips)
            if (x >= strip.start && x < strip.end)
                return other.x >= strip.start && other.x < strip.end;
        return false;
    }

    /// The vector that the cell can have from its face neighbor of that row; whether it is within
    /// the limit.
    bool stepTo(int cell, const Vector &from, std::size_t row, Vector &distance) const
    {
        for (std::size_t axis = 0; axis < 3; ++axis)
            distance[axis] = from[axis] + m_front.stepVectors[row][axis];
        return squaredLength(distance) <= (m_front.limit2
                                               ? m_front.limit2(m_front.initialized[cell])
                                               : m_front.thickness * m_front.thickness);
    }

    void findWays()
    {
        std::vector<Reached> open;
        for (const Cells *cells : {&m_front.initialized, &m_front.initializedNext})
            for (int cell = 0; cell < int(cells->size()); ++cell)
                open.push_back({cell, (*cells)[cell].distance});
        while (!open.empty()) {
            const Reached from = open.back();
            open.pop_back();
            for (std::size_t row = 0; row < faceNeighbors.size(); ++row) {
                // The cell whose neighbor of that row this one is.
                const Place to = placeOf(m_front.grid, from.cell) - faceNeighbors[row];
                if (!isInside(m_front.grid, to))
                    continue;
                Reached next = {indexOf(m_front.grid, to), {}};
                if (m_front.initialized[next.cell].reached ||
                    !stepTo(next.cell, from.distance, row, next.distance))
                    continue;
                if (m_ways.insert(next).second)
                    open.push_back(next);
            }
        }
    }

    bool changesInTheFirstStep(int cell) const
    {
        if (m_front.steps == 0 || m_front.initialized[cell].reached ||
            !std::binary_search(m_front.firstCells.begin(), m_front.firstCells.end(), cell))
            return false;
        for (std::size_t row = 0; row < faceNeighbors.size(); ++row) {
            const Place other = placeOf(m_front.grid, cell) + faceNeighbors[row];
            Vector distance;
            if (isInside(m_front.grid, other) && isSource(indexOf(m_front.grid, other)) &&
                (m_front.initializedNext.empty() || isInStripOf(cell, other)) &&
                stepTo(cell, {0.0f, 0.0f, 0.0f}, row, distance) &&
                squaredLength(distance) < squaredLength(m_front.initialized[cell].distance))
                return true;
        }
        return false;
    }

    testing::AssertionResult isKept(int cell, const Cell &now) const
    {
        const Cell &first = m_front.initialized[cell];
        if (isBeyondNews(cell) && !hasSameMaterialAndFront(now, m_front.oneStrip[cell]))
            return testing::AssertionFailure() << "is not that of one strip";
        if (hasSameMaterialAndFront(now, first) ||
            (!m_front.initializedNext.empty() &&
             hasSameMaterialAndFront(now, m_front.initializedNext[cell]))) {
            return changesInTheFirstStep(cell)
                       ? testing::AssertionFailure() << "has a source at a face"
                       : testing::AssertionSuccess();
        }
        if (first.reached)
            return testing::AssertionFailure() << "is not open to the front";
        const Cell taken = m_front.taken ? m_front.taken(first) : Cell{m_front.film};
        if (now.material != taken.material || now.reached != taken.reached)
            return testing::AssertionFailure() << "neither as before nor taken";
        return m_ways.count({cell, now.distance}) != 0
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "has a vector that no way makes";
    }

    FilmFront m_front;
    std::set<Reached> m_ways;
};

} // namespace DistanceFrontRule
