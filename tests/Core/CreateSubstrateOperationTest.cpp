#include "Core/Operations/CreateSubstrateOperation.h"

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

using Core::Operations::CreateSubstrateOperation;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using Util::Vector3D;

namespace {

const char *const created = "message Create Substrate: substrate created successfully.";

class CreateSubstrateOperationTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<CreateSubstrateOperation>;
    /// What the user's dialog does with the operation.
    using Answer = std::function<void(CreateSubstrateOperation &)>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [this](std::uint32_t) { return create(); }));
    }

    /// Starts the operation, whose observer answers so while it lives.
    static void activate() { workspace().activate(CreateSubstrateOperation::Id); }

    /// Starts the operation without an observer.
    Shared start()
    {
        m_observed = false;
        activate();
        return current();
    }

    static Shared current()
    {
        return boost::dynamic_pointer_cast<CreateSubstrateOperation>(
            workspace().currentOperation());
    }

    /// The one volume of the document.
    static boost::shared_ptr<TotalVolume> volume()
    {
        const auto objects = workspace().document().objects();
        EXPECT_EQ(objects.size(), 1U);
        return objects.empty() ? nullptr
                               : boost::dynamic_pointer_cast<TotalVolume>(objects.front());
    }

    static void setBox(CreateSubstrateOperation &operation)
    {
        operation.setBoxSubstrate(3, 4, 5, 6, Vector3D(1.5, -2.0, 3.0), 1, 2, 3, 2, 1, 4);
    }
    static bool isBox(TotalVolume &made)
    {
        return Support::materialsOf(made) ==
               Support::materialsBy({4, 5, 6}, [](auto x, auto y, auto z) {
                   return x >= 1 && x < 3 && y == 2 && z >= 3 ? 3U : 0U;
               });
    }
    static void setSphere(CreateSubstrateOperation &operation)
    {
        operation.setSphericalSubstrate(4, 6, 5, 4, Vector3D(-1.0, 0.0, 0.25), 3, 2, 1, 2);
    }
    static bool isSphere(TotalVolume &made)
    {
        return Support::materialsOf(made) ==
               Support::materialsBy({6, 5, 4}, [](int x, int y, int z) {
                   return (x - 3) * (x - 3) + (y - 2) * (y - 2) + (z - 1) * (z - 1) <= 4 ? 4U : 0U;
               });
    }

    Answer m_answer;
    bool m_observed = true;

private:
    boost::shared_ptr<Core::Operations::Operation> create()
    {
        const auto operation = boost::make_shared<CreateSubstrateOperation>(&workspace());
        if (m_observed) {
            // The dialog's observer keeps the operation while it works with it.
            operation->setObserver(Fakes::observing([this] {
                log().push_back("dialog");
                const Shared held = current();
                if (held && m_answer)
                    m_answer(*held);
            }));
        }
        return operation;
    }
};

} // namespace

TEST_F(CreateSubstrateOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const CreateSubstrateOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Create Substrate");
    EXPECT_EQ(operation.id(), 2U);
}

TEST_F(CreateSubstrateOperationTest, FirstStepAsksTheObserverAndWaits)
{
    activate();
    EXPECT_EQ(log(), (Log{"dialog"}));
    ASSERT_NE(current(), nullptr);
    current()->next();
    EXPECT_EQ(log(), (Log{"dialog", "dialog"}));
    EXPECT_TRUE(workspace().document().objects().empty());
}

TEST_F(CreateSubstrateOperationTest, WithoutAnObserverTheFirstStepDoesNothing)
{
    const Shared operation = start();
    ASSERT_NE(operation, nullptr);
    operation->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(current(), operation);
}

TEST_F(CreateSubstrateOperationTest, AnsweredDialogCreatesTheBox)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        setBox(operation);
        operation.next();
    };
    activate();
    EXPECT_EQ(log(), (Log{"dialog", created, "view updated", "undo changed", "redo changed",
                          "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Create Substrate");
    const auto made = volume();
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(isBox(*made));
    EXPECT_EQ(made->position()[0], 1.5);
    EXPECT_EQ(made->position()[1], -2.0);
    EXPECT_EQ(made->position()[2], 3.0);
    EXPECT_EQ(made->cellSizeX(), 1.0F);
    EXPECT_EQ(made->cellSizeY(), 1.0F);
    EXPECT_EQ(made->cellSizeZ(), 1.0F);
}

TEST_F(CreateSubstrateOperationTest, AnsweredDialogCreatesTheSphere)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        setSphere(operation);
        operation.next();
    };
    activate();
    const auto made = volume();
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(isSphere(*made));
    EXPECT_EQ(made->position()[0], -1.0);
    EXPECT_EQ(made->position()[2], 0.25);
}

TEST_F(CreateSubstrateOperationTest, LaterSetterDecidesTheShape)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        setSphere(operation);
        setBox(operation);
        operation.next();
    };
    activate();
    ASSERT_NE(volume(), nullptr);
    EXPECT_TRUE(isBox(*volume()));
    workspace().document().reset();

    m_answer = [](CreateSubstrateOperation &operation) {
        setBox(operation);
        setSphere(operation);
        operation.next();
    };
    activate();
    ASSERT_NE(volume(), nullptr);
    EXPECT_TRUE(isSphere(*volume()));
}

TEST_F(CreateSubstrateOperationTest, VolumeIsInTheDocumentWithItsSurfaceWhenTheViewsAreUpdated)
{
    int updates = 0;
    watch([&updates](const std::string &entry) {
        if (entry != "view updated" && entry != created)
            return;
        ++updates;
        const auto made = volume();
        ASSERT_NE(made, nullptr);
        EXPECT_FALSE(made->painter().opaqueFaces().empty());
    });
    m_answer = [](CreateSubstrateOperation &operation) {
        operation.setBoxSubstrate(1, 4, 5, 6, Vector3D(), 1, 2, 3, 2, 1, 4);
        operation.next();
    };
    activate();
    EXPECT_EQ(updates, 3);
}

TEST_F(CreateSubstrateOperationTest, EndDoesNothingBeforeTheValuesAreGivenAndNextHasSeenThem)
{
    const Shared operation = start();
    operation->end();
    setBox(*operation);
    operation->end();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(current(), operation);
    EXPECT_TRUE(workspace().document().objects().empty());
    operation->next();
    EXPECT_NE(volume(), nullptr);
}

TEST_F(CreateSubstrateOperationTest, NextAfterTheEndDoesNothing)
{
    const Shared operation = start();
    setBox(*operation);
    operation->next();
    log().clear();
    operation->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(workspace().document().objects().size(), 1U);
}

TEST_F(CreateSubstrateOperationTest, CancelLeavesWithoutAMessageAndWithoutAnUndoEntry)
{
    m_answer = [](CreateSubstrateOperation &operation) { operation.cancel(); };
    activate();
    EXPECT_EQ(log(), (Log{"dialog", "view updated"}));
    EXPECT_EQ(workspace().interpreter().message(), "");
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_TRUE(workspace().document().objects().empty());
}

TEST_F(CreateSubstrateOperationTest, NextOperationCancelsOneThatStillAsks)
{
    activate();
    const boost::weak_ptr<CreateSubstrateOperation> first = current();
    activate();
    EXPECT_TRUE(first.expired());
    EXPECT_NE(current(), nullptr);
    EXPECT_EQ(log(), (Log{"dialog", "view updated", "dialog"}));
}

TEST_F(CreateSubstrateOperationTest, UndoAndRedoMoveTheSameVolumeOutOfTheDocumentAndBack)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        setBox(operation);
        operation.next();
    };
    activate();
    const auto made = volume();
    ASSERT_NE(made, nullptr);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        EXPECT_TRUE(workspace().document().objects().empty());
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Create Substrate");
        EXPECT_TRUE(workspace().history().redo());
        EXPECT_EQ(volume(), made);
        EXPECT_TRUE(isBox(*made));
        EXPECT_EQ(workspace().history().undoName(), "Create Substrate");
    }
    EXPECT_EQ(countOf(created), 1);
    EXPECT_EQ(countOf("dialog"), 1);
}

TEST_F(CreateSubstrateOperationTest, UndoAnswersOneAndLeavesOtherObjectsAlone)
{
    const auto other = boost::make_shared<Fakes::Object>();
    workspace().document().addObject(other);
    const Shared operation = start();
    setBox(*operation);
    operation->next();
    ASSERT_EQ(workspace().document().objects().size(), 2U);
    const auto made = workspace().document().objects().back();
    EXPECT_EQ(operation->undo(), 1);
    EXPECT_EQ(workspace().document().objects(), (Model::Document::ObjectList{other}));
    operation->redo();
    EXPECT_EQ(workspace().document().objects(), (Model::Document::ObjectList{other, made}));
}

TEST_F(CreateSubstrateOperationTest, EachRunMakesAVolumeOfItsOwn)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        setBox(operation);
        operation.next();
    };
    activate();
    activate();
    const auto objects = workspace().document().objects();
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects.back()->id(), objects.front()->id() + 1);
    workspace().history().undo();
    EXPECT_EQ(workspace().document().objects(), (Model::Document::ObjectList{objects.front()}));
}

// As the dialog allows before its limits have followed the total height.
TEST_F(CreateSubstrateOperationTest, HeightBeyondTheTotalIsClipped)
{
    m_answer = [](CreateSubstrateOperation &operation) {
        operation.setBoxSubstrate(1, 3, 3, 8, Vector3D(), 0, 0, 0, 3, 3, 999999999);
        operation.next();
    };
    activate();
    ASSERT_NE(volume(), nullptr);
    EXPECT_EQ(Support::materialsOf(*volume()), std::vector<std::uint32_t>(72, 1));
}
