#include "UI/Observers/SpinCoatingObserver.h"

#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ProcessDialogs.h"
#include "UI/Operations/SpinCoatingOptionsDialog.h"

namespace Ui::Observers {

void SpinCoatingObserver::update()
{
    const auto operation = current<Core::Operations::SpinCoatingOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::spinCoatingDialog(operation->heightLimit(), dialogParent());
    if (!runModally(*dialog)) {
        operation->cancel();
        return;
    }
    operation->setMaterial(dialog->material());
    operation->setDepositionHeight(dialog->height());
    operation->end();
}

} // namespace Ui::Observers
