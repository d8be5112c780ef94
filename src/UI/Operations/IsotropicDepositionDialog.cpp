#include "UI/Operations/IsotropicDepositionDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_IsotropicDepositionForm.h"

namespace Ui::Operations {

IsotropicDepositionDialog::IsotropicDepositionDialog(const Model::Process::Process &process,
                                                     QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<IsotropicDepositionForm>()),
      m_process(process)
{
    m_form->setupUi(this);
    fillMaterialChooser(*m_form->cbxMaterial, m_process.compatibleMaterials());
}

IsotropicDepositionDialog::~IsotropicDepositionDialog() = default;

std::uint32_t IsotropicDepositionDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

double IsotropicDepositionDialog::thickness() const
{
    return m_form->dblThickness->value();
}

} // namespace Ui::Operations
