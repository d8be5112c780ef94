#pragma once

#include <QPointer>

#include <cstddef>
#include <cstdint>

class QOpenGLContextGroup;

namespace Model::Geometry {

/// One vertex buffer of OpenGL, for one window at a time. It remembers which contexts know its
/// name, so that it never takes a buffer of another window for its own and can be let go of without
/// a context: what is left then goes with the context that made it. The same holds for the buffer
/// of an earlier window once another one has filled it anew, so drawing in two windows by turns
/// fills the memory of both. Belongs to the thread of those contexts.
class DrawBuffer final
{
public:
    /// Whether a buffer could be made on this thread now.
    static bool isContextCurrent();
    /// What the vertex pointer calls take for a place in the bound buffer.
    static const void *place(std::size_t bytes);
    static void unbind();

    DrawBuffer() = default;
    ~DrawBuffer();
    DrawBuffer(const DrawBuffer &) = delete;
    DrawBuffer &operator=(const DrawBuffer &) = delete;

    /// Replaces what the buffer holds. Without a context, or if there is no memory for it, there is
    /// no buffer afterwards.
    void upload(const void *data, std::size_t bytes);
    /// The same with nothing in it yet; leaves it bound, for write(). False without a buffer.
    bool allocate(std::size_t bytes);
    /// Fills a part of the bound buffer.
    void write(std::size_t place, const void *data, std::size_t bytes);
    /// Deletes the buffer, if there is one.
    void release();

    /// 0 for none, and where the current context does not know the buffer.
    std::uint32_t name() const;
    /// Makes it the source of the vertex pointers that are set from here on. False without a
    /// buffer.
    bool bind() const;

private:
    std::uint32_t m_name = 0;
    QPointer<QOpenGLContextGroup> m_owners;
};

} // namespace Model::Geometry
