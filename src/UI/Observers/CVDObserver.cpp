#include "UI/Observers/CVDObserver.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDepositionOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/AnisotropicDepositionDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void CVDObserver::update()
{
    const auto operation = current<Core::Operations::AnisotropicFilmDepositionOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::pvdDialog(dialogParent());
    if (!runModally(*dialog))
        return;
    operation->setThickness(static_cast<float>(dialog->thickness()));
    operation->setMaterial(dialog->material());
    operation->setHorizontalRatio(static_cast<float>(dialog->horizontalRatio()));
    operation->setDepositionMode(dialog->depositionMode());
    operation->end();
}

} // namespace Ui::Observers
