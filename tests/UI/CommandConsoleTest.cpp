#include "UI/Console/CommandConsole.h"

#include "Core/CommandInterpreter.h"
#include "Core/Operations/Operation.h"
#include "UI/Console/ConsoleObserver.h"

#include <QApplication>
#include <QLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <thread>

namespace {

class Waiter final : public Core::Operations::Operation
{
public:
    Waiter() : Operation("Waiter", 1) {}
    void next() override { ++nextCalls; }
    void cancel() override {}
    void end() override {}

    int nextCalls = 0;
};

class CommandConsoleTest : public testing::Test
{
protected:
    CommandConsoleTest() : m_console(nullptr, Qt::Tool, &m_interpreter)
    {
        m_console.show();
        m_line = m_console.findChild<QLineEdit *>();
        m_log = m_console.findChild<QPlainTextEdit *>();
        if (!QTest::qWaitForWindowExposed(&m_console))
            ADD_FAILURE() << "the console does not come up";
        QApplication::setActiveWindow(&m_console);
        m_line->setFocus();
    }

    void enter(const QString &text)
    {
        QTest::keyClicks(m_line, text);
        QTest::keyClick(m_line, Qt::Key_Return);
    }
    QString up()
    {
        QTest::keyClick(m_line, Qt::Key_Up);
        return m_line->text();
    }
    QString down()
    {
        QTest::keyClick(m_line, Qt::Key_Down);
        return m_line->text();
    }

    Core::CommandInterpreter m_interpreter;
    Ui::Console::CommandConsole m_console;
    QLineEdit *m_line = nullptr;
    QPlainTextEdit *m_log = nullptr;
};

TEST_F(CommandConsoleTest, LooksLikeItsForm)
{
    EXPECT_EQ(m_console.windowTitle(), "Console");
    EXPECT_EQ(m_console.size(), QSize(400, 140));
    EXPECT_TRUE(m_log->isReadOnly());
    EXPECT_EQ(m_log->focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(m_log->acceptDrops());
    EXPECT_TRUE(m_log->autoFillBackground());
    EXPECT_EQ(m_console.layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_LT(m_log->y(), m_line->y());
}

TEST_F(CommandConsoleTest, ReturnLogsTheTextClearsTheLineAndHandsItOn)
{
    Waiter waiter;
    std::string target;
    m_interpreter.awaitString(&waiter, target);
    enter("hello");
    EXPECT_EQ(m_log->toPlainText(), "hello");
    EXPECT_EQ(m_line->text(), "");
    EXPECT_EQ(target, "hello");
    EXPECT_EQ(waiter.nextCalls, 1);
}

TEST_F(CommandConsoleTest, AnEmptyLineFiresAWaitingEnterAndIsNeitherLoggedNorStored)
{
    Waiter waiter;
    m_interpreter.awaitEnter(&waiter);
    enter("");
    EXPECT_EQ(waiter.nextCalls, 1);
    EXPECT_EQ(m_log->toPlainText(), "");
    EXPECT_EQ(up(), "");
}

TEST_F(CommandConsoleTest, ATypedTextFiresAPromptThatWaitsForEnterAloneAndIsOnlyLogged)
{
    Waiter waiter;
    m_interpreter.awaitEnter(&waiter);
    enter("some words");
    EXPECT_EQ(waiter.nextCalls, 1);
    EXPECT_EQ(m_log->toPlainText(), "some words");
}

TEST_F(CommandConsoleTest, UpWithAnEmptyHistoryDoesNothing)
{
    m_line->setText("being typed");
    EXPECT_EQ(up(), "being typed");
    EXPECT_EQ(down(), "being typed");
}

TEST_F(CommandConsoleTest, UpWalksToTheOldestEntryAndStaysThere)
{
    enter("one");
    enter("two");
    enter("three");
    EXPECT_EQ(up(), "three");
    EXPECT_EQ(up(), "two");
    EXPECT_EQ(up(), "one");
    EXPECT_EQ(up(), "one");
}

TEST_F(CommandConsoleTest, DownWalksToTheNewestEntryAndClearsTheLineThere)
{
    enter("one");
    enter("two");
    enter("three");
    up();
    up();
    up();
    // The cursor stands on the oldest entry.
    EXPECT_EQ(down(), "one");
    EXPECT_EQ(down(), "two");
    EXPECT_EQ(down(), "");
    EXPECT_EQ(down(), "");
    EXPECT_EQ(up(), "three");
}

TEST_F(CommandConsoleTest, RepeatingTheSameTextStoresItTwice)
{
    enter("older");
    enter("same");
    enter("same");
    EXPECT_EQ(up(), "same");
    EXPECT_EQ(up(), "same");
    EXPECT_EQ(up(), "older");
}

TEST_F(CommandConsoleTest, ABadEntryIsAnsweredAndCanBeBroughtBackForCorrection)
{
    Waiter waiter;
    double target = 0.0;
    bool received = false;
    m_interpreter.awaitDouble(&waiter, target, received);
    enter("2,5");
    EXPECT_EQ(m_log->toPlainText(), "2,5\nInvalid entry. Please enter a floating point value");
    EXPECT_EQ(waiter.nextCalls, 0);
    EXPECT_EQ(up(), "2,5");
}

TEST_F(CommandConsoleTest, MessagesOfTheInterpreterAreLogged)
{
    m_interpreter.writeMessage("first \xC3\xA4");
    m_interpreter.writeMessage("");
    m_interpreter.writeMessage("second");
    EXPECT_EQ(m_log->toPlainText(), QString::fromUtf8("first \xC3\xA4\nsecond"));
}

TEST_F(CommandConsoleTest, AMessageFromAWorkerThreadArrivesThroughTheEventLoop)
{
    std::thread([this] { m_interpreter.writeMessage("from afar"); }).join();
    EXPECT_EQ(m_log->toPlainText(), "");
    QCoreApplication::processEvents();
    EXPECT_EQ(m_log->toPlainText(), "from afar");
}

TEST_F(CommandConsoleTest, ATypedUndoWithNoOperationWaitingChangesNothing)
{
    enter("undo");
    EXPECT_EQ(m_log->toPlainText(), "undo");
    EXPECT_TRUE(Core::CommandInterpreter::isReservedWord("undo"));
}

} // namespace
