#pragma once

#include "Model/Geometry/DrawBuffer.h"

#include <array>

namespace Model::Geometry {

class FaceList;

/// Draws a list of quads from vertex buffers, in the order of the list and with one call. The
/// buffers are filled by the first draw after a change, and only with what it draws: 160 bytes a
/// quad, and 64 more once its edges are drawn.
class FaceBuffer final
{
public:
    enum Coloring
    {
        Fill,
        Edge
    };

    /// The list has other quads now.
    void setChanged();
    /// Its quads have other colours.
    void setRecolored();

    /// `faces` is always the same list. Draws nothing without an OpenGL context.
    void draw(const FaceList &faces, Coloring coloring);

private:
    void uploadShapes(const FaceList &faces);
    void uploadColors(const FaceList &faces, Coloring coloring);

    DrawBuffer m_shapes;
    std::array<DrawBuffer, 2> m_colors;
    bool m_areShapesStale = true;
    std::array<bool, 2> m_areColorsStale{true, true};
};

} // namespace Model::Geometry
