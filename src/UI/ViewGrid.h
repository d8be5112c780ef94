#pragma once

#include "Util/Vector3D.h"

namespace Ui {

/// The grid of a 3D view: a rectangle at height z that covers the window. World units.
struct ViewGrid
{
    float minX = 0.0f;
    float minY = 0.0f;
    float maxX = 0.0f;
    float maxY = 0.0f;
    float z = 0.0f;
    float spacing = 10.0f;
    /// Overwritten at each draw.
    Util::Vector3D color{0.7, 0.7, 0.7};

    void moveBy(float dx, float dy);
    /// Snaps the rectangle outward to whole multiples of the spacing and draws it in the grid
    /// colour of the present scheme. A spacing of 0 draws nothing. Needs a current OpenGL context.
    void draw();
    /// The nearest grid point to a world position, at the grid's height; a tie goes upward. A
    /// spacing of 0 leaves x and y as they are.
    Util::Vector3D snapped(const Util::Vector3D &position) const;
};

} // namespace Ui
