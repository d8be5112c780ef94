#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/Voxel.h"
#include "Model/Geometry/FaceList.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// What the direct picture of a volume has to consist of, said cell by cell and side by side.
namespace FaceRules {

using Color = std::array<float, 4>;
using Point = std::array<float, 3>;
using Ids = std::vector<std::uint32_t>;

struct Face
{
    std::array<Point, 4> vertices;
    Point normal;
    /// Of its surface and of its edges.
    Color color;
    /// Index of the cell that it belongs to.
    std::size_t cell;
};

struct Faces
{
    std::vector<Face> opaque;
    std::vector<Face> transparent;
};

/// Of a material that no registry entry matches.
extern const Color unknownColor;
/// Of the outlines of empty cells.
extern const Color emptyColor;

Model::Automaton::CutLimits wholeOf(const Support::Grid &grid);

/// The material's colour in the registry.
Color registryColor(std::uint32_t id);
/// The colour that it has in a selected volume.
Color highlighted(const Color &color);

/// The faces of the cut, in list order, with the colours of the registry.
Faces visibleFaces(const Support::Grid &grid, const Ids &ids,
                   const Model::Automaton::CutLimits &cut);
/// The outlines of the empty cells of the cut, in list order.
std::vector<Face> emptyCellFaces(const Support::Grid &grid, const Ids &ids,
                                 const Model::Automaton::CutLimits &cut);
/// The same faces in other colours.
std::vector<Face> recolored(std::vector<Face> faces,
                            const std::function<Color(const Face &)> &rule);

std::vector<Model::Geometry::QuadFace> facesOf(const Model::Geometry::FaceList &list);
std::string text(const float *values, unsigned count);

/// Compares everything of every face, in list order, exactly; tells of the first that differs.
/// `cells` is the array that the faces have to point into.
testing::AssertionResult agree(const Model::Geometry::FaceList &list,
                               const std::vector<Face> &expected,
                               const Model::Automaton::Voxel *cells);

} // namespace FaceRules
