#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class IsotropicDepositionForm;
}

namespace Ui::Operations {

/// Asks for the film of an isotropic deposition.
class IsotropicDepositionDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Offers the materials that are compatible with the process, which outlives the dialog.
    explicit IsotropicDepositionDialog(const Model::Process::Process &process,
                                       QWidget *parent = nullptr);
    ~IsotropicDepositionDialog() override;

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Drawing units.
    double thickness() const;

private:
    std::unique_ptr<IsotropicDepositionForm> m_form;
    const Model::Process::Process &m_process;
};

} // namespace Ui::Operations
