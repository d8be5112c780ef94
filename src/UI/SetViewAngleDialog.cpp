#include "UI/SetViewAngleDialog.h"

#include "ui_SetViewAngleForm.h"

namespace Ui {

double SetViewAngleDialog::s_angleX = 0.0;
double SetViewAngleDialog::s_angleY = 0.0;
double SetViewAngleDialog::s_angleZ = 0.0;

SetViewAngleDialog::SetViewAngleDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<SetViewAngleForm>())
{
    m_form->setupUi(this);
    m_form->dblAngleX->setValue(s_angleX);
    m_form->dblAngleY->setValue(s_angleY);
    m_form->dblAngleZ->setValue(s_angleZ);
    m_form->dblAngleX->selectAll();
}

SetViewAngleDialog::~SetViewAngleDialog() = default;

double SetViewAngleDialog::angleX() const
{
    return m_form->dblAngleX->value();
}

double SetViewAngleDialog::angleY() const
{
    return m_form->dblAngleY->value();
}

double SetViewAngleDialog::angleZ() const
{
    return m_form->dblAngleZ->value();
}

void SetViewAngleDialog::accept()
{
    s_angleX = angleX();
    s_angleY = angleY();
    s_angleZ = angleZ();
    QDialog::accept();
}

} // namespace Ui
