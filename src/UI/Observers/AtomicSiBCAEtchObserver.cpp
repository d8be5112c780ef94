#include "UI/Observers/AtomicSiBCAEtchObserver.h"

#include "Core/Operations/SiEtching/AtomisticSiWetEtchingOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/BCAEtchingDialog.h"

namespace Ui::Observers {

void AtomicSiBCAEtchObserver::update()
{
    const auto operation = current<Core::Operations::AtomisticSiWetEtchingOperation>();
    if (!operation)
        return;
    Operations::BCAEtchingDialog dialog(dialogParent());
    if (!runModally(dialog))
        return;
    operation->setDepth(dialog.depth());
    operation->end();
}

} // namespace Ui::Observers
