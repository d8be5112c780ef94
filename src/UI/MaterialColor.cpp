#include "UI/MaterialColor.h"

#include <QPixmap>

namespace Ui {

namespace {

constexpr int SwatchEdge = 100; // pixels

int channel(float component)
{
    return static_cast<int>(qBound(0.0, component * 255.0, 255.0));
}

} // namespace

QColor colorOf(const float *components)
{
    return QColor(channel(components[0]), channel(components[1]), channel(components[2]),
                  channel(components[3]));
}

std::array<float, 4> componentsOf(const QColor &color)
{
    const auto component = [](int whole) { return static_cast<float>(whole / 255.0); };
    return {component(color.red()), component(color.green()), component(color.blue()),
            component(color.alpha())};
}

QPixmap swatchOf(const QColor &color)
{
    QPixmap swatch(SwatchEdge, SwatchEdge);
    swatch.fill(color);
    return swatch;
}

} // namespace Ui
