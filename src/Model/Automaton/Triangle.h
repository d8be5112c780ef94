#pragma once

#include <cstdint>

namespace Model::Automaton {

/// One triangle of a smooth surface, relative to the position of its volume, in drawing units.
/// Nothing but its fields in this order, so that an array of triangles is an array of vertices.
struct Triangle
{
    struct Vertex
    {
        float position[3];
        /// In a finished surface the smoothed normal, which has no particular length and may be not
        /// finite.
        float normal[3];
        /// Id that gives the vertex its colour.
        std::uint32_t material;
        /// Working value of the smoothing; 0 in a finished triangle.
        std::uint32_t shared;
    };

    /// Counter-clockwise seen from the void.
    Vertex vertices[3];
};

static_assert(sizeof(Triangle) == 96, "vertex arrays are drawn straight from triangles");

} // namespace Model::Automaton
