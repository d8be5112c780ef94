#include "UI/Observers/IsotropicFilmEtchingObserver.h"

#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void IsotropicFilmEtchingObserver::update()
{
    const auto operation = current<Core::Operations::IsotropicFilmEtchingOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::isotropicEtchingDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setThickness(static_cast<float>(dialog->thickness()));
    operation->setMaterial(dialog->material());
    operation->end();
}

} // namespace Ui::Observers
