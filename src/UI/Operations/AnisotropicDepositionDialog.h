#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class AnisotropicDepositionBaseDialog;
}

namespace Ui::Operations {

/// Asks for the film of an anisotropic deposition.
class AnisotropicDepositionDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Offers the materials that are compatible with the process, which outlives the dialog. Its
    /// name makes the title.
    explicit AnisotropicDepositionDialog(const Model::Process::Process &process,
                                         QWidget *parent = nullptr);
    ~AnisotropicDepositionDialog() override;

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Drawing units.
    double thickness() const;
    /// How far the film grows sideways for each unit upward; above 0.
    double horizontalRatio() const;
    /// 1 on top, 2 on bottom, 3 on both sides.
    std::uint32_t depositionMode() const;

private:
    std::unique_ptr<AnisotropicDepositionBaseDialog> m_form;
    const Model::Process::Process &m_process;
};

} // namespace Ui::Operations
