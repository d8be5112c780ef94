#include "UI/ViewGrid.h"

#include "Model/ColorTable.h"

#include <GL/gl.h>

#include <cmath>
#include <cstdint>

namespace Ui {

namespace {

/// Many a pixel of any screen: with more lines than this, some are left out, which cannot be seen.
constexpr std::int64_t MostLines = 200000;

/// Calls draw(position) for the lines 0 to `count` from `first` on, a spacing apart.
template <typename Draw>
void forEachLine(float first, float spacing, std::int64_t count, Draw &&draw)
{
    const std::int64_t stride = count / MostLines + 1;
    for (std::int64_t i = 0; i <= count; i += stride)
        draw(static_cast<float>(i) * spacing + first);
}

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
    const float linesX = std::ceil((maxX - minX) / spacing);
    const float linesY = std::ceil((maxY - minY) / spacing);
    constexpr float MostCountable = 1e18f;
    if (!(spacing > 0.0f && linesX < MostCountable && linesY < MostCountable))
        return;
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
    forEachLine(minX, spacing, static_cast<std::int64_t>(linesX), [this](float x) {
        glVertex3f(x, minY, z);
        glVertex3f(x, maxY, z);
    });
    forEachLine(minY, spacing, static_cast<std::int64_t>(linesY), [this](float y) {
        glVertex3f(minX, y, z);
        glVertex3f(maxX, y, z);
    });
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
