#include "UI/Operations/ExtractFilmDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_ExtractFilmForm.h"

namespace Ui::Operations {

ExtractFilmDialog::ExtractFilmDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ExtractFilmForm>())
{
    m_form->setupUi(this);
}

ExtractFilmDialog::~ExtractFilmDialog() = default;

void ExtractFilmDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxFilm, materials);
}

std::uint32_t ExtractFilmDialog::film() const
{
    return chosenMaterial(*m_form->cbxFilm);
}

bool ExtractFilmDialog::invertsFilm() const
{
    return m_form->chkInvertFilm->isChecked();
}

} // namespace Ui::Operations
