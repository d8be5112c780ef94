#pragma once

class QDialog;
class QWidget;

namespace Ui {

/// Runs the dialog modally; whether it was accepted. If its parent is a main window, that window's
/// OpenGL context is current again afterwards, whatever other windows painted meanwhile.
bool runModally(QDialog &dialog);

/// Makes the OpenGL context of the view current, if the widget is a main window; for what a dialog
/// changes in the picture while it is open.
void makeViewCurrent(QWidget *window);

} // namespace Ui
