#pragma once

#include "UI/BatchRun/ProcessData.h"
#include "UI/Operations/MaskReceiver.h"

#include <QDialog>
#include <QFuture>
#include <QMutex>
#include <QTimer>

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Core {
class Workspace;
}
namespace Core::Operations {
class SubstrateBuilder;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Ui {

class MainWindow;
class RunProcessesBaseDialog;

/// Composes a list of process steps and runs it on a cell volume, on a worker thread. While a run is
/// under way the dialog stays open, and the list may be changed: the worker has a copy of its own.
///
/// All functions but createVolume() are called on the thread of the dialog.
class RunProcessesDialog final : public QDialog, public Operations::MaskReceiver
{
    Q_OBJECT

public:
    /// Window and workspace are not owned; the window owns the workspace. The volume may be empty:
    /// a step of the list can create one.
    RunProcessesDialog(MainWindow *window,
                       const boost::shared_ptr<Model::Automaton::TotalVolume> &volume,
                       Core::Workspace *workspace);
    /// As endRun().
    ~RunProcessesDialog() override;

    /// Over and under the volume, if there is one; the view follows at once.
    void showBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                        std::uint32_t height) override;
    void showTopMask(const std::vector<bool> &bits, std::uint32_t width,
                     std::uint32_t height) override;

    /// Builds a volume, which the dialog and the document have from then on. Empty if there is no
    /// memory for it; then nothing has changed. Volumes come to life with an OpenGL context, so a
    /// worker that calls this waits for the dialog's thread.
    boost::shared_ptr<Model::Automaton::TotalVolume>
    createVolume(Core::Operations::SubstrateBuilder &builder);

    /// Returns when no run is under way: a worker finishes the step that it is at, with the picture
    /// or the volume that it waits for, and leaves the rest of its list.
    void endRun();

    /// Whether someone tried to close the window while this dialog was open. The window is kept
    /// until the dialog is gone; the dialog leaves as soon as a run allows it.
    bool isWindowLeaving() const { return m_windowLeaving; }

public Q_SLOTS:
    void on_btnAddProcess_clicked();
    void on_btnClose_clicked();
    void on_btnRun_clicked();
    void on_btnRemoveProcess_clicked();
    void on_btnMoveUp_clicked();
    void on_btnMoveDown_clicked();
    /// A name without a suffix gets that of process lists.
    void on_btnSaveList_clicked();
    void on_btnLoadList_clicked();
    /// Only steps stay selected, not their parameters.
    void selectionChanged();
    /// Shows how far a run is, and what it made of the volume when it is over.
    void updateProgress();
    /// Builds and shows the volume as it is now, and saves the picture if there is a name. On the
    /// dialog's thread: a worker calls it through a blocking queued connection.
    void updateGeometry(const QString &filename);

    /// Nothing during a run.
    void reject() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// On the worker thread.
    void runProcesses(const std::vector<ProcessData> &steps);
    /// On the dialog's thread, while a worker waits. Lets no exception out.
    boost::shared_ptr<Model::Automaton::TotalVolume>
    addVolume(Core::Operations::SubstrateBuilder &builder);
    void showProgress();
    /// Closes what is open over this dialog, and this dialog if nothing runs.
    void leave();
    /// The name that the user wants the list saved by; null with none.
    QString askForListName();
    void rebuildTree();
    void moveSelected(int offset);
    /// The index in the list of the first selected step, from the top; -1 with none.
    int firstSelected() const;
    /// Layers of cells that a step at the end of the list can count on.
    std::uint32_t heightForNextStep() const;
    /// Lets no exception out: surfaces that there is no memory for are missing.
    void rebuildSurfaces();

    std::unique_ptr<RunProcessesBaseDialog> m_form;
    MainWindow *m_window;
    /// Changes hands on the dialog's thread alone. The worker reads it; it is replaced only while
    /// the worker waits.
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    Core::Workspace *m_workspace;
    /// Held from Run until the worker is done, which gives it back; Qt allows another thread to.
    QMutex m_runLock;
    QTimer m_progressTimer;
    std::vector<ProcessData> m_processes;
    /// The length of the list that runs, or ran last.
    int m_processCount = 0;
    std::atomic<std::uint32_t> m_progress{0};
    std::atomic<bool> m_stopping{false};
    bool m_windowLeaving = false;
    QFuture<void> m_run;
};

} // namespace Ui
