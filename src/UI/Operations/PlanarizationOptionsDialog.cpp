#include "UI/Operations/PlanarizationOptionsDialog.h"

#include "UI/Operations/CellField.h"
#include "ui_PlanarizationOptionsBaseDialog.h"

#include <QSpinBox>

namespace Ui::Operations {

PlanarizationOptionsDialog::PlanarizationOptionsDialog(std::uint32_t volumeHeight, QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<PlanarizationOptionsBaseDialog>())
{
    m_form->setupUi(this);
    limitCells(*m_form->sbxMaximumHeight, volumeHeight);
    connect(m_form->sbxMaximumHeight, qOverload<int>(&QSpinBox::valueChanged), this,
            &PlanarizationOptionsDialog::updateMinimumLimits);
    m_form->sbxMaximumHeight->setValue(m_form->sbxMaximumHeight->maximum());
}

PlanarizationOptionsDialog::~PlanarizationOptionsDialog() = default;

std::uint32_t PlanarizationOptionsDialog::minimumHeight() const
{
    return cellsOf(*m_form->sbxMinimumHeight);
}

std::uint32_t PlanarizationOptionsDialog::maximumHeight() const
{
    return cellsOf(*m_form->sbxMaximumHeight);
}

void PlanarizationOptionsDialog::updateMinimumLimits(int maximumHeight)
{
    m_form->sbxMinimumHeight->setMaximum(maximumHeight);
}

} // namespace Ui::Operations
