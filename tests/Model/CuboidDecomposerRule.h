#pragma once

#include "Support/Volumes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

/// The rule of cutting a volume into boxes, stated plainly: a stack of seeds, a list of those seen,
/// and every pair of boxes compared for neighbours.
namespace CuboidDecomposerRule {

using Materials = std::vector<std::uint32_t>;
constexpr int none = -1;

struct Box
{
    int x;
    int y;
    int z;
    int width;
    int depth;
    int height;
    int material;
    /// Places in the list of boxes, by face.
    std::array<int, 6> neighbours = {none, none, none, none, none, none};

    bool operator==(const Box &other) const
    {
        return x == other.x && y == other.y && z == other.z && width == other.width &&
               depth == other.depth && height == other.height && material == other.material &&
               neighbours == other.neighbours;
    }
};
using Boxes = std::vector<Box>;

inline std::ostream &operator<<(std::ostream &stream, const Box &box)
{
    stream << "material " << box.material << " at (" << box.x << ", " << box.y << ", " << box.z
           << "), " << box.width << " x " << box.depth << " x " << box.height << ", neighbours";
    for (const int neighbour : box.neighbours)
        stream << ' ' << neighbour;
    return stream;
}

using Corner = std::array<int, 3>;
using Face = std::array<Corner, 4>;

inline Face faceOf(const Box &box, unsigned face)
{
    const Corner low = {box.x, box.y, box.z};
    const Corner high = {box.x + box.width, box.y + box.depth, box.z + box.height};
    const unsigned axis = face / 2;
    const unsigned first = (axis + 1) % 3;
    const unsigned second = (axis + 2) % 3;
    Face corners;
    for (unsigned i = 0; i < 4; ++i) {
        corners[i][axis] = face % 2 == 0 ? low[axis] : high[axis];
        corners[i][first] = i % 2 == 0 ? low[first] : high[first];
        corners[i][second] = i / 2 == 0 ? low[second] : high[second];
    }
    return corners;
}

inline void findNeighbours(Boxes &boxes)
{
    const std::pair<unsigned, unsigned> pairs[] = {{0, 1}, {1, 0}, {2, 3}, {3, 2}, {4, 5}, {5, 4}};
    for (std::size_t a = 0; a < boxes.size(); ++a)
        for (std::size_t b = a + 1; b < boxes.size(); ++b)
            for (const auto &[ofA, ofB] : pairs)
                if (faceOf(boxes[a], ofA) == faceOf(boxes[b], ofB)) {
                    boxes[a].neighbours[ofA] = int(b);
                    boxes[b].neighbours[ofB] = int(a);
                    break;
                }
}

inline Boxes decomposed(const Support::Grid &grid, const Materials &materials)
{
    Boxes boxes;
    if (materials.empty())
        return boxes;
    const std::array<int, 3> size = {int(grid.sizeX), int(grid.sizeY), int(grid.sizeZ)};
    const std::array<int, 3> stride = {size[1] * size[2], size[2], 1};
    const auto indexOf = [&](const Corner &cell) {
        return cell[0] * stride[0] + cell[1] * stride[1] + cell[2] * stride[2];
    };

    std::array<std::vector<int>, 3> cuts;
    for (int ix = 0; ix <= size[0] - 2; ++ix)
        for (int iy = 0; iy <= size[1] - 2; ++iy)
            for (int iz = 0; iz <= size[2] - 2; ++iz) {
                const Corner cell = {ix, iy, iz};
                for (unsigned axis = 0; axis < 3; ++axis) {
                    Corner next = cell;
                    ++next[axis];
                    if (materials[std::size_t(indexOf(cell))] !=
                        materials[std::size_t(indexOf(next))])
                        cuts[axis].push_back(next[axis]);
                }
            }
    for (std::vector<int> &list : cuts) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }

    std::vector<int> stack = {0};
    std::vector<int> visited = {0};
    while (!stack.empty()) {
        const int index = stack.back();
        stack.pop_back();
        const Corner cell = {index / stride[0], index % stride[0] / stride[1], index % stride[1]};
        std::array<int, 3> lengths = {1, 1, 1};
        for (unsigned axis = 0; axis < 3; ++axis) {
            const auto cut = std::upper_bound(cuts[axis].begin(), cuts[axis].end(), cell[axis]);
            for (int position = cell[axis] + 1; position < size[axis]; ++position) {
                if (cut != cuts[axis].end() && position >= *cut) {
                    Corner behind = cell;
                    behind[axis] = position;
                    const int seed = indexOf(behind);
                    if (std::find(visited.begin(), visited.end(), seed) == visited.end()) {
                        stack.push_back(seed);
                        visited.push_back(seed);
                    }
                    break;
                }
                ++lengths[axis];
            }
        }
        const auto material = std::int32_t(materials[std::size_t(index)]);
        if (material != 0)
            boxes.push_back(
                {cell[0], cell[1], cell[2], lengths[0], lengths[1], lengths[2], material});
    }
    findNeighbours(boxes);
    return boxes;
}

} // namespace CuboidDecomposerRule
