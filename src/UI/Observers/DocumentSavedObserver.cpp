#include "UI/Observers/DocumentSavedObserver.h"

#include "UI/MainWindow.h"

namespace Ui::Observers {

DocumentSavedObserver::DocumentSavedObserver(MainWindow *window) : m_window(window) {}

void DocumentSavedObserver::update()
{
    m_window->setWindowTitle(QStringLiteral("Lithara  ") +
                             m_window->presenter().document().fileName());
}

} // namespace Ui::Observers
