#pragma once

#include "Core/Operations/CellularProcess/CellFront.h"
#include "Core/Operations/CellularProcess/CellNeighbors.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Model/Automaton/Voxel.h"

#include <array>
#include <cstddef>
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
/// and gives it its rules, a plain class whose members are called in loops over cells. The first
/// three functions are for initializeStrip() alone:
///
///     static constexpr Neighborhood neighborhood;
///         which neighbours of an accepted cell are listed for the next step
///     float far() const;
///         each component of the far value, in drawing units
///     CellStart start(std::uint32_t material) const;
///         what a cell is when the run begins
///     bool startsFront(std::uint32_t material) const;
///         an Open cell with a Moore neighbour of such a material is in the first list
///     bool takesPart(const Voxel &cell) const;
///         whether a listed cell that is not reached is tested
///     float limit(const Voxel &cell) const;
///         the longest squared distance that the cell may take, at most far() squared
///     void accept(const Voxel &cell, Voxel &next) const;
///         the material of a cell that is taken
///     bool passes(std::uint32_t material) const;
///         whether a cell may be listed once it has changed; when a run begins, Open cells may
///
/// The members that take rules are in DistanceFrontSteps.h, for the sources of engines. Squared
/// lengths are (x * x + y * y) + z * z, each operation rounded to 32-bit float.
class DistanceFront final
{
public:
    /// Row k is the displacement of faceNeighbors row k, in drawing units.
    using StepVectors = std::array<std::array<float, 3>, 6>;

    /// What a step from cell to cell is worth.
    struct Metric
    {
        StepVectors stepVectors;
        /// What the number of steps counts by, in drawing units.
        float smallestStep;
    };
    /// That of cells of these sizes, in drawing units.
    static Metric metricOf(float cellSizeX, float cellSizeY, float cellSizeZ);

    /// The volume is not owned. Nothing is done to its cells. The metric is that of its cells
    /// unless another is given.
    explicit DistanceFront(Model::Automaton::TotalVolume *volume);
    DistanceFront(Model::Automaton::TotalVolume *volume, const Metric &metric);
    DistanceFront(const DistanceFront &) = delete;
    DistanceFront &operator=(const DistanceFront &) = delete;

    const StripRun &strips() const { return m_strips; }

    /// Steps for a distance in drawing units: the ratio to the smallest step, rounded up in
    /// 32-bit float, times stepFactor, truncated, and at most 9e18. A distance that is negative or
    /// not a number gives no step.
    std::uint64_t stepCount(float distance) const;
    /// The same in 64-bit float.
    std::uint64_t stepCount(double distance) const;

    /// Takes both arrays for a run; for its controlling thread.
    TakenVoxels takeVoxels() { return {*m_volume, m_voxels, m_nextVoxels}; }

    /// Writes `reached` and the distances of every cell of the strip in both arrays, and lists the
    /// front's first cells.
    template <typename Rules>
    void initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                         std::uint32_t strip);
    /// One step of the strip: tests each listed cell against its six face neighbours, lists the
    /// neighbours of those that are taken, and commits.
    template <typename Rules>
    void stepStrip(const Rules &rules, std::int32_t start, std::int32_t end, std::uint32_t strip);

    using Voxel = Model::Automaton::Voxel;
    using Words = std::vector<FrontWord>;

    /// A cell and its index.
    struct Place
    {
        std::uint32_t x;
        std::uint32_t y;
        std::uint32_t z;
        std::size_t index;
    };

    /// For engines that begin or commit in a way of their own: the step again, which calls
    /// take(place, candidate) for each cell that is taken, ascending, in place of the rules'
    /// accept(), and commit() when the strip may write to `voxels`.
    template <typename Rules, typename Take, typename Commit>
    void stepStrip(const Rules &rules, std::int32_t start, std::int32_t end, std::uint32_t strip,
                   Take &&take, Commit &&commit);
    /// The lists. A strip opens its own before anything else.
    CellFront &cells() { return m_front; }
    void openStrip(std::int32_t start, std::int32_t end, std::uint32_t strip);
    /// The cells that a front may come from: a cell none of whose face neighbours is among them is
    /// not tested, as the far value makes no candidate. An engine that begins in a way of its own
    /// sets its sources.
    CellBits &carriers() { return m_carriers; }
    /// In place of takeVoxels(), for an engine that has taken `voxels` alone and stages what it
    /// takes elsewhere.
    void setVoxels(Voxel *voxels) { m_voxels = voxels; }
    /// While they are taken.
    Voxel *voxels() const { return m_voxels; }
    Voxel *nextVoxels() const { return m_nextVoxels; }
    std::size_t indexOf(std::uint32_t x, std::uint32_t y, std::uint32_t z) const
    {
        return (std::size_t{x} * m_sizeY + y) * m_sizeZ + z;
    }

private:
    /// The plane in hand of a strip: its listed cells, and those of them that were taken, a bit a
    /// cell. Each strip has its own, on cache lines of its own.
    struct alignas(64) Scratch
    {
        std::vector<PlaneCell> cells;
        Words taken;
    };

    template <typename Rules>
    void initializePlane(const Rules &rules, std::uint32_t x, Words &starting, Words &open);
    template <typename Rules>
    void readPlane(const Rules &rules, std::uint32_t x, Words &starting) const;
    /// Looks for a shorter vector than the cell's own; whether there is one within the limit.
    bool findCandidate(const Voxel *cell, const Place &place, float limit,
                       Voxel::Front &candidate) const;
    template <typename Rules, typename Take>
    void passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                   std::uint32_t strip, Take &&take);
    template <typename Rules>
    void commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                     std::uint32_t strip);
    /// Fetches the cell at an index of the plane x, and what its test will read and write.
    void prefetch(std::uint32_t x, std::size_t cell) const;

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    Metric m_metric;
    StripRun m_strips;
    CellFront m_front;
    CellBits m_carriers;
    std::vector<Scratch> m_scratch;
    Voxel *m_voxels = nullptr;
    Voxel *m_nextVoxels = nullptr;
};

} // namespace Core::Operations
