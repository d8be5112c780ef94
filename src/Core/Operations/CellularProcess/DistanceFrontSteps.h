#pragma once

#include "Core/Operations/CellularProcess/CellRuns.h"
#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Core::Operations {

template <typename Rules>
void DistanceFront::initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                                    std::uint32_t strip)
{
    openStrip(start, end, strip);
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    m_front.listFirstCells(Neighborhood::Moore, start, end, strip,
                           [&](std::uint32_t x, Words &starting, Words &open) {
                               if (x >= firstX && x < endX)
                                   initializePlane(rules, x, starting, open);
                               else
                                   readPlane(rules, x, starting);
                           });
}

template <typename Rules>
void DistanceFront::initializePlane(const Rules &rules, std::uint32_t x, Words &starting,
                                    Words &openCells)
{
    const float far = rules.far();
    const Voxel::Front source{true, 0.0f, 0.0f, 0.0f};
    const Voxel::Front open{false, far, far, far};
    const Voxel::Front blocked{true, far, far, far};
    const std::uint32_t words = m_front.wordsInColumn();
    for (std::uint32_t y = 0; y < m_sizeY; ++y) {
        const std::size_t column = indexOf(x, y, 0);
        for (std::uint32_t word = 0; word < words; ++word) {
            FrontWord passable = 0;
            FrontWord startsFront = 0;
            FrontWord sources = 0;
            forEachRun(m_voxels + column, m_sizeZ, word,
                       [&](std::uint32_t first, std::uint32_t end, std::uint32_t material) {
                           const CellStart start = rules.start(material);
                           const Voxel::Front front = start == CellStart::Source ? source
                                                      : start == CellStart::Open ? open
                                                                                 : blocked;
                           const std::size_t cell =
                               column + std::size_t{word} * FrontWordBits + first;
                           for (std::size_t i = 0; i < end - first; ++i) {
                               m_voxels[cell + i].setFront(front);
                               m_nextVoxels[cell + i].setFront(front);
                           }
                           if (start == CellStart::Open)
                               passable |= wordRange(first, end);
                           if (start == CellStart::Source)
                               sources |= wordRange(first, end);
                           if (rules.startsFront(material))
                               startsFront |= wordRange(first, end);
                       });
            m_front.setPassable(x, y, word, passable);
            openCells[std::size_t{y} * words + word] = passable;
            m_carriers.set(x, y, word, sources);
            starting[std::size_t{y} * words + word] = startsFront;
        }
    }
}

/// The same for a plane of another strip, of which only the materials are read.
template <typename Rules>
void DistanceFront::readPlane(const Rules &rules, std::uint32_t x, Words &starting) const
{
    const std::uint32_t words = m_front.wordsInColumn();
    for (std::uint32_t y = 0; y < m_sizeY; ++y)
        for (std::uint32_t word = 0; word < words; ++word)
            starting[std::size_t{y} * words + word] =
                cellsOf(m_voxels + indexOf(x, y, 0), m_sizeZ, word,
                        [&](std::uint32_t material) { return rules.startsFront(material); });
}

template <typename Rules>
void DistanceFront::stepStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                              std::uint32_t strip)
{
    stepStrip(
        rules, start, end, strip,
        [&](const Place &place, const Voxel::Front &candidate) {
            Voxel &next = m_nextVoxels[place.index];
            rules.accept(m_voxels[place.index], next);
            next.setFront(candidate);
        },
        [&] {
            commitStrip(rules, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end),
                        strip);
        });
}

template <typename Rules, typename Take, typename Commit>
void DistanceFront::stepStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                              std::uint32_t strip, Take &&take, Commit &&commit)
{
    {
        const CellFront::Pass pass(m_front, strip);
        passStrip(rules, static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end), strip,
                  take);
    }
    m_front.takeFromNeighbors(strip);
    commit();
    m_front.replaceSurfaceCells(strip);
}

template <typename Rules, typename Take>
void DistanceFront::passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                              std::uint32_t strip, Take &&take)
{
    constexpr std::size_t Ahead = 8;
    std::vector<PlaneCell> &cells = m_scratch[strip].cells;
    Words &taken = m_scratch[strip].taken;
    const std::uint32_t words = m_front.wordsInColumn();
    for (std::uint32_t x = firstX; x < endX; ++x) {
        cells.clear();
        m_front.surfaceCells(strip).forEachWord(
            x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) {
                for (bits &= m_carriers.touched(x, y, word); bits != 0; bits &= bits - 1)
                    cells.push_back({y, word * FrontWordBits + lowestBit(bits)});
            });
        std::uint32_t firstY = m_sizeY;
        std::uint32_t lastY = 0;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (i + Ahead < cells.size())
                prefetch(x, indexOf(x, cells[i + Ahead].y, cells[i + Ahead].z));
            const PlaneCell at = cells[i];
            const Place place{x, at.y, at.z, indexOf(x, at.y, at.z)};
            const Voxel &cell = m_voxels[place.index];
            if (cell.reached() || !rules.takesPart(cell))
                continue;
            Voxel::Front candidate{};
            if (!findCandidate(&cell, place, rules.limit(cell), candidate))
                continue;
            take(place, candidate);
            firstY = std::min(firstY, at.y);
            lastY = at.y;
            taken[std::size_t{at.y} * words + at.z / FrontWordBits] |= FrontWord{1}
                                                                       << at.z % FrontWordBits;
        }
        if (firstY > lastY)
            continue;
        m_front.enqueueNeighbors(Rules::neighborhood, x, taken, firstY, lastY, strip);
        // Before the commit gives them their distances, that costs a test and changes nothing.
        for (std::uint32_t y = firstY; y <= lastY; ++y)
            for (std::uint32_t word = 0; word < words; ++word)
                if (const FrontWord bits = taken[std::size_t{y} * words + word])
                    m_carriers.set(x, y, word, m_carriers.at(x, y, word) | bits);
        std::fill(taken.begin() + std::size_t{firstY} * words,
                  taken.begin() + (std::size_t{lastY} + 1) * words, 0);
    }
}

template <typename Rules>
void DistanceFront::commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                                std::uint32_t strip)
{
    for (std::uint32_t x = firstX; x < endX; ++x)
        m_front.surfaceCells(strip).forEachWord(
            x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) {
                const std::size_t first = indexOf(x, y, word * FrontWordBits);
                FrontWord passable = m_front.passable(x, y, word);
                for (; bits != 0; bits &= bits - 1) {
                    const std::uint32_t bit = lowestBit(bits);
                    Voxel &cell = m_voxels[first + bit];
                    const std::uint32_t before = cell.material();
                    cell = m_nextVoxels[first + bit];
                    if (cell.material() == before)
                        continue;
                    passable &= ~(FrontWord{1} << bit);
                    if (rules.passes(cell.material()))
                        passable |= FrontWord{1} << bit;
                }
                m_front.setPassable(x, y, word, passable);
            });
}

inline bool DistanceFront::findCandidate(const Voxel *cell, const Place &place, float limit,
                                         Voxel::Front &candidate) const
{
    const auto squaredLength = [](float x, float y, float z) { return (x * x + y * y) + z * z; };
    const Voxel::Front &own = cell->front();
    float best = squaredLength(own.distanceX, own.distanceY, own.distanceZ);
    bool found = false;
    const auto consider = [&](std::ptrdiff_t offset, const std::array<float, 3> &step) {
        const Voxel::Front &neighbor = cell[offset].front();
        const float x = neighbor.distanceX + step[0];
        const float y = neighbor.distanceY + step[1];
        const float z = neighbor.distanceZ + step[2];
        const float squared = squaredLength(x, y, z);
        // Strictly shorter, so that among equal ones the first in order stands; a cell at exactly
        // the limit is taken.
        if (squared < best && squared <= limit) {
            best = squared;
            candidate = {false, x, y, z};
            found = true;
        }
    };
    const auto strideY = static_cast<std::ptrdiff_t>(m_sizeZ);
    const auto strideX = strideY * static_cast<std::ptrdiff_t>(m_sizeY);
    if (place.z > 0)
        consider(-1, m_metric.stepVectors[0]);
    if (place.z + 1 < m_sizeZ)
        consider(1, m_metric.stepVectors[1]);
    if (place.y > 0)
        consider(-strideY, m_metric.stepVectors[2]);
    if (place.y + 1 < m_sizeY)
        consider(strideY, m_metric.stepVectors[3]);
    if (place.x > 0)
        consider(-strideX, m_metric.stepVectors[4]);
    if (place.x + 1 < m_sizeX)
        consider(strideX, m_metric.stepVectors[5]);
    return found;
}

inline void DistanceFront::prefetch(std::uint32_t x, std::size_t cell) const
{
    __builtin_prefetch(m_voxels + cell);
    __builtin_prefetch(m_nextVoxels + cell, 1);
    if (x + 1 < m_sizeX)
        __builtin_prefetch(m_voxels + cell + std::size_t{m_sizeY} * m_sizeZ);
}

} // namespace Core::Operations
