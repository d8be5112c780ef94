#include "UI/SetZoomDialog.h"

#include "ui_SetZoomForm.h"

namespace Ui {

SetZoomDialog::SetZoomDialog(double percentage, QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<SetZoomForm>())
{
    m_form->setupUi(this);
    m_form->dblZoom->setValue(percentage);
    m_form->dblZoom->selectAll();
}

SetZoomDialog::~SetZoomDialog() = default;

double SetZoomDialog::percentage() const
{
    return m_form->dblZoom->value();
}

} // namespace Ui
