#include "Core/Operations/OperationHistory.h"

#include "Fakes.h"

#include <boost/weak_ptr.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <string>

using Core::Operations::OperationHistory;
using Fakes::Log;

namespace {

/// Moves an object by a distance, as the user's Move does.
class Move final : public Core::Operations::ObjectOperation
{
public:
    Move(const boost::shared_ptr<Fakes::Object> &object, const Util::Vector3D &distance)
        : ObjectOperation("Move Objects", 7),
          m_object(object),
          m_distance(distance)
    {
        m_object->translate(m_distance);
    }

    void next() override {}
    void cancel() override {}
    void end() override {}
    std::int32_t undo() override
    {
        m_object->translate(-1.0 * m_distance);
        return 1;
    }
    void redo() override { m_object->translate(m_distance); }

private:
    boost::shared_ptr<Fakes::Object> m_object;
    Util::Vector3D m_distance;
};

class OperationHistoryTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<Fakes::ObjectOperation>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        m_history.addUndoObserver(Fakes::observing([this] { look("undo changed: "); }));
        m_history.addRedoObserver(Fakes::observing([this] { look("redo changed: "); }));
    }

    static Shared make(const std::string &name, Fakes::Script script = {})
    {
        return boost::make_shared<Fakes::ObjectOperation>(name, log(), std::move(script));
    }
    static Fakes::Script undoResult(std::int32_t result)
    {
        Fakes::Script script;
        script.undoResult = result;
        return script;
    }

    /// Undo and redo name, as a menu would show them.
    std::string names() const { return m_history.undoName() + "|" + m_history.redoName(); }

    /// Makes the operation the one in progress.
    static void start(const boost::shared_ptr<Core::Operations::Operation> &operation)
    {
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [operation](std::uint32_t) { return operation; }));
        workspace().activate(1);
        workspace().setOperationFactory(nullptr);
        log().clear();
    }

    /// The entry says what the observer finds.
    void look(const std::string &entry) { log().push_back(entry + names()); }

    OperationHistory m_history{&workspace()};
};

} // namespace

TEST_F(OperationHistoryTest, NewHistoryOffersNothing)
{
    EXPECT_EQ(m_history.undoName(), "");
    EXPECT_EQ(m_history.redoName(), "");
}

TEST_F(OperationHistoryTest, PushOffersTheNewestOperation)
{
    m_history.push(make("A"));
    EXPECT_EQ(names(), "A|");
    m_history.push(make("B"));
    EXPECT_EQ(names(), "B|");
}

TEST_F(OperationHistoryTest, PushTellsUndoObserversThenRedoObserversWhenBothStacksAreReady)
{
    m_history.push(make("A"));
    m_history.undo();
    log().clear();
    m_history.push(make("B"));
    EXPECT_EQ(log(), (Log{"destroy A", "undo changed: B|", "redo changed: B|"}));
}

TEST_F(OperationHistoryTest, UndoOfResultOneMovesTheOperationToTheRedoStack)
{
    m_history.push(make("A"));
    m_history.push(make("B"));
    log().clear();
    EXPECT_TRUE(m_history.undo());
    EXPECT_EQ(log(), (Log{"undo B", "redo changed: A|B", "undo changed: A|B"}));
}

TEST_F(OperationHistoryTest, UndoOfResultZeroKeepsTheOperationAndTellsNoRedoObserver)
{
    m_history.push(make("A"));
    m_history.push(make("B", undoResult(0)));
    log().clear();
    EXPECT_TRUE(m_history.undo());
    EXPECT_EQ(log(), (Log{"undo B", "undo changed: B|"}));
}

TEST_F(OperationHistoryTest, UndoOfResultZeroLeavesTheRedoStackAsItWas)
{
    m_history.push(make("A", undoResult(0)));
    m_history.push(make("B"));
    m_history.undo();
    EXPECT_TRUE(m_history.undo());
    EXPECT_EQ(names(), "A|B");
}

TEST_F(OperationHistoryTest, UndoOfAnyOtherResultDropsTheOperation)
{
    for (const std::int32_t result : {2, -1, 256, 0x7fffffff}) {
        SCOPED_TRACE(result);
        m_history.push(make("A"));
        Shared dropped = make("B", undoResult(result));
        const boost::weak_ptr<Fakes::ObjectOperation> watched = dropped;
        m_history.push(dropped);
        dropped.reset();
        log().clear();

        EXPECT_TRUE(m_history.undo());
        EXPECT_TRUE(watched.expired());
        EXPECT_EQ(names(), "A|");
        // When the last owner lets go is not settled; who is told, and of what, is.
        Log told;
        for (const std::string &entry : log()) {
            if (entry != "destroy B")
                told.push_back(entry);
        }
        EXPECT_EQ(told, (Log{"undo B", "undo changed: A|"}));
        m_history.clear();
    }
}

TEST_F(OperationHistoryTest, OperationIsOffTheStackWhileItIsTakenBack)
{
    Fakes::Script script;
    script.undo = [this] { look("during undo: "); };
    script.redo = [this] { look("during redo: "); };
    m_history.push(make("A"));
    m_history.push(make("B", script));
    log().clear();
    m_history.undo();
    m_history.redo();
    EXPECT_EQ(log(), (Log{"undo B", "during undo: A|", "redo changed: A|B", "undo changed: A|B",
                          "redo B", "during redo: A|", "undo changed: B|", "redo changed: B|"}));
}

TEST_F(OperationHistoryTest, UndoOfAnEmptyStackFindsNothingAndTellsUndoObserversOnly)
{
    start(boost::make_shared<Fakes::Operation>("running", log()));
    EXPECT_FALSE(m_history.undo());
    EXPECT_EQ(log(), (Log{"undo changed: |"}));
}

TEST_F(OperationHistoryTest, RedoOfAnEmptyStackFindsNothingAndTellsRedoObserversOnly)
{
    start(boost::make_shared<Fakes::Operation>("running", log()));
    EXPECT_FALSE(m_history.redo());
    EXPECT_EQ(log(), (Log{"redo changed: |"}));
}

TEST_F(OperationHistoryTest, RedoMovesTheOperationBackToTheUndoStack)
{
    m_history.push(make("A"));
    m_history.undo();
    log().clear();
    EXPECT_TRUE(m_history.redo());
    EXPECT_EQ(log(), (Log{"redo A", "undo changed: A|", "redo changed: A|"}));
}

TEST_F(OperationHistoryTest, RedoLeavesTheRestOfTheRedoStack)
{
    m_history.push(make("A"));
    m_history.push(make("B"));
    m_history.push(make("C"));
    m_history.undo();
    m_history.undo();
    m_history.undo();
    EXPECT_EQ(names(), "|A");
    m_history.redo();
    EXPECT_EQ(names(), "A|B");
    m_history.redo();
    EXPECT_EQ(names(), "B|C");
    m_history.redo();
    EXPECT_EQ(names(), "C|");
    EXPECT_FALSE(m_history.redo());
}

TEST_F(OperationHistoryTest, OperationMovesBetweenTheStacksAnyNumberOfTimes)
{
    m_history.push(make("A"));
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(m_history.undo());
        ASSERT_EQ(names(), "|A");
        ASSERT_TRUE(m_history.redo());
        ASSERT_EQ(names(), "A|");
    }
    EXPECT_EQ(countOf("undo A"), 5);
    EXPECT_EQ(countOf("redo A"), 5);
    EXPECT_EQ(countOf("destroy A"), 0);
}

TEST_F(OperationHistoryTest, UndoWhileAnOperationRunsCancelsThatOperationFirst)
{
    m_history.push(make("A"));
    start(boost::make_shared<Fakes::Operation>("running", log()));
    m_history.undo();
    EXPECT_EQ(log(), (Log{"cancel running", "undo A", "redo changed: |A", "undo changed: |A"}));
    EXPECT_NE(workspace().currentOperation(), nullptr);
}

TEST_F(OperationHistoryTest, RedoWhileAnOperationRunsCancelsThatOperationFirst)
{
    m_history.push(make("A"));
    m_history.undo();
    start(boost::make_shared<Fakes::Operation>("running", log()));
    m_history.redo();
    EXPECT_EQ(log(), (Log{"cancel running", "redo A", "undo changed: A|", "redo changed: A|"}));
}

TEST_F(OperationHistoryTest, OperationThatLeavesWhenCancelledIsGoneBeforeTheUndo)
{
    Fakes::Script script;
    script.cancel = [] { workspace().dropOperation(); };
    m_history.push(make("A"));
    start(boost::make_shared<Fakes::Operation>("running", log(), script));
    m_history.undo();
    // Whether the views still see it is not settled: the caller may hold it until cancel() is over.
    EXPECT_THAT(log(), ::testing::AnyOf(Log{"cancel running", "destroy running", "view updated",
                                            "undo A", "redo changed: |A", "undo changed: |A"},
                                        Log{"cancel running", "view updated", "destroy running",
                                            "undo A", "redo changed: |A", "undo changed: |A"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(OperationHistoryTest, ClearEmptiesTheRedoStackThenTheUndoStack)
{
    m_history.push(make("A"));
    m_history.push(make("B"));
    m_history.undo();
    log().clear();
    m_history.clear();
    EXPECT_EQ(log(), (Log{"destroy B", "destroy A", "redo changed: |", "undo changed: |"}));
}

TEST_F(OperationHistoryTest, ClearOfEmptyStacksTellsTheObserversAllTheSame)
{
    m_history.clear();
    EXPECT_EQ(log(), (Log{"redo changed: |", "undo changed: |"}));
}

TEST_F(OperationHistoryTest, ClearDoesNotCancelTheOperationInProgress)
{
    start(boost::make_shared<Fakes::Operation>("running", log()));
    m_history.clear();
    EXPECT_EQ(countOf("cancel running"), 0);
}

TEST_F(OperationHistoryTest, ObserversAreToldInTheOrderOfTheirRegistration)
{
    OperationHistory history(&workspace());
    for (const char *const entry : {"undo 1", "undo 2", "undo 3"})
        history.addUndoObserver(Fakes::logging(log(), entry));
    for (const char *const entry : {"redo 1", "redo 2"})
        history.addRedoObserver(Fakes::logging(log(), entry));
    history.push(make("A"));
    EXPECT_EQ(log(), (Log{"undo 1", "undo 2", "undo 3", "redo 1", "redo 2"}));
}

TEST_F(OperationHistoryTest, NeitherStackHasALimit)
{
    const int count = 3000;
    for (int i = 0; i < count; ++i)
        m_history.push(make(std::to_string(i)));
    for (int i = count; i-- > 0;) {
        ASSERT_EQ(m_history.undoName(), std::to_string(i));
        ASSERT_TRUE(m_history.undo());
    }
    EXPECT_FALSE(m_history.undo());
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(m_history.redoName(), std::to_string(i));
        ASSERT_TRUE(m_history.redo());
    }
    EXPECT_FALSE(m_history.redo());
}

TEST_F(OperationHistoryTest, UndoOfAMoveMadeAfterAnEarlierMoveRestoresEachDistanceInTurn)
{
    const auto object = boost::make_shared<Fakes::Object>();
    const auto expectAt = [&object](double x, double y, double z) {
        EXPECT_EQ(object->position()[0], x);
        EXPECT_EQ(object->position()[1], y);
        EXPECT_EQ(object->position()[2], z);
    };
    m_history.push(boost::make_shared<Move>(object, Util::Vector3D(1, 2, 4)));
    m_history.push(boost::make_shared<Move>(object, Util::Vector3D(8, -16, 32)));
    expectAt(9, -14, 36);
    m_history.undo();
    expectAt(1, 2, 4);
    m_history.undo();
    expectAt(0, 0, 0);
    m_history.redo();
    expectAt(1, 2, 4);
    m_history.redo();
    expectAt(9, -14, 36);
}

TEST_F(OperationHistoryTest, NewOperationThatFinishesAfterAnUndoEmptiesTheRedoStack)
{
    OperationHistory &history = workspace().history();
    history.push(make("A"));
    history.undo();
    ASSERT_EQ(history.redoName(), "A");
    start(make("B"));
    workspace().finishOperation();
    EXPECT_EQ(history.undoName(), "B");
    EXPECT_EQ(history.redoName(), "");
    EXPECT_EQ(countOf("redo changed"), 1);
    EXPECT_EQ(countOf("destroy A"), 1);
    EXPECT_FALSE(history.redo());
}

TEST_F(OperationHistoryTest, CancelledOperationLeavesBothStacksAsTheyWere)
{
    OperationHistory &history = workspace().history();
    history.push(make("A"));
    history.push(make("B"));
    history.undo();
    Fakes::Script script;
    script.cancel = [] { workspace().dropOperation(); };
    start(make("C", script));
    workspace().cancelCurrent();
    EXPECT_EQ(history.undoName(), "A");
    EXPECT_EQ(history.redoName(), "B");
    EXPECT_EQ(countOf("undo changed"), 0);
    EXPECT_EQ(countOf("redo changed"), 0);
}

// Glueing answers 0, so that it is never redone from the menu.
TEST_F(OperationHistoryTest, UndoOfAGlueDoneTwiceLeavesItsUndoEntry)
{
    m_history.push(make("Glue Volumes", undoResult(0)));
    log().clear();
    EXPECT_TRUE(m_history.undo());
    EXPECT_TRUE(m_history.undo());
    EXPECT_EQ(countOf("undo Glue Volumes"), 2);
    EXPECT_EQ(names(), "Glue Volumes|");
    EXPECT_FALSE(m_history.redo());
}
