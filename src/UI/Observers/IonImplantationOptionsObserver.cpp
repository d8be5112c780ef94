#include "UI/Observers/IonImplantationOptionsObserver.h"

#include "Core/Operations/IonImplantation/IonImplantationOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IonImplantationOptionsDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void IonImplantationOptionsObserver::update()
{
    const auto operation = current<Core::Operations::IonImplantationOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::ionImplantationDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setAnnealingDistance(static_cast<float>(dialog->annealingDistance()));
    operation->setImplantationDepth(static_cast<float>(dialog->implantationDepth()));
    operation->setMaterial(dialog->material());
    operation->end();
}

} // namespace Ui::Observers
