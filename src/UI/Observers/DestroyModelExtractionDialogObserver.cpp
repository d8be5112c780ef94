#include "UI/Observers/DestroyModelExtractionDialogObserver.h"

namespace Ui::Observers {

void DestroyModelExtractionDialogObserver::update()
{
    if (m_dialog)
        m_dialog->close();
}

} // namespace Ui::Observers
