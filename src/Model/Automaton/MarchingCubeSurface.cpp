#include "Model/Automaton/MarchingCubeSurface.h"

#include "Model/Automaton/MarchingCubeStrip.h"
#include "Model/Automaton/NormalSmoothing.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/VertexLattice.h"
#include "Model/Materials/MaterialFactory.h"
#include "Util/FutureGroup.h"

#include <QMutexLocker>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <boost/bind/bind.hpp>

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>
#include <functional>

namespace Model::Automaton {

using Geometry::DrawBuffer;

namespace {

/// Runs act(strip number) for each strip on the global pool, or a single one on this thread.
void runStrips(std::size_t strips, const std::function<void(std::size_t)> &act)
{
    if (strips == 1) {
        act(0);
        return;
    }
    Util::FutureGroup runs;
    for (std::size_t i = 0; i < strips; ++i)
        runs.add(QtConcurrent::run(boost::bind<void>(act, i)));
    runs.wait();
}

std::vector<MarchingCubeStrip> stripsOf(const MarchingCubeGrid &grid)
{
    const std::uint32_t threads =
        static_cast<std::uint32_t>(std::max(1, QThreadPool::globalInstance()->maxThreadCount()));
    const std::uint32_t lower = grid.limits.lower[0];
    const std::uint32_t upper = grid.limits.upper[0];
    const std::uint32_t width = lower < upper ? (upper - lower) / threads : 0;
    std::vector<MarchingCubeStrip> strips;
    if (width == 0) {
        strips.emplace_back(grid, 0, grid.sizes[0]);
        return strips;
    }
    for (std::uint32_t i = 0; i < threads; ++i) {
        const std::uint32_t firstX = lower + i * width;
        strips.emplace_back(grid, firstX, i + 1 == threads ? grid.sizes[0] : firstX + width);
    }
    return strips;
}

} // namespace

MarchingCubeSurface::MarchingCubeSurface(TotalVolume *volume)
    : m_volume(volume),
      m_materials(Materials::MaterialFactory::instance()),
      m_sizeX(volume->sizeX()),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ())
{}

void MarchingCubeSurface::rebuild(const CellTriple &lower, const CellTriple &upper)
{
    const QMutexLocker lock(&m_mutex);
    const CellTriple sizes = {m_sizeX, m_sizeY, m_sizeZ};
    const VertexLattice lattice(
        sizes, {m_volume->cellSizeX(), m_volume->cellSizeY(), m_volume->cellSizeZ()});
    m_areBuffersStale = true;
    const TakenCells voxels(*m_volume);
    buildTriangles({voxels.cells(), sizes, {lower, upper}, lattice});
    smoothNormals(m_triangles, lattice.keyRange());
}

// Once the strips know how many triangles they have, each writes straight to its place in the list,
// which is thus in the order of x whatever the timing.
void MarchingCubeSurface::buildTriangles(const MarchingCubeGrid &grid)
{
    std::vector<MarchingCubeStrip> strips = stripsOf(grid);
    runStrips(strips.size(), [&](std::size_t i) { strips[i].readCorners(); });
    std::vector<std::size_t> places;
    std::size_t count = 0;
    for (const MarchingCubeStrip &strip : strips) {
        places.push_back(count);
        count += strip.triangleCount();
    }
    m_triangles.reset(count);
    runStrips(strips.size(),
              [&](std::size_t i) { strips[i].writeTriangles(m_triangles.data() + places[i]); });
}

void MarchingCubeSurface::draw(bool /*showEdges*/)
{
    const QMutexLocker lock(&m_mutex);
    if (!updateBuffers())
        return;
    if (!m_colorBuffer.bind())
        return;
    glColorPointer(3, GL_FLOAT, 0, DrawBuffer::place(0));
    if (m_vertexBuffer.bind()) {
        constexpr GLsizei Stride = sizeof(Triangle::Vertex);
        glVertexPointer(3, GL_FLOAT, Stride,
                        DrawBuffer::place(offsetof(Triangle::Vertex, position)));
        glNormalPointer(GL_FLOAT, Stride, DrawBuffer::place(offsetof(Triangle::Vertex, normal)));
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glEnableClientState(array);
        glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(m_triangles.size() * 3));
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glDisableClientState(array);
    }
    DrawBuffer::unbind();
}

bool MarchingCubeSurface::updateBuffers()
{
    if (!DrawBuffer::isContextCurrent())
        return false;
    if (m_triangles.empty()) {
        m_vertexBuffer.release();
        m_colorBuffer.release();
        return false;
    }
    Coloring coloring;
    coloring.isHighlighted = m_volume->isSelected();
    const std::vector<Materials::Material> materials = m_materials->materials();
    for (const Materials::Material &material : materials) {
        MaterialPalette::Color color;
        std::copy_n(material.color(), color.size(), color.begin());
        coloring.materials.emplace_back(material.id(), color);
    }
    if (m_areBuffersStale || m_vertexBuffer.name() == 0)
        m_vertexBuffer.upload(m_triangles.data(), m_triangles.size() * sizeof(Triangle));
    if (m_areBuffersStale || m_colorBuffer.name() == 0 || !(coloring == m_coloring)) {
        m_coloring = std::move(coloring);
        uploadColors(materials);
    }
    m_areBuffersStale = false;
    return m_vertexBuffer.name() != 0 && m_colorBuffer.name() != 0;
}

void MarchingCubeSurface::uploadColors(const std::vector<Materials::Material> &materials)
{
    struct Rgb
    {
        float channels[3];
    };
    if (!m_colorBuffer.allocate(m_triangles.size() * 3 * sizeof(Rgb)))
        return;
    MaterialPalette palette;
    palette.reload(materials);
    constexpr std::size_t Portion = 4096;
    std::vector<Rgb> colors(std::min(m_triangles.size(), Portion) * 3);
    std::uint32_t material = 0;
    float color[4] = {};
    for (std::size_t first = 0; first < m_triangles.size(); first += Portion) {
        const std::size_t count = std::min(Portion, m_triangles.size() - first);
        Rgb *target = colors.data();
        for (std::size_t i = first; i < first + count; ++i) {
            for (const Triangle::Vertex &vertex : m_triangles[i].vertices) {
                // Neighbours mostly have one material. No vertex has that of void.
                if (vertex.material != material) {
                    material = vertex.material;
                    std::copy_n(palette.color(material).begin(), 4, color);
                    if (m_coloring.isHighlighted)
                        MaterialPalette::highlight(color);
                }
                std::copy_n(color, 3, (target++)->channels);
            }
        }
        m_colorBuffer.write(first * 3 * sizeof(Rgb), colors.data(), count * 3 * sizeof(Rgb));
    }
    DrawBuffer::unbind();
}

} // namespace Model::Automaton
