#pragma once

#include "Model/Automaton/TriangleList.h"

#include <cstddef>

namespace Model::Automaton {

/// Gives every vertex the normal of its group, the vertices with equal keys in `shared`, which is
/// set to 0. The sum of a group starts with the normal of its first vertex; each later one adds its
/// own, in list order, and counts. The sum is divided by that count, which is thus one short, and
/// then by its own squared length, not by the length: a group of one vertex ends with a normal that
/// is not finite.
///
/// `keyRange`: a key that is this far below one met before is never met again; 0 if keys come in
/// no such order.
void smoothNormals(TriangleList &triangles, std::size_t keyRange);

} // namespace Model::Automaton
