#include "UI/Observers/SelectionModeObserver.h"

#include "Core/Selection.h"

#include <QAction>

namespace Ui::Observers {

SelectionModeObserver::SelectionModeObserver(QAction *action, const Core::Selection *selection)
    : m_action(action),
      m_selection(selection)
{}

void SelectionModeObserver::update()
{
    m_action->setChecked(m_selection->isSelectionMode());
}

} // namespace Ui::Observers
