#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>

#include <QString>
#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class MooreOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for a film and a number of layers of cells: how many a deposition adds, or an etching takes
/// away.
class MooreOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit MooreOptionsDialog(QWidget *parent = nullptr);
    ~MooreOptionsDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// What the number of layers is called.
    void setValueLabel(const QString &text);

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Cells, 1 or more.
    std::int32_t steps() const;

private:
    std::unique_ptr<MooreOptionsBaseDialog> m_form;
};

} // namespace Ui::Operations
