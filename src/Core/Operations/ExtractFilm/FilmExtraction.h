#pragma once

#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Copies one connected body of one material out of a cell volume, and lays it on layer 0. Cells
/// are connected across faces only: what touches at an edge or a corner is another body. The body
/// is that of the material's first cell in index order: lowest x, then lowest y, then lowest z.
/// Reads `voxels` and changes nothing.
class FilmExtraction final
{
public:
    /// `film` is the material id. The volume is not owned; its cells are not touched yet.
    FilmExtraction(Model::Automaton::TotalVolume *volume, std::uint32_t film, bool invert);

    /// The copy, with sizes as the volume's, and the volume itself fit into the memory of the
    /// machine together.
    bool fits() const;

    /// The material ids of the copy, sizeX * sizeY * sizeZ of them in index order: `film` for the
    /// cells of the body, 0 for all others. The cell (x, y, z) of the body stands at (x, y, z),
    /// with `invert` at (x, sizeY - 1 - y, sizeZ - 1 - z), which is half a turn about the x axis;
    /// then the whole body goes down along z until its lowest cell is on layer 0. All 0 if the
    /// volume does not hold the film, for film 0, which is no material, and in a volume where a
    /// size is 0: there the list is empty.
    ///
    /// Runs to the end, with `voxels` held. Called once, and only if fits() is true. Throws
    /// std::bad_alloc where the platform refuses the memory, with the array given back.
    std::vector<std::uint32_t> extract();
    /// Whether there was a body; false before extract().
    bool found() const { return m_found; }

private:
    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_film;
    bool m_invert;
    bool m_found = false;
};

} // namespace Core::Operations
