#include "UI/Observers/MooreEtchingObserver.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"
#include "UI/Observers/MooreLayers.h"

#include <QString>

namespace Ui::Observers {

void MooreEtchingObserver::update()
{
    if (const auto operation = current<Core::Operations::MooreNeighborhoodEtchingOperation>())
        askForMooreLayers(*operation, QStringLiteral("Etch Depth"), dialogParent());
}

} // namespace Ui::Observers
