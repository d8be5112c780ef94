#include "Model/Geometry/DrawState.h"

#include <GL/gl.h>

namespace Model::Geometry {

void pushEdgeState()
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LIGHTING);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(-2.5f, -2.5f);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glLineWidth(2.0f);
}

void pushTransparentState()
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glEnable(GL_BLEND);
    // 0 names no side: the call is refused and culling stays on the back. Pictures rely on it.
    glCullFace(0);
    glDepthMask(GL_FALSE);
}

} // namespace Model::Geometry
