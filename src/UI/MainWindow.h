#pragma once

#include "UI/MainWindowPresenter.h"
#include "UI/OperationMapper.h"

#include <QMainWindow>
#include <QShortcut>
#include <QString>

#include <memory>

namespace Ui {

class GLWidget;
class MainWindowForm;

/// The application's window: menu bar, status bar and the 3D view. Its actions carry an operation
/// id to the presenter or change the view directly. Deletes itself on close, with no question.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    ~MainWindow() override;

    MainWindowPresenter &presenter() { return m_presenter; }
    GLWidget *view() const { return m_view; }

    /// Makes the OpenGL context of the view current, which volumes expect where they are created,
    /// rebuilt and destroyed.
    void makeViewCurrent();
    /// The operation that Undo or Redo would take; an empty name disables the action.
    void setUndoName(const QString &name);
    void setRedoName(const QString &name);

public Q_SLOTS:
    void showConsole(bool show);
    void undoOperation();
    void redoOperation();
    void selectionToggled(bool checked);
    void lightingToggled(bool checked);
    void renderObjectsToggled(bool checked);
    void renderObjectEdgesToggled(bool checked);
    void setView(const QString &viewAngle);
    void renderGridToggled(bool checked);
    void snapToGridToggled(bool checked);
    void changeGridSpacing();
    void changeWindowColors();
    void changeZoom();
    void changeTranslate();
    /// Writes what the view shows, in the format of the name's suffix; asks for a name where it is
    /// empty.
    void saveImage(const QString &filename);
    void saveImage();
    void showAboutInfo();
    void on_actionManage_Materials_triggered();
    void on_actionManage_Compatible_Materials_triggered();
    void on_actionNew_triggered();
    void repaintCentralWidget();

private:
    void mapOperations();
    void mapViews();
    void connectActions();
    void connectShortcut(QShortcut &shortcut, Qt::Key key, const char *slot);

    std::unique_ptr<MainWindowForm> m_form;
    MainWindowPresenter m_presenter;
    OperationMapper m_operationMapper;
    OperationMapper m_viewMapper;
    QShortcut m_enter;
    QShortcut m_return;
    QShortcut m_escape;
    GLWidget *m_view;
};

} // namespace Ui
