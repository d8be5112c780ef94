#include "UI/Operations/IsotropicEtchingDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_IsotropicEtchingForm.h"

namespace Ui::Operations {

IsotropicEtchingDialog::IsotropicEtchingDialog(const Model::Process::Process &process,
                                               QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<IsotropicEtchingForm>()),
      m_process(process)
{
    m_form->setupUi(this);
    setWindowTitle(m_process.name() + QStringLiteral(" Options"));
    fillMaterialChooser(*m_form->cbxMaterial, m_process.compatibleMaterials());
}

IsotropicEtchingDialog::~IsotropicEtchingDialog() = default;

std::uint32_t IsotropicEtchingDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

double IsotropicEtchingDialog::thickness() const
{
    return m_form->dblThickness->value();
}

} // namespace Ui::Operations
