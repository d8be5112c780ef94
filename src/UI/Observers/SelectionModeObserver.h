#pragma once

#include "Util/IObserver.h"

class QAction;

namespace Core {
class Selection;
}

namespace Ui::Observers {

/// Keeps the Select action checked as long as the selection mode is on, whoever changes it. Owns
/// neither.
class SelectionModeObserver final : public Util::IObserver
{
public:
    SelectionModeObserver(QAction *action, const Core::Selection *selection);

    void update() override;

private:
    QAction *m_action;
    const Core::Selection *m_selection;
};

} // namespace Ui::Observers
