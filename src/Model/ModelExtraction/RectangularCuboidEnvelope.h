#pragma once

#include <boost/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace Model::ModelExtraction {

/// A box of cells of one material, with the boxes that cover its six faces exactly. Lengths and
/// places are in cells and are not tested.
///
/// Faces by index: 0 lies at x = x0, 1 at x = x1, 2 at y = y0, 3 at y = y1, 4 at z = z0 and 5 at
/// z = z1, where (x0, y0, z0) is the lowest corner and x1 = x0 + width, y1 = y0 + depth,
/// z1 = z0 + height. Faces 2k and 2k + 1 are opposite.
class RectangularCuboidEnvelope final
{
public:
    static constexpr unsigned FaceCount = 6;

    /// Without neighbours.
    RectangularCuboidEnvelope(std::int32_t x, std::int32_t y, std::int32_t z, std::int32_t width,
                              std::int32_t depth, std::int32_t height, std::int32_t material);

    /// The lowest corner, in cell indices.
    std::int32_t x() const { return m_x; }
    std::int32_t y() const { return m_y; }
    std::int32_t z() const { return m_z; }
    /// Extents along x, y and z.
    std::int32_t width() const { return m_width; }
    std::int32_t depth() const { return m_depth; }
    std::int32_t height() const { return m_height; }
    /// The material id of the cells.
    std::int32_t material() const { return m_material; }

    /// The neighbour on a face, 0 to 5; null where there is none. Not owned.
    RectangularCuboidEnvelope *neighbour(unsigned face) const { return m_neighbours[face]; }
    /// How many of the six faces have a neighbour.
    std::uint32_t neighbourCount() const { return m_neighbourCount; }
    /// Sets one side only; null empties the entry. `envelope` is not owned and outlives its use.
    void setNeighbour(unsigned face, RectangularCuboidEnvelope *envelope);

private:
    std::int32_t m_x;
    std::int32_t m_y;
    std::int32_t m_z;
    std::int32_t m_width;
    std::int32_t m_depth;
    std::int32_t m_height;
    std::int32_t m_material;
    std::array<RectangularCuboidEnvelope *, FaceCount> m_neighbours{};
    std::uint32_t m_neighbourCount = 0;
};

/// Envelopes in the order in which they were found.
using EnvelopeList = std::vector<boost::shared_ptr<RectangularCuboidEnvelope>>;

} // namespace Model::ModelExtraction
