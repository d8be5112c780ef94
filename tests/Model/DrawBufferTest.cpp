#include "Model/Geometry/DrawBuffer.h"

#include "GlTestSupport.h"

#include <QGLFunctions>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

using Model::Geometry::DrawBuffer;

namespace {

constexpr std::array<float, 3> Floats{1, 2, 3};

class DrawBufferTest : public GlTest
{
protected:
    static bool isBuffer(std::uint32_t name)
    {
        return QGLFunctions(QGLContext::currentContext()).glIsBuffer(name);
    }
};

} // namespace

TEST_F(DrawBufferTest, StartsWithoutABuffer)
{
    const DrawBuffer buffer;
    EXPECT_EQ(buffer.name(), 0U);
    EXPECT_FALSE(buffer.bind());
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(DrawBufferTest, UploadReplacesTheBufferAndLeavesNoneBound)
{
    DrawBuffer buffer;
    buffer.upload(Floats.data(), sizeof Floats);
    EXPECT_TRUE(isBuffer(buffer.name()));
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
    ASSERT_TRUE(buffer.bind());
    GLint size = 0;
    QGLFunctions(QGLContext::currentContext())
        .glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    EXPECT_EQ(size, static_cast<int>(sizeof Floats));
    DrawBuffer::unbind();
    EXPECT_EQ(integer(GL_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(DrawBufferTest, ReleaseDeletesTheBuffer)
{
    std::uint32_t name = 0;
    DrawBuffer buffer;
    buffer.upload(Floats.data(), sizeof Floats);
    name = buffer.name();
    buffer.release();
    EXPECT_FALSE(isBuffer(name));
    EXPECT_EQ(buffer.name(), 0U);
    buffer.release();
}

TEST_F(DrawBufferTest, BufferGoesWithItsObject)
{
    std::uint32_t name = 0;
    {
        DrawBuffer buffer;
        buffer.upload(Floats.data(), sizeof Floats);
        name = buffer.name();
        EXPECT_TRUE(isBuffer(name));
    }
    EXPECT_FALSE(isBuffer(name));
}

TEST_F(DrawBufferTest, WithoutAContextThereIsNoBufferAndNothingFails)
{
    DrawBuffer before;
    before.upload(Floats.data(), sizeof Floats);
    auto *context = const_cast<QGLContext *>(QGLContext::currentContext());
    context->doneCurrent();
    EXPECT_FALSE(DrawBuffer::isContextCurrent());
    DrawBuffer::unbind();
    EXPECT_EQ(before.name(), 0U);
    EXPECT_FALSE(before.bind());
    {
        DrawBuffer buffer;
        buffer.upload(Floats.data(), sizeof Floats);
        EXPECT_FALSE(buffer.allocate(4));
        EXPECT_EQ(buffer.name(), 0U);
        buffer.release();
    }
    context->makeCurrent();
    EXPECT_TRUE(DrawBuffer::isContextCurrent());
    EXPECT_NE(before.name(), 0U) << "its context is back";
}

TEST_F(DrawBufferTest, BufferOfAnotherWindowIsNotTakenForItsOwn)
{
    auto *here = const_cast<QGLContext *>(QGLContext::currentContext());
    DrawBuffer ours;
    ours.upload(Floats.data(), sizeof Floats);
    const std::uint32_t name = ours.name();
    DrawBuffer theirs;
    {
        QGLWidget other;
        other.makeCurrent();
        theirs.upload(Floats.data(), sizeof Floats);
        EXPECT_NE(theirs.name(), 0U);
        EXPECT_EQ(ours.name(), 0U);
        EXPECT_FALSE(ours.bind());
    }
    here->makeCurrent();
    EXPECT_EQ(theirs.name(), 0U);
    theirs.release();
    EXPECT_EQ(ours.name(), name);
    EXPECT_TRUE(isBuffer(name));
}

TEST_F(DrawBufferTest, BufferThatAnotherWindowFilledAnewStaysInTheFirstUntilThatGoes)
{
    auto *here = const_cast<QGLContext *>(QGLContext::currentContext());
    QGLWidget other;
    other.makeCurrent();
    DrawBuffer buffer;
    buffer.upload(Floats.data(), sizeof Floats);
    const std::uint32_t first = buffer.name();
    here->makeCurrent();
    buffer.upload(Floats.data(), sizeof Floats);
    EXPECT_NE(buffer.name(), 0U);
    other.makeCurrent();
    EXPECT_TRUE(isBuffer(first));
    EXPECT_EQ(buffer.name(), 0U);
    here->makeCurrent();
    EXPECT_NE(buffer.name(), 0U);
}
