#define GL_GLEXT_PROTOTYPES

#include "Model/Geometry/FaceBuffer.h"

#include "GlTestSupport.h"
#include "Model/Geometry/FaceList.h"

#include <GL/gl.h>
#include <GL/glext.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>

using Model::Geometry::FaceBuffer;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;

namespace {

constexpr float Upward[3] = {0, 0, 1};
constexpr float Slanted[3] = {0.1f, -0.7f, 0.707f};
constexpr int SquareUnit = 100; // pixels

using FaceColor = std::array<float, 4>;
constexpr FaceColor Red{1, 0, 0, 1};
constexpr FaceColor Green{0, 1, 0, 1};
constexpr FaceColor HalfBlue{0, 0, 1, 0.5f};

const GlTest::Color red{1, 0, 0};
const GlTest::Color green{0, 1, 0};

class FaceBufferTest : public GlTest
{
protected:
    /// A unit square at (x, y), level at z = 0.
    void append(float x, float y, const FaceColor &color, const FaceColor &edgeColor)
    {
        QuadFace &face = m_faces.append();
        const float corners[4][2] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
        for (unsigned corner = 0; corner < 4; ++corner) {
            face.vertices[corner][0] = x + corners[corner][0];
            face.vertices[corner][1] = y + corners[corner][1];
            face.vertices[corner][2] = 0;
        }
        face.normal = Upward;
        std::copy(color.begin(), color.end(), face.color);
        std::copy(edgeColor.begin(), edgeColor.end(), face.edgeColor);
        face.voxel = nullptr;
    }
    static void readBuffer(int name, std::intptr_t place, std::array<float, 3> &floats)
    {
        glBindBuffer(GL_ARRAY_BUFFER, static_cast<GLuint>(name));
        glGetBufferSubData(GL_ARRAY_BUFFER, place, sizeof floats, floats.data());
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    }
    void drawFaces(FaceBuffer::Coloring coloring = FaceBuffer::Fill)
    {
        draw([&] { m_buffer.draw(m_faces, coloring); });
    }

    FaceList m_faces;
    FaceBuffer m_buffer;
};

} // namespace

TEST_F(FaceBufferTest, EmptyListDrawsNothing)
{
    drawFaces();
    EXPECT_EQ(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
}

TEST_F(FaceBufferTest, FacesHaveTheirColors)
{
    append(0, 0, Red, Green);
    append(3, -2, Green, Red);
    drawFaces();
    EXPECT_EQ(pixelsOf(red), SquareUnit);
    EXPECT_EQ(pixelsOf(green), SquareUnit);
    expectColorAt(0.5, 0.5, 0, red);
    expectColorAt(3.5, -1.5, 0, green);
    drawFaces(FaceBuffer::Edge);
    expectColorAt(0.5, 0.5, 0, green);
    expectColorAt(3.5, -1.5, 0, red);
}

TEST_F(FaceBufferTest, FacesAreDrawnInTheOrderOfTheList)
{
    glEnable(GL_BLEND);
    glDepthFunc(GL_ALWAYS);
    append(0, 0, Red, Red);
    append(0, 0, HalfBlue, HalfBlue);
    append(2, 0, HalfBlue, HalfBlue);
    append(2, 0, Red, Red);
    drawFaces();
    expectColorAt(0.5, 0.5, 0, over(red, {0, 0, 1, 0.5}));
    expectColorAt(2.5, 0.5, 0, red);
}

TEST_F(FaceBufferTest, ChangedListAndColorsShowWhenTheyAreTold)
{
    append(0, 0, Red, Red);
    drawFaces();
    m_faces.forEach([](QuadFace &face) { std::copy(Green.begin(), Green.end(), face.color); });
    drawFaces();
    expectColorAt(0.5, 0.5, 0, red);
    m_buffer.setRecolored();
    drawFaces();
    expectColorAt(0.5, 0.5, 0, green);

    m_faces.clear();
    append(5, 5, Red, Red);
    m_buffer.setChanged();
    drawFaces();
    EXPECT_EQ(pixelsOf(red), SquareUnit);
    EXPECT_EQ(pixelsOf(green), 0);
    expectColorAt(5.5, 5.5, 0, red);

    m_faces.clear();
    m_buffer.setChanged();
    drawFaces();
    EXPECT_EQ(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
}

TEST_F(FaceBufferTest, ListsLongerThanAPortionAreDrawnWhole)
{
    // The same 576 places four times, of which the last hides the others.
    glDepthFunc(GL_ALWAYS);
    for (int round = 0; round < 4; ++round)
        for (int x = -12; x < 12; ++x)
            for (int y = -12; y < 12; ++y)
                append(static_cast<float>(x), static_cast<float>(y), round < 3 ? Red : Green,
                       Green);
    drawFaces();
    EXPECT_EQ(pixelsOf(green), GlCanvas::Side * GlCanvas::Side);
}

TEST_F(FaceBufferTest, DrawingLeavesArraysAndBuffersUnbound)
{
    append(0, 0, Red, Red);
    drawFaces();
    for (const unsigned name : {GL_VERTEX_ARRAY, GL_NORMAL_ARRAY, GL_COLOR_ARRAY})
        EXPECT_EQ(integer(name), 0);
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(FaceBufferTest, WithoutAContextNothingIsDrawn)
{
    append(0, 0, Red, Red);
    auto *context = const_cast<QGLContext *>(QGLContext::currentContext());
    context->doneCurrent();
    m_buffer.draw(m_faces, FaceBuffer::Fill);
    context->makeCurrent();
    drawFaces();
    expectColorAt(0.5, 0.5, 0, red);
}

// OpenGL before 4.2 takes whole numbers for normals that are a little beside what they stand for.
TEST_F(FaceBufferTest, NormalsAreHandedOverAsTheFloatsThatTheyAre)
{
    append(0, 0, Red, Red);
    append(2, 0, Green, Green);
    unsigned number = 0;
    m_faces.forEach([&](QuadFace &face) { face.normal = number++ == 0 ? Upward : Slanted; });
    drawFaces();
    ASSERT_EQ(integer(GL_NORMAL_ARRAY_TYPE), GL_FLOAT);
    void *place = nullptr;
    glGetPointerv(GL_NORMAL_ARRAY_POINTER, &place);
    std::array<float, 3> normal{};
    for (int corner = 0; corner < 8; ++corner) {
        readBuffer(integer(GL_NORMAL_ARRAY_BUFFER_BINDING),
                   reinterpret_cast<std::intptr_t>(place) +
                       corner * integer(GL_NORMAL_ARRAY_STRIDE),
                   normal);
        const float *expected = corner < 4 ? Upward : Slanted;
        for (unsigned axis = 0; axis < 3; ++axis)
            EXPECT_EQ(normal[axis], expected[axis]) << "axis " << axis << " of corner " << corner;
    }
}
