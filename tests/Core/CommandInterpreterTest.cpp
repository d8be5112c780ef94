#include "Core/CommandInterpreter.h"

#include "Fakes.h"

#include "Util/Vector3D.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using Core::CommandInterpreter;
using Fakes::Log;
using Fakes::Operation;
using Util::Vector3D;

namespace {

const char *const integerMessage = "Invalid entry. Please enter an intenger";
const char *const doubleMessage = "Invalid entry. Please enter a floating point value";
const char *const vectorMessage = "Invalid entry. Enter the x, y, z coordinates.";

const std::vector<std::string> words = {
    "rect",  "l",       "polygon", "undo", "redo",       "copy",    "move",     "del",   "sel",
    "color", "rotate",  "new",     "open", "save",       "close",   "render",   "light", "edge",
    "axis",  "extrude", "ext",     "cr",   "copyrotate", "setview", "set view", "light", "+"};

class CommandInterpreterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_interpreter.addObserver(
            Fakes::observing([this] { m_log.push_back("message " + m_interpreter.message()); }));
    }

    void expectVector(double x, double y, double z) const
    {
        EXPECT_EQ(m_vector[0], x);
        EXPECT_EQ(m_vector[1], y);
        EXPECT_EQ(m_vector[2], z);
    }

    Log m_log;
    CommandInterpreter m_interpreter;
    Operation m_first{"A", m_log};
    Operation m_second{"B", m_log};
    std::int32_t m_integer = 77;
    double m_double = 77.0;
    Vector3D m_vector{77.0, 78.0, 79.0};
    std::string m_string = "before";
    bool m_received = false;
    bool m_entered = false;
};

} // namespace

TEST_F(CommandInterpreterTest, MessageIsStoredBeforeTheObserversAreTold)
{
    EXPECT_EQ(m_interpreter.message(), "");
    m_interpreter.writeMessage("Move: Object(s) moved");
    EXPECT_EQ(m_interpreter.message(), "Move: Object(s) moved");
    EXPECT_EQ(m_log, (Log{"message Move: Object(s) moved"}));
}

TEST_F(CommandInterpreterTest, SameMessageTwiceIsToldTwice)
{
    m_interpreter.writeMessage("again");
    m_interpreter.writeMessage("again");
    EXPECT_EQ(m_log, (Log{"message again", "message again"}));
}

TEST_F(CommandInterpreterTest, EmptyMessageIsStoredSilently)
{
    m_interpreter.writeMessage("something");
    m_log.clear();
    m_interpreter.writeMessage("");
    EXPECT_EQ(m_interpreter.message(), "");
    EXPECT_EQ(m_log, Log{});
}

TEST_F(CommandInterpreterTest, ObserversAreToldInTheOrderOfTheirRegistration)
{
    m_interpreter.addObserver(Fakes::logging(m_log, "second"));
    m_interpreter.addObserver(Fakes::logging(m_log, "third"));
    m_interpreter.writeMessage("text");
    EXPECT_EQ(m_log, (Log{"message text", "second", "third"}));
}

TEST_F(CommandInterpreterTest, EnterWithAnEmptyLineFiresAnOperationThatWaitsForEnter)
{
    m_interpreter.awaitEnter(&m_first);
    EXPECT_EQ(m_log, Log{});
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"next A"}));
}

TEST_F(CommandInterpreterTest, TypedTextFiresAnOperationThatWaitsForEnterAlone)
{
    for (const char *const text : {"text", "1, 2, 3", "12", "undo"}) {
        m_log.clear();
        m_interpreter.awaitEnter(&m_first);
        m_interpreter.enter(text);
        EXPECT_EQ(m_log, (Log{"next A"})) << text;
        EXPECT_EQ(m_interpreter.message(), "") << text;
    }
}

TEST_F(CommandInterpreterTest, EnterFlagIsSetBeforeTheCall)
{
    m_first.script().next = [this] { EXPECT_TRUE(m_entered); };
    m_interpreter.awaitEnter(&m_first, &m_entered);
    EXPECT_FALSE(m_entered);
    m_interpreter.enter("");
    EXPECT_TRUE(m_entered);
    EXPECT_EQ(m_log, (Log{"next A"}));
}

TEST_F(CommandInterpreterTest, EnterFiresOnce)
{
    m_interpreter.awaitEnter(&m_first);
    m_interpreter.enter("");
    m_interpreter.enter("");
    m_interpreter.enter("text");
    EXPECT_EQ(m_log, (Log{"next A"}));
}

TEST_F(CommandInterpreterTest, IntegerArrivesBeforeTheCallAndOnce)
{
    const std::vector<std::pair<std::string, std::int32_t>> cases = {
        {"0", 0},
        {"42", 42},
        {"-7", -7},
        {"+5", 5},
        {"2147483647", std::numeric_limits<std::int32_t>::max()},
        {"-2147483648", std::numeric_limits<std::int32_t>::min()}};
    for (const auto &[text, value] : cases) {
        SCOPED_TRACE(text);
        m_log.clear();
        m_received = true;
        m_interpreter.awaitInteger(&m_first, m_integer, m_received);
        EXPECT_FALSE(m_received);
        m_first.script().next = [this, expected = value] {
            EXPECT_TRUE(m_received);
            EXPECT_EQ(m_integer, expected);
        };
        m_interpreter.enter(text);
        m_interpreter.enter("1234");
        EXPECT_EQ(m_log, (Log{"next A"}));
        EXPECT_EQ(m_integer, value);
    }
}

TEST_F(CommandInterpreterTest, BadIntegerIsAnsweredWithAMessageAndTheOperationStillWaits)
{
    m_interpreter.awaitInteger(&m_first, m_integer, m_received);
    Log expected;
    for (const char *const text :
         {"abc", "4.0", " 4", "4 ", "1,2", "0x10", "-", " ", "2147483648", "-2147483649", "undo"}) {
        m_interpreter.enter(text);
        expected.push_back(std::string("message ") + integerMessage);
        EXPECT_EQ(m_log, expected) << text;
        EXPECT_EQ(m_interpreter.message(), integerMessage);
        EXPECT_FALSE(m_received) << text;
    }
    m_interpreter.enter("4");
    expected.push_back("next A");
    EXPECT_EQ(m_log, expected);
    EXPECT_EQ(m_integer, 4);
    EXPECT_TRUE(m_received);
}

TEST_F(CommandInterpreterTest, DoubleArrivesBeforeTheCallAndOnce)
{
    const std::vector<std::pair<std::string, double>> cases = {
        {"0", 0.0},       {"2.5", 2.5},
        {"-2.5", -2.5},   {"+2.5", 2.5},
        {".5", 0.5},      {"5.", 5.0},
        {"1e3", 1000.0},  {"-1.25E-2", -0.0125},
        {"1e300", 1e300}, {"12345678.875", 12345678.875}};
    for (const auto &[text, value] : cases) {
        SCOPED_TRACE(text);
        m_log.clear();
        m_received = true;
        m_interpreter.awaitDouble(&m_first, m_double, m_received);
        EXPECT_FALSE(m_received);
        m_first.script().next = [this, expected = value] {
            EXPECT_TRUE(m_received);
            EXPECT_EQ(m_double, expected);
        };
        m_interpreter.enter(text);
        m_interpreter.enter("1234");
        EXPECT_EQ(m_log, (Log{"next A"}));
        EXPECT_EQ(m_double, value);
    }
}

TEST_F(CommandInterpreterTest, DoubleTakesTheSpellingsOfNanAndInfinity)
{
    for (const char *const text : {"nan", "NAN"}) {
        m_interpreter.awaitDouble(&m_first, m_double, m_received);
        m_interpreter.enter(text);
        EXPECT_TRUE(std::isnan(m_double)) << text;
        EXPECT_TRUE(m_received) << text;
        m_double = 77.0;
    }
    for (const char *const text : {"infinity", "INFINITY"}) {
        m_interpreter.awaitDouble(&m_first, m_double, m_received);
        m_interpreter.enter(text);
        EXPECT_EQ(m_double, std::numeric_limits<double>::infinity()) << text;
        EXPECT_TRUE(m_received) << text;
        m_double = 77.0;
    }
    EXPECT_EQ(m_log, (Log{"next A", "next A", "next A", "next A"}));
}

TEST_F(CommandInterpreterTest, BadDoubleIsAnsweredWithAMessageAndTheOperationStillWaits)
{
    m_interpreter.awaitDouble(&m_first, m_double, m_received);
    Log expected;
    for (const char *const text : {"abc", "1,5", " 1.5", "1.5 ", "1.5x", "1e", "--1", " "}) {
        m_interpreter.enter(text);
        expected.push_back(std::string("message ") + doubleMessage);
        EXPECT_EQ(m_log, expected) << text;
        EXPECT_FALSE(m_received) << text;
    }
    m_interpreter.enter("1.5");
    expected.push_back("next A");
    EXPECT_EQ(m_log, expected);
    EXPECT_EQ(m_double, 1.5);
}

TEST_F(CommandInterpreterTest, ThreeNumbersSeparatedByCommasGiveTheVector)
{
    const std::vector<std::pair<std::string, std::vector<double>>> cases = {
        {"1,2,3", {1, 2, 3}},
        {"1, 2, 3", {1, 2, 3}},
        {" 1 , 2 , 3 ", {1, 2, 3}},
        {"-1.5,+2.25,3e2", {-1.5, 2.25, 300}},
        // What stands between a number and its comma is passed over, and so is what follows z.
        {"1 um, 2 um, 3 um", {1, 2, 3}},
        {"1,2,3,4", {1, 2, 3}}};
    for (const auto &[text, value] : cases) {
        SCOPED_TRACE(text);
        m_log.clear();
        m_vector = Vector3D(77, 78, 79);
        m_received = true;
        m_interpreter.awaitVector(&m_first, m_vector, m_received);
        EXPECT_FALSE(m_received);
        m_first.script().next = [this, expected = value] {
            EXPECT_TRUE(m_received);
            expectVector(expected[0], expected[1], expected[2]);
        };
        m_interpreter.enter(text);
        m_interpreter.enter("7,7,7");
        EXPECT_EQ(m_log, (Log{"next A"}));
        expectVector(value[0], value[1], value[2]);
    }
}

TEST_F(CommandInterpreterTest, ThreeNumbersSeparatedByBlanksFailAtTheSecond)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1 2 3");
    EXPECT_EQ(m_log, (Log{std::string("message ") + vectorMessage}));
    EXPECT_FALSE(m_received);
    m_interpreter.enter("1, 2, 3");
    EXPECT_EQ(m_log.back(), "next A");
    expectVector(1, 2, 3);
}

TEST_F(CommandInterpreterTest, LeadingParenthesisFails)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("(1, 2, 3)");
    EXPECT_EQ(m_log, (Log{std::string("message ") + vectorMessage}));
    EXPECT_EQ(m_interpreter.message(), vectorMessage);
    EXPECT_FALSE(m_received);
}

TEST_F(CommandInterpreterTest, IncompleteVectorIsAnsweredWithAMessageAndTheOperationStillWaits)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    Log expected;
    for (const char *const text : {"1", "1,", "1,2", "1,2,", ",2,3", "1,,3", "1;2;3", "abc", " "}) {
        m_interpreter.enter(text);
        expected.push_back(std::string("message ") + vectorMessage);
        EXPECT_EQ(m_log, expected) << text;
        EXPECT_FALSE(m_received) << text;
    }
    m_interpreter.enter("1,2,3");
    EXPECT_EQ(m_log.back(), "next A");
}

TEST_F(CommandInterpreterTest, SeparatorIsLookedForInAHundredCharacters)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1" + std::string(99, ' ') + ",7,3");
    expectVector(1, 7, 3);
    // A hundred characters without a comma end the search, and the next number stands there.
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("4" + std::string(100, ' ') + "5,6");
    expectVector(4, 5, 6);
    EXPECT_EQ(m_log, (Log{"next A", "next A"}));
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1" + std::string(100, ' ') + ",2,3");
    EXPECT_EQ(m_log.back(), std::string("message ") + vectorMessage);
}

TEST_F(CommandInterpreterTest, StringArrivesAsItStands)
{
    for (const char *const text : {"no", " two words ", "undo", "1, 2, 3", "\xC3\xA9t\xC3\xA9"}) {
        m_log.clear();
        m_interpreter.awaitString(&m_first, m_string);
        m_first.script().next = [this, text] { EXPECT_EQ(m_string, text); };
        m_interpreter.enter(text);
        EXPECT_EQ(m_log, (Log{"next A"})) << text;
        m_interpreter.enter("later");
        EXPECT_EQ(m_string, text);
    }
}

TEST_F(CommandInterpreterTest, AnyTextFiresWithoutAValue)
{
    m_interpreter.awaitAnyText(&m_first);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    m_interpreter.enter("whatever");
    EXPECT_EQ(m_log, (Log{"next A"}));
    m_interpreter.enter("whatever");
    EXPECT_EQ(m_log, (Log{"next A"}));
    EXPECT_EQ(m_interpreter.message(), "");
}

TEST_F(CommandInterpreterTest, EmptyLineDoesNothingToAnOperationThatWaitsForAValue)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    EXPECT_FALSE(m_received);
    expectVector(77, 78, 79);
    m_interpreter.enter("1,2,3");
    EXPECT_EQ(m_log, (Log{"next A"}));
}

TEST_F(CommandInterpreterTest, OperationMayWaitForAStringAndForEnterArmedInEitherOrder)
{
    for (const bool stringFirst : {true, false}) {
        SCOPED_TRACE(stringFirst);
        const auto arm = [this, stringFirst] {
            if (stringFirst)
                m_interpreter.awaitString(&m_first, m_string);
            m_interpreter.awaitEnter(&m_first);
            if (!stringFirst)
                m_interpreter.awaitString(&m_first, m_string);
        };
        m_log.clear();
        m_string = "before";
        arm();
        m_interpreter.enter("");
        EXPECT_EQ(m_log, (Log{"next A"}));
        EXPECT_EQ(m_string, "before");

        arm();
        m_interpreter.enter("no");
        EXPECT_EQ(m_log, (Log{"next A", "next A"}));
        EXPECT_EQ(m_string, "no");
        m_interpreter.clearRequest();
    }
}

// As at the second step of a Move, which waits for a vector or a click.
TEST_F(CommandInterpreterTest, EnterThatFiredOnceDoesNotFireForAValueArmedWithinTheCall)
{
    m_first.script().next = [this] { m_interpreter.awaitVector(&m_first, m_vector, m_received); };
    m_interpreter.awaitEnter(&m_first);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"next A"}));
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"next A"}));
    m_interpreter.enter("1,2,3");
    EXPECT_EQ(m_log, (Log{"next A", "next A"}));
    expectVector(1, 2, 3);
}

TEST_F(CommandInterpreterTest, KindOfAValueThatArrivedDoesNotHoldForAnEnterArmedWithinTheCall)
{
    m_first.script().next = [this] { m_interpreter.awaitEnter(&m_first); };
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1,2,3");
    m_interpreter.enter("abc");
    m_interpreter.enter("4,5,6");
    EXPECT_EQ(m_log, (Log{"next A", "next A", "next A"}));
    expectVector(1, 2, 3);
}

TEST_F(CommandInterpreterTest, TypedValueLeavesTheEnterFlagAlone)
{
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1,2,3");
    EXPECT_EQ(m_log, (Log{"next A"}));
    EXPECT_TRUE(m_received);
    EXPECT_FALSE(m_entered);
}

TEST_F(CommandInterpreterTest, EnterLeavesTheReceivedFlagAlone)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"next A"}));
    EXPECT_FALSE(m_received);
    EXPECT_TRUE(m_entered);
    expectVector(77, 78, 79);
}

TEST_F(CommandInterpreterTest, FailedConversionGoesOnToAnArmedEnter)
{
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.awaitInteger(&m_first, m_integer, m_received);
    m_interpreter.enter("abc");
    EXPECT_EQ(m_log, (Log{std::string("message ") + integerMessage, "next A"}));
    EXPECT_TRUE(m_entered);
    EXPECT_FALSE(m_received);
    EXPECT_EQ(m_integer, 77);
}

TEST_F(CommandInterpreterTest, LaterKindReplacesTheEarlierOne)
{
    m_interpreter.awaitInteger(&m_first, m_integer, m_received);
    m_interpreter.awaitString(&m_first, m_string);
    m_interpreter.enter("text");
    EXPECT_EQ(m_log, (Log{"next A"}));
    EXPECT_EQ(m_string, "text");
    EXPECT_EQ(m_integer, 77);
}

TEST_F(CommandInterpreterTest, OperationMayArmAgainWithinItsCall)
{
    int calls = 0;
    m_first.script().next = [this, &calls] {
        ++calls;
        switch (calls) {
        case 1:
            m_interpreter.awaitInteger(&m_first, m_integer, m_received);
            EXPECT_FALSE(m_received);
            break;
        case 2:
            EXPECT_TRUE(m_received);
            m_interpreter.awaitEnter(&m_first);
            break;
        case 3:
            m_interpreter.awaitEnter(&m_first);
            break;
        default:
            break;
        }
    };
    m_interpreter.awaitString(&m_first, m_string);
    m_interpreter.enter("text");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(m_string, "text");
    m_interpreter.enter("12");
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(m_integer, 12);
    m_interpreter.enter("");
    EXPECT_EQ(calls, 3);
    m_interpreter.enter("");
    EXPECT_EQ(calls, 4);
    m_interpreter.enter("");
    EXPECT_EQ(calls, 4);
    // It has never been a different operation that waited.
    EXPECT_EQ(m_log, (Log{"next A", "next A", "next A", "next A"}));
}

TEST_F(CommandInterpreterTest, EachArmCallEndsADifferentWaiterFirst)
{
    const std::vector<Fakes::Action> arm = {
        [this] { m_interpreter.awaitEnter(&m_second); },
        [this] { m_interpreter.awaitInteger(&m_second, m_integer, m_received); },
        [this] { m_interpreter.awaitDouble(&m_second, m_double, m_received); },
        [this] { m_interpreter.awaitVector(&m_second, m_vector, m_received); },
        [this] { m_interpreter.awaitString(&m_second, m_string); },
        [this] { m_interpreter.awaitAnyText(&m_second); }};
    const std::vector<std::string> answers = {"", "1", "1.5", "1,2,3", "text", "text"};
    m_first.script().end = [this] { m_interpreter.clearRequest(); };
    for (std::size_t i = 0; i < arm.size(); ++i) {
        SCOPED_TRACE(i);
        m_log.clear();
        m_interpreter.awaitEnter(&m_first);
        arm[i]();
        EXPECT_EQ(m_log, (Log{"end A"}));
        // The new one was taken after that end: it waits, though the old one cleared the request.
        m_interpreter.enter(answers[i]);
        EXPECT_EQ(m_log, (Log{"end A", "next B"}));
    }
}

TEST_F(CommandInterpreterTest, ArmingTheSameOperationAgainDoesNotEndIt)
{
    m_interpreter.awaitEnter(&m_first);
    m_interpreter.awaitEnter(&m_first);
    m_interpreter.awaitString(&m_first, m_string);
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    EXPECT_EQ(m_log, Log{});
}

TEST_F(CommandInterpreterTest, WaiterMayBeDestroyedWithinTheEndThatItGets)
{
    auto leaving = std::make_unique<Operation>("C", m_log);
    leaving->script().end = [&leaving] { leaving.reset(); };
    m_interpreter.awaitEnter(leaving.get());
    m_interpreter.awaitEnter(&m_second);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"end C", "destroy C", "next B"}));
}

TEST_F(CommandInterpreterTest, WaiterMayBeDestroyedWithinItsCall)
{
    for (const char *const text : {"", "text"}) {
        m_log.clear();
        auto leaving = std::make_unique<Operation>("C", m_log);
        leaving->script().next = [&leaving] { leaving.reset(); };
        m_interpreter.awaitString(leaving.get(), m_string);
        m_interpreter.awaitEnter(leaving.get());
        m_interpreter.enter(text);
        m_interpreter.enter("");
        EXPECT_EQ(m_log, (Log{"next C", "destroy C"}));
        m_interpreter.clearRequest();
    }
}

// The old one has not left in its end(); the new one waits for Enter and nothing else.
TEST_F(CommandInterpreterTest, NewOperationThatWaitsForEnterAloneIsNotHeldToTheKindOfTheOldOne)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.awaitEnter(&m_second);
    m_interpreter.enter("abc");
    EXPECT_EQ(m_log, (Log{"end A", "next B"}));
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.awaitEnter(&m_second);
    m_interpreter.enter("1,2,3");
    EXPECT_EQ(m_log, (Log{"end A", "next B", "end A", "next B"}));
    EXPECT_FALSE(m_received);
    expectVector(77, 78, 79);
}

TEST_F(CommandInterpreterTest, NewOperationDoesNotInheritAnEnterThatNeverCame)
{
    // The old one got its value instead of the Enter.
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.enter("1,2,3");
    m_interpreter.awaitInteger(&m_second, m_integer, m_received);
    m_log.clear();
    m_interpreter.enter("");
    m_interpreter.enter("abc");
    EXPECT_EQ(m_log, (Log{std::string("message ") + integerMessage}));

    // The old one still waited.
    m_interpreter.clearRequest();
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.awaitInteger(&m_second, m_integer, m_received);
    m_log.clear();
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    EXPECT_FALSE(m_entered);
    m_interpreter.enter("5");
    EXPECT_EQ(m_log, (Log{"next B"}));
}

TEST_F(CommandInterpreterTest, FlagsOfAnEarlierOperationAreNotWrittenForALaterOne)
{
    m_interpreter.awaitInteger(&m_first, m_integer, m_received);
    m_interpreter.enter("1");
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.enter("");
    m_interpreter.clearRequest();
    m_received = false;
    m_entered = false;
    m_interpreter.awaitString(&m_second, m_string);
    m_interpreter.enter("text");
    m_interpreter.awaitAnyText(&m_second);
    m_interpreter.enter("text");
    m_interpreter.awaitEnter(&m_second);
    m_interpreter.enter("");
    EXPECT_FALSE(m_received);
    EXPECT_FALSE(m_entered);
}

TEST_F(CommandInterpreterTest, ClearRequestForgetsTheWaiter)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.clearRequest();
    m_interpreter.enter("1,2,3");
    m_interpreter.enter("abc");
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    EXPECT_FALSE(m_received);
    EXPECT_FALSE(m_entered);
    expectVector(77, 78, 79);
    // Nobody waits any more, so nobody is ended.
    m_interpreter.awaitEnter(&m_second);
    EXPECT_EQ(m_log, Log{});
}

TEST_F(CommandInterpreterTest, DropRequestForgetsTheWaiter)
{
    m_interpreter.awaitVector(&m_first, m_vector, m_received);
    m_interpreter.awaitEnter(&m_first, &m_entered);
    m_interpreter.dropRequest();
    m_interpreter.enter("1,2,3");
    m_interpreter.enter("abc");
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    EXPECT_FALSE(m_received);
    EXPECT_FALSE(m_entered);
    expectVector(77, 78, 79);
    m_interpreter.awaitEnter(&m_second);
    EXPECT_EQ(m_log, Log{});
}

TEST_F(CommandInterpreterTest, ClearAndDropWithNobodyWaitingChangeNothing)
{
    m_interpreter.clearRequest();
    m_interpreter.dropRequest();
    m_interpreter.enter("");
    EXPECT_EQ(m_log, Log{});
    m_interpreter.awaitEnter(&m_first);
    m_interpreter.enter("");
    EXPECT_EQ(m_log, (Log{"next A"}));
}

TEST_F(CommandInterpreterTest, WordsAreReservedByExactEquality)
{
    for (const std::string &word : words) {
        EXPECT_TRUE(CommandInterpreter::isReservedWord(word)) << word;
        EXPECT_FALSE(CommandInterpreter::isReservedWord(word + " ")) << word;
        EXPECT_FALSE(CommandInterpreter::isReservedWord(" " + word)) << word;
        EXPECT_FALSE(CommandInterpreter::isReservedWord(word + word)) << word;
    }
    for (const char *const other :
         {"", "Undo", "UNDO", "un", "setView", "set  view", "set", "view", "circle", "-", "c"})
        EXPECT_FALSE(CommandInterpreter::isReservedWord(other)) << other;
}

TEST_F(CommandInterpreterTest, NoTextHasAnEffectWhileNobodyWaits)
{
    m_interpreter.writeMessage("last");
    m_log.clear();
    for (const std::string &word : words)
        m_interpreter.enter(word);
    for (const char *const text : {"", "Undo", "circle", "1", "1,2,3"})
        m_interpreter.enter(text);
    EXPECT_EQ(m_log, Log{});
    EXPECT_EQ(m_interpreter.message(), "last");
}

TEST_F(CommandInterpreterTest, WordHasNoEffectOnAnOperationThatWaitsForAValue)
{
    m_interpreter.awaitDouble(&m_first, m_double, m_received);
    m_interpreter.enter("undo");
    EXPECT_EQ(m_log, (Log{std::string("message ") + doubleMessage}));
    m_interpreter.enter("2.5");
    EXPECT_EQ(m_log.back(), "next A");
    EXPECT_EQ(m_double, 2.5);
}
