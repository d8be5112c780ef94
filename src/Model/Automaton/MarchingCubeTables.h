#pragma once

#include <array>
#include <cstdint>

namespace Model::Automaton {

/// The marching cubes of Lorensen and Cline ("Marching Cubes: A High Resolution 3D Surface
/// Construction Algorithm", SIGGRAPH 1987) in the tables that Paul Bourke published ("Polygonising
/// a scalar field", 1994): what to draw in a cube of eight corners, each filled or void.
///
/// Bit i of a case is set if corner i is filled. Corners 0 to 3 go round the lower side and 4 to 7
/// round the upper one; edges 0 to 3 go round below, 4 to 7 round above, and 8 to 11 stand upright.
struct MarchingCubeTables
{
    static constexpr unsigned Cases = 256;

    /// Offsets of the eight corners in cells, as x, y, z.
    static const std::array<std::array<std::uint8_t, 3>, 8> corners;
    /// First and second corner of the twelve edges.
    static const std::array<std::array<std::uint8_t, 2>, 12> edgeCorners;
    /// Bit e is set if edge e has one filled and one void corner.
    static const std::array<std::uint16_t, Cases> edges;
    /// Up to five triangles, three edge numbers each, ended by -1.
    static const std::array<std::array<std::int8_t, 16>, Cases> triangles;
};

} // namespace Model::Automaton
