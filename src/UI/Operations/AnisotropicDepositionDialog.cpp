#include "UI/Operations/AnisotropicDepositionDialog.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "UI/Operations/MaterialChooser.h"
#include "ui_AnisotropicDepositionBaseDialog.h"

namespace Ui::Operations {

AnisotropicDepositionDialog::AnisotropicDepositionDialog(const Model::Process::Process &process,
                                                         QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<AnisotropicDepositionBaseDialog>()),
      m_process(process)
{
    m_form->setupUi(this);
    setWindowTitle(m_process.name() + QStringLiteral(" Options"));
    fillMaterialChooser(*m_form->cbxMaterial, m_process.compatibleMaterials());
}

AnisotropicDepositionDialog::~AnisotropicDepositionDialog() = default;

std::uint32_t AnisotropicDepositionDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

double AnisotropicDepositionDialog::thickness() const
{
    return m_form->dblThickness->value();
}

double AnisotropicDepositionDialog::horizontalRatio() const
{
    return m_form->dblHorizontalRatio->value();
}

std::uint32_t AnisotropicDepositionDialog::depositionMode() const
{
    if (m_form->rbtBottom->isChecked())
        return Core::Operations::AnisotropicFilmDeposition::OnBottom;
    if (m_form->rbtBothSides->isChecked())
        return Core::Operations::AnisotropicFilmDeposition::OnTopAndBottom;
    return Core::Operations::AnisotropicFilmDeposition::OnTop;
}

} // namespace Ui::Operations
