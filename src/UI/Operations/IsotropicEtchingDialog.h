#pragma once

#include "Model/Process/Process.h"

#include <QDialog>

#include <cstdint>
#include <memory>

namespace Ui {
class IsotropicEtchingForm;
}

namespace Ui::Operations {

/// Asks for the material and the depth of an isotropic etching.
class IsotropicEtchingDialog final : public QDialog
{
    Q_OBJECT

public:
    /// Offers the materials that are compatible with the process, which outlives the dialog. Its
    /// name makes the title.
    explicit IsotropicEtchingDialog(const Model::Process::Process &process,
                                    QWidget *parent = nullptr);
    ~IsotropicEtchingDialog() override;

    /// 0 with no material to choose.
    std::uint32_t material() const;
    /// Drawing units.
    double thickness() const;

private:
    std::unique_ptr<IsotropicEtchingForm> m_form;
    const Model::Process::Process &m_process;
};

} // namespace Ui::Operations
