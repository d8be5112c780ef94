#include "UI/Operations/SimpleOxidationOptionsDialog.h"

#include "ui_SimpleOxidationOptionsBaseDialog.h"

namespace Ui::Operations {

SimpleOxidationOptionsDialog::SimpleOxidationOptionsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<SimpleOxidationOptionsBaseDialog>())
{
    m_form->setupUi(this);
    // The keyboard starts at what is chosen.
    m_form->rbtThickness->setFocus();
}

SimpleOxidationOptionsDialog::~SimpleOxidationOptionsDialog() = default;

bool SimpleOxidationOptionsDialog::isTimeChosen() const
{
    return m_form->rbtTime->isChecked();
}

double SimpleOxidationOptionsDialog::thickness() const
{
    return m_form->dblThickness->value();
}

double SimpleOxidationOptionsDialog::time() const
{
    return m_form->dblTime->value();
}

double SimpleOxidationOptionsDialog::temperature() const
{
    return m_form->dblTemperature->value();
}

double SimpleOxidationOptionsDialog::pressure() const
{
    return m_form->dblPressure->value();
}

double SimpleOxidationOptionsDialog::cellUnitsPerMicron() const
{
    return m_form->dblCellUnitsPerMicron->value();
}

} // namespace Ui::Operations
