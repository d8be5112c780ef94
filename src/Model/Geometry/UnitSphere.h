#pragma once

#include <vector>

namespace Model::Geometry {

/// The triangles of a sphere of radius 1 at the origin, three floats a vertex and three vertices a
/// triangle, counter-clockwise seen from outside: an icosahedron whose triangles are divided into
/// four twice, 320 of them. The vertices are their own normals.
std::vector<float> unitSphere();

} // namespace Model::Geometry
