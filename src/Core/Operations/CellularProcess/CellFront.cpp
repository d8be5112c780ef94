#include "Core/Operations/CellularProcess/CellFront.h"

#include <utility>

namespace Core::Operations {

CellFront::CellFront(const StripRun &strips, std::uint32_t sizeX, std::uint32_t sizeY,
                     std::uint32_t sizeZ)
    : m_sizeX(sizeX),
      m_sizeY(sizeY),
      m_sizeZ(sizeZ),
      m_words((sizeZ + FrontWordBits - 1) / FrontWordBits),
      m_surfaceCells(strips.threads()),
      m_nextCells(strips.threads()),
      m_cellsForPreviousStrip(strips.threads()),
      m_cellsForNextStrip(strips.threads()),
      m_passable(sizeX, sizeY, sizeZ)
{
    for (std::uint32_t strip = 0; strip < strips.threads(); ++strip)
        m_stripMutexes.push_back(std::make_unique<QMutex>());
}

void CellFront::openStrip(std::int32_t start, std::int32_t end, std::uint32_t strip)
{
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    m_surfaceCells[strip] = FrontList(firstX, endX - firstX, m_sizeY, m_sizeZ);
    m_nextCells[strip] = FrontList(firstX, endX - firstX, m_sizeY, m_sizeZ);
    // The neighbours of a strip's cells lie one layer beyond it, or two, when a process begins in
    // the layer beyond it.
    constexpr std::uint32_t Beyond = 2;
    const std::uint32_t before = std::min(firstX, Beyond);
    const std::uint32_t behind = std::min(m_sizeX - endX, Beyond);
    m_cellsForPreviousStrip[strip] = FrontList(firstX - before, before, m_sizeY, m_sizeZ);
    m_cellsForNextStrip[strip] = FrontList(endX, behind, m_sizeY, m_sizeZ);
}

void CellFront::setPassable(std::uint32_t x, const PlaneCell &cell, bool isPassable)
{
    const std::uint32_t word = cell.z / FrontWordBits;
    const FrontWord bit = FrontWord{1} << cell.z % FrontWordBits;
    const FrontWord bits = passable(x, cell.y, word);
    setPassable(x, cell.y, word, isPassable ? bits | bit : bits & ~bit);
}

CellFront::Pass::Pass(CellFront &front, std::uint32_t strip)
    : m_lock(front.m_stripMutexes[strip].get())
{
    front.m_cellsForPreviousStrip[strip].clear();
    front.m_cellsForNextStrip[strip].clear();
}

void CellFront::enqueueNeighbors(Neighborhood neighborhood, std::uint32_t x,
                                 const std::vector<FrontWord> &cells, std::uint32_t firstY,
                                 std::uint32_t lastY, std::uint32_t strip)
{
    const bool moore = neighborhood == Neighborhood::Moore;
    FrontList *below = x > 0 ? &listFor(x - 1, strip) : nullptr;
    FrontList &own = listFor(x, strip);
    FrontList *above = x + 1 < m_sizeX ? &listFor(x + 1, strip) : nullptr;
    const std::uint32_t begin = firstY > 0 ? firstY - 1 : 0;
    const std::uint32_t end = lastY + 1 < m_sizeY ? lastY + 2 : m_sizeY;
    for (std::uint32_t y = begin; y < end; ++y) {
        const FrontWord *column = &cells[std::size_t{y} * m_words];
        const FrontWord *before = y > 0 ? column - m_words : nullptr;
        const FrontWord *behind = y + 1 < m_sizeY ? column + m_words : nullptr;
        for (std::uint32_t word = 0; word < m_words; ++word) {
            // What lies above, below and beside the cells, within the plane.
            const FrontWord vertical = verticalNeighbors(column, word);
            FrontWord beside = 0;
            for (const FrontWord *side : {before, behind})
                if (side)
                    beside |= side[word] | (moore ? verticalNeighbors(side, word) : 0);
            const FrontWord level = column[word];
            own.add(x, y, word, (vertical | beside) & passable(x, y, word));
            const FrontWord across = moore ? level | vertical | beside : level;
            if (across == 0)
                continue;
            if (below)
                below->add(x - 1, y, word, across & passable(x - 1, y, word));
            if (above)
                above->add(x + 1, y, word, across & passable(x + 1, y, word));
        }
    }
}

FrontWord CellFront::verticalNeighbors(const FrontWord *column, std::uint32_t word) const
{
    FrontWord neighbors = column[word] << 1 | column[word] >> 1;
    if (word > 0)
        neighbors |= column[word - 1] >> (FrontWordBits - 1);
    if (word + 1 < m_words)
        neighbors |= column[word + 1] << (FrontWordBits - 1);
    return neighbors;
}

void CellFront::enqueue(std::uint32_t x, const PlaneCell &cell, std::uint32_t strip)
{
    listFor(x, strip).add(x, cell.y, cell.z / FrontWordBits,
                          FrontWord{1} << cell.z % FrontWordBits);
}

void CellFront::takeFromNeighbors(std::uint32_t strip)
{
    if (strip > 0) {
        const QMutexLocker lock(m_stripMutexes[strip - 1].get());
        m_nextCells[strip].take(m_cellsForNextStrip[strip - 1]);
    }
    if (strip + 1 < m_stripMutexes.size()) {
        const QMutexLocker lock(m_stripMutexes[strip + 1].get());
        m_nextCells[strip].take(m_cellsForPreviousStrip[strip + 1]);
    }
}

void CellFront::replaceSurfaceCells(std::uint32_t strip)
{
    m_surfaceCells[strip].clear();
    std::swap(m_surfaceCells[strip], m_nextCells[strip]);
}

void CellFront::listPlane(Neighborhood neighborhood, std::uint32_t x, std::uint32_t strip,
                          const Plane &openCells, const Plane &below, const Plane &plane,
                          const Plane &above)
{
    const bool moore = neighborhood == Neighborhood::Moore;
    FrontList &list = m_surfaceCells[strip];
    for (std::uint32_t y = 0; y < m_sizeY; ++y) {
        for (std::uint32_t word = 0; word < m_words; ++word) {
            const std::size_t column = std::size_t{y} * m_words;
            const FrontWord open = openCells[column + word];
            if (open == 0)
                continue;
            FrontWord touched = verticalNeighbors(&plane[column], word);
            for (const auto *across : {&below, &above}) {
                touched |= (*across)[column + word];
                if (moore)
                    touched |= verticalNeighbors(&(*across)[column], word);
            }
            const auto touchBeside = [&](std::size_t side) {
                touched |= plane[side + word];
                if (!moore)
                    return;
                for (const auto *words : {&below, &plane, &above})
                    touched |= (*words)[side + word] | verticalNeighbors(&(*words)[side], word);
            };
            if (y > 0)
                touchBeside(column - m_words);
            if (y + 1 < m_sizeY)
                touchBeside(column + m_words);
            list.add(x, y, word, open & touched);
        }
    }
}

FrontList &CellFront::listFor(std::uint32_t x, std::uint32_t strip)
{
    FrontList &own = m_nextCells[strip];
    if (x < own.firstX())
        return m_cellsForPreviousStrip[strip];
    return x < own.endX() ? own : m_cellsForNextStrip[strip];
}

} // namespace Core::Operations
