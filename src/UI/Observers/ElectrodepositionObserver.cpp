#include "UI/Observers/ElectrodepositionObserver.h"

#include "Core/Operations/Electrodeposition/ElectrodepositionOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ElectrodepositionDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void ElectrodepositionObserver::update()
{
    const auto operation = current<Core::Operations::ElectrodepositionOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::electroplatingDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setThickness(static_cast<float>(dialog->thickness()));
    operation->setMaterial(dialog->material());
    operation->setConductingMaterial(dialog->conductingMaterial());
    operation->end();
}

} // namespace Ui::Observers
