#pragma once

#include "Support/DialogAnswer.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

class QAction;

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}
namespace Ui {
class GLWidget;
class MainWindow;
} // namespace Ui

namespace Support {

/// Opens a main window and plays it as a user does: menu actions by their object names, modal
/// dialogs, the console, keys, and the pointer in the 3D view. Needs a display.
///
/// What goes wrong on the way (a dialog that nobody has an answer for, an answer that no dialog
/// asked for, a widget that is missing) throws std::runtime_error from the call that meets it.
class WindowDriver final
{
public:
    explicit WindowDriver(const QSize &size = QSize(900, 700));
    /// Closes the window, which deletes itself.
    ~WindowDriver();
    WindowDriver(const WindowDriver &) = delete;
    WindowDriver &operator=(const WindowDriver &) = delete;

    Ui::MainWindow &window();
    Ui::GLWidget &view();
    Core::Workspace &workspace();

    QAction &action(const QString &name);
    /// Triggers an action that opens no dialog, or the ones given, in that order.
    void trigger(const QString &name, const std::vector<DialogAnswer> &answers = {});
    /// Does something else that opens these dialogs.
    void answering(const std::vector<DialogAnswer> &answers, const std::function<void()> &act);

    /// Types a line into the console and presses Return there.
    void typeIntoConsole(const QString &text);
    QStringList consoleLines();

    /// A key press in the main window.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Pointer events in the view, in pixels from its upper left corner.
    void click(const QPoint &at, Qt::MouseButton button = Qt::LeftButton);
    void drag(const QPoint &from, const QPoint &to, Qt::MouseButton button = Qt::LeftButton);
    void movePointer(const QPoint &to);
    /// Notches forward are positive.
    void turnWheel(int notches);
    QPoint viewCenter();

    /// The picture in the view, painted for this call.
    QImage picture();
    /// The whole screen, with window, console and dialogs: after pending repaints, or as it is.
    QImage screen();
    QImage grabbed();

    /// The cell volumes of the document, first to last.
    std::vector<boost::shared_ptr<Model::Automaton::TotalVolume>> volumes();
    std::vector<std::uint32_t> materials(std::size_t volume = 0);

    /// Lets pending events and repaints run.
    void settle();

private:
    void watchDialogs();
    void rethrowFailure();

    QPointer<Ui::MainWindow> m_window;
    QTimer m_dialogTimer;
    QElapsedTimer m_unanswered;
    std::deque<DialogAnswer> m_answers;
    QPointer<QWidget> m_dialogInHand;
    QString m_failure;
};

} // namespace Support
