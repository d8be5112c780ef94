#include "UI/Observers/DopingOptionsObserver.h"

#include "Core/Operations/SimpleDoping/DopingOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/DopingOptionsDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void DopingOptionsObserver::update()
{
    const auto operation = current<Core::Operations::DopingOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::dopingDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setDepth(static_cast<float>(dialog->depth()));
    operation->setMaterial(dialog->material());
    operation->end();
}

} // namespace Ui::Observers
