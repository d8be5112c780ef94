#include "UI/AboutWindow.h"

#include "ui_AboutForm.h"

namespace Ui {

AboutWindow::AboutWindow(QWidget *parent) : QDialog(parent), m_form(std::make_unique<AboutForm>())
{
    m_form->setupUi(this);
}

AboutWindow::~AboutWindow() = default;

} // namespace Ui
