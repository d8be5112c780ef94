#include "UI/Observers/CreateSubstrateObserver.h"

#include "Core/Operations/CreateSubstrateOperation.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/CreateSubstrateDialog.h"
#include "UI/Operations/ProcessDialogs.h"

#include <cstdint>

namespace Ui::Observers {

void CreateSubstrateObserver::update()
{
    const auto operation = current<Core::Operations::CreateSubstrateOperation>();
    if (!operation)
        return;
    const auto dialog = Operations::createSubstrateDialog(dialogParent());
    if (!runModally(*dialog)) {
        operation->cancel();
        return;
    }
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t z = 0;
    if (dialog->isSpherical()) {
        dialog->center(x, y, z);
        operation->setSphericalSubstrate(dialog->material(), dialog->totalX(), dialog->totalY(),
                                         dialog->totalZ(), dialog->position(), x, y, z,
                                         dialog->radius());
    } else {
        dialog->displacement(x, y, z);
        operation->setBoxSubstrate(dialog->material(), dialog->totalX(), dialog->totalY(),
                                   dialog->totalZ(), dialog->position(), x, y, z, dialog->sizeX(),
                                   dialog->sizeY(), dialog->sizeZ());
    }
    operation->next();
}

} // namespace Ui::Observers
