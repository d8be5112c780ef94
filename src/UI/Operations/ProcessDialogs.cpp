#include "UI/Operations/ProcessDialogs.h"

#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/Operations/AnisotropicDepositionDialog.h"
#include "UI/Operations/CreateSubstrateDialog.h"
#include "UI/Operations/DopingOptionsDialog.h"
#include "UI/Operations/ElectrodepositionDialog.h"
#include "UI/Operations/IonImplantationOptionsDialog.h"
#include "UI/Operations/IsotropicDepositionDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"
#include "UI/Operations/MooreOptionsDialog.h"
#include "UI/Operations/PhotolithographyDialog.h"
#include "UI/Operations/SimpleRIEDialog.h"
#include "UI/Operations/SpinCoatingOptionsDialog.h"

#include <QString>

namespace Ui::Operations {

namespace {

/// A dialog that offers all materials.
template <typename Dialog, typename... Arguments>
std::unique_ptr<Dialog> withAllMaterials(const Arguments &...arguments)
{
    auto dialog = std::make_unique<Dialog>(arguments...);
    dialog->setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    return dialog;
}

std::unique_ptr<MooreOptionsDialog> mooreDialog(const QString &valueLabel, QWidget *parent)
{
    auto dialog = withAllMaterials<MooreOptionsDialog>(parent);
    dialog->setValueLabel(valueLabel);
    return dialog;
}

} // namespace

template <typename Dialog>
RegisteredProcessDialog<Dialog>::RegisteredProcessDialog(const char *processName, QWidget *parent)
    : m_process(Model::Process::ProcessFactory::instance()->processByName(
          QString::fromLatin1(processName))),
      m_dialog(std::make_unique<Dialog>(m_process, parent))
{}

template <typename Dialog>
RegisteredProcessDialog<Dialog>::~RegisteredProcessDialog() = default;

template class RegisteredProcessDialog<AnisotropicDepositionDialog>;
template class RegisteredProcessDialog<DopingOptionsDialog>;
template class RegisteredProcessDialog<IonImplantationOptionsDialog>;
template class RegisteredProcessDialog<IsotropicDepositionDialog>;
template class RegisteredProcessDialog<IsotropicEtchingDialog>;

RegisteredProcessDialog<IsotropicDepositionDialog> cvdDialog(QWidget *parent)
{
    return {"CVD", parent};
}

RegisteredProcessDialog<AnisotropicDepositionDialog> pvdDialog(QWidget *parent)
{
    return {"PVD", parent};
}

RegisteredProcessDialog<IsotropicEtchingDialog> isotropicEtchingDialog(QWidget *parent)
{
    return {"Isotropic Etching", parent};
}

RegisteredProcessDialog<DopingOptionsDialog> dopingDialog(QWidget *parent)
{
    return {"Simple Doping", parent};
}

RegisteredProcessDialog<IonImplantationOptionsDialog> ionImplantationDialog(QWidget *parent)
{
    return {"Ion Implantation", parent};
}

std::unique_ptr<CreateSubstrateDialog> createSubstrateDialog(QWidget *parent)
{
    return withAllMaterials<CreateSubstrateDialog>(parent);
}

std::unique_ptr<ElectrodepositionDialog> electroplatingDialog(QWidget *parent)
{
    return withAllMaterials<ElectrodepositionDialog>(parent);
}

std::unique_ptr<MooreOptionsDialog> mooreDepositionDialog(QWidget *parent)
{
    return mooreDialog(QStringLiteral("Film Thickness"), parent);
}

std::unique_ptr<MooreOptionsDialog> mooreEtchingDialog(QWidget *parent)
{
    return mooreDialog(QStringLiteral("Etch Depth"), parent);
}

std::unique_ptr<PhotolithographyDialog>
photolithographyDialog(Core::Operations::PhotolithographyOperation *operation, QWidget *parent)
{
    return withAllMaterials<PhotolithographyDialog>(operation, parent);
}

std::unique_ptr<PhotolithographyDialog> photolithographyDialog(MaskReceiver *receiver,
                                                               QWidget *parent)
{
    return withAllMaterials<PhotolithographyDialog>(receiver, parent);
}

std::unique_ptr<SimpleRIEDialog> simpleRieDialog(QWidget *parent)
{
    return withAllMaterials<SimpleRIEDialog>(parent);
}

std::unique_ptr<SpinCoatingOptionsDialog> spinCoatingDialog(std::uint32_t maximumHeight,
                                                            QWidget *parent)
{
    auto dialog = withAllMaterials<SpinCoatingOptionsDialog>(parent);
    dialog->setMaximumHeight(maximumHeight);
    return dialog;
}

} // namespace Ui::Operations
