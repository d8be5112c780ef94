#pragma once

#include <QColor>

#include <array>

class QPixmap;

namespace Ui {

/// Red, green, blue and alpha from 0 to 1, as materials hold them, as whole channels from 0 to 255,
/// truncated. Numbers outside 0 to 1, which a registry file may hold, are taken as the nearer end.
QColor colorOf(const float *components);

/// The whole channels of the colour divided by 255: red, green, blue and alpha. The way back is
/// exact for every channel.
std::array<float, 4> componentsOf(const QColor &color);

/// What a chooser shows of a material: a square filled with its colour.
QPixmap swatchOf(const QColor &color);

} // namespace Ui
