#include "Core/Operations/SelectVolumesOperation.h"

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::SelectVolumesOperation;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using ObjectList = Core::PointerTracker::ObjectList;

namespace {

const char *const selected = "message Select volumes: Cell volume selected.";
const char *const prompted =
    "message Select volumes: Select a cell volume and press Enter/Return. To start without a cell "
    "volume type N and press Enter/Return.";

class SelectVolumesOperationTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<SelectVolumesOperation>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [](std::uint32_t id) -> boost::shared_ptr<Core::Operations::Operation> {
                if (id != SelectVolumesOperation::Id)
                    return nullptr;
                return boost::make_shared<SelectVolumesOperation>(&workspace());
            }));
        SelectVolumesOperation::setObserver(Fakes::observing([this] {
            log().push_back("batch run");
            const Shared operation = current();
            ASSERT_NE(operation, nullptr);
            m_volumes.push_back(operation->volume());
        }));
    }

    void TearDown() override
    {
        SelectVolumesOperation::setObserver(nullptr);
        WorkspaceSuite::TearDown();
    }

    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }
    static void activate() { workspace().activate(SelectVolumesOperation::Id); }
    static Shared current()
    {
        return boost::dynamic_pointer_cast<SelectVolumesOperation>(workspace().currentOperation());
    }

    const boost::shared_ptr<TotalVolume> m_volume =
        Support::makeVolume({2, 2, 2}, [](auto, auto, auto) { return 1U; });
    /// What each batch run was given.
    std::vector<boost::shared_ptr<TotalVolume>> m_volumes;
};

} // namespace

TEST_F(SelectVolumesOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const SelectVolumesOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Select volumes");
    EXPECT_EQ(operation.id(), 24U);
}

TEST_F(SelectVolumesOperationTest, SelectedVolumeGoesToTheBatchRunAtOnce)
{
    select({m_volume});
    activate();
    EXPECT_EQ(log(), (Log{"view updated", selected, "batch run", "view updated"}));
    ASSERT_EQ(m_volumes.size(), 1U);
    EXPECT_EQ(m_volumes.front(), m_volume);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(SelectVolumesOperationTest, SelectionIsClearAndItsModeOffWhenTheViewsAreUpdated)
{
    workspace().selection().setSelectionMode(true);
    select({m_volume});
    log().clear();
    watch([](const std::string &entry) {
        if (entry != "view updated")
            return;
        EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
        EXPECT_FALSE(workspace().selection().isSelectionMode());
    });
    activate();
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", selected, "batch run",
                          "view updated"}));
}

TEST_F(SelectVolumesOperationTest, FirstVolumeOfTheSelectionIsTaken)
{
    const auto other = Support::makeVolume({1, 1, 1}, [](auto, auto, auto) { return 1U; });
    select({boost::make_shared<Fakes::Object>(), other, m_volume});
    activate();
    ASSERT_EQ(m_volumes.size(), 1U);
    EXPECT_EQ(m_volumes.front(), other);
}

TEST_F(SelectVolumesOperationTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
}

TEST_F(SelectVolumesOperationTest, SelectionOfOtherObjectsAlonePromptsToo)
{
    select({boost::make_shared<Fakes::Object>()});
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{prompted});
    EXPECT_TRUE(m_volumes.empty());
}

TEST_F(SelectVolumesOperationTest, EnterWithNothingSelectedRepeatsThePrompt)
{
    activate();
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
}

TEST_F(SelectVolumesOperationTest, EnterAfterTheSelectionStartsWithTheVolume)
{
    activate();
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", selected, "batch run",
                          "view updated"}));
    ASSERT_EQ(m_volumes.size(), 1U);
    EXPECT_EQ(m_volumes.front(), m_volume);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(SelectVolumesOperationTest, WordThatBeginsWithNStartsWithoutAVolume)
{
    for (const char *const word : {"N", "n", "No", "nothing selected", "N1"}) {
        SCOPED_TRACE(word);
        activate();
        m_volumes.clear();
        log().clear();
        type(word);
        EXPECT_EQ(log(), (Log{"batch run", "view updated"}));
        ASSERT_EQ(m_volumes.size(), 1U);
        EXPECT_EQ(m_volumes.front(), nullptr);
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }
}

TEST_F(SelectVolumesOperationTest, AnyOtherAnswerAsksAgain)
{
    activate();
    for (const char *const word : {"y", "yes", " n", "1", "Yes, n", "on"}) {
        SCOPED_TRACE(word);
        log().clear();
        type(word);
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_NE(current(), nullptr);
        EXPECT_TRUE(workspace().selection().isSelectionMode());
        EXPECT_TRUE(m_volumes.empty());
    }
    type("");
    EXPECT_EQ(countOf(prompted), 2);
    type("n");
    EXPECT_EQ(m_volumes.size(), 1U);
}

TEST_F(SelectVolumesOperationTest, SelectedVolumeIsTakenWhateverTheAnswer)
{
    for (const char *const word : {"n", "yes"}) {
        SCOPED_TRACE(word);
        activate();
        m_volumes.clear();
        select({m_volume});
        type(word);
        ASSERT_EQ(m_volumes.size(), 1U);
        EXPECT_EQ(m_volumes.front(), m_volume);
    }
}

TEST_F(SelectVolumesOperationTest, VolumeIsEmptyWithoutAnAnswer)
{
    activate();
    EXPECT_EQ(current()->volume(), nullptr);
    type("yes");
    EXPECT_EQ(current()->volume(), nullptr);
}

TEST_F(SelectVolumesOperationTest, VolumeStaysWithTheFinishedOperation)
{
    activate();
    const Shared operation = current();
    select({m_volume});
    type("");
    EXPECT_EQ(operation->volume(), m_volume);
}

TEST_F(SelectVolumesOperationTest, NextAfterTheEndDoesNothing)
{
    activate();
    const Shared operation = current();
    type("n");
    select({m_volume});
    log().clear();
    operation->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(operation->volume(), nullptr);
}

TEST_F(SelectVolumesOperationTest, EndWithoutAnAnswerDoesNothing)
{
    activate();
    const Shared operation = current();
    log().clear();
    operation->end();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(current(), operation);
    type("n");
    EXPECT_EQ(log(), (Log{"batch run", "view updated"}));
}

TEST_F(SelectVolumesOperationTest, CancelLeavesWithoutAMessage)
{
    activate();
    const boost::weak_ptr<SelectVolumesOperation> operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(operation.expired());
}

TEST_F(SelectVolumesOperationTest, AnswerAfterACancelStartsNothing)
{
    activate();
    workspace().cancelCurrent();
    log().clear();
    type("n");
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(SelectVolumesOperationTest, StartingItTwiceRestartsWithoutTheEarlierAnswer)
{
    activate();
    type("yes");
    const boost::weak_ptr<SelectVolumesOperation> first = current();
    log().clear();
    activate();
    EXPECT_EQ(log(), (Log{"view updated", prompted}));
    EXPECT_TRUE(first.expired());
    EXPECT_NE(current(), nullptr);
}

TEST_F(SelectVolumesOperationTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    activate();
    workspace().activate(21);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(countOf("batch run"), 0);
}

TEST_F(SelectVolumesOperationTest, NeverReachesTheUndoStack)
{
    select({m_volume});
    activate();
    activate();
    type("n");
    activate();
    workspace().cancelCurrent();
    EXPECT_EQ(m_volumes.size(), 2U);
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_EQ(countOf("undo changed"), 0);
    EXPECT_FALSE(workspace().history().undo());
}

TEST_F(SelectVolumesOperationTest, FinishesWithoutAnObserverToo)
{
    SelectVolumesOperation::setObserver(nullptr);
    activate();
    log().clear();
    type("n");
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    select({m_volume});
    activate();
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(SelectVolumesOperationTest, ObserverServesAllOperationsOfTheClass)
{
    activate();
    SelectVolumesOperation::setObserver(Fakes::logging(log(), "other batch run"));
    type("n");
    EXPECT_EQ(countOf("other batch run"), 1);
    EXPECT_EQ(countOf("batch run"), 0);
    activate();
    type("n");
    EXPECT_EQ(countOf("other batch run"), 2);
}

TEST_F(SelectVolumesOperationTest, OperationIsReleasedWhenItHasFinished)
{
    activate();
    const boost::weak_ptr<SelectVolumesOperation> operation = current();
    type("n");
    EXPECT_TRUE(operation.expired());
}

TEST_F(SelectVolumesOperationTest, ObserverThatIsReplacedWhileItIsToldLivesToItsEnd)
{
    boost::weak_ptr<Util::IObserver> told;
    {
        const auto replaced = Fakes::observing([&told] {
            SelectVolumesOperation::setObserver(nullptr);
            EXPECT_FALSE(told.expired());
        });
        told = replaced;
        SelectVolumesOperation::setObserver(replaced);
    }
    select({m_volume});
    activate();
    EXPECT_TRUE(told.expired());
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(SelectVolumesOperationTest, OperationThatIsDroppedDuringTheBatchRunEndsThereAndLeavesTheNext)
{
    boost::shared_ptr<Core::Operations::Operation> next;
    SelectVolumesOperation::setObserver(Fakes::observing([&] {
        const boost::weak_ptr<SelectVolumesOperation> self = current();
        workspace().dropOperation();
        EXPECT_FALSE(self.expired());
        activate();
        next = workspace().currentOperation();
    }));
    select({m_volume});
    activate();
    EXPECT_NE(next, nullptr);
    EXPECT_EQ(workspace().currentOperation(), next);
}
