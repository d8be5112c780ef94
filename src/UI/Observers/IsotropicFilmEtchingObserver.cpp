#include "UI/Observers/IsotropicFilmEtchingObserver.h"

#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"

namespace Ui::Observers {

void IsotropicFilmEtchingObserver::update()
{
    const auto operation = current<Core::Operations::IsotropicFilmEtchingOperation>();
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(
            QStringLiteral("Isotropic Etching"));
    Operations::IsotropicEtchingDialog dialog(process, dialogParent());
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
