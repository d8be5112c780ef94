#include "UI/Observers/MooreLayers.h"

#include "Core/Operations/MooreNeighborhood/MooreProcessOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/MooreOptionsDialog.h"

namespace Ui::Observers {

void askForMooreLayers(Core::Operations::MooreProcessOperation &operation,
                       Operations::MooreOptionsDialog &dialog)
{
    if (!runModally(dialog)) {
        operation.cancel();
        return;
    }
    operation.setMaterial(dialog.material());
    operation.setSteps(dialog.steps());
    operation.end();
}

} // namespace Ui::Observers
