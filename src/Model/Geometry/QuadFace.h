#pragma once

namespace Model::Automaton {
class Voxel;
}

namespace Model::Geometry {

/// One drawn quad, relative to the position of its volume, in drawing units.
struct QuadFace
{
    /// The corners in drawing order, counter-clockwise seen from outside.
    float vertices[4][3];
    /// Points into a constant table.
    const float *normal;
    /// Red, green, blue, alpha, each 0 to 1.
    float color[4];
    /// Colour of the edge pass.
    float edgeColor[4];
    /// The cell that the face belongs to; a recolouring reads its material.
    const Automaton::Voxel *voxel;
};

} // namespace Model::Geometry
