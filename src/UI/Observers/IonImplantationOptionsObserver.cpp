#include "UI/Observers/IonImplantationOptionsObserver.h"

#include "Core/Operations/IonImplantation/IonImplantationOperation.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IonImplantationOptionsDialog.h"

namespace Ui::Observers {

void IonImplantationOptionsObserver::update()
{
    const auto operation = current<Core::Operations::IonImplantationOperation>();
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(
            QStringLiteral("Ion Implantation"));
    Operations::IonImplantationOptionsDialog dialog(process, dialogParent());
    if (!runModally(dialog))
        return;
    operation->setAnnealingDistance(static_cast<float>(dialog.annealingDistance()));
    operation->setImplantationDepth(static_cast<float>(dialog.implantationDepth()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
