#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class IonImplantationOptionsBaseDialog;
}

namespace Ui::Operations {

/// Asks for the lengths of an ion implantation and for what the implanted cells become.
class IonImplantationOptionsDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Offers the materials that are compatible with the process, which outlives the dialog.
    explicit IonImplantationOptionsDialog(const Model::Process::Process &process,
                                          QWidget *parent = nullptr);
    ~IonImplantationOptionsDialog() override;

    /// What the cells become; 0 with no material to choose.
    std::uint32_t material() const;
    /// Drawing units, both.
    double implantationDepth() const;
    double annealingDistance() const;

private:
    std::unique_ptr<IonImplantationOptionsBaseDialog> m_form;
    const Model::Process::Process &m_process;
};

} // namespace Ui::Operations
