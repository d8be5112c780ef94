#include "UI/Operations/IonImplantationOptionsDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_IonImplantationOptionsBaseDialog.h"

namespace Ui::Operations {

IonImplantationOptionsDialog::IonImplantationOptionsDialog(const Model::Process::Process &process,
                                                           QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<IonImplantationOptionsBaseDialog>()),
      m_process(process)
{
    m_form->setupUi(this);
    fillMaterialChooser(*m_form->cbxMaterial, m_process.compatibleMaterials());
}

IonImplantationOptionsDialog::~IonImplantationOptionsDialog() = default;

std::uint32_t IonImplantationOptionsDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

double IonImplantationOptionsDialog::implantationDepth() const
{
    return m_form->dblImplantationDepth->value();
}

double IonImplantationOptionsDialog::annealingDistance() const
{
    return m_form->dblAnnealingDistance->value();
}

} // namespace Ui::Operations
