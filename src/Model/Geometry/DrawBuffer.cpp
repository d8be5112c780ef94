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

DrawBuffer::~DrawBuffer()
{
    release();
}

void DrawBuffer::upload(const void *data, std::size_t bytes)
{
    release();
    if (!isContextCurrent())
        return;
    QGLFunctions gl = functions();
    GLuint name = 0;
    gl.glGenBuffers(1, &name);
    gl.glBindBuffer(GL_ARRAY_BUFFER, name);
    gl.glBufferData(GL_ARRAY_BUFFER, static_cast<qgl_GLsizeiptr>(bytes), data, GL_STATIC_DRAW);
    gl.glBindBuffer(GL_ARRAY_BUFFER, 0);
    m_name = name;
    m_owners = QOpenGLContextGroup::currentContextGroup();
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

void DrawBuffer::unbind()
{
    if (isContextCurrent())
        functions().glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace Model::Geometry
