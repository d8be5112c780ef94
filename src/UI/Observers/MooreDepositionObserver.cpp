#include "UI/Observers/MooreDepositionObserver.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"
#include "UI/Observers/MooreLayers.h"

#include <QString>

namespace Ui::Observers {

void MooreDepositionObserver::update()
{
    if (const auto operation = current<Core::Operations::MooreNeighborhoodDepositionOperation>())
        askForMooreLayers(*operation, QStringLiteral("Film Thickness"), dialogParent());
}

} // namespace Ui::Observers
