#pragma once

#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Deposits a film from a direction: it grows from the surfaces that face the source, and sideways
/// by a ratio of that. Works on one array of cells alone; what a step finds waits in a list of its
/// own until the strip's pass is over.
class AnisotropicFilmDeposition final
{
public:
    /// Which surfaces face the source.
    static constexpr std::uint32_t OnTop = 1;
    static constexpr std::uint32_t OnBottom = 2;
    /// Surfaces below count in the top layer of the volume only.
    static constexpr std::uint32_t OnTopAndBottom = 3;

    /// What a process list shows for a mode: "On Top", "On Bottom", "On Top and Bottom"; empty for
    /// any other value.
    static QString depositionModeText(std::uint32_t mode);

    /// `material` is the id of the film's material; `thickness` in drawing units: 0, negative or
    /// not a number deposits nothing. With a `horizontalRatio` r, a step sideways counts 1 / r
    /// cells: with 0 the film grows upward alone, with less or what is not a number not at all. Any
    /// other `depositionMode` than the three above has no sources. The volume is not owned; its
    /// cells are not touched yet.
    AnisotropicFilmDeposition(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                              float thickness, float horizontalRatio, std::uint32_t depositionMode);

    /// Runs to the end, on the global thread pool and the calling thread; both arrays are equal in
    /// every field then. Called once.
    void runDeposition();

private:
    /// What a cell is to become when the pass of its strip is over.
    struct Pending
    {
        DistanceFront::Place place;
        std::uint32_t material;
        Model::Automaton::Voxel::Front front;
    };

    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDepositionStep(std::int32_t start, std::int32_t end, std::uint32_t strip);
    /// Writes `reached` and the distances of all cells of a column.
    void initializeColumn(Model::Automaton::Voxel *column) const;
    /// The sources among the cells of a word of a column.
    FrontWord sourcesOf(const Model::Automaton::Voxel *column, std::uint32_t word) const;
    /// For a filled cell of a column, at the height z.
    bool isSource(const Model::Automaton::Voxel *column, std::uint32_t z) const;

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_material;
    float m_thickness;
    std::uint32_t m_depositionMode;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    DistanceFront m_front;
    /// One list a strip, ascending.
    std::vector<std::vector<Pending>> m_pending;
    Model::Automaton::Voxel *m_voxels = nullptr;
};

} // namespace Core::Operations
