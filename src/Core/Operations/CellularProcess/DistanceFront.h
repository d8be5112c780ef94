#pragma once

#include "Core/Operations/CellularProcess/CellFront.h"
#include "Core/Operations/CellularProcess/CellNeighbors.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/Voxel.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// What a cell is to a distance front when a run begins.
enum class CellStart
{
    /// Reached, with no distance: the front starts from here.
    Source,
    /// Not reached, with the far value: the front may run through here.
    Open,
    /// Reached, with the far value: takes no part and carries nothing.
    Blocked
};

/// What the distance-front engines share: the cell arrays of a run, its strips and lists, and the
/// step that carries to every cell the vector to its nearest source. An engine is composed of one
/// and gives it its rules, a plain class with these members, which all are called in loops over
/// cells:
///
///     static constexpr Neighborhood neighborhood; // whom an accepted cell lists
///     float far() const;                       // each component of the far value, drawing units
///     CellStart start(material) const;         // Open cells are those that enter the first list
///     bool startsFront(material) const;        // ... where a Moore neighbour has such a material
///     bool takesPart(const Voxel &) const;     // whether a listed cell that is not reached is
///     tested float limit(const Voxel &) const;        // longest squared distance that the cell
///     may take void accept(const Voxel &, Voxel &next) const; // the material of a cell that is
///     taken bool passes(material) const;             // whether a cell may be listed for the next
///     step
///
/// passes() has to be true for Open cells alone when a run begins. Squared lengths are
/// (x * x + y * y) + z * z, each operation rounded to 32-bit float.
class DistanceFront final
{
public:
    /// Row k is the displacement of faceNeighbors row k, in drawing units.
    using StepVectors = std::array<std::array<float, 3>, 6>;

    /// The volume is not owned. Nothing is done to its cells.
    explicit DistanceFront(Model::Automaton::TotalVolume *volume);
    DistanceFront(const DistanceFront &) = delete;
    DistanceFront &operator=(const DistanceFront &) = delete;

    const StripRun &strips() const { return m_strips; }

    /// Steps for a distance in drawing units: the ratio to the smallest edge of a cell, rounded up
    /// in 32-bit float, times stepFactor, truncated. A distance that is negative or not a number
    /// gives no step.
    std::uint64_t stepCount(float distance) const;

    /// Both arrays, `voxels` first, with their locks, for the controlling thread of a run.
    void takeVoxels();
    void releaseVoxels();

    /// Writes `reached` and the distances of every cell of the strip in both arrays, and lists the
    /// front's first cells.
    template <typename Rules>
    void initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                         std::uint32_t strip);
    /// One step of the strip: tests each listed cell against its six face neighbours, lists the
    /// neighbours of those that are taken, and commits.
    template <typename Rules>
    void stepStrip(const Rules &rules, std::int32_t start, std::int32_t end, std::uint32_t strip);

private:
    using Voxel = Model::Automaton::Voxel;
    using Words = std::vector<FrontWord>;

    /// Where a cell stands, for the tests against the borders of the volume.
    struct Place
    {
        std::uint32_t x;
        std::uint32_t y;
        std::uint32_t z;
    };

    std::size_t indexOf(std::uint32_t x, std::uint32_t y, std::uint32_t z) const
    {
        return (std::size_t{x} * m_sizeY + y) * m_sizeZ + z;
    }
    template <typename Rules>
    void initializePlane(const Rules &rules, std::uint32_t x, Words &starting);
    template <typename Rules>
    void readPlane(const Rules &rules, std::uint32_t x, Words &starting) const;
    void listPlane(std::uint32_t x, std::uint32_t strip, const Words &below, const Words &plane,
                   const Words &above);
    template <typename Visitor>
    void forEachRun(const Voxel *column, std::uint32_t word, Visitor &&visit) const;
    /// Looks for a shorter vector than the cell's own; whether there is one within the limit.
    bool findCandidate(const Voxel *cell, const Place &place, float limit,
                       Voxel::Front &candidate) const;
    template <typename Rules>
    void passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                   std::uint32_t strip);
    template <typename Rules>
    void commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                     std::uint32_t strip);
    void prefetch(std::size_t cell) const;

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    float m_smallestCellSize;
    StepVectors m_stepVectors;
    StripRun m_strips;
    CellFront m_front;
    /// The cells of the plane in hand, a scratch list a strip.
    std::vector<std::vector<PlaneCell>> m_planeCells;
    Voxel *m_voxels = nullptr;
    Voxel *m_nextVoxels = nullptr;
};

/// A bit a cell along z, for the cells [first, end) of a word.
inline FrontWord wordRange(std::uint32_t first, std::uint32_t end)
{
    return (~FrontWord{0} >> (FrontWordBits - (end - first))) << first;
}

/// Calls visit(first, end, material) for each run of equal material among the cells of a word.
template <typename Visitor>
void DistanceFront::forEachRun(const Voxel *column, std::uint32_t word, Visitor &&visit) const
{
    const Voxel *cells = column + std::size_t{word} * FrontWordBits;
    const std::uint32_t count = std::min(FrontWordBits, m_sizeZ - word * FrontWordBits);
    for (std::uint32_t first = 0; first < count;) {
        const std::uint32_t material = cells[first].material();
        std::uint32_t end = first + 1;
        while (end < count && cells[end].material() == material)
            ++end;
        visit(first, end, material);
        first = end;
    }
}

template <typename Rules>
void DistanceFront::initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                                    std::uint32_t strip)
{
    m_front.openStrip(start, end, strip);
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    if (firstX >= endX)
        return;
    // Three planes roll through the strip, so that each cell is read once.
    const std::size_t words = std::size_t{m_sizeY} * m_front.wordsInColumn();
    Words below(words, 0);
    Words plane(words, 0);
    Words above(words, 0);
    if (firstX > 0)
        readPlane(rules, firstX - 1, below);
    initializePlane(rules, firstX, plane);
    for (std::uint32_t x = firstX; x < endX; ++x) {
        if (x + 1 < endX)
            initializePlane(rules, x + 1, above);
        else if (x + 1 < m_sizeX)
            readPlane(rules, x + 1, above);
        else
            std::fill(above.begin(), above.end(), 0);
        listPlane(x, strip, below, plane, above);
        std::swap(below, plane);
        std::swap(plane, above);
    }
}

template <typename Rules>
void DistanceFront::initializePlane(const Rules &rules, std::uint32_t x, Words &starting)
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
            forEachRun(m_voxels + column, word,
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
                           if (rules.startsFront(material))
                               startsFront |= wordRange(first, end);
                       });
            m_front.setPassable(x, y, word, passable);
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
        for (std::uint32_t word = 0; word < words; ++word) {
            FrontWord startsFront = 0;
            forEachRun(m_voxels + indexOf(x, y, 0), word,
                       [&](std::uint32_t first, std::uint32_t end, std::uint32_t material) {
                           if (rules.startsFront(material))
                               startsFront |= wordRange(first, end);
                       });
            starting[std::size_t{y} * words + word] = startsFront;
        }
}

template <typename Rules>
void DistanceFront::stepStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                              std::uint32_t strip)
{
    const auto firstX = static_cast<std::uint32_t>(start);
    const auto endX = static_cast<std::uint32_t>(end);
    m_front.beginPass(strip);
    passStrip(rules, firstX, endX, strip);
    m_front.endPass(strip);
    m_front.takeFromNeighbors(strip);
    commitStrip(rules, firstX, endX, strip);
    m_front.replaceSurfaceCells(strip);
}

template <typename Rules>
void DistanceFront::passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                              std::uint32_t strip)
{
    constexpr std::size_t Ahead = 8;
    std::vector<PlaneCell> &cells = m_planeCells[strip];
    for (std::uint32_t x = firstX; x < endX; ++x) {
        cells.clear();
        m_front.surfaceCells(strip).appendCells(x, cells);
        // The cells taken so far in the word in hand.
        std::uint32_t y = 0;
        std::uint32_t word = 0;
        FrontWord taken = 0;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            if (i + Ahead < cells.size())
                prefetch(indexOf(x, cells[i + Ahead].y, cells[i + Ahead].z));
            const PlaneCell at = cells[i];
            const std::size_t index = indexOf(x, at.y, at.z);
            const Voxel &cell = m_voxels[index];
            if (cell.isReached() || !rules.takesPart(cell))
                continue;
            Voxel::Front candidate{};
            if (!findCandidate(&cell, {x, at.y, at.z}, rules.limit(cell), candidate))
                continue;
            Voxel &next = m_nextVoxels[index];
            rules.accept(cell, next);
            next.setFront(candidate);
            if (at.y != y || at.z / FrontWordBits != word) {
                if (taken != 0)
                    m_front.enqueueNeighbors(Rules::neighborhood, x, y, word, taken, strip);
                taken = 0;
                y = at.y;
                word = at.z / FrontWordBits;
            }
            taken |= FrontWord{1} << at.z % FrontWordBits;
        }
        if (taken != 0)
            m_front.enqueueNeighbors(Rules::neighborhood, x, y, word, taken, strip);
    }
}

template <typename Rules>
void DistanceFront::commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                                std::uint32_t strip)
{
    std::vector<PlaneCell> &cells = m_planeCells[strip];
    for (std::uint32_t x = firstX; x < endX; ++x) {
        cells.clear();
        m_front.surfaceCells(strip).appendCells(x, cells);
        for (const PlaneCell &at : cells) {
            const std::size_t index = indexOf(x, at.y, at.z);
            const std::uint32_t before = m_voxels[index].material();
            m_voxels[index] = m_nextVoxels[index];
            const std::uint32_t after = m_voxels[index].material();
            if (after != before)
                m_front.setPassable(x, at, rules.passes(after));
        }
    }
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
        consider(-1, m_stepVectors[0]);
    if (place.z + 1 < m_sizeZ)
        consider(1, m_stepVectors[1]);
    if (place.y > 0)
        consider(-strideY, m_stepVectors[2]);
    if (place.y + 1 < m_sizeY)
        consider(strideY, m_stepVectors[3]);
    if (place.x > 0)
        consider(-strideX, m_stepVectors[4]);
    if (place.x + 1 < m_sizeX)
        consider(strideX, m_stepVectors[5]);
    return found;
}

} // namespace Core::Operations
