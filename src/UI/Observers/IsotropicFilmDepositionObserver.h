#pragma once

#include "Util/IObserver.h"

class QWidget;

namespace Core {
class Workspace;
}

namespace Ui::Observers {

/// Asks for the values of an isotropic deposition in a modal dialog and runs it. A rejected dialog
/// leaves the operation current. Owns neither the workspace nor the dialog's parent.
class IsotropicFilmDepositionObserver final : public Util::IObserver
{
public:
    IsotropicFilmDepositionObserver(Core::Workspace *workspace, QWidget *dialogParent);

    void update() override;

private:
    Core::Workspace *m_workspace;
    QWidget *m_dialogParent;
};

} // namespace Ui::Observers
