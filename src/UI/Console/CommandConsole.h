#pragma once

#include <QShortcut>
#include <QString>
#include <QWidget>

#include <list>
#include <memory>

namespace Core {
class CommandInterpreter;
}

namespace Ui {
class CommandConsoleForm;
}

namespace Ui::Console {

/// The floating tool window where operations speak to the user and typed values reach them: a log
/// above one input line, with a history of what was entered.
class CommandConsole final : public QWidget
{
    Q_OBJECT

public:
    /// `interpreter` is not owned and outlives the console.
    CommandConsole(QWidget *parent, Qt::WindowFlags flags, Core::CommandInterpreter *interpreter);
    ~CommandConsole() override;

public Q_SLOTS:
    /// Hands the line to the interpreter, an empty one too.
    void enterPressed();
    void upArrowPressed();
    void downArrowPressed();
    void writeMessage(QString message);

Q_SIGNALS:
    /// A line is about to go to the interpreter.
    void entering();
    /// The user has closed the window, which hides it.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    std::unique_ptr<CommandConsoleForm> m_form;
    QShortcut m_up;
    QShortcut m_down;
    /// What was entered, newest first; the cursor is the entry that Up or Down shows next.
    std::list<QString> m_history;
    std::list<QString>::const_iterator m_historyCursor;
    Core::CommandInterpreter *m_interpreter;
};

} // namespace Ui::Console
