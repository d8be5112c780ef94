#pragma once

#include "Util/IObserver.h"

class QWidget;

namespace Core {
class Workspace;
}

namespace Ui::Observers {

/// Asks for the values of an isotropic etching in a modal dialog and runs it. A rejected dialog
/// leaves the operation current. Owns neither the workspace nor the dialog's parent.
class IsotropicFilmEtchingObserver final : public Util::IObserver
{
public:
    IsotropicFilmEtchingObserver(Core::Workspace *workspace, QWidget *dialogParent);

    void update() override;

private:
    Core::Workspace *m_workspace;
    QWidget *m_dialogParent;
};

} // namespace Ui::Observers
