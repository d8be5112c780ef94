#include "UI/Observers/BatchRunObserver.h"

#include "Core/Operations/SelectVolumesOperation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/BatchRun/RunProcessesDialog.h"
#include "UI/MainWindow.h"
#include "UI/ModalDialog.h"

#include <QDebug>
#include <QMetaObject>

#include <boost/pointer_cast.hpp>

#include <exception>

namespace Ui::Observers {

BatchRunObserver::BatchRunObserver(Core::Workspace *workspace, MainWindow *window)
    : OptionsObserver(workspace, window),
      m_workspace(workspace),
      m_window(window)
{}

void BatchRunObserver::update()
{
    const auto operation = current<Core::Operations::SelectVolumesOperation>();
    if (!operation)
        return;
    RunProcessesDialog dialog(m_window, operation->volume(), m_workspace);
    runModally(dialog);
    // A dialog that the end of the program takes away may leave a run behind.
    dialog.endRun();
    m_window->makeViewCurrent();
    for (const auto &object : m_workspace->document().objects()) {
        if (const auto volume =
                boost::dynamic_pointer_cast<Model::Automaton::TotalVolume>(object)) {
            volume->clearTopMask();
            volume->clearBottomMask();
            // A list may have made a volume that leaves no memory for its surfaces.
            try {
                volume->painter().rebuild();
            } catch (const std::exception &error) {
                qDebug() << "No surfaces:" << error.what();
            }
        }
    }
    // Queued: the window is deleted as it closes, and the operation has yet to end.
    if (dialog.isWindowLeaving())
        QMetaObject::invokeMethod(m_window, "close", Qt::QueuedConnection);
}

} // namespace Ui::Observers
