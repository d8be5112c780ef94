#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui {
class MainWindow;
}

namespace Ui::Observers {

/// Runs the batch dialog on the volume that was selected, or on none. When it is closed, no volume
/// of the document shows masks any more, and all have surfaces of their present cells.
class BatchRunObserver final : public OptionsObserver
{
public:
    /// The window owns the workspace.
    BatchRunObserver(Core::Workspace *workspace, MainWindow *window);

    void update() override;

private:
    Core::Workspace *m_workspace;
    MainWindow *m_window;
};

} // namespace Ui::Observers
