#pragma once

#include "Core/Operations/CellularProcess/CellFront.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Model/Automaton/Voxel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// What the Moore engines share: the cell arrays of a run, its strips and lists, and the step that
/// moves a surface by one layer of the Moore neighbourhood. There is no metric: every listed cell
/// takes part, and hands the front on to its neighbours whether or not it changes.
class LayerFront final
{
public:
    /// What a step does: cells of the material `from` become `to`, and only they are listed. With
    /// `startsAtVoid` the first list has those of them that touch void, without it those that touch
    /// any filled cell, by a face, an edge or a corner.
    struct Rules
    {
        std::uint32_t from;
        std::uint32_t to;
        bool startsAtVoid;
    };

    /// The volume is not owned. Nothing is done to its cells.
    explicit LayerFront(Model::Automaton::TotalVolume *volume);
    LayerFront(const LayerFront &) = delete;
    LayerFront &operator=(const LayerFront &) = delete;

    const StripRun &strips() const { return m_strips; }

    /// Takes both arrays for a run; for its controlling thread.
    TakenVoxels takeVoxels() { return {*m_volume, m_voxels, m_nextVoxels}; }

    /// Lists the front's first cells; nothing is written to the cells.
    void initializeStrip(const Rules &rules, std::int32_t start, std::int32_t end,
                         std::uint32_t strip);
    /// One step of the strip: changes each listed cell, lists the neighbours of all of them, and
    /// commits.
    void stepStrip(const Rules &rules, std::int32_t start, std::int32_t end, std::uint32_t strip);

private:
    using Voxel = Model::Automaton::Voxel;
    using Words = std::vector<FrontWord>;

    std::size_t indexOf(std::uint32_t x, std::uint32_t y, std::uint32_t z) const
    {
        return (std::size_t{x} * m_sizeY + y) * m_sizeZ + z;
    }
    void passStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                   std::uint32_t strip);
    void commitStrip(const Rules &rules, std::uint32_t firstX, std::uint32_t endX,
                     std::uint32_t strip);

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    StripRun m_strips;
    CellFront m_front;
    /// The listed cells of the plane in hand of each strip, a bit a cell.
    std::vector<Words> m_listed;
    Voxel *m_voxels = nullptr;
    Voxel *m_nextVoxels = nullptr;
};

} // namespace Core::Operations
