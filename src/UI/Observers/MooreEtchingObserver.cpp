#include "UI/Observers/MooreEtchingObserver.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"
#include "UI/Observers/MooreLayers.h"
#include "UI/Operations/MooreOptionsDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void MooreEtchingObserver::update()
{
    if (const auto operation = current<Core::Operations::MooreNeighborhoodEtchingOperation>())
        askForMooreLayers(*operation, *Operations::mooreEtchingDialog(dialogParent()));
}

} // namespace Ui::Observers
