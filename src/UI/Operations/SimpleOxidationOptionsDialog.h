#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class SimpleOxidationOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for the thickness of a thermal oxide, or for the furnace conditions that it grows under.
class SimpleOxidationOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit SimpleOxidationOptionsDialog(QWidget *parent = nullptr);
    ~SimpleOxidationOptionsDialog() override;

    /// Whether the furnace conditions count, rather than the thickness.
    bool isTimeChosen() const;
    /// Cell units, though the field says microns: that is known and stays.
    double thickness() const;
    /// Hours.
    double time() const;
    /// Kelvin.
    double temperature() const;
    /// Atmospheres.
    double pressure() const;
    double cellUnitsPerMicron() const;

private:
    std::unique_ptr<SimpleOxidationOptionsBaseDialog> m_form;
};

} // namespace Ui::Operations
