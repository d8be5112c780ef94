#pragma once

namespace Model::Geometry {

/// Keeps all attributes and sets up what edges are drawn with: outlines of polygons, two pixels
/// wide, in front of the faces that they belong to, not lit. Ended by glPopAttrib().
void pushEdgeState();

/// Keeps all attributes and sets up what is drawn over the opaque picture without hiding anything:
/// blended, depth test on, depth writes off. Ended by glPopAttrib().
void pushTransparentState();

} // namespace Model::Geometry
