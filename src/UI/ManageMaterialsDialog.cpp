#include "UI/ManageMaterialsDialog.h"

#include "UI/MaterialTableViewItem.h"
#include "ui_ManageMaterialsBaseDialog.h"

namespace Ui {

ManageMaterialsDialog::ManageMaterialsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ManageMaterialsBaseDialog>()),
      m_model(new MaterialTableViewItem(this))
{
    m_form->setupUi(this);
    m_form->tblMaterials->setModel(m_model);
    m_form->tblMaterials->setItemDelegateForColumn(MaterialTableViewItem::Color, &m_colorDelegate);
    m_form->tblMaterials->resizeColumnsToContents();
}

ManageMaterialsDialog::~ManageMaterialsDialog() = default;

const std::vector<Model::Materials::Material> &ManageMaterialsDialog::materials() const
{
    return m_model->materials();
}

void ManageMaterialsDialog::on_btnAddMaterial_clicked()
{
    m_form->tblMaterials->model()->insertRows(0, 1);
    m_form->tblMaterials->scrollToBottom();
}

} // namespace Ui
