#include "UI/ViewGrid.h"

#include "Model/ColorTable.h"

#include <GL/gl.h>

#include <cmath>

namespace Ui {

namespace {

/// More lines than any screen has pixels.
constexpr float MaxLines = 50000.0f;

double nearestMultiple(double value, double spacing)
{
    const double upper = std::trunc(std::ceil(value / spacing)) * spacing;
    const double lower = std::trunc(std::floor(value / spacing)) * spacing;
    return upper - value <= value - lower ? upper : lower;
}

} // namespace

void ViewGrid::moveBy(float dx, float dy)
{
    minX += dx;
    maxX += dx;
    minY += dy;
    maxY += dy;
}

void ViewGrid::draw()
{
    const float countX = std::ceil((maxX - minX) / spacing);
    const float countY = std::ceil((maxY - minY) / spacing);
    if (!(spacing > 0.0f && countX <= MaxLines && countY <= MaxLines))
        return;
    const int linesX = static_cast<int>(countX);
    const int linesY = static_cast<int>(countY);
    minX = std::floor(minX / spacing) * spacing;
    minY = std::floor(minY / spacing) * spacing;
    maxX = std::ceil(maxX / spacing) * spacing;
    maxY = std::ceil(maxY / spacing) * spacing;

    glPushAttrib(GL_LIGHTING_BIT);
    glDisable(GL_LIGHTING);
    color = Model::ColorTable::colorSetting(Model::ColorTable::GridColor,
                                            Model::ColorTable::currentScheme());
    glColor3d(color[0], color[1], color[2]);
    glBegin(GL_LINES);
    for (int i = 0; i <= linesX; ++i) {
        const float x = static_cast<float>(i) * spacing + minX;
        glVertex3f(x, minY, z);
        glVertex3f(x, maxY, z);
    }
    for (int i = 0; i <= linesY; ++i) {
        const float y = static_cast<float>(i) * spacing + minY;
        glVertex3f(minX, y, z);
        glVertex3f(maxX, y, z);
    }
    glEnd();
    glPopAttrib();
}

Util::Vector3D ViewGrid::snapped(const Util::Vector3D &position) const
{
    if (!(spacing > 0.0f))
        return {position[0], position[1], z};
    return {nearestMultiple(position[0], spacing), nearestMultiple(position[1], spacing), z};
}

} // namespace Ui
