#include "UI/Observers/DopingOptionsObserver.h"

#include "Core/Operations/SimpleDoping/DopingOperation.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/DopingOptionsDialog.h"

namespace Ui::Observers {

void DopingOptionsObserver::update()
{
    const auto operation = current<Core::Operations::DopingOperation>();
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(QStringLiteral("Simple Doping"));
    Operations::DopingOptionsDialog dialog(process, dialogParent());
    if (!runModally(dialog))
        return;
    operation->setDepth(static_cast<float>(dialog.depth()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
