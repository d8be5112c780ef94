#include "UI/Observers/ChangeTotalVolumeViewOptionsObserver.h"

#include "Core/Operations/Visualization/ChangeTotalVolumeVisualizationOptions.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ChangeVolumeVisualizationDialog.h"

namespace Ui::Observers {

void ChangeTotalVolumeViewOptionsObserver::update()
{
    const auto operation = current<Core::Operations::ChangeTotalVolumeVisualizationOptions>();
    if (!operation)
        return;
    const auto registry = Model::Materials::MaterialFactory::instance();
    Operations::ChangeVolumeVisualizationDialog dialog(dialogParent());
    dialog.setMaterials(registry->materials());
    dialog.setOptions(operation->options());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    for (const auto &[id, color] : dialog.colors()) {
        Model::Materials::Material material = registry->material(id);
        material.setColor(color.data());
        registry->updateMaterial(material);
    }
    operation->setOptions(dialog.options());
    operation->next();
}

} // namespace Ui::Observers
