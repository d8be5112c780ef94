#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"

#include "Fakes.h"
#include "ProcessSuite.h"

#include "Support/Volumes.h"

#include <QFile>
#include <QString>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using Core::Operations::IsotropicFilmDepositionOperation;
using Fakes::Log;

namespace {

const char *const selected = "message Isotropic Deposition: Cell volume selected.";
const char *const prompted =
    "message Isotropic Deposition: Select a cell volume and press Enter/Return.";
const char *const finished = "message Isotropic Deposition: Operation finished.";
const char *const canceled = "message Isotropic Deposition: Operation canceled.";
const char *const tag = "IsotropicDeposition";

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t oxide = 3;
constexpr std::uint32_t unknownId = 5;

class IsotropicFilmDepositionOperationTest
    : public Fakes::ProcessSuite<IsotropicFilmDepositionOperation>
{
protected:
    using Materials = std::vector<std::uint32_t>;

    static constexpr Support::Grid grid{3, 4, 8};

    /// Two layers of the floor, then some of a film.
    static Materials layers(std::uint32_t film, std::uint32_t count)
    {
        return Support::materialsBy(grid, [=](auto, auto, auto z) {
            return z < 2 ? 2U : z < 2 + count ? film : 0U;
        });
    }
    /// A volume in the document with that floor.
    static Volume addFloor()
    {
        const Volume volume = Support::makeVolume(grid, layers(0, 0));
        workspace().document().addObject(volume);
        return volume;
    }

    const Volume m_volume = addFloor();
    const Volume m_other = addFloor();
};

} // namespace

TEST_F(IsotropicFilmDepositionOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const IsotropicFilmDepositionOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Isotropic Deposition");
    EXPECT_EQ(operation.id(), 13U);
}

TEST_F(IsotropicFilmDepositionOperationTest, SelectedVolumeGoesStraightToTheDialog)
{
    activateOn(m_volume);
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog"}));
    EXPECT_NE(current(), nullptr);
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(IsotropicFilmDepositionOperationTest, SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated)
{
    workspace().selection().setSelectionMode(true);
    log().clear();
    watch([](const std::string &entry) {
        if (entry != "view updated")
            return;
        EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
        EXPECT_FALSE(workspace().selection().isSelectionMode());
    });
    activateOn(m_volume);
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", selected, "dialog"}));
}

TEST_F(IsotropicFilmDepositionOperationTest, FirstVolumeOfTheSelectionIsTheTarget)
{
    m_answer = accept(3.0F, oxide);
    select({boost::make_shared<Fakes::Object>(), m_other, m_volume});
    activate();
    Fakes::expectMaterials(*m_volume, layers(0, 0));
    Fakes::expectMaterials(*m_other, layers(oxide, 3));
}

TEST_F(IsotropicFilmDepositionOperationTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
}

TEST_F(IsotropicFilmDepositionOperationTest, SelectionOfOtherObjectsAlonePromptsToo)
{
    select({boost::make_shared<Fakes::Object>()});
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{prompted});
}

TEST_F(IsotropicFilmDepositionOperationTest, EnterWithNothingPickedRepeatsThePrompt)
{
    activate();
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
}

TEST_F(IsotropicFilmDepositionOperationTest, EnterAfterThePickGoesToTheDialog)
{
    activate();
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", selected, "dialog"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(IsotropicFilmDepositionOperationTest, NextAfterTheSelectionDoesNothing)
{
    for (const bool observed : {false, true}) {
        m_observed = observed;
        workspace().cancelCurrent();
        activateOn(m_volume);
        select({m_other});
        log().clear();
        current()->next();
        EXPECT_EQ(log(), Log{});
    }
}

TEST_F(IsotropicFilmDepositionOperationTest, AcceptedDialogDepositsTheFilm)
{
    activateOn(m_volume, accept(3.0F, oxide));
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog", "view updated", finished,
                          "undo changed", "redo changed", "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Deposition");
    Fakes::expectMaterials(*m_volume, layers(oxide, 3));
    Fakes::expectMaterials(*m_other, layers(0, 0));
}

TEST_F(IsotropicFilmDepositionOperationTest, PictureAndRecordsAreReadyWhenTheViewsAreUpdated)
{
    workspace().objectRecords().setLatticeStale(m_volume->id(), false);
    int looks = 0;
    watch([this, &looks](const std::string &entry) {
        if (entry != "view updated" || Fakes::faceCount(*m_volume) == 0)
            return;
        ++looks;
        EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 13U);
        EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
    });
    activateOn(m_volume, accept(1.0F, silicon));
    EXPECT_EQ(looks, 2);
}

TEST_F(IsotropicFilmDepositionOperationTest, ValuesMayComeInEitherOrder)
{
    activateOn(m_volume, [](IsotropicFilmDepositionOperation &operation) {
        operation.setMaterial(oxide);
        operation.setThickness(2.0F);
        operation.end();
    });
    Fakes::expectMaterials(*m_volume, layers(oxide, 2));
}

TEST_F(IsotropicFilmDepositionOperationTest, LaterValueWins)
{
    activateOn(m_volume, [](IsotropicFilmDepositionOperation &operation) {
        operation.setThickness(5.0F);
        operation.setMaterial(silicon);
        accept(1.0F, oxide)(operation);
    });
    Fakes::expectMaterials(*m_volume, layers(oxide, 1));
}

// The selection counts one step, the observer another, each value one more; three are needed.
TEST_F(IsotropicFilmDepositionOperationTest, EndRunsFromTheThirdStepOnAndCancelsBefore)
{
    for (const bool observed : {false, true})
        for (int values = 0; values <= 3; ++values) {
            SCOPED_TRACE(::testing::Message() << observed << ' ' << values);
            const bool runs = (observed ? 2 : 1) + values >= 3;
            m_observed = observed;
            workspace().history().clear();
            const Volume volume = addFloor();
            activateOn(volume);
            for (int i = 0; i < values; ++i)
                current()->setMaterial(oxide);
            IsotropicFilmDepositionOperation *const operation = current().get();
            log().clear();
            operation->end();
            EXPECT_EQ(log(), (runs ? Log{"view updated", finished, "undo changed", "redo changed",
                                         "view updated"}
                                   : Log{canceled, "view updated"}));
            EXPECT_EQ(workspace().currentOperation(), nullptr);
            EXPECT_EQ(workspace().history().undoName(), runs ? "Isotropic Deposition" : "");
            EXPECT_EQ(workspace().objectRecords().lastOperation(volume->id()), runs ? 13U : 0U);
        }
}

TEST_F(IsotropicFilmDepositionOperationTest, EndAtThePromptCancels)
{
    activate();
    IsotropicFilmDepositionOperation *const operation = current().get();
    log().clear();
    operation->end();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(IsotropicFilmDepositionOperationTest, ValuesGivenAtThePromptAreStepsToo)
{
    activate();
    current()->setThickness(1.0F);
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
    current()->setMaterial(oxide);
    current()->end();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    Fakes::expectMaterials(*m_volume, layers(0, 0));
}

TEST_F(IsotropicFilmDepositionOperationTest, RejectedDialogLeavesItCurrentUntilTheNextOperation)
{
    activateOn(m_volume);
    const boost::weak_ptr<IsotropicFilmDepositionOperation> rejected = current();
    ASSERT_FALSE(rejected.expired());
    EXPECT_EQ(countOf(canceled), 0);
    log().clear();
    activateOn(m_volume);
    // The cancelled one leaves and takes the selection with it.
    EXPECT_EQ(log(), (Log{canceled, "view updated", prompted, "selection mode changed"}));
    EXPECT_TRUE(rejected.expired());
    EXPECT_NE(current(), nullptr);
}

TEST_F(IsotropicFilmDepositionOperationTest, EscapeAfterARejectedDialogCancelsIt)
{
    activateOn(m_volume);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmDepositionOperationTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    activateOn(m_volume);
    workspace().activate(unknownId);
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmDepositionOperationTest, CancelAtThePromptLeavesAndDropsTheWait)
{
    activate();
    const boost::weak_ptr<IsotropicFilmDepositionOperation> operation = current();
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(operation.expired());
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(IsotropicFilmDepositionOperationTest, CancelledOneChangesNothing)
{
    run(m_other, 1.0F, oxide);
    run(m_other, 1.0F, oxide);
    workspace().history().undo();
    log().clear();
    activateOn(m_volume, [](IsotropicFilmDepositionOperation &operation) {
        operation.setThickness(3.0F);
        operation.setMaterial(oxide);
        operation.cancel();
    });
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog", canceled, "view updated"}));
    Fakes::expectMaterials(*m_volume, layers(0, 0));
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 0U);
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Deposition");
    EXPECT_EQ(workspace().history().redoName(), "Isotropic Deposition");
}

TEST_F(IsotropicFilmDepositionOperationTest, LastOperationOfTheVolumeIsRecorded)
{
    workspace().objectRecords().setLastOperation(m_volume->id(), 14);
    run(m_volume, 1.0F, oxide);
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 13U);
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_other->id()), 0U);
}

TEST_F(IsotropicFilmDepositionOperationTest, SiliconAloneMakesTheLatticeStale)
{
    Core::ObjectRecords &records = workspace().objectRecords();
    records.setLatticeStale(m_volume->id(), false);
    records.setLatticeStale(m_other->id(), false);
    for (const std::uint32_t material : {0U, 2U, oxide, 11U}) {
        run(m_volume, 1.0F, material);
        EXPECT_FALSE(records.isLatticeStale(m_volume->id())) << material;
    }
    run(m_volume, 1.0F, silicon);
    EXPECT_TRUE(records.isLatticeStale(m_volume->id()));
    EXPECT_FALSE(records.isLatticeStale(m_other->id()));
}

TEST_F(IsotropicFilmDepositionOperationTest, OtherMaterialLeavesAStaleLatticeStale)
{
    run(m_volume, 1.0F, oxide);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
    workspace().objectRecords().setLatticeStale(m_volume->id(), true);
    run(m_volume, 1.0F, oxide);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
}

TEST_F(IsotropicFilmDepositionOperationTest, ThicknessOfNothingChangesNoCellAndCanBeUndone)
{
    run(m_volume, 0.0F, oxide);
    EXPECT_EQ(countOf(finished), 1);
    Fakes::expectMaterials(*m_volume, layers(0, 0));
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Deposition");
}

// What the dialog hands over when there is no material to choose.
TEST_F(IsotropicFilmDepositionOperationTest, MaterialOfNothingChangesNoCell)
{
    run(m_volume, 3.0F, 0);
    EXPECT_EQ(countOf(finished), 1);
    Fakes::expectMaterials(*m_volume, layers(0, 0));
}

TEST_F(IsotropicFilmDepositionOperationTest, UndoLeavesTheCellsAndThePictureAndOffersRedo)
{
    run(m_volume, 3.0F, oxide);
    const std::size_t faces = Fakes::faceCount(*m_volume);
    EXPECT_GT(faces, 0U);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        Fakes::expectMaterials(*m_volume, layers(oxide, 3));
        EXPECT_EQ(Fakes::faceCount(*m_volume), faces);
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Isotropic Deposition");
        EXPECT_TRUE(workspace().history().redo());
        Fakes::expectMaterials(*m_volume, layers(oxide, 3));
        EXPECT_EQ(Fakes::faceCount(*m_volume), faces);
        EXPECT_EQ(workspace().history().undoName(), "Isotropic Deposition");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
    EXPECT_EQ(countOf(finished), 1);
    EXPECT_EQ(countOf("dialog"), 1);
}

TEST_F(IsotropicFilmDepositionOperationTest, NewRunAfterAnUndoEmptiesTheRedoStack)
{
    run(m_volume, 1.0F, oxide);
    workspace().history().undo();
    run(m_volume, 1.0F, oxide);
    EXPECT_EQ(workspace().history().redoName(), "");
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_FALSE(workspace().history().undo());
}

TEST_F(IsotropicFilmDepositionOperationTest, UndoWhileAnotherOneAsksCancelsThatFirst)
{
    run(m_volume, 1.0F, oxide);
    activateOn(m_volume);
    log().clear();
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_EQ(log(), (Log{canceled, "view updated", "redo changed", "undo changed"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmDepositionOperationTest, RunStoresNoState)
{
    run(m_volume, 2.0F, oxide);
    EXPECT_EQ(contentOf(undoFile()), "");
    EXPECT_EQ(contentOf(redoFile()), "");
}

TEST_F(IsotropicFilmDepositionOperationTest, UndoAndRedoLoadTheStatesOfTheirFiles)
{
    const auto operation = run(m_volume, 3.0F, oxide);
    write(undoFile(), recordsOfAllNumbers(tag, layers(0, 0)));
    write(redoFile(), recordsOfAllNumbers(tag, layers(oxide, 5)));
    EXPECT_EQ(operation->undo(), 1);
    Fakes::expectMaterials(*m_volume, layers(0, 0));
    const std::size_t bare = Fakes::faceCount(*m_volume);
    operation->redo();
    Fakes::expectMaterials(*m_volume, layers(oxide, 5));
    EXPECT_GT(Fakes::faceCount(*m_volume), bare);
    Fakes::expectMaterials(*m_other, layers(0, 0));
}

TEST_F(IsotropicFilmDepositionOperationTest, UndoAndRedoPassTheStatesOfOtherClassesOver)
{
    const auto operation = run(m_volume, 3.0F, oxide);
    std::string others;
    for (const char *const other : {"IsotropicEtching", "Electroplating", "Doping", "MooreFilmDep"})
        others += recordsOfAllNumbers(other, layers(0, 0));
    write(undoFile(), others);
    write(redoFile(), others);
    EXPECT_EQ(operation->undo(), 1);
    Fakes::expectMaterials(*m_volume, layers(oxide, 3));
    operation->redo();
    Fakes::expectMaterials(*m_volume, layers(oxide, 3));
}

TEST_F(IsotropicFilmDepositionOperationTest, EachOneHasANumberOfItsOwnCountedFromItsConstruction)
{
    const std::uint32_t first = nextNumber(tag);
    EXPECT_EQ(nextNumber(tag), first + 1);
    {
        const IsotropicFilmDepositionOperation unused(&workspace());
    }
    activateOn(m_volume);
    workspace().cancelCurrent();
    EXPECT_EQ(nextNumber(tag), first + 4);
}

TEST_F(IsotropicFilmDepositionOperationTest, FirstOneOfTheProgramHasTheNumberZero)
{
    // Other tests make some too, so that a process with this test alone has to tell.
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(
        {
            const std::uint32_t number = nextNumber(tag);
            for (const std::string &file : {undoFile(), redoFile()})
                QFile::remove(QString::fromStdString(file));
            std::_Exit(static_cast<int>(number % 100));
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(IsotropicFilmDepositionOperationTest, UndoWorksOnAVolumeThatTheDocumentNoLongerHolds)
{
    Volume volume = addFloor();
    const boost::weak_ptr<Model::Automaton::TotalVolume> watched = volume;
    run(volume, 1.0F, oxide);
    m_answer = nullptr;
    volume.reset();
    workspace().document().reset();
    ASSERT_FALSE(watched.expired());
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_TRUE(workspace().history().redo());
    workspace().history().clear();
    EXPECT_TRUE(watched.expired());
}
