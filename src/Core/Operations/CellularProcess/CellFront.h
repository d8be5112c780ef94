#pragma once

#include "Core/Operations/CellularProcess/CellBits.h"
#include "Core/Operations/CellularProcess/FrontList.h"
#include "Core/Operations/CellularProcess/StripRun.h"

#include <QMutex>
#include <QMutexLocker>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Core::Operations {

/// Which cells an accepted cell brings into the next step.
enum class Neighborhood
{
    Face,
    Moore
};

/// The lists of a front, strip by strip: the cells that the next step visits, and those that a
/// strip finds beyond its own x range and hands to its neighbours.
///
/// A strip holds its own mutex for its whole pass, so that a neighbour that wants the outbound
/// lists waits until they are complete; a thread holds at most one of these mutexes. There is no
/// barrier between the pass of one strip and the merge of its neighbour: a border cell may come a
/// step late or be lost to the front, depending on timing, and that is accepted.
class CellFront final
{
public:
    /// Sizes in cells. `strips` is read here only.
    CellFront(const StripRun &strips, std::uint32_t sizeX, std::uint32_t sizeY,
              std::uint32_t sizeZ);
    CellFront(const CellFront &) = delete;
    CellFront &operator=(const CellFront &) = delete;

    std::uint32_t wordsInColumn() const { return m_words; }

    /// Makes the empty lists of a strip. Called once a strip, by its first phase; within a Pass
    /// if strips take from each other in that phase.
    void openStrip(std::int32_t start, std::int32_t end, std::uint32_t strip);
    /// A bit a cell of a plane of constant x, wordsInColumn() words a column.
    using Plane = std::vector<FrontWord>;
    /// Lists the first cells of a strip: the open ones that have a neighbour among the starting
    /// cells, not counting themselves. readPlane(x, starting, open) is called once for each plane
    /// that touches the strip, in ascending order, and sets the bits of plane x, all clear before;
    /// those of the open cells play no part outside the strip.
    template <typename ReadPlane>
    void listFirstCells(Neighborhood neighborhood, std::int32_t start, std::int32_t end,
                        std::uint32_t strip, ReadPlane &&readPlane);
    /// The list that the next step of the strip visits.
    FrontList &surfaceCells(std::uint32_t strip) { return m_surfaceCells[strip]; }

    /// Whether a cell's material lets the front list the cell, a bit a cell along z. A strip writes
    /// those of its own x range; the border layers are also read by its neighbours.
    FrontWord passable(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        return m_passable.at(x, y, word);
    }
    void setPassable(std::uint32_t x, std::uint32_t y, std::uint32_t word, FrontWord bits)
    {
        m_passable.set(x, y, word, bits);
    }
    void setPassable(std::uint32_t x, const PlaneCell &cell, bool passable);

    /// The pass of a strip over its list: holds the strip's mutex from its outbound lists being
    /// cleared until they are complete.
    class Pass final
    {
    public:
        Pass(CellFront &front, std::uint32_t strip);

    private:
        QMutexLocker m_lock;
    };

    /// Lists the passable neighbours of the cells of a plane for the next step; cells beyond the
    /// strip go to its outbound lists, cells beyond the volume nowhere. `cells` holds a bit a cell,
    /// wordsInColumn() words a column; only the columns from firstY to lastY, inclusive, hold any.
    void enqueueNeighbors(Neighborhood neighborhood, std::uint32_t x,
                          const std::vector<FrontWord> &cells, std::uint32_t firstY,
                          std::uint32_t lastY, std::uint32_t strip);
    /// The same for a single cell in the strip's own planes or beside them.
    void enqueue(std::uint32_t x, const PlaneCell &cell, std::uint32_t strip);
    /// Moves what the neighbours have found in this strip into its next list.
    void takeFromNeighbors(std::uint32_t strip);
    /// The next list takes the place of the one that was visited.
    void replaceSurfaceCells(std::uint32_t strip);

private:
    /// The cells right above and below those of a word of the column.
    FrontWord verticalNeighbors(const FrontWord *column, std::uint32_t word) const;
    FrontList &listFor(std::uint32_t x, std::uint32_t strip);
    void listPlane(Neighborhood neighborhood, std::uint32_t x, std::uint32_t strip,
                   const Plane &open, const Plane &below, const Plane &plane, const Plane &above);

    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    std::uint32_t m_words;
    std::vector<FrontList> m_surfaceCells;
    std::vector<FrontList> m_nextCells;
    std::vector<FrontList> m_cellsForPreviousStrip;
    std::vector<FrontList> m_cellsForNextStrip;
    std::vector<std::unique_ptr<QMutex>> m_stripMutexes;
    CellBits m_passable;
};

template <typename ReadPlane>
void CellFront::listFirstCells(Neighborhood neighborhood, std::int32_t start, std::int32_t end,
                               std::uint32_t strip, ReadPlane &&readPlane)
{
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    if (firstX >= endX)
        return;
    // Three planes roll through the strip, so that each cell is read once.
    struct Rolling
    {
        Plane starting;
        Plane open;
    };
    const Plane clear(std::size_t{m_sizeY} * m_words, 0);
    Rolling below{clear, clear};
    Rolling plane(below);
    Rolling above(below);
    if (firstX > 0)
        readPlane(firstX - 1, below.starting, below.open);
    readPlane(firstX, plane.starting, plane.open);
    for (std::uint32_t x = firstX; x < endX; ++x) {
        above.starting = clear;
        above.open = clear;
        if (x + 1 < m_sizeX)
            readPlane(x + 1, above.starting, above.open);
        listPlane(neighborhood, x, strip, plane.open, below.starting, plane.starting,
                  above.starting);
        std::swap(below, plane);
        std::swap(plane, above);
    }
}

} // namespace Core::Operations
