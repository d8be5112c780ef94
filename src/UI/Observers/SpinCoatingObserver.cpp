#include "UI/Observers/SpinCoatingObserver.h"

#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/SpinCoatingOptionsDialog.h"

namespace Ui::Observers {

void SpinCoatingObserver::update()
{
    const auto operation = current<Core::Operations::SpinCoatingOperation>();
    if (!operation)
        return;
    Operations::SpinCoatingOptionsDialog dialog(dialogParent());
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    dialog.setMaximumHeight(operation->heightLimit());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    operation->setMaterial(dialog.material());
    operation->setDepositionHeight(dialog.height());
    operation->end();
}

} // namespace Ui::Observers
