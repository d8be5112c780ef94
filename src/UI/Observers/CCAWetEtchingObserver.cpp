#include "UI/Observers/CCAWetEtchingObserver.h"

#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/BCAEtchingDialog.h"

namespace Ui::Observers {

void CCAWetEtchingObserver::update()
{
    const auto operation = current<Core::Operations::ContinousWetEtchOperation>();
    if (!operation)
        return;
    Operations::BCAEtchingDialog dialog(dialogParent());
    if (!runModally(dialog))
        return;
    operation->setDepth(dialog.depth());
    operation->end();
}

} // namespace Ui::Observers
