#include "Model/Automaton/DirectFaceBuilder.h"

#include "Model/Automaton/Voxel.h"
#include "Util/FutureGroup.h"

#include <QThreadPool>
#include <QtConcurrentRun>

#include <boost/bind/bind.hpp>
#include <boost/ref.hpp>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Model::Automaton {

using Geometry::FaceList;
using Geometry::QuadFace;

namespace {

const std::array<DirectFaceBuilder::FaceShape, 6> FaceShapes = {{
    {{0, 0, -1}, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}},
    {{0, 0, 1}, {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}},
    {{0, -1, 0}, {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}},
    {{0, 1, 0}, {{0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}},
    {{-1, 0, 0}, {{0, 0, 0}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0}}},
    {{1, 0, 0}, {{1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {1, 0, 1}}},
}};

constexpr unsigned AllFaces = 0x3f;
const MaterialPalette::Color EmptyColor = {0.8f, 0.8f, 0.8f, 1.0f};

using Word = std::uint64_t;
constexpr std::uint32_t WordBits = 64;

/// The cells of one plane of constant x as bits along z, a row of words for each y: which hide
/// what is behind them, which are drawn as opaque and which as transparent. A plane outside the
/// cut has all bits 0, which is how the cut becomes the outer skin.
struct PlaneBits
{
    PlaneBits(std::uint32_t rows, std::uint32_t words)
        : hides(std::size_t{rows} * words),
          opaque(hides.size()),
          transparent(hides.size())
    {}

    void clear()
    {
        std::fill(hides.begin(), hides.end(), 0);
        std::fill(opaque.begin(), opaque.end(), 0);
        std::fill(transparent.begin(), transparent.end(), 0);
    }

    std::vector<Word> hides;
    std::vector<Word> opaque;
    std::vector<Word> transparent;
};

/// The traits of up to 64 cells that follow each other along z, a bit a cell.
struct WordTraits
{
    Word hides = 0;
    Word opaque = 0;
    Word transparent = 0;
};

WordTraits readWord(const Voxel *cells, std::uint32_t count, const MaterialPalette &palette)
{
    WordTraits word;
    for (std::uint32_t first = 0; first < count;) {
        const std::uint32_t material = cells[first].material();
        std::uint32_t end = first + 1;
        while (end < count && cells[end].material() == material)
            ++end;
        const std::uint8_t traits = palette.traits(material);
        if (traits & MaterialPalette::Filled) {
            const Word run = (~Word{0} >> (WordBits - (end - first))) << first;
            if (traits & MaterialPalette::Hides)
                word.hides |= run;
            (traits & MaterialPalette::Opaque ? word.opaque : word.transparent) |= run;
        }
        first = end;
    }
    return word;
}

} // namespace

DirectFaceBuilder::DirectFaceBuilder(const Voxel *voxels, const CellTriple &sizes,
                                     const std::array<float, 3> &cellSizes, const CutLimits &limits,
                                     const MaterialPalette &palette)
    : m_voxels(voxels),
      m_sizes(sizes),
      m_cellSizes(cellSizes),
      m_limits(limits),
      m_palette(palette)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        m_limits.upper[axis] = std::min(m_limits.upper[axis], m_sizes[axis]);
}

const std::array<DirectFaceBuilder::FaceShape, 6> &DirectFaceBuilder::faceShapes()
{
    return FaceShapes;
}

void DirectFaceBuilder::buildFaces(FaceList &opaque, FaceList &transparent) const
{
    runStrips(&DirectFaceBuilder::faceStrip, false, opaque, transparent);
}

void DirectFaceBuilder::buildEmptyFaces(FaceList &empty) const
{
    FaceList unused;
    runStrips(&DirectFaceBuilder::emptyFaceStrip, true, empty, unused);
}

void DirectFaceBuilder::runStrips(StripFunction strip, bool singleStripOnPool, FaceList &opaque,
                                  FaceList &transparent) const
{
    const std::uint32_t lower = m_limits.lower[0];
    const std::uint32_t upper = m_limits.upper[0];
    if (lower >= upper)
        return;
    const std::uint32_t threads =
        static_cast<std::uint32_t>(std::max(1, QThreadPool::globalInstance()->maxThreadCount()));
    const std::uint32_t width = (upper - lower) / threads;
    if (width == 0 && !singleStripOnPool) {
        (this->*strip)(lower, upper, opaque, transparent, m_voxels);
        return;
    }
    const std::uint32_t strips = width == 0 ? 1 : threads;
    std::vector<StripLists> lists(strips);
    Util::FutureGroup runs;
    for (std::uint32_t i = 0; i < strips; ++i) {
        const std::uint32_t firstX = lower + i * width;
        const std::uint32_t endX = i + 1 == strips ? upper : firstX + width;
        opaque.lendSpareBlocks(lists[i].opaque, i, strips);
        transparent.lendSpareBlocks(lists[i].transparent, i, strips);
        runs.add(
            QtConcurrent::run(boost::bind(strip, this, firstX, endX, boost::ref(lists[i].opaque),
                                          boost::ref(lists[i].transparent), m_voxels)));
    }
    runs.wait();
    for (std::uint32_t i = 0; i < strips; ++i) {
        opaque.splice(lists[i].opaque);
        transparent.splice(lists[i].transparent);
    }
}

void DirectFaceBuilder::faceStrip(std::uint32_t firstX, std::uint32_t endX, FaceList &opaque,
                                  FaceList &transparent, const Voxel *voxels) const
{
    const CellTriple lower = m_limits.lower;
    const CellTriple upper = m_limits.upper;
    if (firstX >= endX || lower[1] >= upper[1] || lower[2] >= upper[2])
        return;
    const std::uint32_t rows = upper[1] - lower[1];
    const std::uint32_t depth = upper[2] - lower[2];
    const std::uint32_t words = (depth + WordBits - 1) / WordBits;

    const auto readPlane = [&](std::uint32_t x, PlaneBits &plane) {
        for (std::uint32_t row = 0; row < rows; ++row) {
            const Voxel *column =
                voxels + (std::size_t{x} * m_sizes[1] + lower[1] + row) * m_sizes[2] + lower[2];
            for (std::uint32_t w = 0; w < words; ++w) {
                const std::uint32_t count = std::min(WordBits, depth - w * WordBits);
                const WordTraits word = readWord(column + w * WordBits, count, m_palette);
                const std::size_t at = std::size_t{row} * words + w;
                plane.hides[at] = word.hides;
                plane.opaque[at] = word.opaque;
                plane.transparent[at] = word.transparent;
            }
        }
    };

    // Three planes roll through the strip, so that each cell's material is read once.
    PlaneBits below(rows, words);
    PlaneBits plane(rows, words);
    PlaneBits above(rows, words);
    const std::vector<Word> outside(words, 0);
    if (firstX > lower[0])
        readPlane(firstX - 1, below);
    readPlane(firstX, plane);

    for (std::uint32_t x = firstX; x < endX; ++x) {
        if (x + 1 < upper[0])
            readPlane(x + 1, above);
        else
            above.clear();
        for (std::uint32_t row = 0; row < rows; ++row) {
            const std::size_t at = std::size_t{row} * words;
            const Word *hides = &plane.hides[at];
            const Word *front = row > 0 ? &plane.hides[at - words] : outside.data();
            const Word *back = row + 1 < rows ? &plane.hides[at + words] : outside.data();
            const Word *left = &below.hides[at];
            const Word *right = &above.hides[at];
            const std::uint32_t y = lower[1] + row;
            const Voxel *column = voxels + (std::size_t{x} * m_sizes[1] + y) * m_sizes[2];
            for (std::uint32_t w = 0; w < words; ++w) {
                const Word cells = plane.opaque[at + w];
                const Word clear = plane.transparent[at + w];
                if ((cells | clear) == 0)
                    continue;
                const Word under = w > 0 ? hides[w - 1] >> (WordBits - 1) : 0;
                const Word over = w + 1 < words ? hides[w + 1] << (WordBits - 1) : 0;
                const Word shown[6] = {cells & ~(hides[w] << 1 | under),
                                       cells & ~(hides[w] >> 1 | over),
                                       cells & ~front[w],
                                       cells & ~back[w],
                                       cells & ~left[w],
                                       cells & ~right[w]};
                Word visit =
                    clear | shown[0] | shown[1] | shown[2] | shown[3] | shown[4] | shown[5];
                for (; visit != 0; visit &= visit - 1) {
                    const unsigned bit = static_cast<unsigned>(__builtin_ctzll(visit));
                    const std::uint32_t z = lower[2] + w * WordBits + bit;
                    const Voxel *cell = column + z;
                    const MaterialPalette::Color &color = m_palette.color(cell->material());
                    if (clear >> bit & 1) {
                        const unsigned faces = transparentFaces(cell, x, y, z);
                        for (unsigned face = 0; face < 6; ++face)
                            if (faces >> face & 1)
                                appendFace(transparent, face, x, y, z, cell, color);
                    } else {
                        for (unsigned face = 0; face < 6; ++face)
                            if (shown[face] >> bit & 1)
                                appendFace(opaque, face, x, y, z, cell, color);
                    }
                }
            }
        }
        std::swap(below, plane);
        std::swap(plane, above);
    }
}

// A transparent cell hides a face only towards its own material, and only where that merges.
unsigned DirectFaceBuilder::transparentFaces(const Voxel *cell, std::uint32_t x, std::uint32_t y,
                                             std::uint32_t z) const
{
    const std::uint32_t material = cell->material();
    if (!(m_palette.traits(material) & MaterialPalette::MergesWithItself))
        return AllFaces;
    const std::ptrdiff_t strideY = m_sizes[2];
    const std::ptrdiff_t strideX = strideY * m_sizes[1];
    const CellTriple &lower = m_limits.lower;
    const CellTriple &upper = m_limits.upper;
    const auto same = [&](bool inside, std::ptrdiff_t offset) {
        return inside && cell[offset].material() == material;
    };
    unsigned faces = 0;
    faces |= same(z > lower[2], -1) ? 0u : 1u << 0;
    faces |= same(z + 1 < upper[2], 1) ? 0u : 1u << 1;
    faces |= same(y > lower[1], -strideY) ? 0u : 1u << 2;
    faces |= same(y + 1 < upper[1], strideY) ? 0u : 1u << 3;
    faces |= same(x > lower[0], -strideX) ? 0u : 1u << 4;
    faces |= same(x + 1 < upper[0], strideX) ? 0u : 1u << 5;
    return faces;
}

void DirectFaceBuilder::emptyFaceStrip(std::uint32_t firstX, std::uint32_t endX, FaceList &empty,
                                       FaceList & /*unused*/, const Voxel *voxels) const
{
    // Else a volume without cells would be walked along x, where it may have any size.
    if (m_limits.lower[1] >= m_limits.upper[1] || m_limits.lower[2] >= m_limits.upper[2])
        return;
    for (std::uint32_t x = firstX; x < endX; ++x) {
        for (std::uint32_t y = m_limits.lower[1]; y < m_limits.upper[1]; ++y) {
            const Voxel *column = voxels + (std::size_t{x} * m_sizes[1] + y) * m_sizes[2];
            for (std::uint32_t z = m_limits.lower[2]; z < m_limits.upper[2]; ++z)
                if (column[z].material() == 0)
                    for (unsigned face = 0; face < 6; ++face)
                        appendFace(empty, face, x, y, z, column + z, EmptyColor);
        }
    }
}

void DirectFaceBuilder::appendFace(FaceList &list, unsigned face, std::uint32_t x, std::uint32_t y,
                                   std::uint32_t z, const Voxel *cell,
                                   const MaterialPalette::Color &color) const
{
    const FaceShape &shape = FaceShapes[face];
    QuadFace &quad = list.append();
    for (unsigned corner = 0; corner < 4; ++corner) {
        const std::uint8_t *offset = shape.corners[corner];
        quad.vertices[corner][0] = static_cast<float>(x + offset[0]) * m_cellSizes[0];
        quad.vertices[corner][1] = static_cast<float>(y + offset[1]) * m_cellSizes[1];
        quad.vertices[corner][2] = static_cast<float>(z + offset[2]) * m_cellSizes[2];
    }
    quad.normal = shape.normal;
    std::memcpy(quad.color, color.data(), sizeof quad.color);
    std::memcpy(quad.edgeColor, color.data(), sizeof quad.edgeColor);
    quad.voxel = cell;
}

} // namespace Model::Automaton
