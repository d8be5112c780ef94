#include "UI/Observers/CutCellVolumeObserver.h"

#include "Core/Operations/Visualization/CutCellVolumeOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/CutCellVolumeDialog.h"

namespace Ui::Observers {

using Model::Automaton::CellTriple;

void CutCellVolumeObserver::update()
{
    const auto operation = current<Core::Operations::CutCellVolumeOperation>();
    if (!operation)
        return;
    CellTriple lower{};
    CellTriple upper{};
    CellTriple sizes{};
    if (!operation->limits(lower, upper, sizes))
        return;
    Operations::CutCellVolumeDialog dialog(dialogParent());
    dialog.setLimits(lower, upper, sizes);
    dialog.setPreview([&](const CellTriple &shownLower, const CellTriple &shownUpper) {
        makeViewCurrent(dialogParent());
        operation->setLimits(shownLower, shownUpper, true);
    });
    if (!runModally(dialog)) {
        operation->setLimits(lower, upper, true);
        operation->cancel();
        return;
    }
    operation->setLimits(dialog.lowerLimits(), dialog.upperLimits(), true);
    operation->end();
}

} // namespace Ui::Observers
