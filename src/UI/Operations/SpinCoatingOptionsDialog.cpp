#include "UI/Operations/SpinCoatingOptionsDialog.h"

#include "UI/Operations/CellField.h"
#include "UI/Operations/MaterialChooser.h"
#include "ui_SpinCoatingOptionsBaseDialog.h"

namespace Ui::Operations {

SpinCoatingOptionsDialog::SpinCoatingOptionsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<SpinCoatingOptionsBaseDialog>())
{
    m_form->setupUi(this);
}

SpinCoatingOptionsDialog::~SpinCoatingOptionsDialog() = default;

void SpinCoatingOptionsDialog::setMaterials(
    const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
}

void SpinCoatingOptionsDialog::setMaximumHeight(std::uint32_t height)
{
    limitCells(*m_form->sbxHeight, height);
}

std::uint32_t SpinCoatingOptionsDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

std::uint32_t SpinCoatingOptionsDialog::height() const
{
    return cellsOf(*m_form->sbxHeight);
}

} // namespace Ui::Operations
