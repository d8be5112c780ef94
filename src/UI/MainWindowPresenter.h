#pragma once

#include "Core/Workspace.h"
#include "UI/Console/CommandConsole.h"

#include <QObject>
#include <QString>

namespace Ui {

class MainWindow;

/// Stands between the main window and everything behind it: turns menu and key events into calls of
/// the workspace, and changes of the stacks back into menu state. Owns the workspace and the
/// console, not the window. GUI thread only; workers reach it by queued signals.
class MainWindowPresenter final : public QObject
{
    Q_OBJECT

public:
    /// Places the console over the lower right of the window's screen and shows it.
    explicit MainWindowPresenter(MainWindow *mainWindow);
    ~MainWindowPresenter() override;

    Core::Workspace &workspace() { return m_workspace; }
    MainWindow *mainWindow() const { return m_mainWindow; }
    Model::Document &document() { return m_workspace.document(); }
    Core::Selection &selection() { return m_workspace.selection(); }
    Console::CommandConsole &console() { return m_console; }

    /// Undo and redo also take objects out of the selection that the document no longer holds.
    void undoOperation();
    void redoOperation();
    void setSelectionMode(bool on);
    void setConsoleVisible(bool visible);
    /// Makes the view repaint when the picture changes. Called once, when the view exists.
    void registerUpdateObserver();
    /// Erases everything, after a question.
    void newDocument();
    /// Has the user edit the materials of the registry, in memory only; the pictures follow.
    void manageMaterials();
    /// Has the user edit which materials processes accept, and saves that.
    void manageCompatibleMaterials();

public Q_SLOTS:
    void undoStackChanged();
    void redoStackChanged();
    /// A text that is not a number is id 0, which no operation has.
    void operationActivated(const QString &operationId);
    void enterPressed();
    void cancelPressed();

private:
    void placeConsole();

    MainWindow *m_mainWindow;
    Core::Workspace m_workspace;
    Console::CommandConsole m_console;
};

} // namespace Ui
