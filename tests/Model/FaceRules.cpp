#include "FaceRules.h"

#include "Model/Materials/MaterialFactory.h"

#include <algorithm>
#include <map>

using Model::Automaton::CellTriple;
using Model::Automaton::CutLimits;
using Model::Automaton::Voxel;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;

namespace FaceRules {

namespace {

struct Side
{
    int step[3];
    Point normal;
    int corners[4][3];
};

// Below and above, then the sides of y and of x; corners in drawing order.
const std::array<Side, 6> sides{{
    {{0, 0, -1}, {0, 0, -1}, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}},
    {{0, 0, 1}, {0, 0, 1}, {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}},
    {{0, -1, 0}, {0, -1, 0}, {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}},
    {{0, 1, 0}, {0, 1, 0}, {{0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}},
    {{-1, 0, 0}, {-1, 0, 0}, {{0, 0, 0}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0}}},
    {{1, 0, 0}, {1, 0, 0}, {{1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {1, 0, 1}}},
}};

Face faceOf(const Grid &grid, const CellTriple &at, const Side &side, const Color &color)
{
    const float cellSize[3] = {grid.cellSizeX, grid.cellSizeY, grid.cellSizeZ};
    Face face{};
    for (unsigned i = 0; i < 4; ++i)
        for (unsigned axis = 0; axis < 3; ++axis) {
            const auto corner = at[axis] + static_cast<std::uint32_t>(side.corners[i][axis]);
            face.vertices[i][axis] = static_cast<float>(corner) * cellSize[axis];
        }
    face.normal = side.normal;
    face.color = color;
    face.cell = grid.index(at[0], at[1], at[2]);
    return face;
}

} // namespace

const Color unknownColor{0.5f, 0.5f, 0.5f, 1.0f};
const Color emptyColor{0.8f, 0.8f, 0.8f, 1.0f};

CutLimits wholeOf(const Grid &grid)
{
    return {{0, 0, 0}, {grid.sizeX, grid.sizeY, grid.sizeZ}};
}

Color registryColor(std::uint32_t id)
{
    for (const Material &material : MaterialFactory::instance()->materials())
        if (material.id() == id)
            return {material.color()[0], material.color()[1], material.color()[2],
                    material.color()[3]};
    return unknownColor;
}

Faces visibleFaces(const Grid &grid, const Ids &ids, const CutLimits &cut)
{
    std::map<std::uint32_t, Color> colors;
    for (const std::uint32_t id : ids)
        if (colors.count(id) == 0)
            colors[id] = registryColor(id);

    Faces faces;
    CellTriple at{};
    for (at[0] = cut.lower[0]; at[0] < cut.upper[0]; ++at[0])
        for (at[1] = cut.lower[1]; at[1] < cut.upper[1]; ++at[1])
            for (at[2] = cut.lower[2]; at[2] < cut.upper[2]; ++at[2]) {
                const std::uint32_t id = ids[grid.index(at[0], at[1], at[2])];
                if (id == 0)
                    continue;
                const Color &color = colors.at(id);
                const bool transparent = color[3] < 0.997f;
                for (const Side &side : sides) {
                    // The cut is the outer skin.
                    bool inside = true;
                    CellTriple neighbour{};
                    for (unsigned axis = 0; axis < 3; ++axis) {
                        const std::int64_t place = std::int64_t{at[axis]} + side.step[axis];
                        inside = inside && place >= std::int64_t{cut.lower[axis]} &&
                                 place < std::int64_t{cut.upper[axis]};
                        neighbour[axis] = static_cast<std::uint32_t>(place);
                    }
                    bool hidden = false;
                    if (inside) {
                        const std::uint32_t other =
                            ids[grid.index(neighbour[0], neighbour[1], neighbour[2])];
                        // A film seen through itself shows no inner faces; an opaque cell hides
                        // behind nothing but another one.
                        if (transparent)
                            hidden = other == id && color[3] > 0.1f;
                        else
                            hidden = other != 0 && colors.at(other)[3] > 0.999f;
                    }
                    if (hidden)
                        continue;
                    (transparent ? faces.transparent : faces.opaque)
                        .push_back(faceOf(grid, at, side, color));
                }
            }
    return faces;
}

std::vector<Face> emptyCellFaces(const Grid &grid, const Ids &ids, const CutLimits &cut)
{
    std::vector<Face> faces;
    CellTriple at{};
    for (at[0] = cut.lower[0]; at[0] < cut.upper[0]; ++at[0])
        for (at[1] = cut.lower[1]; at[1] < cut.upper[1]; ++at[1])
            for (at[2] = cut.lower[2]; at[2] < cut.upper[2]; ++at[2])
                if (ids[grid.index(at[0], at[1], at[2])] == 0)
                    for (const Side &side : sides)
                        faces.push_back(faceOf(grid, at, side, emptyColor));
    return faces;
}

Color highlighted(const Color &color)
{
    Color result = color;
    for (unsigned i = 0; i < 3; ++i) {
        const double channel = color[i];
        result[i] = static_cast<float>(channel >= 0.7 ? channel - 0.7 : channel + 0.3);
    }
    return result;
}

std::vector<QuadFace> facesOf(const FaceList &list)
{
    std::vector<QuadFace> faces;
    list.forEach([&](const QuadFace &face) { faces.push_back(face); });
    return faces;
}

std::string text(const float *values, unsigned count)
{
    std::string result = "(";
    for (unsigned i = 0; i < count; ++i)
        result += (i ? ", " : "") + testing::PrintToString(values[i]);
    return result + ")";
}

testing::AssertionResult agree(const FaceList &list, const std::vector<Face> &expected,
                               const Voxel *cells)
{
    if (list.size() != expected.size())
        return testing::AssertionFailure()
               << list.size() << " faces where " << expected.size() << " are expected";
    const std::vector<QuadFace> actual = facesOf(list);
    if (actual.size() != list.size())
        return testing::AssertionFailure()
               << "a list of " << list.size() << " faces shows " << actual.size();
    for (std::size_t i = 0; i < actual.size(); ++i) {
        const QuadFace &face = actual[i];
        const Face &wanted = expected[i];
        const auto differs = [&](const char *what, const float *is, const float *should,
                                 unsigned count) {
            return testing::AssertionFailure()
                   << "face " << i << " of cell " << wanted.cell << ": " << what << " "
                   << text(is, count) << " instead of " << text(should, count);
        };
        if (face.voxel != cells + wanted.cell)
            return testing::AssertionFailure()
                   << "face " << i << " points to cell " << face.voxel - cells << " instead of "
                   << wanted.cell;
        for (unsigned vertex = 0; vertex < 4; ++vertex)
            if (!std::equal(face.vertices[vertex], face.vertices[vertex] + 3,
                            wanted.vertices[vertex].begin()))
                return differs("vertex", face.vertices[vertex], wanted.vertices[vertex].data(), 3);
        if (!std::equal(face.normal, face.normal + 3, wanted.normal.begin()))
            return differs("normal", face.normal, wanted.normal.data(), 3);
        if (!std::equal(face.color, face.color + 4, wanted.color.begin()))
            return differs("colour", face.color, wanted.color.data(), 4);
        if (!std::equal(face.edgeColor, face.edgeColor + 4, wanted.color.begin()))
            return differs("edge colour", face.edgeColor, wanted.color.data(), 4);
    }
    return testing::AssertionSuccess();
}

std::vector<Face> recolored(std::vector<Face> faces, const std::function<Color(const Face &)> &rule)
{
    for (Face &face : faces)
        face.color = rule(face);
    return faces;
}

} // namespace FaceRules
