#include "Core/Operations/CopyObject.h"

#include "Fakes.h"

#include "Core/Operations/MoveObject.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using Core::PointerTracker;
using Core::Operations::CopyObject;
using Core::Operations::MoveObject;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using Util::Vector3D;
using ObjectList = PointerTracker::ObjectList;

namespace {

const char *const prompted = "message Copy: Select the object(s) to be copied and press Enter";
const char *const started =
    "message Copy: Left click or enter the distance into the console (x, y, z):";
const char *const askedForDestination = "message Copy: Left click on destination.";
const char *const copied = "message Copy: Object(s) copied";
const char *const canceled = "message Copy: Operation canceled";
const char *const leftOut = "message Copy: An object of a kind that cannot be copied was left out.";
const char *const invalid = "message Invalid entry. Enter the x, y, z coordinates.";

void expectVector(const Vector3D &vector, double x, double y, double z)
{
    EXPECT_EQ(vector[0], x);
    EXPECT_EQ(vector[1], y);
    EXPECT_EQ(vector[2], z);
}

/// An object that can be copied. The family that an object and its clones share lists all that are
/// alive, the oldest first.
class Piece final : public Model::Object
{
public:
    using Family = std::vector<Piece *>;

    explicit Piece(std::shared_ptr<Family> family = std::make_shared<Family>())
        : m_family(std::move(family))
    {
        m_family->push_back(this);
    }
    ~Piece() override { m_family->erase(std::find(m_family->begin(), m_family->end(), this)); }

    std::uint32_t objectType() const override { return TotalVolumeType; }
    void draw(bool, bool) override {}
    void drawForPicking() override {}
    Piece *clone() override
    {
        const auto made = new Piece(m_family);
        made->m_position = m_position;
        return made;
    }
    void translate(const Vector3D &offset) override { m_position += offset; }
    void unusedVectorPair(const Vector3D &, const Vector3D &) override {}

    Vector3D position() const { return m_position; }
    const Family &family() const { return *m_family; }

private:
    std::shared_ptr<Family> m_family;
    Vector3D m_position;
};

class CopyObjectTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<CopyObject>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(
            boost::make_shared<Fakes::OperationFactory>(&CopyObjectTest::create));
        m_piece->translate(Vector3D(10, 20, 30));
        workspace().document().addObject(m_piece);
    }

    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void press(const Vector3D &position, std::int32_t button = PointerTracker::LeftPress)
    {
        workspace().pointer().press(button, 0, 0, position);
    }
    static void movePointer(const Vector3D &position)
    {
        workspace().pointer().move(PointerTracker::NoButton, 0, 0, position);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }

    static Shared current()
    {
        return boost::dynamic_pointer_cast<CopyObject>(workspace().currentOperation());
    }
    /// Without the selection nothing is copied, and the user is asked.
    static void promptForObjects() { workspace().activate(CopyObject::Id); }
    /// To the wait for a click or a typed distance, with one object.
    void start()
    {
        select({m_piece});
        workspace().activate(CopyObject::Id);
    }
    /// To the drag, from the point (1, 1, 1).
    void startDrag()
    {
        start();
        press(Vector3D(1, 1, 1));
    }
    void copyBy(const std::string &distance)
    {
        start();
        type(distance);
    }

    /// The one clone that is alive.
    Piece *clone() const
    {
        EXPECT_EQ(m_piece->family().size(), 2U);
        return m_piece->family().back();
    }
    void expectOriginalUntouched() const
    {
        EXPECT_FALSE(m_piece->isMoving());
        expectVector(m_piece->displacement(), 0, 0, 0);
        expectVector(m_piece->position(), 10, 20, 30);
    }
    /// Expects the document to hold the object and one clone of it, displaced so.
    void expectCopyAt(double x, double y, double z) const
    {
        const ObjectList objects = workspace().document().objects();
        ASSERT_EQ(objects.size(), 2U);
        EXPECT_EQ(objects.front(), m_piece);
        ASSERT_EQ(objects.back().get(), clone());
        expectVector(clone()->position(), 10 + x, 20 + y, 30 + z);
        EXPECT_FALSE(clone()->isMoving());
        expectVector(clone()->displacement(), 0, 0, 0);
        expectOriginalUntouched();
    }
    void expectOnlyTheOriginal() const
    {
        EXPECT_EQ(workspace().document().objects(), ObjectList{m_piece});
        expectOriginalUntouched();
    }
    /// Expects that neither the pointer nor the console reaches an operation.
    static void expectNothingIsAwaited()
    {
        log().clear();
        press(Vector3D(4, 4, 4));
        movePointer(Vector3D(5, 5, 5));
        press(Vector3D(6, 6, 6));
        type("");
        type("7,7,7");
        EXPECT_EQ(log(), Log{});
    }

    const boost::shared_ptr<Piece> m_piece = boost::make_shared<Piece>();

private:
    static boost::shared_ptr<Core::Operations::Operation> create(std::uint32_t id)
    {
        if (id == CopyObject::Id)
            return boost::make_shared<CopyObject>(&workspace());
        if (id == MoveObject::Id)
            return boost::make_shared<MoveObject>(&workspace());
        return nullptr;
    }
};

} // namespace

TEST_F(CopyObjectTest, HasTheNameAndIdOfItsMenuEntry)
{
    const CopyObject operation(&workspace());
    EXPECT_EQ(operation.name(), "Copy Objects");
    EXPECT_EQ(operation.id(), 1U);
}

TEST_F(CopyObjectTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    promptForObjects();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{prompted});
    EXPECT_NE(current(), nullptr);
}

TEST_F(CopyObjectTest, EnterAfterTheSelectionStartsAndTurnsTheSelectionModeOff)
{
    promptForObjects();
    select({m_piece});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{started, "selection mode changed", "view updated"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    type("1,2,3");
    expectCopyAt(1, 2, 3);
}

TEST_F(CopyObjectTest, SelectionMadeBeforeStartsAtOnce)
{
    start();
    EXPECT_EQ(log(), (Log{started, "view updated"}));
    EXPECT_EQ(m_piece->family().size(), 2U);
    expectOnlyTheOriginal();
}

TEST_F(CopyObjectTest, CloneIsDraggedAndNotTheObject)
{
    startDrag();
    EXPECT_TRUE(clone()->isMoving());
    expectVector(clone()->displacement(), 0, 0, 0);
    log().clear();
    movePointer(Vector3D(3, 4, 5));
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_TRUE(clone()->isMoving());
    expectVector(clone()->displacement(), 2, 3, 4);
    expectVector(clone()->position(), 10, 20, 30);
    expectOnlyTheOriginal();
}

TEST_F(CopyObjectTest, ThreeNumbersSeparatedByCommasAreTheDistance)
{
    start();
    log().clear();
    type("1.5,-2,0.25");
    EXPECT_EQ(log(), (Log{copied, "undo changed", "redo changed", "view updated", "view updated"}));
    expectCopyAt(1.5, -2, 0.25);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Copy Objects");
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    expectNothingIsAwaited();
    expectCopyAt(1.5, -2, 0.25);
}

TEST_F(CopyObjectTest, SelectionIsClearWhenTheEndIsTold)
{
    start();
    watch(
        [](const std::string &) { EXPECT_TRUE(workspace().pointer().selectedObjects().empty()); });
    type("1,2,3");
    EXPECT_EQ(countOf(copied), 1);
}

TEST_F(CopyObjectTest, BadTypedDistanceIsAnsweredAndAnotherOneIsTaken)
{
    start();
    for (const char *const bad : {"(1,2,3)", "1 2 3", "1,2", "40,50,none"}) {
        SCOPED_TRACE(bad);
        log().clear();
        type(bad);
        EXPECT_EQ(log(), Log{invalid});
        EXPECT_NE(current(), nullptr);
        expectOnlyTheOriginal();
    }
    press(Vector3D(1, 1, 1));
    press(Vector3D(2, 2, 2));
    expectCopyAt(1, 1, 1);
}

TEST_F(CopyObjectTest, EnterWithNothingTypedDoesNothingWhileTheDistanceIsAwaited)
{
    start();
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
    press(Vector3D(1, 1, 1));
    EXPECT_EQ(log(), Log{askedForDestination});
}

TEST_F(CopyObjectTest, EnterDoesNothingThoughAnOperationCancelledBeforeHadArmedOne)
{
    for (const std::uint32_t earlier : {MoveObject::Id, CopyObject::Id}) {
        SCOPED_TRACE(earlier);
        workspace().activate(earlier);
        start();
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
        type("none");
        EXPECT_EQ(log(), Log{invalid});
        expectOnlyTheOriginal();
        workspace().cancelCurrent();
        workspace().selection().clear();
    }
}

TEST_F(CopyObjectTest, TwoClicksGiveTheDistanceAsTheSumOfTheStepsBetween)
{
    start();
    log().clear();
    press(Vector3D(10, -20, 30));
    EXPECT_EQ(log(), Log{askedForDestination});
    for (int i = 1; i <= 20; ++i)
        movePointer(Vector3D(10 + 0.25 * i, -20 + (i % 7), 30 - 0.5 * i));
    log().clear();
    press(Vector3D(14.5, -23, 32.25));
    EXPECT_EQ(log(), (Log{"view updated", copied, "undo changed", "redo changed", "view updated",
                          "view updated"}));
    expectCopyAt(4.5, -3, 2.25);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, RightPressIsAFirstClickAndKeepsDraggingAfterwards)
{
    start();
    press(Vector3D(1, 1, 1), PointerTracker::RightPress);
    log().clear();
    press(Vector3D(3, 1, 1), PointerTracker::RightPress);
    EXPECT_EQ(log(), Log{"view updated"});
    expectVector(clone()->displacement(), 2, 0, 0);
    expectOnlyTheOriginal();
    press(Vector3D(4, 4, 4));
    expectCopyAt(3, 3, 3);
}

TEST_F(CopyObjectTest, ConsoleDoesNothingDuringTheDrag)
{
    startDrag();
    log().clear();
    type("100,100,100");
    type("");
    EXPECT_EQ(log(), Log{});
    press(Vector3D(2, 1, 1));
    expectCopyAt(1, 0, 0);
}

TEST_F(CopyObjectTest, EachSelectedObjectIsCopiedInTheOrderOfTheSelection)
{
    const auto other = boost::make_shared<Piece>();
    workspace().document().addObject(other);
    select({other, m_piece});
    workspace().activate(CopyObject::Id);
    type("1,0,0");
    const ObjectList objects = workspace().document().objects();
    ASSERT_EQ(objects.size(), 4U);
    EXPECT_EQ(std::next(objects.begin(), 2)->get(), other->family().back());
    EXPECT_EQ(objects.back().get(), clone());
    expectVector(other->family().back()->position(), 1, 0, 0);
    expectVector(other->position(), 0, 0, 0);
    expectVector(clone()->position(), 11, 20, 30);
}

TEST_F(CopyObjectTest, CopyHasAnIdOfItsOwn)
{
    copyBy("1,0,0");
    EXPECT_GT(clone()->id(), m_piece->id());
}

TEST_F(CopyObjectTest, CopiedVolumeHasTheCellsAndItsSurfaceWhenItIsShown)
{
    const Support::Grid grid{2, 3, 4};
    const Support::MaterialRule filling = [](auto x, auto, auto z) { return x + z; };
    const auto volume = Support::makeVolume(grid, filling);
    volume->painter().rebuild();
    const auto faces =
        volume->painter().opaqueFaces().size() + volume->painter().transparentFaces().size();
    workspace().document().reset();
    workspace().document().addObject(volume);
    select({volume});
    workspace().activate(CopyObject::Id);
    int looks = 0;
    watch([&](const std::string &) {
        ++looks;
        const ObjectList objects = workspace().document().objects();
        ASSERT_EQ(objects.size(), 2U);
        const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects.back());
        ASSERT_NE(made, nullptr);
        EXPECT_NE(made, volume);
        EXPECT_EQ(Support::materialsOf(*made), Support::materialsBy(grid, filling));
        EXPECT_EQ(Support::nextMaterialsOf(*made), Support::materialsBy(grid, filling));
        expectVector(made->position(), 1, 2, 3);
        EXPECT_EQ(made->painter().opaqueFaces().size() + made->painter().transparentFaces().size(),
                  faces);
    });
    type("1,2,3");
    EXPECT_EQ(looks, 5);
    EXPECT_GT(faces, 0U);
    expectVector(volume->position(), 0, 0, 0);
}

TEST_F(CopyObjectTest, CancelAtThePromptStaysCurrentAndDropsTheWait)
{
    promptForObjects();
    const Shared operation = current();
    log().clear();
    workspace().cancelCurrent();
    ASSERT_FALSE(log().empty());
    EXPECT_EQ(log().front(), canceled);
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(current(), operation);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, CancelBeforeTheFirstClickStaysCurrentAndKeepsTheSelection)
{
    start();
    const Shared operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(current(), operation);
    EXPECT_EQ(workspace().pointer().selectedObjects(), ObjectList{m_piece});
    expectNothingIsAwaited();
    expectOnlyTheOriginal();
}

TEST_F(CopyObjectTest, CancelDuringTheDragStaysCurrentAndTouchesNoObject)
{
    startDrag();
    movePointer(Vector3D(3, 4, 5));
    const Shared operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(current(), operation);
    EXPECT_EQ(workspace().pointer().selectedObjects(), ObjectList{m_piece});
    EXPECT_TRUE(clone()->isMoving());
    expectVector(clone()->displacement(), 2, 3, 4);
    expectNothingIsAwaited();
    expectVector(clone()->displacement(), 2, 3, 4);
    expectOnlyTheOriginal();
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(CopyObjectTest, EachFurtherCancelRepeatsTheMessage)
{
    start();
    workspace().cancelCurrent();
    workspace().cancelCurrent();
    EXPECT_EQ(countOf(canceled), 2);
    EXPECT_NE(current(), nullptr);
}

TEST_F(CopyObjectTest, NextOperationCancelsACancelledCopyOnceMoreAndItsClonesAreGone)
{
    startDrag();
    workspace().cancelCurrent();
    const boost::weak_ptr<CopyObject> first = current();
    workspace().activate(MoveObject::Id);
    EXPECT_EQ(countOf(canceled), 2);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(m_piece->family().size(), 1U);
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(CopyObjectTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    startDrag();
    workspace().activate(5);
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(m_piece->family().size(), 1U);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, StartingItTwiceRestarts)
{
    startDrag();
    const boost::weak_ptr<CopyObject> first = current();
    start();
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_TRUE(first.expired());
    type("1,2,3");
    expectCopyAt(1, 2, 3);
}

TEST_F(CopyObjectTest, CancelAfterTheEndOnlyWritesItsMessage)
{
    start();
    const Shared operation = current();
    type("1,2,3");
    log().clear();
    operation->cancel();
    EXPECT_EQ(countOf(canceled), 1);
    expectCopyAt(1, 2, 3);
    EXPECT_EQ(workspace().history().undoName(), "Copy Objects");
}

TEST_F(CopyObjectTest, NextAfterTheEndDoesNothing)
{
    start();
    const Shared operation = current();
    type("1,2,3");
    select({m_piece});
    log().clear();
    operation->next();
    EXPECT_EQ(log(), Log{});
    expectCopyAt(1, 2, 3);
}

TEST_F(CopyObjectTest, EndBeforeThereIsADistancePlacesTheClonesAllTheSame)
{
    start();
    log().clear();
    current()->end();
    EXPECT_EQ(log(), (Log{copied, "undo changed", "redo changed", "view updated", "view updated"}));
    expectCopyAt(0, 0, 0);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, EndDuringTheDragPlacesTheClonesWhereTheyAre)
{
    startDrag();
    movePointer(Vector3D(3, 4, 5));
    current()->end();
    expectCopyAt(2, 3, 4);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, EndAtThePromptFinishesWithNothingCopied)
{
    promptForObjects();
    log().clear();
    current()->end();
    EXPECT_EQ(log(), (Log{copied, "undo changed", "redo changed", "view updated", "view updated"}));
    expectOnlyTheOriginal();
    EXPECT_EQ(workspace().history().undoName(), "Copy Objects");
    EXPECT_TRUE(workspace().history().undo());
    expectOnlyTheOriginal();
}

TEST_F(CopyObjectTest, UndoTakesTheClonesOutAndUpdatesNoView)
{
    start();
    const Shared operation = current();
    type("1,2,3");
    log().clear();
    EXPECT_EQ(operation->undo(), 1);
    EXPECT_EQ(log(), Log{});
    expectOnlyTheOriginal();
}

TEST_F(CopyObjectTest, RedoAddsTheSameClones)
{
    const auto other = boost::make_shared<Piece>();
    workspace().document().addObject(other);
    select({m_piece, other});
    workspace().activate(CopyObject::Id);
    type("1,2,3");
    const ObjectList after = workspace().document().objects();
    ASSERT_EQ(after.size(), 4U);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        EXPECT_EQ(workspace().document().objects(), (ObjectList{m_piece, other}));
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Copy Objects");
        EXPECT_TRUE(workspace().history().redo());
        EXPECT_EQ(workspace().document().objects(), after);
        EXPECT_EQ(workspace().history().undoName(), "Copy Objects");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
    expectVector(clone()->position(), 11, 22, 33);
}

TEST_F(CopyObjectTest, UndoWhileItRunsCancelsItFirst)
{
    copyBy("1,2,3");
    startDrag();
    log().clear();
    bool canceledBeforeTheUndo = false;
    watch([&canceledBeforeTheUndo](const std::string &entry) {
        if (entry == canceled)
            canceledBeforeTheUndo = workspace().document().objects().size() == 2;
    });
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_TRUE(canceledBeforeTheUndo);
    expectOnlyTheOriginal();
    EXPECT_NE(current(), nullptr);
    expectNothingIsAwaited();
}

TEST_F(CopyObjectTest, CancelledCopyLeavesBothStacksAsTheyWere)
{
    copyBy("1,0,0");
    copyBy("2,0,0");
    workspace().history().undo();
    startDrag();
    log().clear();
    workspace().cancelCurrent();
    workspace().activate(5);
    EXPECT_EQ(countOf("undo changed"), 0);
    EXPECT_EQ(countOf("redo changed"), 0);
    EXPECT_EQ(workspace().history().undoName(), "Copy Objects");
    EXPECT_EQ(workspace().history().redoName(), "Copy Objects");
}

TEST_F(CopyObjectTest, ClonesTakenOutLiveUntilTheHistoryForgetsThem)
{
    copyBy("1,0,0");
    workspace().history().undo();
    EXPECT_EQ(m_piece->family().size(), 2U);
    workspace().history().clear();
    EXPECT_EQ(m_piece->family().size(), 1U);
}

// An extracted model cannot be cloned.
TEST_F(CopyObjectTest, ObjectThatCannotBeClonedLeavesNoEmptyEntryInTheDocument)
{
    const auto model = boost::make_shared<Fakes::Object>();
    workspace().document().addObject(model);
    for (const ObjectList &selected : {ObjectList{model}, ObjectList{m_piece, model}}) {
        select(selected);
        workspace().activate(CopyObject::Id);
        press(Vector3D(1, 1, 1));
        movePointer(Vector3D(2, 2, 2));
        press(Vector3D(3, 3, 3));
        for (const auto &object : workspace().document().objects())
            EXPECT_NE(object, nullptr);
        workspace().history().undo();
        for (const auto &object : workspace().document().objects())
            EXPECT_NE(object, nullptr);
        EXPECT_EQ(workspace().document().objects(), (ObjectList{m_piece, model}));
        workspace().history().redo();
        for (const auto &object : workspace().document().objects())
            EXPECT_NE(object, nullptr);
        workspace().cancelCurrent();
        workspace().history().undo();
    }
    expectVector(model->position(), 0, 0, 0);
}

TEST_F(CopyObjectTest, ObjectThatCannotBeClonedDoesNotKeepTheOthersFromBeingCopied)
{
    const auto model = boost::make_shared<Fakes::Object>();
    select({model, m_piece});
    workspace().activate(CopyObject::Id);
    EXPECT_EQ(log(), (Log{leftOut, started, "view updated"}));
    type("1,2,3");
    EXPECT_EQ(countOf(copied), 1);
    expectCopyAt(1, 2, 3);
}

TEST_F(CopyObjectTest, SelectionOfWhatCannotBeClonedAloneIsRefusedAndAnotherAskedFor)
{
    const auto model = boost::make_shared<Fakes::Object>();
    select({model});
    workspace().activate(CopyObject::Id);
    EXPECT_EQ(log(), (Log{leftOut, prompted, "selection mode changed"}));
    select({m_piece});
    type("");
    type("1,2,3");
    expectCopyAt(1, 2, 3);
}
