#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class DopingOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for the depth of a doping and for what the doped cells become.
class DopingOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Offers the materials that are compatible with the process, which outlives the dialog.
    explicit DopingOptionsDialog(const Model::Process::Process &process, QWidget *parent = nullptr);
    ~DopingOptionsDialog() override;

    /// What the cells become; 0 with no material to choose.
    std::uint32_t material() const;
    /// Drawing units.
    double depth() const;

private:
    std::unique_ptr<DopingOptionsBaseDialog> m_form;
    const Model::Process::Process &m_process;
};

} // namespace Ui::Operations
