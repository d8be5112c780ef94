#include "Model/MatrixKeeper.h"

#include <GL/gl.h>

namespace Model {

namespace {

int stackDepth()
{
    GLint depth = 0;
    glGetIntegerv(GL_MODELVIEW_STACK_DEPTH, &depth);
    return depth;
}

} // namespace

MatrixKeeper::MatrixKeeper()
{
    glMatrixMode(GL_MODELVIEW);
    m_depth = stackDepth();
    glGetDoublev(GL_MODELVIEW_MATRIX, m_matrix.data());
}

void MatrixKeeper::restore() const
{
    glMatrixMode(GL_MODELVIEW);
    int depth = stackDepth();
    for (; depth > m_depth; --depth)
        glPopMatrix();
    for (; depth < m_depth; ++depth)
        glPushMatrix();
    glLoadMatrixd(m_matrix.data());
}

} // namespace Model
