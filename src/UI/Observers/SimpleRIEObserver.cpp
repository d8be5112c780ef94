#include "UI/Observers/SimpleRIEObserver.h"

#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtchingOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ProcessDialogs.h"
#include "UI/Operations/SimpleRIEDialog.h"

namespace Ui::Observers {

void SimpleRIEObserver::update()
{
    const auto operation = current<Core::Operations::SimpleReactiveIonEtchingOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::simpleRieDialog(dialogParent());
    if (!runModally(*dialog)) {
        operation->cancel();
        return;
    }
    operation->setDepth(static_cast<double>(dialog->depth()));
    operation->setMaterial(dialog->material());
    operation->setEtchFromBelow(dialog->etchFromBelow());
    operation->setEtchFromTop(dialog->etchFromTop());
    operation->end();
}

} // namespace Ui::Observers
