#pragma once

#include <QIcon>

namespace Ui {

/// The window icon: "icon.ico" of the working directory, or plain red where it cannot be loaded.
QIcon applicationIcon();

} // namespace Ui
