#include "Core/Operations/CellularProcess/LayerFront.h"

#include "Core/Operations/CellularProcess/CellRuns.h"
#include "Model/Automaton/TotalVolume.h"

#include <algorithm>

namespace Core::Operations {

LayerFront::LayerFront(Model::Automaton::TotalVolume *volume)
    : m_volume(volume),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(m_sizeX == 0 ? 0 : volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_strips(m_sizeX),
      m_front(m_strips, m_sizeX, m_sizeY, m_sizeZ),
      m_listed(m_strips.threads())
{}

void LayerFront::initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                                 std::uint32_t strip)
{
    m_front.openStrip(start, end, strip);
    const std::uint32_t words = m_front.wordsInColumn();
    const auto isStarting = [&](std::uint32_t material) {
        return (material == 0) == rules.startsAtVoid;
    };
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    m_front.listFirstCells(Neighborhood::Moore, start, end, strip,
                           [&](std::uint32_t x, Words &starting, Words &open) {
                               for (std::uint32_t y = 0; y < m_sizeY; ++y)
                                   for (std::uint32_t word = 0; word < words; ++word) {
                                       FrontWord passable = 0;
                                       FrontWord &bits = starting[std::size_t{y} * words + word];
                                       forEachRun(m_voxels + indexOf(x, y, 0), m_sizeZ, word,
                                                  [&](std::uint32_t first, std::uint32_t last,
                                                      std::uint32_t material) {
                                                      if (material == rules.from)
                                                          passable |= wordRange(first, last);
                                                      if (isStarting(material))
                                                          bits |= wordRange(first, last);
                                                  });
                                       if (x >= firstX && x < endX)
                                           m_front.setPassable(x, y, word, passable);
                                       open[std::size_t{y} * words + word] = passable;
                                   }
                           });
}

void LayerFront::stepStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                           std::uint32_t strip)
{
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    {
        const CellFront::Pass pass(m_front, strip);
        passStrip(rules, firstX, endX, strip);
    }
    m_front.takeFromNeighbors(strip);
    commitStrip(rules, firstX, endX, strip);
    m_front.replaceSurfaceCells(strip);
}

// A passable cell is one of the material `from`: what a step changes are the passable cells of its
// list. The others were changed by this front before and only hand it on.
void LayerFront::passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                           std::uint32_t strip)
{
    Words &listed = m_listed[strip];
    const std::uint32_t words = m_front.wordsInColumn();
    listed.resize(std::size_t{m_sizeY} * words);
    for (std::uint32_t x = firstX; x < endX; ++x) {
        std::uint32_t firstY = m_sizeY;
        std::uint32_t lastY = 0;
        m_front.surfaceCells(strip).forEachWord(
            x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) {
                Voxel *next = m_nextVoxels + indexOf(x, y, word * FrontWordBits);
                for (FrontWord changing = bits & m_front.passable(x, y, word); changing != 0;
                     changing &= changing - 1)
                    next[lowestBit(changing)].setMaterial(rules.to);
                listed[std::size_t{y} * words + word] = bits;
                firstY = std::min(firstY, y);
                lastY = y;
            });
        if (firstY > lastY)
            continue;
        m_front.enqueueNeighbors(Neighborhood::Moore, x, listed, firstY, lastY, strip);
        std::fill(listed.begin() + std::size_t{firstY} * words,
                  listed.begin() + (std::size_t{lastY} + 1) * words, 0);
    }
}

void LayerFront::commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                             std::uint32_t strip)
{
    for (std::uint32_t x = firstX; x < endX; ++x)
        m_front.surfaceCells(strip).forEachWord(
            x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) {
                const FrontWord passable = m_front.passable(x, y, word);
                const std::size_t first = indexOf(x, y, word * FrontWordBits);
                for (FrontWord changed = bits & passable; changed != 0; changed &= changed - 1) {
                    const std::size_t index = first + lowestBit(changed);
                    m_voxels[index].setMaterial(m_nextVoxels[index].material());
                }
                if (rules.to != rules.from)
                    m_front.setPassable(x, y, word, passable & ~bits);
            });
}

} // namespace Core::Operations
