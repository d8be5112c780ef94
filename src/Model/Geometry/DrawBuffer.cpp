#include "Model/Geometry/DrawBuffer.h"

#include <QGLContext>
#include <QGLFunctions>
#include <QOpenGLContext>

namespace Model::Geometry {

namespace {

/// The functions of the current context, which has to exist.
QGLFunctions functions()
{
    return QGLFunctions(QGLContext::currentContext());
}

} // namespace

bool DrawBuffer::isContextCurrent()
{
    return QOpenGLContext::currentContext() != nullptr;
}

const void *DrawBuffer::place(std::size_t bytes)
{
    return reinterpret_cast<const void *>(bytes);
}

void DrawBuffer::unbind()
{
    if (isContextCurrent())
        functions().glBindBuffer(GL_ARRAY_BUFFER, 0);
}

DrawBuffer::~DrawBuffer()
{
    release();
}

void DrawBuffer::upload(const void *data, std::size_t bytes)
{
    if (!allocate(bytes))
        return;
    write(0, data, bytes);
    unbind();
}

bool DrawBuffer::allocate(std::size_t bytes)
{
    release();
    if (!isContextCurrent())
        return false;
    QGLFunctions gl = functions();
    gl.glGenBuffers(1, &m_name);
    m_owners = QOpenGLContextGroup::currentContextGroup();
    gl.glBindBuffer(GL_ARRAY_BUFFER, m_name);
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<qopengl_GLsizeiptr>(bytes), nullptr,
                    GL_STATIC_DRAW);
    // A buffer that found no memory keeps the size 0, and drawing from it would read past its end.
    GLint size = 0;
    gl.glGetBufferParameteriv(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &size);
    if (bytes != 0 && size == 0) {
        gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
        release();
        return false;
    }
    return true;
}

void DrawBuffer::write(std::size_t place, const void *data, std::size_t bytes)
{
    functions().glBufferSubData(GL_ARRAY_BUFFER, static_cast<qopengl_GLintptr>(place),
                                static_cast<qopengl_GLsizeiptr>(bytes), data);
}

void DrawBuffer::release()
{
    const GLuint name = this->name();
    if (name != 0)
        functions().glDeleteBuffers(1, &name);
    m_name = 0;
    m_owners.clear();
}

std::uint32_t DrawBuffer::name() const
{
    const bool isKnown = m_owners && m_owners == QOpenGLContextGroup::currentContextGroup();
    return isKnown ? m_name : 0;
}

bool DrawBuffer::bind() const
{
    const GLuint name = this->name();
    if (name == 0)
        return false;
    functions().glBindBuffer(GL_ARRAY_BUFFER, name);
    return true;
}

} // namespace Model::Geometry
