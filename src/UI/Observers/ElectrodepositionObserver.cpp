#include "UI/Observers/ElectrodepositionObserver.h"

#include "Core/Operations/Electrodeposition/ElectrodepositionOperation.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ElectrodepositionDialog.h"

namespace Ui::Observers {

void ElectrodepositionObserver::update()
{
    const auto operation = current<Core::Operations::ElectrodepositionOperation>();
    if (!operation)
        return;
    Operations::ElectrodepositionDialog dialog(dialogParent());
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->setConductingMaterial(dialog.conductingMaterial());
    operation->end();
}

} // namespace Ui::Observers
