#include "UI/Observers/MooreLayers.h"

#include "Core/Operations/MooreNeighborhood/MooreProcessOperation.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/MooreOptionsDialog.h"

namespace Ui::Observers {

void askForMooreLayers(Core::Operations::MooreProcessOperation &operation,
                       const QString &valueLabel, QWidget *dialogParent)
{
    Operations::MooreOptionsDialog dialog(dialogParent);
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    dialog.setValueLabel(valueLabel);
    if (!runModally(dialog)) {
        operation.cancel();
        return;
    }
    operation.setMaterial(dialog.material());
    operation.setSteps(dialog.steps());
    operation.end();
}

} // namespace Ui::Observers
