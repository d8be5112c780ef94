#pragma once

#include "Model/Materials/Material.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class ElectrodepositionForm;
}

namespace Ui::Operations {

/// Asks for the film of an electroplating and for what it grows on.
class ElectrodepositionDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit ElectrodepositionDialog(QWidget *parent = nullptr);
    ~ElectrodepositionDialog() override;

    /// Offers these materials, in this order, for the film and as conductor, and chooses the first
    /// in both.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// 0 with no material to choose.
    std::uint32_t conductingMaterial() const;
    /// Drawing units.
    double thickness() const;

private:
    std::unique_ptr<ElectrodepositionForm> m_form;
};

} // namespace Ui::Operations
