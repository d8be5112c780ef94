#include "UI/Operations/ElectrodepositionDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_ElectrodepositionForm.h"

namespace Ui::Operations {

ElectrodepositionDialog::ElectrodepositionDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ElectrodepositionForm>())
{
    m_form->setupUi(this);
}

ElectrodepositionDialog::~ElectrodepositionDialog() = default;

void ElectrodepositionDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
    fillMaterialChooser(*m_form->cbxConductingMaterial, materials);
}

std::uint32_t ElectrodepositionDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

std::uint32_t ElectrodepositionDialog::conductingMaterial() const
{
    return chosenMaterial(*m_form->cbxConductingMaterial);
}

double ElectrodepositionDialog::thickness() const
{
    return m_form->dblThickness->value();
}

} // namespace Ui::Operations
