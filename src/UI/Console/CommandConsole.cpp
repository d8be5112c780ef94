#include "UI/Console/CommandConsole.h"

#include "Core/CommandInterpreter.h"
#include "UI/Console/ConsoleObserver.h"
#include "ui_CommandConsoleForm.h"

#include <QCloseEvent>

#include <boost/make_shared.hpp>

#include <iterator>

namespace Ui::Console {

CommandConsole::CommandConsole(QWidget *parent, Qt::WindowFlags flags,
                               Core::CommandInterpreter *interpreter)
    : QWidget(parent, flags),
      m_form(std::make_unique<CommandConsoleForm>()),
      m_up(this),
      m_down(this),
      m_historyCursor(m_history.cend()),
      m_interpreter(interpreter)
{
    m_form->setupUi(this);
    m_up.setKey(Qt::Key_Up);
    m_down.setKey(Qt::Key_Down);
    connect(&m_up, SIGNAL(activated()), this, SLOT(upArrowPressed()));
    connect(&m_down, SIGNAL(activated()), this, SLOT(downArrowPressed()));

    const auto observer = boost::make_shared<ConsoleObserver>(interpreter);
    m_interpreter->addObserver(observer);
    connect(observer.get(), SIGNAL(messageWritten(QString)), this, SLOT(writeMessage(QString)));

    connect(m_form->line, SIGNAL(returnPressed()), this, SLOT(enterPressed()));
}

CommandConsole::~CommandConsole() = default;

void CommandConsole::enterPressed()
{
    const QString text = m_form->line->text();
    if (!text.isEmpty()) {
        m_history.push_front(text);
        m_historyCursor = m_history.cbegin();
        m_form->log->appendPlainText(text);
        m_form->line->clear();
    }
    Q_EMIT entering();
    m_interpreter->enter(text.toStdString());
}

void CommandConsole::upArrowPressed()
{
    if (m_historyCursor == m_history.cend())
        return;
    m_form->line->setText(*m_historyCursor);
    if (std::next(m_historyCursor) != m_history.cend())
        ++m_historyCursor;
}

void CommandConsole::downArrowPressed()
{
    if (m_historyCursor == m_history.cend())
        return;
    m_form->line->setText(*m_historyCursor);
    if (m_historyCursor == m_history.cbegin())
        m_form->line->clear();
    else
        --m_historyCursor;
}

void CommandConsole::writeMessage(QString message)
{
    m_form->log->appendPlainText(message);
}

void CommandConsole::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

} // namespace Ui::Console
