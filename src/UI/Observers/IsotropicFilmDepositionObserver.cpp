#include "UI/Observers/IsotropicFilmDepositionObserver.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicDepositionDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void IsotropicFilmDepositionObserver::update()
{
    const auto operation = current<Core::Operations::IsotropicFilmDepositionOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::cvdDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setThickness(static_cast<float>(dialog->thickness()));
    operation->setMaterial(dialog->material());
    operation->end();
}

} // namespace Ui::Observers
