#include "UI/Observers/PhotolithographyObserver.h"

#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/PhotolithographyDialog.h"

namespace Ui::Observers {

void PhotolithographyObserver::update()
{
    const auto operation = current<Core::Operations::PhotolithographyOperation>();
    if (!operation)
        return;
    Operations::PhotolithographyDialog dialog(operation.get(), dialogParent());
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    const auto &bottom = dialog.bottomMask();
    const auto &top = dialog.topMask();
    operation->setMaterial(dialog.material());
    operation->setBottomMask(bottom.bits, bottom.width, bottom.height);
    operation->setTopMask(top.bits, top.width, top.height);
    operation->end();
}

} // namespace Ui::Observers
