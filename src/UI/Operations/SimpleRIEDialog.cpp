#include "UI/Operations/SimpleRIEDialog.h"

#include "UI/Operations/MaterialChooser.h"
#include "ui_SimpleRIEForm.h"

namespace Ui::Operations {

SimpleRIEDialog::SimpleRIEDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<SimpleRIEForm>())
{
    m_form->setupUi(this);
}

SimpleRIEDialog::~SimpleRIEDialog() = default;

void SimpleRIEDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
}

std::uint32_t SimpleRIEDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

int SimpleRIEDialog::depth() const
{
    return m_form->sbxDepth->value();
}

bool SimpleRIEDialog::etchFromBelow() const
{
    return m_form->cbxFromBelow->isChecked();
}

bool SimpleRIEDialog::etchFromTop() const
{
    return m_form->cbxFromTop->isChecked();
}

} // namespace Ui::Operations
