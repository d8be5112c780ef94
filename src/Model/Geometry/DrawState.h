#pragma once

namespace Model::Geometry {

/// Keeps all attributes and sets up what edges are drawn with: outlines of polygons, two pixels
/// wide, not lit. The depth offset that comes with it is one for filled polygons and has no effect
/// on outlines: they lie as deep as their faces, which is kept so. Ended by glPopAttrib().
void pushEdgeState();

/// Keeps all attributes and sets up what is drawn over the opaque picture without hiding anything:
/// blended, depth test on, depth writes off. Ended by glPopAttrib().
void pushTransparentState();

} // namespace Model::Geometry
