#pragma once

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class PlanarizationOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for the two heights between which a volume is left, in layers of cells.
class PlanarizationOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Starts with all of a volume of this height.
    explicit PlanarizationOptionsDialog(std::uint32_t volumeHeight, QWidget *parent = nullptr);
    ~PlanarizationOptionsDialog() override;

    std::uint32_t minimumHeight() const;
    std::uint32_t maximumHeight() const;

public Q_SLOTS:
    /// The minimum height stays at or below the maximum height, which is given here.
    void updateMinimumLimits(int maximumHeight);

private:
    std::unique_ptr<PlanarizationOptionsBaseDialog> m_form;
};

} // namespace Ui::Operations
