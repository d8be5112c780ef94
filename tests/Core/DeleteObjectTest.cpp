#include "Core/Operations/DeleteObject.h"

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::DeleteObject;
using Fakes::Log;
using ObjectList = Core::PointerTracker::ObjectList;

namespace {

const char *const prompted =
    "message Delete: Select the objects to be deleted and press Return/Enter";
const char *const deleted = "message Delete: objects deleted.";
const char *const canceled = "message Delete: Operation canceled.";
const char *const nothingSelected = "message Delete: Operation canceled, no selected objects.";

class DeleteObjectTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<DeleteObject>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [](std::uint32_t id) -> boost::shared_ptr<Core::Operations::Operation> {
                if (id != DeleteObject::Id)
                    return nullptr;
                return boost::make_shared<DeleteObject>(&workspace());
            }));
        for (const auto &object : {m_first, m_second, m_third})
            workspace().document().addObject(object);
    }

    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }
    static void activate() { workspace().activate(DeleteObject::Id); }
    static void remove(const ObjectList &objects)
    {
        select(objects);
        activate();
    }
    static Shared current()
    {
        return boost::dynamic_pointer_cast<DeleteObject>(workspace().currentOperation());
    }
    static ObjectList objects() { return workspace().document().objects(); }

    const boost::shared_ptr<Model::Object> m_first = boost::make_shared<Fakes::Object>();
    const boost::shared_ptr<Model::Object> m_second =
        Support::makeVolume({2, 2, 2}, [](auto, auto, auto) { return 1U; });
    const boost::shared_ptr<Model::Object> m_third = boost::make_shared<Fakes::Object>();
};

} // namespace

TEST_F(DeleteObjectTest, HasTheNameAndIdOfItsMenuEntry)
{
    const DeleteObject operation(&workspace());
    EXPECT_EQ(operation.name(), "Delete Objects");
    EXPECT_EQ(operation.id(), 4U);
}

TEST_F(DeleteObjectTest, SelectionIsDeletedInOneActionWithNoPrompt)
{
    remove({m_third, m_second});
    EXPECT_EQ(log(),
              (Log{"view updated", deleted, "undo changed", "redo changed", "view updated"}));
    EXPECT_EQ(objects(), ObjectList{m_first});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Delete Objects");
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(DeleteObjectTest, ObjectsAndSelectionAreGoneWhenTheViewsAreUpdated)
{
    for (const bool mode : {false, true}) {
        SCOPED_TRACE(mode);
        workspace().document().reset();
        workspace().document().addObject(m_first);
        workspace().document().addObject(m_second);
        workspace().selection().setSelectionMode(mode);
        int updates = 0;
        watch([this, &updates](const std::string &entry) {
            if (entry != "view updated")
                return;
            ++updates;
            EXPECT_EQ(objects(), ObjectList{m_first});
            EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
            EXPECT_FALSE(workspace().selection().isSelectionMode());
        });
        remove({m_second});
        EXPECT_EQ(updates, 2);
        watch(nullptr);
    }
}

TEST_F(DeleteObjectTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
}

TEST_F(DeleteObjectTest, EnterWithNothingSelectedRepeatsThePrompt)
{
    activate();
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
    EXPECT_EQ(objects().size(), 3U);
}

TEST_F(DeleteObjectTest, EnterAfterTheSelectionDeletesAndTurnsTheSelectionModeOff)
{
    activate();
    select({m_first, m_third});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", deleted, "undo changed",
                          "redo changed", "view updated"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    EXPECT_EQ(objects(), ObjectList{m_second});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(DeleteObjectTest, SelectedObjectThatTheDocumentDoesNotHoldIsNoTrouble)
{
    remove({boost::make_shared<Fakes::Object>(), m_first});
    EXPECT_EQ(objects(), (ObjectList{m_second, m_third}));
    EXPECT_EQ(countOf(deleted), 1);
}

TEST_F(DeleteObjectTest, CancelAtThePromptLeavesWithItsMessage)
{
    activate();
    const boost::weak_ptr<DeleteObject> operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{"view updated", canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(operation.expired());
    EXPECT_EQ(objects().size(), 3U);
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(DeleteObjectTest, EnterAfterACancelDeletesNothing)
{
    activate();
    workspace().cancelCurrent();
    select({m_first});
    log().clear();
    type("");
    type("del");
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(objects().size(), 3U);
}

TEST_F(DeleteObjectTest, StartingItTwiceRestarts)
{
    activate();
    const boost::weak_ptr<DeleteObject> first = current();
    log().clear();
    activate();
    EXPECT_EQ(log(), (Log{"view updated", canceled, "view updated", prompted}));
    EXPECT_TRUE(first.expired());
    ASSERT_NE(current(), nullptr);
    select({m_second});
    type("");
    EXPECT_EQ(objects(), (ObjectList{m_first, m_third}));
}

TEST_F(DeleteObjectTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    activate();
    workspace().activate(25);
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(DeleteObjectTest, EndBeforeThereIsASelectionLeavesWithAMessageOfItsOwn)
{
    activate();
    DeleteObject *const waiting = current().get();
    log().clear();
    waiting->end();
    EXPECT_EQ(log(), (Log{"view updated", nothingSelected, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(DeleteObjectTest, NextAfterTheEndDoesNothing)
{
    activate();
    const Shared operation = current();
    select({m_first});
    type("");
    select({m_second});
    log().clear();
    operation->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(objects(), (ObjectList{m_second, m_third}));
}

TEST_F(DeleteObjectTest, UndoAddsTheObjectsInTheOrderOfTheSelectionThenUpdatesTheViews)
{
    activate();
    const Shared operation = current();
    select({m_third, m_first});
    type("");
    log().clear();
    const ObjectList restored{m_second, m_third, m_first};
    watch([&restored](const std::string &) { EXPECT_EQ(objects(), restored); });
    EXPECT_EQ(operation->undo(), 1);
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_EQ(objects(), restored);
}

TEST_F(DeleteObjectTest, RedoRemovesTheObjectsThenUpdatesTheViews)
{
    activate();
    const Shared operation = current();
    select({m_third, m_first});
    type("");
    operation->undo();
    log().clear();
    watch([this](const std::string &) { EXPECT_EQ(objects(), ObjectList{m_second}); });
    operation->redo();
    EXPECT_EQ(log(), Log{"view updated"});
}

TEST_F(DeleteObjectTest, UndoAndRedoMoveTheEntryBetweenTheStacks)
{
    remove({m_first});
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        EXPECT_EQ(objects(), (ObjectList{m_second, m_third, m_first}));
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Delete Objects");
        EXPECT_TRUE(workspace().history().redo());
        EXPECT_EQ(objects(), (ObjectList{m_second, m_third}));
        EXPECT_EQ(workspace().history().undoName(), "Delete Objects");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
    EXPECT_EQ(countOf(deleted), 1);
}

TEST_F(DeleteObjectTest, UndoAtThePromptCancelsItFirst)
{
    remove({m_first});
    activate();
    log().clear();
    watch([this](const std::string &entry) {
        if (entry != canceled)
            return;
        EXPECT_EQ(objects(), (ObjectList{m_second, m_third}));
    });
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_EQ(log(), (Log{"view updated", canceled, "view updated", "view updated", "redo changed",
                          "undo changed"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(objects().size(), 3U);
}

TEST_F(DeleteObjectTest, DeletionThatFinishesAfterAnUndoEmptiesTheRedoStack)
{
    remove({m_first});
    workspace().history().undo();
    remove({m_second});
    EXPECT_EQ(workspace().history().redoName(), "");
    EXPECT_EQ(objects(), (ObjectList{m_third, m_first}));
}

TEST_F(DeleteObjectTest, CancelledDeletionLeavesBothStacksAsTheyWere)
{
    remove({m_first});
    remove({m_second});
    workspace().history().undo();
    log().clear();
    activate();
    workspace().cancelCurrent();
    EXPECT_EQ(countOf("undo changed"), 0);
    EXPECT_EQ(countOf("redo changed"), 0);
    EXPECT_EQ(workspace().history().undoName(), "Delete Objects");
    EXPECT_EQ(workspace().history().redoName(), "Delete Objects");
    workspace().history().redo();
    EXPECT_EQ(objects(), ObjectList{m_third});
}

TEST_F(DeleteObjectTest, DeletedObjectLivesUntilTheHistoryForgetsIt)
{
    auto object = boost::make_shared<Fakes::Object>();
    const boost::weak_ptr<Fakes::Object> watched = object;
    workspace().document().addObject(object);
    remove({object});
    object.reset();
    EXPECT_FALSE(watched.expired());
    workspace().history().undo();
    workspace().history().redo();
    EXPECT_FALSE(watched.expired());
    workspace().history().clear();
    EXPECT_TRUE(watched.expired());
}
