#include "UI/Observers/SiOxidationObserver.h"

#include "Core/Operations/SiOxidation/SimpleSiOxidationOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/SimpleOxidationOptionsDialog.h"

namespace Ui::Observers {

void SiOxidationObserver::update()
{
    const auto operation = current<Core::Operations::SimpleSiOxidationOperation>();
    if (!operation)
        return;
    Operations::SimpleOxidationOptionsDialog dialog(dialogParent());
    if (!runModally(dialog))
        return;
    operation->setCellUnitsPerMicron(dialog.cellUnitsPerMicron());
    if (dialog.isTimeChosen()) {
        operation->setTime(dialog.time());
        operation->setPressure(dialog.pressure());
        operation->setTemperature(dialog.temperature());
    } else {
        operation->setThickness(dialog.thickness());
    }
    operation->end();
}

} // namespace Ui::Observers
