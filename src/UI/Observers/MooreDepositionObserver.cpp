#include "UI/Observers/MooreDepositionObserver.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"
#include "UI/Observers/MooreLayers.h"
#include "UI/Operations/MooreOptionsDialog.h"
#include "UI/Operations/ProcessDialogs.h"

namespace Ui::Observers {

void MooreDepositionObserver::update()
{
    if (const auto operation = current<Core::Operations::MooreNeighborhoodDepositionOperation>())
        askForMooreLayers(*operation, *Operations::mooreDepositionDialog(dialogParent()));
}

} // namespace Ui::Observers
