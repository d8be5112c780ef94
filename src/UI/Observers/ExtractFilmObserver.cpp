#include "UI/Observers/ExtractFilmObserver.h"

#include "Core/Operations/ExtractFilm/ExtractFilm.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/ExtractFilmDialog.h"

namespace Ui::Observers {

void ExtractFilmObserver::update()
{
    const auto operation = current<Core::Operations::ExtractFilm>();
    if (!operation)
        return;
    Operations::ExtractFilmDialog dialog(dialogParent());
    dialog.setMaterials(Model::Materials::MaterialFactory::instance()->materials());
    if (!runModally(dialog)) {
        operation->cancel();
        return;
    }
    operation->setFilm(dialog.film());
    operation->setInvert(dialog.invertsFilm());
    operation->end();
}

} // namespace Ui::Observers
