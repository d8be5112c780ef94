#include "Core/Operations/CellularProcess/CellFront.h"

#include <QMutexLocker>

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
      m_passable(wordIndex(sizeX, 0, 0), 0)
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
    // The neighbours of a strip's cells lie at most one layer beyond it.
    m_cellsForPreviousStrip[strip] = FrontList(firstX - 1, firstX > 0 ? 1 : 0, m_sizeY, m_sizeZ);
    m_cellsForNextStrip[strip] = FrontList(endX, endX < m_sizeX ? 1 : 0, m_sizeY, m_sizeZ);
}

void CellFront::setPassable(std::uint32_t x, const PlaneCell &cell, bool isPassable)
{
    const std::uint32_t word = cell.z / FrontWordBits;
    const FrontWord bit = FrontWord{1} << cell.z % FrontWordBits;
    const FrontWord bits = passable(x, cell.y, word);
    setPassable(x, cell.y, word, isPassable ? bits | bit : bits & ~bit);
}

void CellFront::beginPass(std::uint32_t strip)
{
    m_stripMutexes[strip]->lock();
    m_cellsForPreviousStrip[strip].clear();
    m_cellsForNextStrip[strip].clear();
}

void CellFront::enqueueNeighbors(Neighborhood neighborhood, std::uint32_t x, std::uint32_t y,
                                 std::uint32_t word, FrontWord bits, std::uint32_t strip)
{
    const FrontWord vertical = bits << 1 | bits >> 1;
    const bool moore = neighborhood == Neighborhood::Moore;
    for (int dx = -1; dx <= 1; ++dx) {
        const std::uint32_t nx = x + static_cast<std::uint32_t>(dx);
        if (nx >= m_sizeX)
            continue;
        FrontList &list = listFor(nx, strip);
        for (int dy = -1; dy <= 1; ++dy) {
            const std::uint32_t ny = y + static_cast<std::uint32_t>(dy);
            if (ny >= m_sizeY)
                continue;
            const bool ownColumn = dx == 0 && dy == 0;
            if (!moore && dx != 0 && dy != 0)
                continue;
            // Up and down the column too, or, across a face other than top and bottom, level.
            const bool spreads = moore || ownColumn;
            const FrontWord level = ownColumn ? 0 : bits;
            list.add(nx, ny, word, (spreads ? vertical | level : level) & passable(nx, ny, word));
            if (spreads && word > 0 && bits & 1)
                list.add(nx, ny, word - 1,
                         FrontWord{1} << (FrontWordBits - 1) & passable(nx, ny, word - 1));
            if (spreads && word + 1 < m_words && bits >> (FrontWordBits - 1))
                list.add(nx, ny, word + 1, FrontWord{1} & passable(nx, ny, word + 1));
        }
    }
}

void CellFront::endPass(std::uint32_t strip)
{
    m_stripMutexes[strip]->unlock();
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

FrontList &CellFront::listFor(std::uint32_t x, std::uint32_t strip)
{
    FrontList &own = m_nextCells[strip];
    if (x < own.firstX())
        return m_cellsForPreviousStrip[strip];
    return x < own.endX() ? own : m_cellsForNextStrip[strip];
}

} // namespace Core::Operations
