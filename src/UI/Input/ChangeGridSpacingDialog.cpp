#include "UI/Input/ChangeGridSpacingDialog.h"

#include "ui_ChangeGridSpacingForm.h"

namespace Ui::Input {

ChangeGridSpacingDialog::ChangeGridSpacingDialog(double spacing, QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ChangeGridSpacingForm>())
{
    m_form->setupUi(this);
    m_form->dblSpacing->setValue(spacing);
    m_form->dblSpacing->selectAll();
}

ChangeGridSpacingDialog::~ChangeGridSpacingDialog() = default;

double ChangeGridSpacingDialog::spacing() const
{
    return m_form->dblSpacing->value();
}

} // namespace Ui::Input
