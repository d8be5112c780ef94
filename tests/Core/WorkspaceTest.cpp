#include "Core/Workspace.h"

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <boost/pointer_cast.hpp>

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

using Core::Workspace;
using Fakes::Log;

namespace {

/// Selects a cell volume, asks its options observer for one value, and ends: as all processes do.
class Process final : public Core::Operations::ObjectOperation
{
public:
    Process(const std::string &name, Workspace &workspace)
        : ObjectOperation(name, 13),
          m_workspace(workspace)
    {}

    void setObserver(boost::shared_ptr<Util::IObserver> observer)
    {
        m_observer = std::move(observer);
    }
    void setThickness(double thickness)
    {
        m_thickness = thickness;
        ++m_step;
    }
    int step() const { return m_step; }

    void next() override
    {
        if (m_step != 0)
            return;
        for (const boost::shared_ptr<Model::Object> &object :
             m_workspace.pointer().selectedObjects()) {
            m_target = boost::dynamic_pointer_cast<Model::Automaton::TotalVolume>(object);
            if (m_target)
                break;
        }
        if (!m_target) {
            write(": Select a cell volume and press Enter/Return.");
            m_workspace.interpreter().awaitEnter(this);
            m_workspace.selection().setSelectionMode(true);
            return;
        }
        m_workspace.selection().clear();
        m_workspace.selection().setSelectionMode(false);
        Util::notify(m_workspace.updateObservers());
        write(": Cell volume selected.");
        m_step = 1;
        if (m_observer) {
            m_step = 2;
            m_observer->update();
        }
    }

    void cancel() override
    {
        write(": Operation canceled.");
        m_workspace.interpreter().clearRequest();
        m_workspace.dropOperation();
    }

    void end() override
    {
        if (m_step < 3) {
            cancel();
            return;
        }
        m_workspace.objectRecords().setLastOperation(m_target->id(), id());
        m_workspace.objectRecords().setLatticeStale(m_target->id(), true);
        Util::notify(m_workspace.updateObservers());
        write(": Operation finished.");
        m_workspace.interpreter().clearRequest();
        m_workspace.finishOperation();
    }

    std::int32_t undo() override { return 1; }
    void redo() override {}

private:
    void write(const std::string &suffix)
    {
        m_workspace.interpreter().writeMessage(name() + suffix);
    }

    Workspace &m_workspace;
    boost::shared_ptr<Util::IObserver> m_observer;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_target;
    double m_thickness = 0.0;
    int m_step = 0;
};

class WorkspaceTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<Core::Operations::Operation>;

    enum Id : std::uint32_t
    {
        Unknown = 5,
        Plain = 6,
        Undoable = 7,
        Deposition = 13
    };

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [this](std::uint32_t id) { return create(id); }));
    }

    /// The dialog of the process: the user accepts it with a value, or does not.
    void answerDialog(bool accept)
    {
        const auto current = boost::dynamic_pointer_cast<Process>(workspace().currentOperation());
        if (!current)
            return;
        log().push_back("dialog");
        if (accept) {
            current->setThickness(2.5);
            current->end();
        }
    }

    /// What the presenter does on Escape.
    static void pressEscape()
    {
        workspace().cancelCurrent();
        workspace().selection().clear();
        Util::notify(workspace().updateObservers());
    }

    static boost::shared_ptr<Model::Object> cellVolume()
    {
        return Support::makeVolume({2, 2, 2}, [](auto, auto, auto) { return 1U; });
    }

    Fakes::Script m_script;
    bool m_acceptDialog = true;

private:
    Shared create(std::uint32_t id)
    {
        log().push_back("create " + std::to_string(id));
        const std::string number = std::to_string(++m_created);
        switch (id) {
        case Plain:
            return boost::make_shared<Fakes::Operation>("plain " + number, log(), m_script);
        case Undoable:
            return boost::make_shared<Fakes::ObjectOperation>("undoable " + number, log(),
                                                              m_script);
        case Deposition: {
            const auto process = boost::make_shared<Process>("Deposition", workspace());
            process->setObserver(Fakes::observing([this] { answerDialog(m_acceptDialog); }));
            return process;
        }
        default:
            return nullptr;
        }
    }

    int m_created = 0;
};

} // namespace

TEST_F(WorkspaceTest, StartsIdleAndEmpty)
{
    Workspace fresh;
    EXPECT_EQ(fresh.currentOperation(), nullptr);
    EXPECT_EQ(fresh.history().undoName(), "");
    EXPECT_EQ(fresh.history().redoName(), "");
    EXPECT_EQ(fresh.interpreter().message(), "");
    EXPECT_TRUE(fresh.document().objects().empty());
    EXPECT_TRUE(fresh.pointer().selectedObjects().empty());
    EXPECT_FALSE(fresh.selection().isSelectionMode());
    EXPECT_TRUE(fresh.updateObservers().empty());
}

TEST_F(WorkspaceTest, ActivateCreatesTheOperationAndRunsItsFirstStepAsTheCurrentOne)
{
    Shared seen;
    m_script.next = [&seen] { seen = workspace().currentOperation(); };
    workspace().activate(Plain);
    EXPECT_EQ(log(), (Log{"create 6", "next plain 1"}));
    ASSERT_NE(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().currentOperation()->name(), "plain 1");
    EXPECT_EQ(seen, workspace().currentOperation());
}

TEST_F(WorkspaceTest, FactoryIsAskedForTheVeryId)
{
    const std::uint32_t ids[] = {0, 1000, std::numeric_limits<std::uint32_t>::max()};
    for (const std::uint32_t id : ids) {
        log().clear();
        workspace().activate(id);
        EXPECT_EQ(log(), (Log{"create " + std::to_string(id)}));
    }
}

TEST_F(WorkspaceTest, ActivateCancelsThenCreatesThenReleasesTheOldOperation)
{
    workspace().activate(Plain);
    log().clear();
    workspace().activate(Undoable);
    EXPECT_EQ(log(), (Log{"cancel plain 1", "create 7", "destroy plain 1", "next undoable 2"}));
}

TEST_F(WorkspaceTest, OperationThatLeavesWhenCancelledIsGoneBeforeTheNextIsMade)
{
    m_script.cancel = [] { workspace().dropOperation(); };
    workspace().activate(Plain);
    log().clear();
    m_script = {};
    workspace().activate(Undoable);
    // Whether the views still see it is not settled: the caller may hold it until cancel() is over.
    EXPECT_THAT(log(), ::testing::AnyOf(Log{"cancel plain 1", "destroy plain 1", "view updated",
                                            "create 7", "next undoable 2"},
                                        Log{"cancel plain 1", "view updated", "destroy plain 1",
                                            "create 7", "next undoable 2"}));
}

TEST_F(WorkspaceTest, UnknownIdCancelsTheRunningOperationAndLeavesTheWorkspaceIdle)
{
    workspace().activate(Plain);
    log().clear();
    workspace().activate(Unknown);
    EXPECT_EQ(log(), (Log{"cancel plain 1", "create 5", "destroy plain 1"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(WorkspaceTest, ActivatingTheSameIdTwiceRestarts)
{
    workspace().activate(Undoable);
    const Shared first = workspace().currentOperation();
    workspace().activate(Undoable);
    EXPECT_NE(workspace().currentOperation(), nullptr);
    EXPECT_NE(workspace().currentOperation(), first);
    EXPECT_EQ(log(), (Log{"create 7", "next undoable 1", "cancel undoable 1", "create 7",
                          "next undoable 2"}));
}

TEST_F(WorkspaceTest, WithoutAFactoryEveryIdIsUnknown)
{
    workspace().activate(Plain);
    workspace().setOperationFactory(nullptr);
    workspace().activate(Plain);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(countOf("cancel plain 1"), 1);
}

TEST_F(WorkspaceTest, OperationMayFinishWithinItsFirstStep)
{
    m_script.next = [] { workspace().finishOperation(); };
    workspace().activate(Plain);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_THAT(log(), ::testing::UnorderedElementsAre("create 6", "next plain 1", "view updated",
                                                       "destroy plain 1"));
}

TEST_F(WorkspaceTest, CurrentOperationIsACopyOfTheSlot)
{
    workspace().activate(Plain);
    Shared copy = workspace().currentOperation();
    copy.reset();
    EXPECT_NE(workspace().currentOperation(), nullptr);
    copy = workspace().currentOperation();
    workspace().dropOperation();
    EXPECT_EQ(countOf("destroy plain 1"), 0);
    EXPECT_EQ(copy->name(), "plain 1");
}

TEST_F(WorkspaceTest, CancelCurrentLeavesTheSlotToTheOperation)
{
    workspace().activate(Plain);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{"cancel plain 1"}));
    EXPECT_NE(workspace().currentOperation(), nullptr);
}

TEST_F(WorkspaceTest, OperationThatStaysWhenCancelledIsCancelledAgainByTheNext)
{
    m_script.cancel = [] {
        workspace().interpreter().writeMessage("Change Visualization: Operation Canceled!");
    };
    workspace().activate(Plain);
    pressEscape();
    EXPECT_EQ(countOf("message Change Visualization: Operation Canceled!"), 1);
    EXPECT_NE(workspace().currentOperation(), nullptr);
    m_script = {};
    workspace().activate(Undoable);
    EXPECT_EQ(countOf("message Change Visualization: Operation Canceled!"), 2);
    EXPECT_EQ(countOf("destroy plain 1"), 1);
}

TEST_F(WorkspaceTest, EscapeWhileIdleOnlyClearsTheSelectionAndRepaints)
{
    workspace().history().push(
        boost::make_shared<Fakes::ObjectOperation>("earlier", log(), m_script));
    workspace().document().addObject(boost::make_shared<Fakes::Object>());
    workspace().pointer().publishSelected(workspace().document().objects());
    workspace().interpreter().writeMessage("last message");
    log().clear();
    pressEscape();
    EXPECT_EQ(log(), (Log{"view updated"}));
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    EXPECT_EQ(workspace().history().undoName(), "earlier");
    EXPECT_EQ(workspace().document().objects().size(), 1U);
    EXPECT_EQ(workspace().interpreter().message(), "last message");
}

TEST_F(WorkspaceTest, EnterWhileIdleFindsNoWaiter)
{
    workspace().interpreter().enter("");
    workspace().interpreter().enter("1, 2, 3");
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(WorkspaceTest, TypedUndoWithNoOperationWaitingChangesNothing)
{
    workspace().history().push(
        boost::make_shared<Fakes::ObjectOperation>("earlier", log(), m_script));
    log().clear();
    for (const char *const word : {"undo", "redo", "copy", "move", "del", "new", "open", "save"})
        workspace().interpreter().enter(word);
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "earlier");
    EXPECT_EQ(workspace().history().redoName(), "");
}

TEST_F(WorkspaceTest, FinishRecordsThenGoesIdleThenClearsTheSelectionThenUpdatesTheViews)
{
    workspace().activate(Undoable);
    workspace().pointer().publishSelected({boost::make_shared<Fakes::Object>()});
    log().clear();
    watch([](const std::string &entry) {
        const bool recording = entry != "view updated";
        EXPECT_EQ(workspace().history().undoName(), "undoable 1") << entry;
        EXPECT_EQ(workspace().currentOperation() != nullptr, recording) << entry;
        EXPECT_EQ(workspace().pointer().selectedObjects().empty(), !recording) << entry;
    });
    workspace().finishOperation();
    EXPECT_EQ(log(), (Log{"undo changed", "redo changed", "view updated"}));
}

TEST_F(WorkspaceTest, FinishedObjectOperationLivesOnTheUndoStack)
{
    workspace().activate(Undoable);
    workspace().finishOperation();
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(countOf("destroy undoable 1"), 0);
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_EQ(countOf("undo undoable 1"), 1);
    workspace().history().clear();
    EXPECT_EQ(countOf("destroy undoable 1"), 1);
}

TEST_F(WorkspaceTest, OperationThatIsNoObjectOperationNeverReachesTheUndoStack)
{
    workspace().activate(Plain);
    log().clear();
    workspace().finishOperation();
    EXPECT_EQ(log(), (Log{"destroy plain 1", "view updated"}));
    workspace().activate(Plain);
    log().clear();
    workspace().dropOperation();
    EXPECT_EQ(log(), (Log{"destroy plain 2", "view updated"}));
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(WorkspaceTest, ObjectOperationThatEndsByDropNeverReachesTheUndoStack)
{
    workspace().activate(Undoable);
    workspace().pointer().publishSelected({boost::make_shared<Fakes::Object>()});
    log().clear();
    watch([](const std::string &) {
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    });
    workspace().dropOperation();
    EXPECT_EQ(log(), (Log{"destroy undoable 1", "view updated"}));
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(WorkspaceTest, UnpushedOperationLivesOnWhileSomeoneHoldsIt)
{
    workspace().activate(Plain);
    Shared held = workspace().currentOperation();
    workspace().finishOperation();
    EXPECT_EQ(countOf("destroy plain 1"), 0);
    held.reset();
    EXPECT_EQ(countOf("destroy plain 1"), 1);
}

TEST_F(WorkspaceTest, FinishAndDropWhileIdleRecordNothing)
{
    workspace().finishOperation();
    workspace().dropOperation();
    EXPECT_EQ(log(), (Log{"view updated", "view updated"}));
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(WorkspaceTest, OperationMayBeDestroyedWithinItsOwnEnd)
{
    m_script.end = [] { workspace().finishOperation(); };
    workspace().activate(Plain);
    workspace().currentOperation().get()->end();
    EXPECT_EQ(countOf("destroy plain 1"), 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(WorkspaceTest, UpdateObserversAreToldFrontToBack)
{
    workspace().updateObservers().push_back(Fakes::logging(log(), "second"));
    workspace().updateObservers().push_front(Fakes::logging(log(), "zeroth"));
    workspace().dropOperation();
    EXPECT_EQ(log(), (Log{"zeroth", "view updated", "second"}));
}

TEST_F(WorkspaceTest, UndoCancelsTheOperationOfThisWorkspace)
{
    workspace().activate(Undoable);
    workspace().finishOperation();
    workspace().activate(Plain);
    log().clear();
    workspace().history().undo();
    EXPECT_EQ(log(), (Log{"cancel plain 2", "undo undoable 1", "redo changed", "undo changed"}));
}

TEST_F(WorkspaceTest, SelectionPublishesToThePointerTrackerOfThisWorkspace)
{
    workspace().pointer().publishSelected({boost::make_shared<Fakes::Object>()});
    workspace().selection().clear();
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(WorkspaceTest, ProcessStartedWithASelectedCellVolumeGoesStraightToItsDialog)
{
    const boost::shared_ptr<Model::Object> volume = cellVolume();
    workspace().objectRecords().setLatticeStale(volume->id(), false);
    workspace().pointer().publishSelected({boost::make_shared<Fakes::Object>(), volume});
    workspace().activate(Deposition);
    EXPECT_EQ(log(), (Log{"create 13", "view updated", "message Deposition: Cell volume selected.",
                          "dialog", "view updated", "message Deposition: Operation finished.",
                          "undo changed", "redo changed", "view updated"}));
    EXPECT_EQ(workspace().history().undoName(), "Deposition");
    EXPECT_EQ(workspace().objectRecords().lastOperation(volume->id()), 13U);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(volume->id()));
}

TEST_F(WorkspaceTest, SelectionOfAnExtractedModelAloneGivesTheSelectPrompt)
{
    workspace().pointer().publishSelected({boost::make_shared<Fakes::Object>()});
    workspace().activate(Deposition);
    EXPECT_EQ(log(),
              (Log{"create 13", "message Deposition: Select a cell volume and press Enter/Return.",
                   "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_EQ(workspace().pointer().selectedObjects().size(), 1U);
}

TEST_F(WorkspaceTest, EnterWithNothingPickedRepeatsThePrompt)
{
    const std::string prompt = "message Deposition: Select a cell volume and press Enter/Return.";
    workspace().activate(Deposition);
    workspace().interpreter().enter("");
    workspace().interpreter().enter("");
    EXPECT_EQ(log(), (Log{"create 13", prompt, "selection mode changed", prompt, prompt}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
}

TEST_F(WorkspaceTest, EnterAfterAPickLeadsToTheDialog)
{
    workspace().activate(Deposition);
    workspace().pointer().publishSelected({cellVolume()});
    log().clear();
    workspace().interpreter().enter("");
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated",
                          "message Deposition: Cell volume selected.", "dialog", "view updated",
                          "message Deposition: Operation finished.", "undo changed", "redo changed",
                          "view updated"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    log().clear();
    workspace().interpreter().enter("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(WorkspaceTest, RejectedDialogKeepsTheProcessCurrentUntilTheNextActionCancelsIt)
{
    m_acceptDialog = false;
    workspace().pointer().publishSelected({cellVolume()});
    workspace().activate(Deposition);
    EXPECT_EQ(log().back(), "dialog");
    const auto process = boost::dynamic_pointer_cast<Process>(workspace().currentOperation());
    ASSERT_NE(process, nullptr);
    EXPECT_EQ(process->step(), 2);
    EXPECT_EQ(workspace().history().undoName(), "");

    log().clear();
    workspace().activate(Plain);
    EXPECT_EQ(log(), (Log{"message Deposition: Operation canceled.", "view updated", "create 6",
                          "next plain 2"}));
}

TEST_F(WorkspaceTest, EscapeAtThePromptCancelsTheProcessAndItsEnter)
{
    workspace().activate(Deposition);
    log().clear();
    pressEscape();
    EXPECT_EQ(log(),
              (Log{"message Deposition: Operation canceled.", "view updated", "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    log().clear();
    workspace().interpreter().enter("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(WorkspaceTest, EndBeforeItsStepCancelsTheProcess)
{
    workspace().activate(Deposition);
    log().clear();
    workspace().currentOperation().get()->end();
    EXPECT_EQ(log(), (Log{"message Deposition: Operation canceled.", "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(WorkspaceTest, StateFilesLastAsLongAsTheWorkspace)
{
    auto own = std::make_unique<Workspace>();
    const QString undoFile = QString::fromStdString(own->archives().undoFileName());
    const QString redoFile = QString::fromStdString(own->archives().redoFileName());
    EXPECT_NE(own->archives().undoFileName(), workspace().archives().undoFileName());
    EXPECT_TRUE(QFileInfo::exists(undoFile));
    EXPECT_TRUE(QFileInfo::exists(redoFile));
    own.reset();
    EXPECT_FALSE(QFileInfo::exists(undoFile));
    EXPECT_FALSE(QFileInfo::exists(redoFile));
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(workspace().archives().undoFileName())));
}

TEST_F(WorkspaceTest, ClearingTheHistoryKeepsTheStateFilesAndWhatTheyHold)
{
    const std::string name = workspace().archives().undoFileName();
    QFile file(QString::fromStdString(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Doping 0 1 1 1\n");
    file.close();
    workspace().history().clear();
    EXPECT_EQ(workspace().archives().undoFileName(), name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().toStdString(), "Doping 0 1 1 1\n");
}
