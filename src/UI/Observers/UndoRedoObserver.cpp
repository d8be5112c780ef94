#include "UI/Observers/UndoRedoObserver.h"

namespace Ui::Observers {

UndoRedoObserver::UndoRedoObserver() = default;

void UndoRedoObserver::update()
{
    Q_EMIT stackChanged();
}

} // namespace Ui::Observers
