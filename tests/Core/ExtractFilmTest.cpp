#include "Core/Operations/ExtractFilm/ExtractFilm.h"

#include "ProcessSuite.h"

#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Core::Operations::ExtractFilm;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using Util::Vector3D;
using DocumentObjects = Model::Document::ObjectList;

namespace {

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t oxide = 3;
constexpr std::uint32_t gold = 9;

const char *const selected = "message Extract Film: cell volume selected.";
const char *const asked = "message Extract Film: select a cell volume and press Enter/Return.";
const char *const finished = "message Extract Film: film extracted.";
const char *const canceled = "message Extract Film: Operation Canceled!";
const char *const notHeld =
    "message Extract Film: the cell volume does not hold this film, the result is empty.";
const char *const tooLarge = "message Extract Film: the extracted film does not fit into memory.";
const char *const modeChanged = "selection mode changed";
const char *const updated = "view updated";

class ExtractFilmTest : public Fakes::ProcessSuite<ExtractFilm>
{
protected:
    ExtractFilmTest() { workspace().document().addObject(m_source); }

    /// What the dialog gives, and the end.
    static Answer take(std::uint32_t film, bool invert = false)
    {
        return [=](ExtractFilm &operation) {
            operation.setFilm(film);
            operation.setInvert(invert);
            operation.end();
        };
    }
    static DocumentObjects objects() { return workspace().document().objects(); }
    /// The last volume of the document, which is not the source.
    Volume result()
    {
        EXPECT_EQ(objects().size(), 2U);
        EXPECT_EQ(objects().front(), m_source);
        return boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    }

    /// Two layers of silicon, and gold on them: three layers at x 0 and 1, one beyond.
    static std::uint32_t wafer(std::uint32_t x, std::uint32_t, std::uint32_t z)
    {
        return z < 2 ? silicon : z < (x < 2 ? 5U : 3U) ? gold : 0U;
    }

    const Support::Grid m_grid{6, 4, 9, 1.5F, 4.0F, 2.0F};
    const Volume m_source = Support::makeVolume(m_grid, wafer);
};

} // namespace

TEST_F(ExtractFilmTest, HasTheNameAndIdOfItsMenuEntry)
{
    const ExtractFilm operation(&workspace());
    EXPECT_EQ(operation.name(), "Extract Film");
    EXPECT_EQ(operation.id(), 8U);
    EXPECT_FALSE(isObserverClassWide);
}

TEST_F(ExtractFilmTest, SelectedVolumeGoesStraightToTheDialog)
{
    activateOn(m_source);
    EXPECT_EQ(log(), (Log{updated, selected, "dialog"}));
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    select({m_source});
    log().clear();
    current()->next();
    EXPECT_EQ(log(), Log{});
}

TEST_F(ExtractFilmTest, WithoutAVolumeItAsksInSelectionModeUntilThereIsOne)
{
    activate();
    EXPECT_EQ(log(), (Log{asked, modeChanged}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    log().clear();
    type("");
    select({boost::make_shared<Fakes::Object>()});
    type("");
    EXPECT_EQ(log(), (Log{asked, asked}));
    select({boost::make_shared<Fakes::Object>(), m_source});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{modeChanged, updated, selected, "dialog"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
}

TEST_F(ExtractFilmTest, FilmOverTheWholeSubstrateComesOutWholeOnLayerZero)
{
    run(m_source, take(gold));
    EXPECT_EQ(log(), (Log{updated, selected, "dialog", finished, updated, "undo changed",
                          "redo changed", updated}));
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->sizeX(), 6U);
    EXPECT_EQ(made->sizeY(), 4U);
    EXPECT_EQ(made->sizeZ(), 9U);
    Fakes::expectMaterials(*made, Support::materialsBy(m_grid, [](auto x, auto, auto z) {
        return z < (x < 2 ? 3U : 1U) ? gold : 0U;
    }));
    EXPECT_EQ(workspace().history().undoName(), "Extract Film");
}

TEST_F(ExtractFilmTest, InvertedItsTopSideFacesDownAndItRestsOnLayerZero)
{
    const auto corner = Support::makeVolume(m_grid, [](auto x, auto y, auto z) {
        return z == 2 || (z < 5 && z > 2 && x == 0 && y == 0) ? gold : 0U;
    });
    run(corner, take(gold, true));
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, m_source);
    Fakes::expectMaterials(*made, Support::materialsBy(m_grid, [](auto x, auto y, auto z) {
        return z == 2 || (z < 2 && x == 0 && y == 3) ? gold : 0U;
    }));
}

TEST_F(ExtractFilmTest, OfAFilmCutInTwoThePartWithTheLowestXComesOut)
{
    const auto cut = Support::makeVolume(m_grid, [](auto x, auto, auto z) {
        return z < 2 ? silicon : z < 4 && x != 3 ? gold : 0U;
    });
    run(cut, take(gold));
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    Fakes::expectMaterials(*made, Support::materialsBy(m_grid, [](auto x, auto, auto z) {
        return z < 2 && x < 3 ? gold : 0U;
    }));
}

TEST_F(ExtractFilmTest, CellsThatTouchAlongAnEdgeAreNotConnected)
{
    const auto stairs = Support::makeVolume(
        m_grid, [](auto x, auto y, auto z) { return x == y && x == z ? gold : 0U; });
    run(stairs, take(gold));
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    Fakes::expectMaterials(*made, Support::materialsBy(m_grid, [](auto x, auto y, auto z) {
        return x + y + z == 0 ? gold : 0U;
    }));
}

TEST_F(ExtractFilmTest, ResultStandsBesideTheSourceAtAGapOfTenOfTheLargestCells)
{
    m_source->translate(Vector3D(-3.0, 7.0, 0.5));
    run(m_source, take(gold));
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->cellSizeX(), 1.5F);
    EXPECT_EQ(made->cellSizeY(), 4.0F);
    EXPECT_EQ(made->cellSizeZ(), 2.0F);
    EXPECT_EQ(made->position()[0], -3.0 + 16 * 4.0);
    EXPECT_EQ(made->position()[1], 7.0);
    EXPECT_EQ(made->position()[2], 0.5);
}

TEST_F(ExtractFilmTest, SourceIsNotChangedInAnyWay)
{
    m_source->setTopMask({true, false}, 1, 2);
    m_source->rebuildSiLattice();
    const auto lattice = m_source->siLattice();
    workspace().objectRecords().setLastOperation(m_source->id(), 77);
    workspace().objectRecords().setLatticeStale(m_source->id(), false);
    run(m_source, take(silicon, true));
    Fakes::expectMaterials(*m_source, Support::materialsBy(m_grid, wafer));
    EXPECT_EQ(m_source->topMask(), (std::vector<bool>{true, false}));
    EXPECT_EQ(m_source->siLattice(), lattice);
    EXPECT_EQ(m_source->position()[0], 0.0);
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_source->id()), 77U);
    EXPECT_FALSE(workspace().objectRecords().isLatticeStale(m_source->id()));
}

TEST_F(ExtractFilmTest, ResultHasNoSurfaceUntilARebuildAndStaleRecords)
{
    run(m_source, take(gold));
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Fakes::faceCount(*made), 0U);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(made->id()));
    EXPECT_EQ(made->siLattice(), nullptr);
    made->painter().rebuild();
    EXPECT_GT(Fakes::faceCount(*made), 0U);
}

TEST_F(ExtractFilmTest, FilmThatTheVolumeDoesNotHoldGivesAnEmptyResultAndSaysSo)
{
    // The last is void, which no dialog offers.
    for (const std::uint32_t film : {oxide, 4000000000U, 0U}) {
        log().clear();
        run(m_source, take(film));
        EXPECT_EQ(log(), (Log{updated, selected, "dialog", notHeld, finished, updated,
                              "undo changed", "redo changed", updated}));
        const Volume made = result();
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->sizeX(), 6U);
        Fakes::expectMaterials(*made, std::vector<std::uint32_t>(m_grid.cells(), 0));
        workspace().history().undo();
    }
}

TEST_F(ExtractFilmTest, FilmThatTheVolumeHoldsIsNotCalledMissing)
{
    run(m_source, take(gold));
    EXPECT_EQ(countOf(notHeld), 0);
}

TEST_F(ExtractFilmTest, LaterValuesAreTaken)
{
    run(m_source, [](ExtractFilm &operation) {
        operation.setFilm(oxide);
        operation.setInvert(true);
        take(silicon, false)(operation);
    });
    Fakes::expectMaterials(*result(), Support::materialsBy(m_grid, [](auto, auto, auto z) {
        return z < 2 ? silicon : 0U;
    }));
}

TEST_F(ExtractFilmTest, EndBeforeTheVolumeIsThereOnlyUpdatesTheViews)
{
    activate();
    log().clear();
    current()->end();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_NE(current(), nullptr);
    EXPECT_EQ(objects().size(), 1U);
}

TEST_F(ExtractFilmTest, SecondEndOnlyUpdatesTheViews)
{
    const Shared operation = run(m_source, take(gold));
    log().clear();
    operation->end();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(objects().size(), 2U);
}

TEST_F(ExtractFilmTest, CancelSaysSoAndLeavesAtEveryStep)
{
    const auto expectLeft = [&] {
        log().clear();
        workspace().cancelCurrent();
        EXPECT_EQ(log(), (Log{canceled, updated}));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        select({m_source});
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
        select({});
    };
    activate();
    expectLeft();
    activateOn(m_source);
    expectLeft();
    EXPECT_EQ(objects(), DocumentObjects{m_source});
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(ExtractFilmTest, CancelInTheDialogLeavesAtOnce)
{
    activateOn(m_source, [](ExtractFilm &operation) { operation.cancel(); });
    EXPECT_EQ(log(), (Log{updated, selected, "dialog", canceled, updated}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(objects(), DocumentObjects{m_source});
}

TEST_F(ExtractFilmTest, NextOperationCancelsOneThatStillAsks)
{
    activate();
    const boost::weak_ptr<ExtractFilm> first = current();
    log().clear();
    activate();
    EXPECT_EQ(log(), (Log{canceled, updated, asked}));
    EXPECT_TRUE(first.expired());
}

TEST_F(ExtractFilmTest, EachTellsItsOwnObserver)
{
    const auto observed = [](const std::string &entry) {
        const auto operation = boost::make_shared<ExtractFilm>(&workspace());
        operation->setObserver(Fakes::logging(log(), entry));
        return operation;
    };
    const Shared first = observed("first");
    const Shared second = observed("second");
    for (const Shared &operation : {first, second}) {
        select({m_source});
        operation->next();
        EXPECT_EQ(log().back(), operation == first ? "first" : "second");
    }
}

TEST_F(ExtractFilmTest, WithoutAnObserverItWaitsForItsValues)
{
    m_observed = false;
    activateOn(m_source);
    const Shared operation = current();
    ASSERT_NE(operation, nullptr);
    take(gold)(*operation);
    EXPECT_NE(result(), nullptr);
}

TEST_F(ExtractFilmTest, UndoAnswersZeroAndTakesTheResultOut)
{
    const Shared operation = run(m_source, take(gold));
    const Volume made = result();
    log().clear();
    EXPECT_EQ(operation->undo(), 0);
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(objects(), DocumentObjects{m_source});
    log().clear();
    operation->redo();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(objects(), (DocumentObjects{m_source, made}));
}

TEST_F(ExtractFilmTest, UndoDoneTwiceLeavesItsEntry)
{
    run(m_source, take(gold));
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        EXPECT_EQ(objects(), DocumentObjects{m_source});
        EXPECT_EQ(workspace().history().undoName(), "Extract Film");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
}

TEST_F(ExtractFilmTest, VolumesWithASizeOfZeroGiveAnEmptyResult)
{
    for (const Support::Grid &grid :
         {Support::Grid{4294967295, 0, 4294967295}, Support::Grid{4294967295, 1, 0},
          Support::Grid{0, 4294967295, 9}, Support::Grid{0, 0, 0}}) {
        log().clear();
        const Volume empty = Support::makeVolume(grid, std::vector<std::uint32_t>());
        run(empty, take(gold, true));
        EXPECT_EQ(countOf(notHeld), 1);
        const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
        EXPECT_EQ(made->sizeX(), grid.sizeX);
        EXPECT_TRUE(Support::materialsOf(*made).empty());
        EXPECT_GT(made->position()[0], 9.0);
    }
}

// Its arrays are shorter than its sizes promise.
TEST_F(ExtractFilmTest, SourceWhoseCellCountWrappedIsToldAndCancels)
{
    const Volume wrapped = Support::makeVolume({65536, 65536, 4}, std::vector<std::uint32_t>());
    run(wrapped, take(gold));
    EXPECT_EQ(log(), (Log{updated, selected, "dialog", tooLarge, canceled, updated}));
    EXPECT_EQ(objects(), DocumentObjects{m_source});
    EXPECT_EQ(workspace().history().undoName(), "");
}
