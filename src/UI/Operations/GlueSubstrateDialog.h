#pragma once

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class GlueSubstrateForm;
}

namespace Ui::Operations {

/// Asks for the size of the volume that two substrates are glued to, and for where and which way
/// round the top one lies on the base. All in cells.
class GlueSubstrateDialog final : public QDialog
{
    Q_OBJECT

public:
    /// The smallest sizes of the glued volume, which are what it starts with; those along x and y
    /// are only shown. No size goes beyond 999999999.
    GlueSubstrateDialog(std::uint32_t minimumX, std::uint32_t minimumY, std::uint32_t minimumZ,
                        std::uint32_t maximumDisplacementX, std::uint32_t maximumDisplacementY,
                        QWidget *parent = nullptr);
    ~GlueSubstrateDialog() override;

    std::uint32_t finalX() const;
    std::uint32_t finalY() const;
    std::uint32_t finalZ() const;
    /// Where the top's x and y start.
    std::uint32_t displacementX() const;
    std::uint32_t displacementY() const;
    bool invertsTop() const;

private:
    std::unique_ptr<GlueSubstrateForm> m_form;
};

} // namespace Ui::Operations
