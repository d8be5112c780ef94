#include "UI/Observers/PhotolithographyObserver.h"

#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/PhotolithographyDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void PhotolithographyObserver::update()
{
    const auto operation = current<Core::Operations::PhotolithographyOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::photolithographyDialog(operation.get(), dialogParent());
    if (!runModally(*dialog)) {
        operation->cancel();
        return;
    }
    const auto &bottom = dialog->bottomMask();
    const auto &top = dialog->topMask();
    operation->setMaterial(dialog->material());
    operation->setBottomMask(bottom.bits, bottom.width, bottom.height);
    operation->setTopMask(top.bits, top.width, top.height);
    operation->end();
}

} // namespace Ui::Observers
