#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class SpinCoatingOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for a liquid material and how high it is poured.
class SpinCoatingOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// The height is limited to 0 until a limit is set.
    explicit SpinCoatingOptionsDialog(QWidget *parent = nullptr);
    ~SpinCoatingOptionsDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// Layers of cells.
    void setMaximumHeight(std::uint32_t height);

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Layers of cells above the floor of the volume.
    std::uint32_t height() const;

private:
    std::unique_ptr<SpinCoatingOptionsBaseDialog> m_form;
};

} // namespace Ui::Operations
