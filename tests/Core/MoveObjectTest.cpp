#include "Core/Operations/MoveObject.h"

#include "Fakes.h"

#include "Core/Operations/CopyObject.h"
#include "Core/Operations/DeleteObject.h"
#include "Core/Operations/SelectVolumesOperation.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

using Core::PointerTracker;
using Core::Operations::CopyObject;
using Core::Operations::DeleteObject;
using Core::Operations::MoveObject;
using Core::Operations::SelectVolumesOperation;
using Fakes::Log;
using Util::Vector3D;
using ObjectList = PointerTracker::ObjectList;

namespace {

// "copied" is the wording that users know.
const char *const prompted =
    "message Move: Select the object(s) to be copied and press Enter/Return.";
const char *const started =
    "message Move: Left click or enter the distance into the console (x, y, z):";
const char *const askedForDestination = "message Move: Left click on destination.";
const char *const moved = "message Move: Object(s) moved";
const char *const canceled = "message Move: Operation canceled";
const char *const invalid = "message Invalid entry. Enter the x, y, z coordinates.";

constexpr std::uint32_t unknownId = 5;

void expectVector(const Vector3D &vector, double x, double y, double z)
{
    EXPECT_EQ(vector[0], x);
    EXPECT_EQ(vector[1], y);
    EXPECT_EQ(vector[2], z);
}

class MoveObjectTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<MoveObject>;
    using Piece = boost::shared_ptr<Fakes::Object>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(
            boost::make_shared<Fakes::OperationFactory>(&MoveObjectTest::create));
        for (const Piece &piece : {m_piece, m_other})
            workspace().document().addObject(piece);
    }

    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void press(const Vector3D &position, std::int32_t button = PointerTracker::LeftPress)
    {
        workspace().pointer().press(button, 0, 0, position);
    }
    static void movePointer(const Vector3D &position,
                            std::int32_t button = PointerTracker::NoButton)
    {
        workspace().pointer().move(button, 0, 0, position);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }

    static Shared current()
    {
        return boost::dynamic_pointer_cast<MoveObject>(workspace().currentOperation());
    }
    /// Without the selection nothing is moved, and the user is asked.
    static void promptForObjects() { workspace().activate(MoveObject::Id); }
    /// To the wait for a click or a typed distance, with one object.
    void start()
    {
        select({m_piece});
        workspace().activate(MoveObject::Id);
    }
    /// To the drag, from the point (1, 1, 1).
    void startDrag()
    {
        start();
        press(Vector3D(1, 1, 1));
    }
    void moveBy(const std::string &distance)
    {
        start();
        type(distance);
    }

    /// Expects that the operation in progress waits for a click or a typed distance.
    void expectWaitsForDistance()
    {
        ASSERT_NE(current(), nullptr);
        EXPECT_TRUE(m_piece->isMoving());
        expectVector(m_piece->position(), 0, 0, 0);
        log().clear();
        press(Vector3D(8, 8, 8));
        EXPECT_EQ(log(), Log{askedForDestination});
        press(Vector3D(8, 10, 8));
        expectVector(m_piece->position(), 0, 2, 0);
        EXPECT_EQ(current(), nullptr);
    }
    /// Expects that neither the pointer nor the console reaches an operation.
    void expectNothingIsAwaited()
    {
        log().clear();
        press(Vector3D(4, 4, 4));
        movePointer(Vector3D(5, 5, 5));
        press(Vector3D(6, 6, 6));
        type("");
        type("7,7,7");
        EXPECT_EQ(log(), Log{});
    }

    const Piece m_piece = boost::make_shared<Fakes::Object>();
    const Piece m_other = boost::make_shared<Fakes::Object>();

private:
    static boost::shared_ptr<Core::Operations::Operation> create(std::uint32_t id)
    {
        switch (id) {
        case MoveObject::Id:
            return boost::make_shared<MoveObject>(&workspace());
        case CopyObject::Id:
            return boost::make_shared<CopyObject>(&workspace());
        case DeleteObject::Id:
            return boost::make_shared<DeleteObject>(&workspace());
        case SelectVolumesOperation::Id:
            return boost::make_shared<SelectVolumesOperation>(&workspace());
        default:
            return nullptr;
        }
    }
};

} // namespace

TEST_F(MoveObjectTest, HasTheNameAndIdOfItsMenuEntry)
{
    const MoveObject operation(&workspace());
    EXPECT_EQ(operation.name(), "Move Objects");
    EXPECT_EQ(operation.id(), 7U);
}

TEST_F(MoveObjectTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    promptForObjects();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
}

TEST_F(MoveObjectTest, EnterWithNothingSelectedRepeatsThePrompt)
{
    promptForObjects();
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
}

TEST_F(MoveObjectTest, PointerDoesNothingAtThePrompt)
{
    promptForObjects();
    log().clear();
    press(Vector3D(1, 1, 1));
    movePointer(Vector3D(2, 2, 2));
    EXPECT_EQ(log(), Log{});
}

TEST_F(MoveObjectTest, EnterAfterTheSelectionStartsAndTurnsTheSelectionModeOff)
{
    promptForObjects();
    select({m_piece});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{started, "selection mode changed", "view updated"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, SelectionMadeBeforeStartsAtOnce)
{
    start();
    EXPECT_EQ(log(), (Log{started, "view updated"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, EachSelectedObjectIsMovingWithNoDisplacementFromTheStart)
{
    for (const Piece &piece : {m_piece, m_other})
        piece->setDisplacement(Vector3D(9, 9, 9));
    select({m_other, m_piece});
    workspace().activate(MoveObject::Id);
    for (const Piece &piece : {m_piece, m_other}) {
        EXPECT_TRUE(piece->isMoving());
        expectVector(piece->displacement(), 0, 0, 0);
        expectVector(piece->position(), 0, 0, 0);
    }
}

TEST_F(MoveObjectTest, ObjectsThatAreNotSelectedStayWhereTheyAre)
{
    startDrag();
    EXPECT_FALSE(m_other->isMoving());
    movePointer(Vector3D(2, 2, 2));
    expectVector(m_other->displacement(), 0, 0, 0);
    press(Vector3D(3, 3, 3));
    expectVector(m_piece->position(), 2, 2, 2);
    expectVector(m_other->position(), 0, 0, 0);
}

TEST_F(MoveObjectTest, ThreeNumbersSeparatedByCommasMoveByThatDistance)
{
    select({m_piece, m_other});
    workspace().activate(MoveObject::Id);
    log().clear();
    type("1.5,-2,0.25");
    EXPECT_EQ(log(), (Log{moved, "undo changed", "redo changed", "view updated", "view updated"}));
    for (const Piece &piece : {m_piece, m_other}) {
        expectVector(piece->position(), 1.5, -2, 0.25);
        EXPECT_FALSE(piece->isMoving());
        expectVector(piece->displacement(), 0, 0, 0);
    }
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Move Objects");
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(MoveObjectTest, ClickIsNoLongerAwaitedAfterATypedDistance)
{
    moveBy("1,2,3");
    expectNothingIsAwaited();
    expectVector(m_piece->position(), 1, 2, 3);
}

TEST_F(MoveObjectTest, TypedDistanceWithParenthesesFails)
{
    start();
    log().clear();
    type("(1,2,3)");
    EXPECT_EQ(log(), Log{invalid});
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, SelectionIsClearWhenTheEndIsTold)
{
    start();
    watch(
        [](const std::string &) { EXPECT_TRUE(workspace().pointer().selectedObjects().empty()); });
    type("1,2,3");
    EXPECT_EQ(countOf(moved), 1);
}

TEST_F(MoveObjectTest, BadTypedDistanceIsAnsweredAndAnotherOneIsTaken)
{
    start();
    for (const char *const bad : {"(1, 2, 3)", "1 2 3", "1,2", "1,2,", "here", ","}) {
        SCOPED_TRACE(bad);
        log().clear();
        type(bad);
        EXPECT_EQ(log(), Log{invalid});
        EXPECT_NE(current(), nullptr);
        EXPECT_TRUE(m_piece->isMoving());
        expectVector(m_piece->position(), 0, 0, 0);
    }
    type("4,5,6");
    expectVector(m_piece->position(), 4, 5, 6);
}

TEST_F(MoveObjectTest, NumbersOfABadTypedDistanceAreForgotten)
{
    start();
    type("40,50,none");
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, EnterWithNothingTypedDoesNothingWhileTheDistanceIsAwaited)
{
    start();
    log().clear();
    type("");
    type("");
    EXPECT_EQ(log(), Log{});
    expectWaitsForDistance();
}

// An Enter that was armed before must not be taken for the click.
TEST_F(MoveObjectTest, EnterDoesNothingThoughAnOperationCancelledBeforeHadArmedOne)
{
    for (const std::uint32_t earlier :
         {MoveObject::Id, CopyObject::Id, DeleteObject::Id, SelectVolumesOperation::Id}) {
        SCOPED_TRACE(earlier);
        m_piece->translate(-1.0 * m_piece->position());
        workspace().activate(earlier);
        workspace().cancelCurrent();
        start();
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
        type("none");
        EXPECT_EQ(log(), Log{invalid});
        expectWaitsForDistance();
    }
}

TEST_F(MoveObjectTest, EnterDoesNothingThoughAnAnswerTypedBeforeLeftOneArmed)
{
    workspace().activate(SelectVolumesOperation::Id);
    type("no");
    ASSERT_EQ(workspace().currentOperation(), nullptr);
    start();
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, FirstClickAsksForTheDestination)
{
    start();
    log().clear();
    press(Vector3D(3, 4, 5));
    EXPECT_EQ(log(), Log{askedForDestination});
    EXPECT_TRUE(m_piece->isMoving());
    expectVector(m_piece->displacement(), 0, 0, 0);
    expectVector(m_piece->position(), 0, 0, 0);
}

TEST_F(MoveObjectTest, RightPressIsAFirstClickToo)
{
    start();
    log().clear();
    press(Vector3D(3, 4, 5), PointerTracker::RightPress);
    EXPECT_EQ(log(), Log{askedForDestination});
    press(Vector3D(4, 4, 5));
    expectVector(m_piece->position(), 1, 0, 0);
}

TEST_F(MoveObjectTest, PointerMovesBeforeTheFirstClickDoNothing)
{
    start();
    log().clear();
    movePointer(Vector3D(20, 20, 20));
    movePointer(Vector3D(30, 30, 30), PointerTracker::LeftPress);
    EXPECT_EQ(log(), Log{});
    expectVector(m_piece->displacement(), 0, 0, 0);
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, EachPointerMoveStoresTheDisplacementAndUpdatesTheViews)
{
    select({m_piece, m_other});
    workspace().activate(MoveObject::Id);
    press(Vector3D(1, 1, 1));
    for (const double offset : {0.5, 2.0, -3.25}) {
        log().clear();
        movePointer(Vector3D(1 + offset, 1 - offset, 1 + 2 * offset));
        EXPECT_EQ(log(), Log{"view updated"});
        for (const Piece &piece : {m_piece, m_other}) {
            EXPECT_TRUE(piece->isMoving());
            expectVector(piece->displacement(), offset, -offset, 2 * offset);
        }
    }
}

TEST_F(MoveObjectTest, DisplacementIsStoredWhenTheViewsAreUpdated)
{
    startDrag();
    int updates = 0;
    watch([this, &updates](const std::string &) {
        ++updates;
        expectVector(m_piece->displacement(), 1, 2, 3);
    });
    movePointer(Vector3D(2, 3, 4));
    EXPECT_EQ(updates, 1);
}

TEST_F(MoveObjectTest, ObjectsKeepTheirPlaceDuringTheDragAndJumpAtTheEnd)
{
    startDrag();
    movePointer(Vector3D(2, 1, 1));
    movePointer(Vector3D(3, 1, 1));
    expectVector(m_piece->position(), 0, 0, 0);
    bool drawnDuringTheDrag = false;
    watch([this, &drawnDuringTheDrag](const std::string &entry) {
        if (m_piece->isMoving()) {
            EXPECT_EQ(entry, "view updated");
            drawnDuringTheDrag = true;
            expectVector(m_piece->displacement(), 4, 0, 0);
            expectVector(m_piece->position(), 0, 0, 0);
        } else {
            expectVector(m_piece->displacement(), 0, 0, 0);
            expectVector(m_piece->position(), 4, 0, 0);
        }
    });
    press(Vector3D(5, 1, 1));
    EXPECT_TRUE(drawnDuringTheDrag);
    EXPECT_FALSE(m_piece->isMoving());
}

TEST_F(MoveObjectTest, DistanceOfTwoClicksIsTheSumOfTheStepsBetween)
{
    start();
    press(Vector3D(10, -20, 30));
    for (int i = 1; i <= 100; ++i)
        movePointer(Vector3D(10 + 0.25 * i, -20 + (i % 7), 30 - 0.5 * i));
    press(Vector3D(14.5, -23, 32.25));
    expectVector(m_piece->position(), 4.5, -3, 2.25);
}

TEST_F(MoveObjectTest, TwoClicksWithoutAMoveBetweenGiveTheDistanceToo)
{
    start();
    press(Vector3D(1, 2, 3));
    press(Vector3D(5, 5, 5));
    expectVector(m_piece->position(), 4, 3, 2);
}

TEST_F(MoveObjectTest, TwoClicksOnOnePointMoveByNothingAndCanBeUndone)
{
    start();
    press(Vector3D(1, 2, 3));
    press(Vector3D(1, 2, 3));
    expectVector(m_piece->position(), 0, 0, 0);
    EXPECT_EQ(workspace().history().undoName(), "Move Objects");
}

TEST_F(MoveObjectTest, RightPressDuringTheDragKeepsDragging)
{
    startDrag();
    log().clear();
    press(Vector3D(3, 1, 1), PointerTracker::RightPress);
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_NE(current(), nullptr);
    EXPECT_TRUE(m_piece->isMoving());
    expectVector(m_piece->displacement(), 2, 0, 0);
    expectVector(m_piece->position(), 0, 0, 0);
    movePointer(Vector3D(4, 2, 1));
    expectVector(m_piece->displacement(), 3, 1, 0);
    EXPECT_NE(current(), nullptr);
    press(Vector3D(5, 5, 5), PointerTracker::RightPress);
    press(Vector3D(6, 6, 6));
    expectVector(m_piece->position(), 5, 5, 5);
}

TEST_F(MoveObjectTest, MoveWithAButtonHeldDownKeepsDragging)
{
    startDrag();
    for (const std::int32_t button : {PointerTracker::LeftPress, PointerTracker::RightPress}) {
        log().clear();
        movePointer(Vector3D(3, button, 1), button);
        EXPECT_EQ(log(), Log{"view updated"});
        EXPECT_NE(current(), nullptr);
        expectVector(m_piece->displacement(), 2, button - 1, 0);
    }
}

TEST_F(MoveObjectTest, LeftPressDuringTheDragMovesAndFinishes)
{
    startDrag();
    movePointer(Vector3D(2, 2, 2));
    log().clear();
    press(Vector3D(4, 5, 6));
    EXPECT_EQ(log(), (Log{"view updated", moved, "undo changed", "redo changed", "view updated",
                          "view updated"}));
    expectVector(m_piece->position(), 3, 4, 5);
    expectVector(m_piece->displacement(), 0, 0, 0);
    EXPECT_FALSE(m_piece->isMoving());
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    EXPECT_EQ(workspace().history().undoName(), "Move Objects");
    expectNothingIsAwaited();
    expectVector(m_piece->position(), 3, 4, 5);
}

TEST_F(MoveObjectTest, ConsoleDoesNothingDuringTheDrag)
{
    startDrag();
    log().clear();
    type("100,100,100");
    type("");
    EXPECT_EQ(log(), Log{});
    press(Vector3D(2, 1, 1));
    expectVector(m_piece->position(), 1, 0, 0);
}

TEST_F(MoveObjectTest, MovedObjectsStayInTheDocument)
{
    moveBy("1,2,3");
    EXPECT_EQ(workspace().document().objects(), (ObjectList{m_piece, m_other}));
}

TEST_F(MoveObjectTest, CellVolumeIsMovedWithItsCellsAsTheyWere)
{
    const Support::Grid grid{2, 3, 4};
    const auto filling = [](auto x, auto, auto z) { return x + z; };
    const auto volume = Support::makeVolume(grid, filling);
    volume->translate(Vector3D(0.5, 0, 0));
    workspace().document().addObject(volume);
    select({volume});
    workspace().activate(MoveObject::Id);
    type("1,2,3");
    expectVector(volume->position(), 1.5, 2, 3);
    EXPECT_EQ(Support::materialsOf(*volume), Support::materialsBy(grid, filling));
}

TEST_F(MoveObjectTest, CancelAtThePromptStaysCurrentAndDropsTheWait)
{
    promptForObjects();
    const Shared operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(current(), operation);
    expectNothingIsAwaited();
}

TEST_F(MoveObjectTest, CancelBeforeTheFirstClickStaysCurrentAndPutsTheObjectsToRest)
{
    start();
    const Shared operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(current(), operation);
    EXPECT_FALSE(m_piece->isMoving());
    expectNothingIsAwaited();
    expectVector(m_piece->position(), 0, 0, 0);
    EXPECT_FALSE(m_piece->isMoving());
}

TEST_F(MoveObjectTest, CancelDuringTheDragStaysCurrentAndPutsTheObjectsToRest)
{
    startDrag();
    movePointer(Vector3D(5, 5, 5));
    const Shared operation = current();
    log().clear();
    watch([this](const std::string &entry) {
        if (entry != "view updated")
            return;
        EXPECT_FALSE(m_piece->isMoving());
        expectVector(m_piece->displacement(), 0, 0, 0);
    });
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(current(), operation);
    expectNothingIsAwaited();
    expectVector(m_piece->displacement(), 0, 0, 0);
    expectVector(m_piece->position(), 0, 0, 0);
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(MoveObjectTest, EachFurtherCancelRepeatsTheMessage)
{
    start();
    workspace().cancelCurrent();
    workspace().cancelCurrent();
    EXPECT_EQ(countOf(canceled), 2);
    EXPECT_NE(current(), nullptr);
}

TEST_F(MoveObjectTest, NextOperationCancelsACancelledMoveOnceMore)
{
    start();
    workspace().cancelCurrent();
    const boost::weak_ptr<MoveObject> first = current();
    workspace().activate(MoveObject::Id);
    EXPECT_EQ(countOf(canceled), 2);
    EXPECT_TRUE(first.expired());
    EXPECT_NE(current(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(MoveObjectTest, StartingItTwiceRestarts)
{
    startDrag();
    movePointer(Vector3D(5, 5, 5));
    const boost::weak_ptr<MoveObject> first = current();
    log().clear();
    start();
    EXPECT_EQ(log(), (Log{canceled, "view updated", started, "view updated"}));
    EXPECT_TRUE(first.expired());
    expectVector(m_piece->displacement(), 0, 0, 0);
    expectWaitsForDistance();
}

TEST_F(MoveObjectTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    startDrag();
    const boost::weak_ptr<MoveObject> operation = current();
    log().clear();
    workspace().activate(unknownId);
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(operation.expired());
    expectNothingIsAwaited();
}

TEST_F(MoveObjectTest, CancelAfterTheEndDoesNothing)
{
    start();
    const Shared operation = current();
    type("1,2,3");
    log().clear();
    operation->cancel();
    EXPECT_EQ(log(), Log{});
    expectVector(m_piece->position(), 1, 2, 3);
    EXPECT_EQ(workspace().history().undoName(), "Move Objects");
}

TEST_F(MoveObjectTest, NextAfterTheEndDoesNothing)
{
    start();
    const Shared operation = current();
    type("1,2,3");
    select({m_other});
    log().clear();
    operation->next();
    EXPECT_EQ(log(), Log{});
    expectVector(m_piece->position(), 1, 2, 3);
    EXPECT_FALSE(m_other->isMoving());
}

TEST_F(MoveObjectTest, EndBeforeThereIsADistanceCancelsAndLeaves)
{
    const std::vector<Fakes::Action> waits{&MoveObjectTest::promptForObjects, [this] { start(); },
                                           [this] { startDrag(); }};
    for (const Fakes::Action &wait : waits) {
        SCOPED_TRACE(&wait - waits.data());
        wait();
        const boost::weak_ptr<MoveObject> operation = current();
        log().clear();
        MoveObject *const waiting = current().get();
        waiting->end();
        EXPECT_EQ(log(), (Log{canceled, "view updated", "view updated"}));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        EXPECT_TRUE(operation.expired());
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_FALSE(m_piece->isMoving());
        expectNothingIsAwaited();
        expectVector(m_piece->position(), 0, 0, 0);
    }
}

TEST_F(MoveObjectTest, UndoMovesBackThenUpdatesTheViews)
{
    select({m_piece, m_other});
    workspace().activate(MoveObject::Id);
    const Shared operation = current();
    type("1.5,-2,3");
    log().clear();
    watch([this](const std::string &) {
        expectVector(m_piece->position(), 0, 0, 0);
        expectVector(m_other->position(), 0, 0, 0);
    });
    EXPECT_EQ(operation->undo(), 1);
    EXPECT_EQ(log(), Log{"view updated"});
}

TEST_F(MoveObjectTest, RedoMovesByTheDistanceAgain)
{
    select({m_piece, m_other});
    workspace().activate(MoveObject::Id);
    press(Vector3D(1, 1, 1));
    movePointer(Vector3D(9, 9, 9));
    press(Vector3D(3, 4, 5));
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        expectVector(m_piece->position(), 0, 0, 0);
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Move Objects");
        EXPECT_TRUE(workspace().history().redo());
        for (const Piece &piece : {m_piece, m_other}) {
            expectVector(piece->position(), 2, 3, 4);
            EXPECT_FALSE(piece->isMoving());
        }
        EXPECT_EQ(workspace().history().undoName(), "Move Objects");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
}

TEST_F(MoveObjectTest, UndoAfterAnEarlierMoveRestoresEachDistanceInTurn)
{
    moveBy("1,2,4");
    moveBy("8,-16,32");
    expectVector(m_piece->position(), 9, -14, 36);
    workspace().history().undo();
    expectVector(m_piece->position(), 1, 2, 4);
    workspace().history().undo();
    expectVector(m_piece->position(), 0, 0, 0);
    workspace().history().redo();
    expectVector(m_piece->position(), 1, 2, 4);
    workspace().history().redo();
    expectVector(m_piece->position(), 9, -14, 36);
}

TEST_F(MoveObjectTest, UndoWhileItDragsCancelsTheDragFirst)
{
    moveBy("1,2,4");
    startDrag();
    movePointer(Vector3D(9, 9, 9));
    log().clear();
    watch([this](const std::string &entry) {
        if (entry == canceled)
            expectVector(m_piece->position(), 1, 2, 4);
    });
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_EQ(log(),
              (Log{canceled, "view updated", "view updated", "redo changed", "undo changed"}));
    expectVector(m_piece->position(), 0, 0, 0);
    EXPECT_FALSE(m_piece->isMoving());
    EXPECT_NE(current(), nullptr);
    expectNothingIsAwaited();
    EXPECT_EQ(workspace().history().redoName(), "Move Objects");
}

TEST_F(MoveObjectTest, MoveThatFinishesAfterAnUndoEmptiesTheRedoStack)
{
    moveBy("1,2,4");
    workspace().history().undo();
    moveBy("0,0,8");
    EXPECT_EQ(workspace().history().redoName(), "");
    EXPECT_FALSE(workspace().history().redo());
    expectVector(m_piece->position(), 0, 0, 8);
}

TEST_F(MoveObjectTest, CancelledMoveLeavesBothStacksAsTheyWere)
{
    moveBy("1,0,0");
    moveBy("2,0,0");
    workspace().history().undo();
    startDrag();
    log().clear();
    workspace().cancelCurrent();
    workspace().activate(unknownId);
    EXPECT_EQ(countOf("undo changed"), 0);
    EXPECT_EQ(countOf("redo changed"), 0);
    workspace().history().redo();
    expectVector(m_piece->position(), 3, 0, 0);
    workspace().history().undo();
    workspace().history().undo();
    expectVector(m_piece->position(), 0, 0, 0);
}

TEST_F(MoveObjectTest, UndoWorksOnObjectsThatTheDocumentNoLongerHolds)
{
    auto piece = boost::make_shared<Fakes::Object>();
    const boost::weak_ptr<Fakes::Object> watched = piece;
    select({piece});
    workspace().activate(MoveObject::Id);
    type("1,2,3");
    piece.reset();
    workspace().document().reset();
    ASSERT_FALSE(watched.expired());
    workspace().history().undo();
    expectVector(watched.lock()->position(), 0, 0, 0);
    workspace().history().clear();
    EXPECT_TRUE(watched.expired());
}
