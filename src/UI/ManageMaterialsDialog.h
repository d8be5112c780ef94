#pragma once

#include "Model/Materials/Material.h"
#include "UI/ColorItemDelegate.h"

#include <QDialog>

#include <memory>
#include <vector>

namespace Ui {

class ManageMaterialsBaseDialog;
class MaterialTableViewItem;

/// Shows the materials of the registry in a table, where they can be edited and new ones added.
/// Works on a copy: the registry stays as it is.
class ManageMaterialsDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit ManageMaterialsDialog(QWidget *parent = nullptr);
    ~ManageMaterialsDialog() override;

    /// All rows of the table.
    const std::vector<Model::Materials::Material> &materials() const;

private Q_SLOTS:
    void on_btnAddMaterial_clicked();

private:
    std::unique_ptr<ManageMaterialsBaseDialog> m_form;
    ColorItemDelegate m_colorDelegate;
    MaterialTableViewItem *m_model; // a child
};

} // namespace Ui
