#pragma once

#include "Model/Process/Process.h"

#include <cstdint>
#include <memory>

class QWidget;

namespace Core::Operations {
class PhotolithographyOperation;
}

/// The dialogs of the processes, ready to be run: with labels and limits, and with the materials
/// that the registries hold at that moment. Observers of operations and batch lists open them here.
namespace Ui::Operations {

class AnisotropicDepositionDialog;
class CreateSubstrateDialog;
class DopingOptionsDialog;
class ElectrodepositionDialog;
class IonImplantationOptionsDialog;
class IsotropicDepositionDialog;
class IsotropicEtchingDialog;
class MaskReceiver;
class MooreOptionsDialog;
class PhotolithographyDialog;
class SimpleRIEDialog;
class SpinCoatingOptionsDialog;

/// A dialog together with the process of the registry that it refers to.
template <typename Dialog>
class RegisteredProcessDialog final
{
public:
    /// The process is taken from the registry by its name.
    RegisteredProcessDialog(const char *processName, QWidget *parent);
    ~RegisteredProcessDialog();
    RegisteredProcessDialog(const RegisteredProcessDialog &) = delete;
    RegisteredProcessDialog &operator=(const RegisteredProcessDialog &) = delete;

    Dialog &operator*() const { return *m_dialog; }
    Dialog *operator->() const { return m_dialog.get(); }

private:
    Model::Process::Process m_process;
    std::unique_ptr<Dialog> m_dialog;
};

RegisteredProcessDialog<IsotropicDepositionDialog> cvdDialog(QWidget *parent);
RegisteredProcessDialog<AnisotropicDepositionDialog> pvdDialog(QWidget *parent);
RegisteredProcessDialog<IsotropicEtchingDialog> isotropicEtchingDialog(QWidget *parent);
RegisteredProcessDialog<DopingOptionsDialog> dopingDialog(QWidget *parent);
RegisteredProcessDialog<IonImplantationOptionsDialog> ionImplantationDialog(QWidget *parent);

std::unique_ptr<CreateSubstrateDialog> createSubstrateDialog(QWidget *parent);
std::unique_ptr<ElectrodepositionDialog> electroplatingDialog(QWidget *parent);
std::unique_ptr<MooreOptionsDialog> mooreDepositionDialog(QWidget *parent);
std::unique_ptr<MooreOptionsDialog> mooreEtchingDialog(QWidget *parent);
/// The operation, and the receiver, outlive the dialog.
std::unique_ptr<PhotolithographyDialog>
photolithographyDialog(Core::Operations::PhotolithographyOperation *operation, QWidget *parent);
std::unique_ptr<PhotolithographyDialog> photolithographyDialog(MaskReceiver *receiver,
                                                               QWidget *parent);
std::unique_ptr<SimpleRIEDialog> simpleRieDialog(QWidget *parent);
/// `maximumHeight` in layers of cells.
std::unique_ptr<SpinCoatingOptionsDialog> spinCoatingDialog(std::uint32_t maximumHeight,
                                                            QWidget *parent);

} // namespace Ui::Operations
