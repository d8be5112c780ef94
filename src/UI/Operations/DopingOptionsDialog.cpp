#include "UI/Operations/DopingOptionsDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_DopingOptionsBaseDialog.h"

namespace Ui::Operations {

DopingOptionsDialog::DopingOptionsDialog(const Model::Process::Process &process, QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<DopingOptionsBaseDialog>()),
      m_process(process)
{
    m_form->setupUi(this);
    fillMaterialChooser(*m_form->cbxMaterial, m_process.compatibleMaterials());
}

DopingOptionsDialog::~DopingOptionsDialog() = default;

std::uint32_t DopingOptionsDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

double DopingOptionsDialog::depth() const
{
    return m_form->dblDepth->value();
}

} // namespace Ui::Operations
