#include "UI/Operations/BCAEtchingDialog.h"

#include "ui_BCAEtchingBaseDialog.h"

namespace Ui::Operations {

BCAEtchingDialog::BCAEtchingDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<BCAEtchingBaseDialog>())
{
    m_form->setupUi(this);
}

BCAEtchingDialog::~BCAEtchingDialog() = default;

double BCAEtchingDialog::depth() const
{
    return m_form->dblDepth->value();
}

} // namespace Ui::Operations
