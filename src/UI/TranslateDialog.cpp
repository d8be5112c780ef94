#include "UI/TranslateDialog.h"

#include "ui_TranslateForm.h"

namespace Ui {

TranslateDialog::TranslateDialog(double distanceX, double distanceY, double distanceZ,
                                 QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<TranslateForm>())
{
    m_form->setupUi(this);
    m_form->dblDistanceX->setValue(distanceX);
    m_form->dblDistanceY->setValue(distanceY);
    m_form->dblDistanceZ->setValue(distanceZ);
    m_form->dblDistanceX->selectAll();
}

TranslateDialog::~TranslateDialog() = default;

double TranslateDialog::distanceX() const
{
    return m_form->dblDistanceX->value();
}

double TranslateDialog::distanceY() const
{
    return m_form->dblDistanceY->value();
}

double TranslateDialog::distanceZ() const
{
    return m_form->dblDistanceZ->value();
}

} // namespace Ui
