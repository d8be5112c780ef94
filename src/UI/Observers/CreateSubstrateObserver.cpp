#include "UI/Observers/CreateSubstrateObserver.h"

#include "Core/Operations/CreateSubstrateOperation.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/CreateSubstrateDialog.h"

#include <cstdint>

namespace Ui::Observers {

void CreateSubstrateObserver::update()
{
    const auto operation = current<Core::Operations::CreateSubstrateOperation>();
    if (!operation)
        return;
    Operations::CreateSubstrateDialog dialog(dialogParent());
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t z = 0;
    if (dialog.isSpherical()) {
        dialog.center(x, y, z);
        operation->setSphericalSubstrate(dialog.material(), dialog.totalX(), dialog.totalY(),
                                         dialog.totalZ(), dialog.position(), x, y, z,
                                         dialog.radius());
    } else {
        dialog.displacement(x, y, z);
        operation->setBoxSubstrate(dialog.material(), dialog.totalX(), dialog.totalY(),
                                   dialog.totalZ(), dialog.position(), x, y, z, dialog.sizeX(),
                                   dialog.sizeY(), dialog.sizeZ());
    }
    operation->next();
}

} // namespace Ui::Observers
