#include "UI/Observers/CVDObserver.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDepositionOperation.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/AnisotropicDepositionDialog.h"

namespace Ui::Observers {

void CVDObserver::update()
{
    const auto operation = current<Core::Operations::AnisotropicFilmDepositionOperation>();
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(QStringLiteral("PVD"));
    Operations::AnisotropicDepositionDialog dialog(process, dialogParent());
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->setHorizontalRatio(static_cast<float>(dialog.horizontalRatio()));
    operation->setDepositionMode(dialog.depositionMode());
    operation->end();
}

} // namespace Ui::Observers
