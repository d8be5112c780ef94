#include "UI/Observers/PlanarizationObserver.h"

#include "Core/Operations/Planarization/PlanarizationOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/PlanarizationOptionsDialog.h"

namespace Ui::Observers {

void PlanarizationObserver::update()
{
    const auto operation = current<Core::Operations::PlanarizationOperation>();
    if (!operation)
        return;
    Operations::PlanarizationOptionsDialog dialog(operation->volumeHeight(), dialogParent());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    operation->setMaximumHeight(dialog.maximumHeight());
    operation->setMinimumHeight(dialog.minimumHeight());
    operation->end();
}

} // namespace Ui::Observers
