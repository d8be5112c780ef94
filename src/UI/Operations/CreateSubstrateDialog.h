#pragma once

#include "Model/Materials/Material.h"
#include "Util/Vector3D.h"

#include <QDialog>

#include <cstdint>
#include <memory>
#include <vector>

namespace Ui {
class CreateSubstrateDialogForm;
}

namespace Ui::Operations {

/// Asks for a new cell volume and the substrate inside it. The user's width, length and height are
/// X, Y and Z. Sizes, displacement, centre and radius are in cells, the position in world units.
class CreateSubstrateDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit CreateSubstrateDialog(QWidget *parent = nullptr);
    ~CreateSubstrateDialog() override;

    /// Offers these materials, in this order, and chooses the first.
    void setMaterials(const std::vector<Model::Materials::Material> &materials);

    bool isSpherical() const;
    /// The id of the substrate's material; 0 where no materials were offered.
    std::uint32_t material() const;

    std::uint32_t totalX() const;
    std::uint32_t totalY() const;
    std::uint32_t totalZ() const;
    /// World position of the volume's lower left front corner.
    Util::Vector3D position() const;

    /// Size of a box substrate.
    std::uint32_t sizeX() const;
    std::uint32_t sizeY() const;
    std::uint32_t sizeZ() const;
    /// The cell of a box substrate's lowest corner.
    void displacement(std::uint32_t &x, std::uint32_t &y, std::uint32_t &z) const;

    std::uint32_t radius() const;
    /// The cell at the centre of a spherical substrate.
    void center(std::uint32_t &x, std::uint32_t &y, std::uint32_t &z) const;

public Q_SLOTS:
    /// A new total width or length is also the substrate's: it fills the volume along X and Y until
    /// its own size is changed. Along Z the total only limits the substrate.
    void updateLimitX(int total);
    void updateLimitY(int total);
    void updateLimitZ(int total);
    void updateSubstrateDispX(int size);
    void updateSubstrateDispY(int size);
    void updateSubstrateDispZ(int size);
    void toggleSubsShape(bool spherical);

private:
    std::unique_ptr<CreateSubstrateDialogForm> m_form;
};

} // namespace Ui::Operations
