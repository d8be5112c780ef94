#include "UI/Observers/GlueSubstrateObserver.h"

#include "Core/Operations/GlueSubstrate/GlueSubstrateOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/GlueSubstrateDialog.h"

namespace Ui::Observers {

void GlueSubstrateObserver::update()
{
    const auto operation = current<Core::Operations::GlueSubstrateOperation>();
    if (!operation)
        return;
    Operations::GlueSubstrateDialog dialog(operation->minimumX(), operation->minimumY(),
                                           operation->minimumZ(), operation->maximumDisplacementX(),
                                           operation->maximumDisplacementY(), dialogParent());
    if (!runModally(dialog))
        return;
    operation->setFinalSize(dialog.finalX(), dialog.finalY(), dialog.finalZ());
    operation->setDisplacement(dialog.displacementX(), dialog.displacementY());
    operation->setInvertTop(dialog.invertsTop());
    operation->end();
}

} // namespace Ui::Observers
