#pragma once

#include "Util/IObserver.h"

class QWidget;

namespace Core {
class Workspace;
}

namespace Ui::Observers {

/// Asks for the substrate in a modal dialog and starts the waiting Create Substrate operation with
/// the answers, or cancels it. Owns neither the workspace nor the dialog's parent.
class CreateSubstrateObserver final : public Util::IObserver
{
public:
    CreateSubstrateObserver(Core::Workspace *workspace, QWidget *dialogParent);

    void update() override;

private:
    Core::Workspace *m_workspace;
    QWidget *m_dialogParent;
};

} // namespace Ui::Observers
