#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

#include <boost/pointer_cast.hpp>

#include <stdexcept>

namespace Support {

namespace {

constexpr int DialogPoll = 5;            // milliseconds
constexpr int UnansweredTimeout = 20000; // milliseconds
constexpr int DragSteps = 8;
constexpr int WheelNotch = 120;

} // namespace

WindowDriver::WindowDriver(const QSize &size) : m_window(new Ui::MainWindow)
{
    m_window->resize(size);
    m_window->move(0, 0);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window))
        throw std::runtime_error("the main window does not come up");
    QObject::connect(&m_dialogTimer, &QTimer::timeout, [this] { watchDialogs(); });
    m_dialogTimer.start(DialogPoll);
    settle();
}

WindowDriver::~WindowDriver()
{
    m_dialogTimer.stop();
    if (m_window)
        m_window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

Ui::MainWindow &WindowDriver::window()
{
    if (!m_window)
        throw std::runtime_error("the main window is gone");
    return *m_window;
}

Ui::GLWidget &WindowDriver::view()
{
    return *window().view();
}

Core::Workspace &WindowDriver::workspace()
{
    return window().presenter().workspace();
}

QAction &WindowDriver::action(const QString &name)
{
    auto *found = window().findChild<QAction *>(name);
    if (!found)
        throw std::runtime_error("no such action: " + name.toStdString());
    return *found;
}

void WindowDriver::trigger(const QString &name, const std::vector<DialogAnswer> &answers)
{
    QAction &wanted = action(name);
    if (!wanted.isEnabled())
        throw std::runtime_error("the action is disabled: " + name.toStdString());
    answering(answers, [&wanted] { wanted.trigger(); });
}

void WindowDriver::answering(const std::vector<DialogAnswer> &answers,
                             const std::function<void()> &act)
{
    m_answers.assign(answers.begin(), answers.end());
    act();
    settle();
    if (m_failure.isEmpty() && !m_answers.empty())
        m_failure = QStringLiteral("%1 dialogs did not come up").arg(m_answers.size());
    m_answers.clear();
    rethrowFailure();
}

void WindowDriver::typeIntoConsole(const QString &text)
{
    auto *line = window().presenter().console().findChild<QLineEdit *>(QStringLiteral("line"));
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
    settle();
    rethrowFailure();
}

QStringList WindowDriver::consoleLines()
{
    auto *log = window().presenter().console().findChild<QPlainTextEdit *>(QStringLiteral("log"));
    return log->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void WindowDriver::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    // Shortcuts belong to the active window.
    QApplication::setActiveWindow(&window());
    QTest::keyClick(&window(), key, modifiers);
    settle();
    rethrowFailure();
}

void WindowDriver::click(const QPoint &at, Qt::MouseButton button)
{
    QTest::mouseClick(&view(), button, Qt::NoModifier, at);
    settle();
    rethrowFailure();
}

void WindowDriver::drag(const QPoint &from, const QPoint &to, Qt::MouseButton button)
{
    QTest::mousePress(&view(), button, Qt::NoModifier, from);
    for (int i = 1; i <= DragSteps; ++i) {
        const QPoint at = from + (to - from) * i / DragSteps;
        QMouseEvent move(QEvent::MouseMove, at, view().mapToGlobal(at), Qt::NoButton, button,
                         Qt::NoModifier);
        QApplication::sendEvent(&view(), &move);
    }
    QTest::mouseRelease(&view(), button, Qt::NoModifier, to);
    settle();
}

void WindowDriver::movePointer(const QPoint &to)
{
    QMouseEvent move(QEvent::MouseMove, to, view().mapToGlobal(to), Qt::NoButton, Qt::NoButton,
                     Qt::NoModifier);
    QApplication::sendEvent(&view(), &move);
    settle();
    rethrowFailure();
}

void WindowDriver::turnWheel(int notches)
{
    const QPoint at = viewCenter();
    QWheelEvent event(at, view().mapToGlobal(at), QPoint(), QPoint(0, notches * WheelNotch),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view(), &event);
    settle();
}

QPoint WindowDriver::viewCenter()
{
    return view().rect().center();
}

QImage WindowDriver::picture()
{
    settle();
    return view().image();
}

QImage WindowDriver::screen()
{
    settle();
    return grabbed();
}

QImage WindowDriver::grabbed()
{
    return window().screen()->grabWindow(0).toImage();
}

std::vector<boost::shared_ptr<Model::Automaton::TotalVolume>> WindowDriver::volumes()
{
    std::vector<boost::shared_ptr<Model::Automaton::TotalVolume>> found;
    for (const auto &object : workspace().document().objects())
        if (auto volume = boost::dynamic_pointer_cast<Model::Automaton::TotalVolume>(object))
            found.push_back(volume);
    return found;
}

std::vector<std::uint32_t> WindowDriver::materials(std::size_t volume)
{
    const auto all = volumes();
    if (volume >= all.size())
        throw std::runtime_error("the document holds too few volumes");
    return materialsOf(*all[volume]);
}

void WindowDriver::settle()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

// Runs in the event loop of the dialog itself, so a failure is kept for the call that started it.
void WindowDriver::watchDialogs()
{
    QWidget *dialog = QApplication::activeModalWidget();
    if (!dialog || dialog == m_dialogInHand || !dialog->isVisible()) {
        m_unanswered.invalidate();
        return;
    }
    if (m_answers.empty()) {
        if (!m_unanswered.isValid())
            m_unanswered.start();
        if (m_unanswered.elapsed() < UnansweredTimeout)
            return;
        m_failure = QStringLiteral("nobody answers \"%1\"").arg(dialog->windowTitle());
        m_unanswered.invalidate();
        dialog->close();
        return;
    }
    const DialogAnswer answer = m_answers.front();
    m_answers.pop_front();
    const QPointer<QWidget> outer = m_dialogInHand;
    m_dialogInHand = dialog;
    try {
        if (!QTest::qWaitForWindowExposed(dialog))
            throw std::runtime_error("a dialog does not come up");
        // Fields commit their text when they lose the focus, which only an active window has.
        QApplication::setActiveWindow(dialog);
        // A timer does not fire again while it is being served, so the dialogs that this one opens
        // are watched by another.
        QTimer inner;
        QObject::connect(&inner, &QTimer::timeout, [this] { watchDialogs(); });
        inner.start(DialogPoll);
        answer.playIn(*dialog);
    } catch (const std::exception &error) {
        m_failure = QString::fromUtf8(error.what());
        if (m_dialogInHand)
            m_dialogInHand->close();
    }
    m_dialogInHand = outer;
}

void WindowDriver::rethrowFailure()
{
    if (m_failure.isEmpty())
        return;
    const std::string failure = m_failure.toStdString();
    m_failure.clear();
    throw std::runtime_error(failure);
}

} // namespace Support
