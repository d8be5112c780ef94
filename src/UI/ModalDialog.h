#pragma once

class QDialog;

namespace Ui {

/// Runs the dialog modally; whether it was accepted. If its parent is a main window, that window's
/// OpenGL context is current again afterwards, whatever other windows painted meanwhile.
bool runModally(QDialog &dialog);

} // namespace Ui
