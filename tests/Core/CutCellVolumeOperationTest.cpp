#include "Core/Operations/Visualization/CutCellVolumeOperation.h"

#include "CommonProcessSuite.h"

#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

using Core::Operations::CutCellVolumeOperation;
using Fakes::faceCount;
using Fakes::Log;
using Model::Automaton::CellTriple;

namespace {

constexpr Support::Grid grid{4, 6, 8};

std::vector<std::uint32_t> solid()
{
    return Support::materialsBy(grid, [](auto, auto, auto) { return 1U; });
}

/// The outer faces of a box of cells.
std::size_t boxFaces(std::size_t x, std::size_t y, std::size_t z)
{
    return 2 * (x * y + y * z + z * x);
}

class CutCellVolumeOperationTest : public Fakes::CommonProcessSuite<CutCellVolumeOperation>
{
protected:
    CutCellVolumeOperationTest()
        : CommonProcessSuite({"Change Cut Planes", 2, "Change Cut Planes: Cell volume selected.",
                              "Change Cut Planes: Select a cell volume and press Enter/Return.",
                              "Change Cut Planes: Cut planes changed.",
                              "Change Cut Planes: Operation Canceled!", grid, solid(), solid()},
                             accept(true))
    {
        m_volume->painter().rebuild();
    }

    /// A cut to 2 x 3 x 4 cells.
    static Answer accept(bool rebuildNow)
    {
        return [=](CutCellVolumeOperation &operation) {
            operation.setLimits({1, 2, 3}, {3, 5, 7}, rebuildNow);
            operation.end();
        };
    }
    static void expectLimits(const Volume &volume, const CellTriple &lower, const CellTriple &upper)
    {
        CellTriple actualLower{};
        CellTriple actualUpper{};
        volume->painter().cutLimits(actualLower, actualUpper);
        EXPECT_EQ(actualLower, lower);
        EXPECT_EQ(actualUpper, upper);
    }
    void expectUncut(const Volume &volume) const
    {
        expectLimits(volume, {0, 0, 0}, {grid.sizeX, grid.sizeY, grid.sizeZ});
    }
};

TEST_F(CutCellVolumeOperationTest, HasTheNameOfItsMenuEntryAndTheIdOfSubstrateCreation)
{
    const CutCellVolumeOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Change Cut Planes");
    EXPECT_EQ(operation.id(), 2U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(CutCellVolumeOperationTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(CutCellVolumeOperationTest, SelectedVolumeGoesStraightToTheDialog)
{
    selectedVolumeGoesStraightToTheDialog();
}

TEST_F(CutCellVolumeOperationTest, SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated)
{
    selectionIsClearAndItsModeOffBeforeTheViewsAreUpdated();
}

TEST_F(CutCellVolumeOperationTest, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    withNothingSelectedItPromptsAndTurnsTheSelectionModeOn();
}

TEST_F(CutCellVolumeOperationTest, SelectionOfOtherObjectsAlonePromptsToo)
{
    selectionOfOtherObjectsAlonePromptsToo();
}

TEST_F(CutCellVolumeOperationTest, EnterWithNothingPickedRepeatsThePrompt)
{
    enterWithNothingPickedRepeatsThePrompt();
}

TEST_F(CutCellVolumeOperationTest, EnterAfterThePickGoesToTheDialog)
{
    enterAfterThePickGoesToTheDialog();
}

TEST_F(CutCellVolumeOperationTest, CancelAtThePromptLeavesAndDropsTheWait)
{
    cancelAtThePromptLeavesAndDropsTheWait();
}

TEST_F(CutCellVolumeOperationTest, CancelInTheDialogLeavesAtOnceAndChangesNothing)
{
    cancelInTheDialogLeavesAtOnceAndChangesNothing();
    expectUncut(m_volume);
}

TEST_F(CutCellVolumeOperationTest, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)
{
    unknownOperationIdCancelsItAndLeavesTheWorkspaceIdle();
}

TEST_F(CutCellVolumeOperationTest, FirstVolumeOfTheSelectionIsCut)
{
    m_answer = m_accepted;
    select({boost::make_shared<Fakes::Object>(), m_other, m_volume});
    activate();
    expectUncut(m_volume);
    expectLimits(m_other, {1, 2, 3}, {3, 5, 7});
    EXPECT_EQ(faceCount(*m_other), boxFaces(2, 3, 4));
}

TEST_F(CutCellVolumeOperationTest, WithoutAVolumeThereAreNoLimits)
{
    activate();
    CellTriple lower{7, 8, 9};
    CellTriple upper{1, 2, 3};
    CellTriple sizes{4, 5, 6};
    EXPECT_FALSE(current()->limits(lower, upper, sizes));
    EXPECT_EQ(lower, (CellTriple{7, 8, 9}));
    EXPECT_EQ(upper, (CellTriple{1, 2, 3}));
    EXPECT_EQ(sizes, (CellTriple{4, 5, 6}));
}

TEST_F(CutCellVolumeOperationTest, LimitsAndSizesAreThoseOfTheVolume)
{
    m_volume->painter().setCutLimits({0, 1, 2}, {2, 4, 6});
    activateOn(m_volume);
    CellTriple lower{};
    CellTriple upper{};
    CellTriple sizes{};
    EXPECT_TRUE(current()->limits(lower, upper, sizes));
    EXPECT_EQ(lower, (CellTriple{0, 1, 2}));
    EXPECT_EQ(upper, (CellTriple{2, 4, 6}));
    EXPECT_EQ(sizes, (CellTriple{4, 6, 8}));
}

TEST_F(CutCellVolumeOperationTest, LimitsThatComeBeforeTheVolumeAreIgnored)
{
    activate();
    log().clear();
    current()->setLimits({1, 1, 1}, {2, 2, 2}, true);
    EXPECT_EQ(log(), Log{});
    select({m_volume});
    type("");
    expectUncut(m_volume);
    log().clear();
    current()->end();
    EXPECT_EQ(log(), cancelLog());
}

TEST_F(CutCellVolumeOperationTest, LimitsWithARebuildShowAtOnce)
{
    activateOn(m_volume);
    log().clear();
    watch([&](const std::string &entry) {
        if (entry == "view updated") {
            EXPECT_EQ(faceCount(*m_volume), boxFaces(2, 3, 4));
        }
    });
    current()->setLimits({1, 2, 3}, {3, 5, 7}, true);
    watch(nullptr);
    EXPECT_EQ(log(), Log{"view updated"});
    expectLimits(m_volume, {1, 2, 3}, {3, 5, 7});
    EXPECT_NE(current(), nullptr);
    current()->setLimits({0, 0, 0}, {1, 1, 1}, true);
    EXPECT_EQ(faceCount(*m_volume), 6U);
}

TEST_F(CutCellVolumeOperationTest, LimitsWithoutARebuildShowAtTheEnd)
{
    activateOn(m_volume);
    log().clear();
    current()->setLimits({1, 2, 3}, {3, 5, 7}, false);
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(faceCount(*m_volume), boxFaces(4, 6, 8));
    current()->end();
    EXPECT_EQ(log(), (Log{"view updated", m_facts.finished, "view updated"}));
    EXPECT_EQ(faceCount(*m_volume), boxFaces(2, 3, 4));
}

TEST_F(CutCellVolumeOperationTest, LimitsThatShowAreNotRebuiltAtTheEnd)
{
    activateOn(m_volume);
    current()->setLimits({1, 2, 3}, {3, 5, 7}, true);
    log().clear();
    current()->end();
    EXPECT_EQ(log(), (Log{m_facts.finished, "view updated"}));
}

TEST_F(CutCellVolumeOperationTest, LaterLimitsThatDoNotShowYetAreRebuiltAtTheEnd)
{
    activateOn(m_volume);
    current()->setLimits({1, 2, 3}, {3, 5, 7}, true);
    current()->setLimits({0, 0, 0}, {1, 1, 1}, false);
    log().clear();
    current()->end();
    EXPECT_EQ(log(), (Log{"view updated", m_facts.finished, "view updated"}));
    EXPECT_EQ(faceCount(*m_volume), 6U);
}

TEST_F(CutCellVolumeOperationTest, EndWithoutLimitsCancels)
{
    for (const bool atThePrompt : {true, false}) {
        if (atThePrompt)
            activate();
        else
            activateOn(m_volume);
        log().clear();
        current()->end();
        EXPECT_EQ(log(), cancelLog());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }
    expectUncut(m_volume);
}

TEST_F(CutCellVolumeOperationTest, NextAfterTheSelectionDoesNothing)
{
    activateOn(m_volume);
    select({m_other});
    log().clear();
    current()->next();
    current()->setLimits({1, 2, 3}, {3, 5, 7}, false);
    current()->next();
    EXPECT_EQ(log(), Log{});
    expectUncut(m_other);
}

TEST_F(CutCellVolumeOperationTest, FinishedOneIsDestroyedAndLeavesCellsRecordsAndUndoAlone)
{
    Core::ObjectRecords &records = workspace().objectRecords();
    records.setLastOperation(m_volume->id(), 77);
    records.setLatticeStale(m_volume->id(), false);
    boost::weak_ptr<CutCellVolumeOperation> operation;
    activateOn(m_volume, [&](CutCellVolumeOperation &running) {
        operation = current();
        m_accepted(running);
        EXPECT_FALSE(operation.expired());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    });
    EXPECT_TRUE(operation.expired());
    EXPECT_EQ(countOf(m_facts.finished), 1);
    Fakes::expectMaterials(*m_volume, solid());
    EXPECT_EQ(records.lastOperation(m_volume->id()), 77U);
    EXPECT_FALSE(records.isLatticeStale(m_volume->id()));
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(CutCellVolumeOperationTest, LimitsStayWithTheVolumeUntilTheyAreChanged)
{
    run(m_volume);
    m_volume->painter().rebuild();
    EXPECT_EQ(faceCount(*m_volume), boxFaces(2, 3, 4));
    run(m_volume, [&](CutCellVolumeOperation &operation) {
        CellTriple lower{};
        CellTriple upper{};
        CellTriple sizes{};
        EXPECT_TRUE(operation.limits(lower, upper, sizes));
        EXPECT_EQ(lower, (CellTriple{1, 2, 3}));
        EXPECT_EQ(upper, (CellTriple{3, 5, 7}));
        operation.cancel();
    });
    expectLimits(m_volume, {1, 2, 3}, {3, 5, 7});
}

} // namespace
