#pragma once

#include "Core/Operations/Visualization/VisualizationOptions.h"
#include "Model/Materials/Material.h"

#include <QDialog>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace Ui {
class ChangeVolumeVisualizationDialogForm;
}

namespace Ui::Operations {

/// Asks how a volume is drawn, and for the colours of the materials.
class ChangeVolumeVisualizationDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Red, green, blue and alpha, each 0 to 1, by material id.
    using Colors = std::map<std::uint32_t, std::array<float, 4>>;

    explicit ChangeVolumeVisualizationDialog(QWidget *parent = nullptr);
    ~ChangeVolumeVisualizationDialog() override;

    /// Offers these materials with their colours, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);
    /// A surface that the dialog does not know is taken as the first one.
    void setOptions(const Core::Operations::VisualizationOptions &options);

    Core::Operations::VisualizationOptions options() const;
    /// Of every material that was offered; those that nobody changed are bit for bit as they were.
    const Colors &colors() const { return m_colors; }

public Q_SLOTS:
    /// Asks for another colour of the chosen material.
    void changeColor();
    /// Shows the colour of the chosen material.
    void materialChanged();

private:
    std::unique_ptr<ChangeVolumeVisualizationDialogForm> m_form;
    Colors m_colors;
};

} // namespace Ui::Operations
