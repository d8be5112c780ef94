#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"

#include "Fakes.h"
#include "ProcessSuite.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
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
using Core::Operations::IsotropicFilmEtchingOperation;
using Fakes::Log;

namespace {

const char *const selected = "message Isotropic Etching: Cell volume selected.";
const char *const prompted =
    "message Isotropic Etching: Select a cell volume and press Enter/Return.";
const char *const finished = "message Isotropic Etching: Operation finished.";
const char *const canceled = "message Isotropic Etching: Operation canceled.";
const char *const tag = "IsotropicEtching";

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t oxide = 3;
constexpr std::uint32_t unknownId = 5;

class IsotropicFilmEtchingOperationTest : public Fakes::ProcessSuite<IsotropicFilmEtchingOperation>
{
protected:
    using Materials = std::vector<std::uint32_t>;

    static constexpr Support::Grid grid{3, 4, 8};

    /// Two layers of silicon, then some of oxide.
    static Materials layers(std::uint32_t count)
    {
        return Support::materialsBy(grid, [=](auto, auto, auto z) {
            return z < 2 ? silicon : z < 2 + count ? oxide : 0U;
        });
    }
    /// A volume in the document with five layers of oxide.
    static Volume addFilm()
    {
        const Volume volume = Support::makeVolume(grid, layers(5));
        workspace().document().addObject(volume);
        return volume;
    }

    const Volume m_volume = addFilm();
    const Volume m_other = addFilm();
};

} // namespace

TEST_F(IsotropicFilmEtchingOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const IsotropicFilmEtchingOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Isotropic Etching");
    EXPECT_EQ(operation.id(), 14U);
}

TEST_F(IsotropicFilmEtchingOperationTest, SelectedVolumeGoesStraightToTheDialog)
{
    activateOn(m_volume);
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog"}));
    EXPECT_NE(current(), nullptr);
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
}

TEST_F(IsotropicFilmEtchingOperationTest, SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated)
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

TEST_F(IsotropicFilmEtchingOperationTest, FirstVolumeOfTheSelectionIsTheTarget)
{
    m_answer = accept(3.0F, oxide);
    select({boost::make_shared<Fakes::Object>(), m_other, m_volume});
    activate();
    Fakes::expectMaterials(*m_volume, layers(5));
    Fakes::expectMaterials(*m_other, layers(2));
}

TEST_F(IsotropicFilmEtchingOperationTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
}

TEST_F(IsotropicFilmEtchingOperationTest, SelectionOfOtherObjectsAlonePromptsToo)
{
    select({boost::make_shared<Fakes::Object>()});
    activate();
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{prompted});
}

TEST_F(IsotropicFilmEtchingOperationTest, EnterWithNothingPickedRepeatsThePrompt)
{
    activate();
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{prompted});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
}

TEST_F(IsotropicFilmEtchingOperationTest, EnterAfterThePickGoesToTheDialog)
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

TEST_F(IsotropicFilmEtchingOperationTest, NextAfterTheSelectionDoesNothing)
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

TEST_F(IsotropicFilmEtchingOperationTest, AcceptedDialogEtchesTheFilm)
{
    activateOn(m_volume, accept(3.0F, oxide));
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog", "view updated", finished,
                          "undo changed", "redo changed", "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Etching");
    Fakes::expectMaterials(*m_volume, layers(2));
    Fakes::expectMaterials(*m_other, layers(5));
}

TEST_F(IsotropicFilmEtchingOperationTest, PictureAndRecordsAreReadyWhenTheViewsAreUpdated)
{
    workspace().objectRecords().setLatticeStale(m_volume->id(), false);
    int looks = 0;
    watch([this, &looks](const std::string &entry) {
        if (entry != "view updated" || Fakes::faceCount(*m_volume) == 0)
            return;
        ++looks;
        EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 14U);
        EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
    });
    activateOn(m_volume, accept(1.0F, silicon));
    EXPECT_EQ(looks, 2);
}

TEST_F(IsotropicFilmEtchingOperationTest, ValuesMayComeInEitherOrder)
{
    activateOn(m_volume, [](IsotropicFilmEtchingOperation &operation) {
        operation.setMaterial(oxide);
        operation.setThickness(2.0F);
        operation.end();
    });
    Fakes::expectMaterials(*m_volume, layers(3));
}

TEST_F(IsotropicFilmEtchingOperationTest, LaterValueWins)
{
    activateOn(m_volume, [](IsotropicFilmEtchingOperation &operation) {
        operation.setThickness(5.0F);
        operation.setMaterial(silicon);
        accept(1.0F, oxide)(operation);
    });
    Fakes::expectMaterials(*m_volume, layers(4));
}

// The selection counts one step, the observer another, each value one more; three are needed.
TEST_F(IsotropicFilmEtchingOperationTest, EndRunsFromTheThirdStepOnAndCancelsBefore)
{
    for (const bool observed : {false, true})
        for (int values = 0; values <= 3; ++values) {
            SCOPED_TRACE(::testing::Message() << observed << ' ' << values);
            const bool runs = (observed ? 2 : 1) + values >= 3;
            m_observed = observed;
            workspace().history().clear();
            const Volume volume = addFilm();
            activateOn(volume);
            for (int i = 0; i < values; ++i)
                current()->setMaterial(oxide);
            IsotropicFilmEtchingOperation *const operation = current().get();
            log().clear();
            operation->end();
            EXPECT_EQ(log(), (runs ? Log{"view updated", finished, "undo changed", "redo changed",
                                         "view updated"}
                                   : Log{canceled, "view updated"}));
            EXPECT_EQ(workspace().currentOperation(), nullptr);
            EXPECT_EQ(workspace().history().undoName(), runs ? "Isotropic Etching" : "");
            EXPECT_EQ(workspace().objectRecords().lastOperation(volume->id()), runs ? 14U : 0U);
        }
}

TEST_F(IsotropicFilmEtchingOperationTest, EndAtThePromptCancels)
{
    activate();
    IsotropicFilmEtchingOperation *const operation = current().get();
    log().clear();
    operation->end();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(IsotropicFilmEtchingOperationTest, ValuesGivenAtThePromptAreStepsToo)
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
    Fakes::expectMaterials(*m_volume, layers(5));
}

TEST_F(IsotropicFilmEtchingOperationTest, RejectedDialogLeavesItCurrentUntilTheNextOperation)
{
    activateOn(m_volume);
    const boost::weak_ptr<IsotropicFilmEtchingOperation> rejected = current();
    ASSERT_FALSE(rejected.expired());
    EXPECT_EQ(countOf(canceled), 0);
    log().clear();
    activateOn(m_volume);
    // The cancelled one leaves and takes the selection with it.
    EXPECT_EQ(log(), (Log{canceled, "view updated", prompted, "selection mode changed"}));
    EXPECT_TRUE(rejected.expired());
    EXPECT_NE(current(), nullptr);
}

TEST_F(IsotropicFilmEtchingOperationTest, EscapeAfterARejectedDialogCancelsIt)
{
    activateOn(m_volume);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{canceled, "view updated"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmEtchingOperationTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    activateOn(m_volume);
    workspace().activate(unknownId);
    EXPECT_EQ(countOf(canceled), 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmEtchingOperationTest, CancelAtThePromptLeavesAndDropsTheWait)
{
    activate();
    const boost::weak_ptr<IsotropicFilmEtchingOperation> operation = current();
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

TEST_F(IsotropicFilmEtchingOperationTest, CancelledOneChangesNothing)
{
    run(m_other, 1.0F, oxide);
    run(m_other, 1.0F, oxide);
    workspace().history().undo();
    log().clear();
    activateOn(m_volume, [](IsotropicFilmEtchingOperation &operation) {
        operation.setThickness(3.0F);
        operation.setMaterial(oxide);
        operation.cancel();
    });
    EXPECT_EQ(log(), (Log{"view updated", selected, "dialog", canceled, "view updated"}));
    Fakes::expectMaterials(*m_volume, layers(5));
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 0U);
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Etching");
    EXPECT_EQ(workspace().history().redoName(), "Isotropic Etching");
}

TEST_F(IsotropicFilmEtchingOperationTest, LastOperationOfTheVolumeIsRecorded)
{
    workspace().objectRecords().setLastOperation(m_volume->id(), 13);
    run(m_volume, 1.0F, oxide);
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 14U);
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_other->id()), 0U);
}

TEST_F(IsotropicFilmEtchingOperationTest, SiliconAloneMakesTheLatticeStale)
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

TEST_F(IsotropicFilmEtchingOperationTest, OtherMaterialLeavesAStaleLatticeStale)
{
    run(m_volume, 1.0F, oxide);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
    workspace().objectRecords().setLatticeStale(m_volume->id(), true);
    run(m_volume, 1.0F, oxide);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(m_volume->id()));
}

TEST_F(IsotropicFilmEtchingOperationTest, DepthOfNothingChangesNoCellAndCanBeUndone)
{
    run(m_volume, 0.0F, oxide);
    EXPECT_EQ(countOf(finished), 1);
    Fakes::expectMaterials(*m_volume, layers(5));
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Etching");
}

TEST_F(IsotropicFilmEtchingOperationTest, MaterialThatIsNotThereChangesNoCellAndCanBeUndone)
{
    run(m_volume, 3.0F, 7);
    EXPECT_EQ(countOf(finished), 1);
    Fakes::expectMaterials(*m_volume, layers(5));
    EXPECT_EQ(workspace().history().undoName(), "Isotropic Etching");
}

TEST_F(IsotropicFilmEtchingOperationTest, OtherMaterialStopsTheEtching)
{
    run(m_volume, 20.0F, oxide);
    Fakes::expectMaterials(*m_volume, layers(0));
}

// What the dialog hands over when there is no material to choose.
TEST_F(IsotropicFilmEtchingOperationTest, MaterialOfNothingChangesNoCell)
{
    run(m_volume, 3.0F, 0);
    EXPECT_EQ(countOf(finished), 1);
    Fakes::expectMaterials(*m_volume, layers(5));
}

TEST_F(IsotropicFilmEtchingOperationTest, UndoLeavesTheCellsAndThePictureAndOffersRedo)
{
    run(m_volume, 3.0F, oxide);
    const std::size_t faces = Fakes::faceCount(*m_volume);
    EXPECT_GT(faces, 0U);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        Fakes::expectMaterials(*m_volume, layers(2));
        EXPECT_EQ(Fakes::faceCount(*m_volume), faces);
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(workspace().history().redoName(), "Isotropic Etching");
        EXPECT_TRUE(workspace().history().redo());
        Fakes::expectMaterials(*m_volume, layers(2));
        EXPECT_EQ(Fakes::faceCount(*m_volume), faces);
        EXPECT_EQ(workspace().history().undoName(), "Isotropic Etching");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
    EXPECT_EQ(countOf(finished), 1);
    EXPECT_EQ(countOf("dialog"), 1);
}

TEST_F(IsotropicFilmEtchingOperationTest, NewRunAfterAnUndoEmptiesTheRedoStack)
{
    run(m_volume, 1.0F, oxide);
    workspace().history().undo();
    run(m_volume, 1.0F, oxide);
    EXPECT_EQ(workspace().history().redoName(), "");
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_FALSE(workspace().history().undo());
}

TEST_F(IsotropicFilmEtchingOperationTest, UndoWhileAnotherOneAsksCancelsThatFirst)
{
    run(m_volume, 1.0F, oxide);
    activateOn(m_volume);
    log().clear();
    EXPECT_TRUE(workspace().history().undo());
    EXPECT_EQ(log(), (Log{canceled, "view updated", "redo changed", "undo changed"}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
}

TEST_F(IsotropicFilmEtchingOperationTest, RunStoresNoState)
{
    run(m_volume, 2.0F, oxide);
    EXPECT_EQ(contentOf(undoFile()), "");
    EXPECT_EQ(contentOf(redoFile()), "");
}

TEST_F(IsotropicFilmEtchingOperationTest, UndoAndRedoLoadTheStatesOfTheirFiles)
{
    const auto operation = run(m_volume, 3.0F, oxide);
    write(undoFile(), recordsOfAllNumbers(tag, layers(5)));
    write(redoFile(), recordsOfAllNumbers(tag, layers(1)));
    EXPECT_EQ(operation->undo(), 1);
    Fakes::expectMaterials(*m_volume, layers(5));
    const std::size_t whole = Fakes::faceCount(*m_volume);
    operation->redo();
    Fakes::expectMaterials(*m_volume, layers(1));
    EXPECT_LT(Fakes::faceCount(*m_volume), whole);
    Fakes::expectMaterials(*m_other, layers(5));
}

TEST_F(IsotropicFilmEtchingOperationTest, UndoAndRedoPassTheStatesOfOtherClassesOver)
{
    const auto operation = run(m_volume, 3.0F, oxide);
    std::string others;
    for (const char *const other :
         {"IsotropicDeposition", "Electroplating", "Doping", "MooreFilmDep"})
        others += recordsOfAllNumbers(other, layers(5));
    write(undoFile(), others);
    write(redoFile(), others);
    EXPECT_EQ(operation->undo(), 1);
    Fakes::expectMaterials(*m_volume, layers(2));
    operation->redo();
    Fakes::expectMaterials(*m_volume, layers(2));
}

TEST_F(IsotropicFilmEtchingOperationTest, EachOneHasANumberOfItsOwnCountedFromItsConstruction)
{
    const std::uint32_t first = nextNumber(tag);
    EXPECT_EQ(nextNumber(tag), first + 1);
    {
        const IsotropicFilmEtchingOperation unused(&workspace());
        const IsotropicFilmDepositionOperation ofAnotherClass(&workspace());
    }
    activateOn(m_volume);
    workspace().cancelCurrent();
    EXPECT_EQ(nextNumber(tag), first + 4);
}

TEST_F(IsotropicFilmEtchingOperationTest, FirstOneOfTheProgramHasTheNumberZero)
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

TEST_F(IsotropicFilmEtchingOperationTest, UndoWorksOnAVolumeThatTheDocumentNoLongerHolds)
{
    Volume volume = addFilm();
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
