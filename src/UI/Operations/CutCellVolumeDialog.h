#pragma once

#include "Model/Automaton/CutLimits.h"

#include <QDialog>

#include <functional>
#include <memory>

class QSpinBox;

namespace Ui {
class CutCellVolumeBaseDialog;
}

namespace Ui::Operations {

/// Asks for the box of cells that is drawn of a volume. Lower limits are inclusive and stay below
/// the upper ones, which are exclusive: a limit that is moved past the other one takes it along.
class CutCellVolumeDialog final : public QDialog
{
    Q_OBJECT

public:
    using CellTriple = Model::Automaton::CellTriple;
    /// Gets the limits that the dialog holds.
    using Preview = std::function<void(const CellTriple &lower, const CellTriple &upper)>;

    explicit CutCellVolumeDialog(QWidget *parent = nullptr);
    ~CutCellVolumeDialog() override;

    /// Opens the fields for a volume of these sizes and shows these limits. Limits that do not fit
    /// are taken as the nearest that do; in a direction without cells both are 0.
    void setLimits(const CellTriple &lower, const CellTriple &upper, const CellTriple &sizes);
    /// Called at each change of a limit while the user wants a preview.
    void setPreview(Preview preview);

    CellTriple lowerLimits() const;
    CellTriple upperLimits() const;

private Q_SLOTS:
    void on_sbxXLowerLimit_valueChanged(int limit);
    void on_sbxXUpperLimit_valueChanged(int limit);
    void on_sbxYLowerLimit_valueChanged(int limit);
    void on_sbxYUpperLimit_valueChanged(int limit);
    void on_sbxZLowerLimit_valueChanged(int limit);
    void on_sbxZUpperLimit_valueChanged(int limit);
    void on_btnReset_clicked();

private:
    void lowerChanged(int limit, QSpinBox &upper);
    void upperChanged(int limit, QSpinBox &lower);
    void showPreview() const;

    std::unique_ptr<CutCellVolumeBaseDialog> m_form;
    Preview m_preview;
};

} // namespace Ui::Operations
