#include "UI/Observers/IsotropicFilmDepositionObserver.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicDepositionDialog.h"

namespace Ui::Observers {

void IsotropicFilmDepositionObserver::update()
{
    const auto operation = current<Core::Operations::IsotropicFilmDepositionOperation>();
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(QStringLiteral("CVD"));
    Operations::IsotropicDepositionDialog dialog(process, dialogParent());
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
