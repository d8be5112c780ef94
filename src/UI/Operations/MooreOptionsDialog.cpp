#include "UI/Operations/MooreOptionsDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_MooreOptionsBaseDialog.h"

namespace Ui::Operations {

MooreOptionsDialog::MooreOptionsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<MooreOptionsBaseDialog>())
{
    m_form->setupUi(this);
}

MooreOptionsDialog::~MooreOptionsDialog() = default;

void MooreOptionsDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
}

void MooreOptionsDialog::setValueLabel(const QString &text)
{
    m_form->lblValue->setText(text);
}

std::uint32_t MooreOptionsDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

std::int32_t MooreOptionsDialog::steps() const
{
    return m_form->sbxValue->value();
}

} // namespace Ui::Operations
