#include "Model/Geometry/FaceBuffer.h"

#include "Model/Geometry/FaceList.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstring>
#include <vector>

namespace Model::Geometry {

namespace {

constexpr std::size_t Corners = 4;
/// Quads that are handed over at once.
constexpr std::size_t Portion = 1024;

struct Shape
{
    float position[3];
    /// As floats, which every OpenGL takes as they are: before 4.2 no byte stands for 0.
    float normal[3];
};

struct Color
{
    float channels[4];
};

/// Hands over `Corners` items a quad, which convert(quad, items) fills.
template <typename Item, typename Convert>
void fill(DrawBuffer &buffer, const FaceList &faces, Convert convert)
{
    if (!buffer.allocate(faces.size() * Corners * sizeof(Item)))
        return;
    std::vector<Item> items(std::min(faces.size(), Portion) * Corners);
    std::size_t count = 0;
    std::size_t place = 0;
    const auto flush = [&] {
        buffer.write(place, items.data(), count * sizeof(Item));
        place += count * sizeof(Item);
        count = 0;
    };
    faces.forEach([&](const QuadFace &face) {
        if (count == items.size())
            flush();
        convert(face, items.data() + count);
        count += Corners;
    });
    flush();
    DrawBuffer::unbind();
}

} // namespace

void FaceBuffer::setChanged()
{
    m_areShapesStale = true;
    setRecolored();
}

void FaceBuffer::setRecolored()
{
    m_areColorsStale = {true, true};
}

void FaceBuffer::draw(const FaceList &faces, Coloring coloring)
{
    if (!DrawBuffer::isContextCurrent())
        return;
    if (faces.empty()) {
        m_shapes.release();
        for (DrawBuffer &colors : m_colors)
            colors.release();
        return;
    }
    DrawBuffer &colors = m_colors[coloring];
    if (m_areShapesStale || m_shapes.name() == 0)
        uploadShapes(faces);
    if (m_areColorsStale[coloring] || colors.name() == 0)
        uploadColors(faces, coloring);
    if (!colors.bind())
        return;
    glColorPointer(4, GL_FLOAT, sizeof(Color), DrawBuffer::place(0));
    if (m_shapes.bind()) {
        glVertexPointer(3, GL_FLOAT, sizeof(Shape), DrawBuffer::place(offsetof(Shape, position)));
        glNormalPointer(GL_FLOAT, sizeof(Shape), DrawBuffer::place(offsetof(Shape, normal)));
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glEnableClientState(array);
        glDrawArrays(GL_QUADS, 0, static_cast<GLsizei>(faces.size() * Corners));
        for (const GLenum array : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
            glDisableClientState(array);
    }
    DrawBuffer::unbind();
}

void FaceBuffer::uploadShapes(const FaceList &faces)
{
    fill<Shape>(m_shapes, faces, [](const QuadFace &face, Shape *shapes) {
        for (std::size_t corner = 0; corner < Corners; ++corner) {
            std::memcpy(shapes[corner].position, face.vertices[corner], sizeof(Shape::position));
            std::memcpy(shapes[corner].normal, face.normal, sizeof(Shape::normal));
        }
    });
    m_areShapesStale = false;
}

void FaceBuffer::uploadColors(const FaceList &faces, Coloring coloring)
{
    const auto source = coloring == Edge ? &QuadFace::edgeColor : &QuadFace::color;
    fill<Color>(m_colors[coloring], faces, [source](const QuadFace &face, Color *colors) {
        for (std::size_t corner = 0; corner < Corners; ++corner)
            std::memcpy(colors[corner].channels, face.*source, sizeof colors[corner].channels);
    });
    m_areColorsStale[coloring] = false;
}

} // namespace Model::Geometry
