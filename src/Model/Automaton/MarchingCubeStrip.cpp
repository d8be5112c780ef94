#include "Model/Automaton/MarchingCubeStrip.h"

#include "Model/Automaton/MarchingCubeTables.h"
#include "Model/Automaton/Voxel.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Model::Automaton {

namespace {

using Tables = MarchingCubeTables;
constexpr std::uint32_t WordBits = 64;

std::array<std::uint8_t, Tables::Cases> triangleCounts()
{
    std::array<std::uint8_t, Tables::Cases> counts{};
    for (unsigned number = 0; number < Tables::Cases; ++number)
        while (Tables::triangles[number][3u * counts[number]] >= 0)
            ++counts[number];
    return counts;
}

/// The normal of the triangle to all three of its vertices.
void setNormal(Triangle &triangle)
{
    const float *p0 = triangle.vertices[0].position;
    const float *p1 = triangle.vertices[1].position;
    const float *p2 = triangle.vertices[2].position;
    const float a[3] = {p1[0] - p0[0], p1[1] - p0[1], p1[2] - p0[2]};
    const float b[3] = {p2[0] - p0[0], p2[1] - p0[1], p2[2] - p0[2]};
    const float normal[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                             a[0] * b[1] - a[1] * b[0]};
    const float length =
        std::sqrt(normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2]);
    for (Triangle::Vertex &vertex : triangle.vertices)
        for (unsigned axis = 0; axis < 3; ++axis)
            vertex.normal[axis] = normal[axis] / length;
}

} // namespace

MarchingCubeStrip::MarchingCubeStrip(const MarchingCubeGrid &grid, std::uint32_t firstX,
                                     std::uint32_t endX)
    : m_grid(grid),
      m_firstX(firstX),
      m_endX(firstX)
{
    // The highest filled corners; without one above the lower limit there is nothing to draw.
    std::uint32_t top[3];
    for (unsigned axis = 0; axis < 3; ++axis) {
        if (grid.sizes[axis] == 0)
            return;
        top[axis] = std::min(grid.limits.upper[axis], grid.sizes[axis] - 1);
        if (grid.limits.lower[axis] >= top[axis])
            return;
    }
    // Cubes outside have eight void corners.
    m_firstX = std::max(firstX, grid.limits.lower[0]);
    m_endX = std::max(m_firstX, std::min(endX, top[0] + 1));
    m_lastY = top[1];
    m_lastZ = top[2];
    m_rows = std::size_t{m_lastY} - grid.limits.lower[1] + 2;
    m_words = (std::size_t{m_lastZ} - grid.limits.lower[2] + 2 + WordBits - 1) / WordBits;
}

void MarchingCubeStrip::readCorners()
{
    m_triangleCount = 0;
    m_corners.clear();
    if (m_firstX >= m_endX)
        return;
    const std::size_t plane = m_rows * m_words;
    m_corners.assign(plane * (m_endX - m_firstX + 1), 0);
    for (std::uint32_t x = m_firstX; x <= m_endX; ++x)
        if (x > m_grid.limits.lower[0] && x <= m_grid.limits.upper[0] && x < m_grid.sizes[0])
            readPlane(x, m_corners.data() + plane * (x - m_firstX));
    static const std::array<std::uint8_t, Tables::Cases> counts = triangleCounts();
    forEachMixedCube([this](std::uint32_t, std::uint32_t, std::uint32_t, unsigned number) {
        m_triangleCount += counts[number];
    });
}

void MarchingCubeStrip::readPlane(std::uint32_t x, Word *plane) const
{
    const std::uint32_t lowerY = m_grid.limits.lower[1];
    const std::uint32_t lowerZ = m_grid.limits.lower[2];
    // The lowest row and the lowest bit of a row stay void, and so do those behind the last.
    for (std::uint32_t y = lowerY + 1; y <= m_lastY; ++y) {
        Word *row = plane + (y - lowerY) * m_words;
        const std::size_t column = (std::size_t{x} * m_grid.sizes[1] + y) * m_grid.sizes[2];
        const Voxel *cells = m_grid.voxels + column + lowerZ;
        const std::uint32_t last = m_lastZ - lowerZ;
        for (std::uint32_t first = 0; first <= last; first += WordBits) {
            const std::uint32_t count = std::min(WordBits, last - first + 1);
            Word word = 0;
            for (std::uint32_t bit = 0; bit < count; ++bit)
                word |= Word{cells[first + bit].material() != 0} << bit;
            row[first / WordBits] = word;
        }
        row[0] &= ~Word{1};
        // Indices that are negative as signed numbers come in pieces of half the range.
        constexpr std::size_t Negative = std::size_t{1} << 31;
        if (((column + m_lastZ) | column) & Negative)
            for (std::uint32_t bit = 0; bit <= last; ++bit)
                if ((column + lowerZ + bit) & Negative)
                    row[bit / WordBits] &= ~(Word{1} << bit % WordBits);
    }
}

template <typename Visitor>
void MarchingCubeStrip::forEachMixedCube(Visitor &&visit) const
{
    const std::size_t plane = m_rows * m_words;
    const std::uint32_t lowerY = m_grid.limits.lower[1];
    const std::uint32_t lowerZ = m_grid.limits.lower[2];
    for (std::uint32_t x = m_firstX; x < m_endX; ++x) {
        const Word *left = m_corners.data() + plane * (x - m_firstX);
        for (std::size_t row = 0; row + 1 < m_rows; ++row) {
            // Corner columns by their number in the lower side of the cube.
            const Word *column3 = left + row * m_words;
            const Word *column0 = column3 + m_words;
            const Word *column2 = column3 + plane;
            const Word *column1 = column2 + m_words;
            for (std::size_t w = 0; w < m_words; ++w) {
                const bool hasNext = w + 1 < m_words;
                const auto above = [&](const Word *column) {
                    return column[w] >> 1 | (hasNext ? column[w + 1] << (WordBits - 1) : 0);
                };
                const Word any = column0[w] | column1[w] | column2[w] | column3[w];
                const Word all = column0[w] & column1[w] & column2[w] & column3[w];
                const Word nextAny =
                    hasNext ? column0[w + 1] | column1[w + 1] | column2[w + 1] | column3[w + 1] : 0;
                const Word nextAll =
                    hasNext ? column0[w + 1] & column1[w + 1] & column2[w + 1] & column3[w + 1] : 0;
                const Word anyAbove = any >> 1 | nextAny << (WordBits - 1);
                const Word allAbove = all >> 1 | nextAll << (WordBits - 1);
                // A cube above the last one has only void corners, as the bits end there.
                Word mixed = (any | anyAbove) & ~(all & allAbove);
                if (mixed == 0)
                    continue;
                const Word corners[8] = {column0[w],     column1[w],     column2[w],
                                         column3[w],     above(column0), above(column1),
                                         above(column2), above(column3)};
                for (; mixed != 0; mixed &= mixed - 1) {
                    const unsigned bit = static_cast<unsigned>(__builtin_ctzll(mixed));
                    unsigned number = 0;
                    for (unsigned corner = 0; corner < 8; ++corner)
                        number |= static_cast<unsigned>(corners[corner] >> bit & 1) << corner;
                    visit(x, lowerY + static_cast<std::uint32_t>(row),
                          lowerZ + static_cast<std::uint32_t>(w * WordBits) + bit, number);
                }
            }
        }
    }
}

void MarchingCubeStrip::writeTriangles(Triangle *triangles) const
{
    const VertexLattice &lattice = m_grid.lattice;
    const std::size_t strideY = m_grid.sizes[2];
    const std::size_t strideX = strideY * m_grid.sizes[1];
    std::size_t cornerOffsets[8];
    for (unsigned corner = 0; corner < 8; ++corner)
        cornerOffsets[corner] = Tables::corners[corner][0] * strideX +
                                Tables::corners[corner][1] * strideY + Tables::corners[corner][2];

    struct Cube
    {
        std::uint32_t x;
        std::uint32_t y;
        std::uint32_t z;
        unsigned number;
        const Voxel *cells;
    };
    const auto write = [&](const Cube &cube) {
        Triangle::Vertex vertices[12];
        for (unsigned edges = Tables::edges[cube.number]; edges != 0; edges &= edges - 1) {
            const unsigned edge = static_cast<unsigned>(__builtin_ctz(edges));
            const unsigned first = Tables::edgeCorners[edge][0];
            const unsigned second = Tables::edgeCorners[edge][1];
            const auto index = [&](unsigned axis, std::uint32_t cell) {
                return 2 * std::size_t{cell} + Tables::corners[first][axis] +
                       Tables::corners[second][axis];
            };
            const std::size_t indexX = index(0, cube.x);
            const std::size_t indexY = index(1, cube.y);
            const std::size_t indexZ = index(2, cube.z);
            Triangle::Vertex &vertex = vertices[edge];
            vertex.position[0] = lattice.position(0, indexX);
            vertex.position[1] = lattice.position(1, indexY);
            vertex.position[2] = lattice.position(2, indexZ);
            const unsigned filled = cube.number >> first & 1 ? first : second;
            vertex.material = cube.cells[cornerOffsets[filled]].material();
            vertex.shared = lattice.key(indexX, indexY, indexZ);
        }
        for (const std::int8_t *edge = Tables::triangles[cube.number].data(); *edge >= 0;
             edge += 3) {
            for (unsigned i = 0; i < 3; ++i)
                triangles->vertices[i] = vertices[edge[i]];
            setNormal(*triangles);
            ++triangles;
        }
    };

    // The cells of a skin lie far apart, and waiting for them was half of the time. So cubes queue
    // up for a while after the farthest of their cells was asked for; the nearer ones have been
    // used by the cubes before.
    constexpr std::size_t QueueLength = 16;
    Cube queue[QueueLength];
    std::size_t seen = 0;
    forEachMixedCube([&](std::uint32_t x, std::uint32_t y, std::uint32_t z, unsigned number) {
        Cube &place = queue[seen % QueueLength];
        if (seen >= QueueLength)
            write(place);
        place = {x, y, z, number, m_grid.voxels + x * strideX + y * strideY + z};
        if (number & 0x22)
            __builtin_prefetch(place.cells + cornerOffsets[number & 0x02 ? 1 : 5]);
        ++seen;
    });
    for (std::size_t i = seen - std::min(seen, QueueLength); i < seen; ++i)
        write(queue[i % QueueLength]);
}

} // namespace Model::Automaton
