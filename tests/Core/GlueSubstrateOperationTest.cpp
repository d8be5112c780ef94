#include "Core/Operations/GlueSubstrate/GlueSubstrateOperation.h"

#include "ProcessSuite.h"

#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

using Core::Operations::GlueSubstrateOperation;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using Util::Vector3D;
using DocumentObjects = Model::Document::ObjectList;

namespace {

constexpr std::uint32_t silicon = 1;
constexpr std::uint32_t oxide = 3;
constexpr std::uint32_t gold = 9;

const char *const baseSelected =
    "message Glue Volumes: base cell volume selected. Select top cell volume and press enter";
const char *const baseAsked =
    "message Glue Volumes: select the base cell volume and press Enter/Return.";
const char *const topSelected = "message Glue Volumes: top cell volume selected.";
const char *const topAsked =
    "message Glue Volumes: select the top cell volume and press Enter/Return.";
// Both operations end with the same words.
const char *const finished = "message Extract Film: film extracted.";
const char *const tooLarge = "message Glue Volumes: the final volume does not fit into memory.";
const char *const topEmpty = "message Glue Volumes: the top cell volume is empty.";
const char *const modeChanged = "selection mode changed";
const char *const updated = "view updated";

class GlueSubstrateOperationTest : public Fakes::ProcessSuite<GlueSubstrateOperation>
{
protected:
    GlueSubstrateOperationTest()
    {
        workspace().document().addObject(m_base);
        workspace().document().addObject(m_top);
    }

    /// With the base selected, as far as the question for the top.
    void chooseBase(const Volume &base)
    {
        select({base});
        activate();
    }
    void chooseTop(const Volume &top)
    {
        select({top});
        type("");
    }
    void choose(const Volume &base, const Volume &top, Answer answer = nullptr)
    {
        m_answer = std::move(answer);
        chooseBase(base);
        chooseTop(top);
    }
    /// The whole road; the operation is on the undo stack then, if it glued.
    Shared glue(const Volume &base, const Volume &top, const Answer &before = nullptr)
    {
        Shared operation;
        choose(base, top, [&](GlueSubstrateOperation &running) {
            operation = current();
            if (before)
                before(running);
            running.end();
        });
        m_answer = nullptr;
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        return operation;
    }

    static DocumentObjects objects() { return workspace().document().objects(); }
    /// The one volume that is left of all.
    static Volume result()
    {
        EXPECT_EQ(objects().size(), 1U);
        return objects().empty() ? nullptr
                                 : boost::dynamic_pointer_cast<TotalVolume>(objects().front());
    }
    DocumentObjects sources() const { return {m_base, m_top}; }

    static Volume layers(const Support::Grid &grid, std::uint32_t first, std::uint32_t end,
                         std::uint32_t material)
    {
        return Support::makeVolume(
            grid, [=](auto, auto, auto z) { return z >= first && z < end ? material : 0U; });
    }

    /// Cell sizes differ on every axis, to and fro.
    const Support::Grid m_baseGrid{6, 5, 9, 1.0F, 3.0F, 2.0F};
    const Support::Grid m_topGrid{4, 7, 8, 2.0F, 1.5F, 2.5F};
    /// 4 layers of silicon; from 2 to 5, oxide with a pillar of gold on it at the low corner.
    const Volume m_base = layers(m_baseGrid, 0, 4, silicon);
    const Volume m_top = Support::makeVolume(m_topGrid, [](auto x, auto y, auto z) {
        if (z >= 2 && z < 4)
            return oxide;
        return z >= 4 && z < 6 && x == 0 && y == 0 ? gold : 0U;
    });
    const Support::PoolThreads m_oneThread{1};
};

} // namespace

TEST_F(GlueSubstrateOperationTest, HasTheNameAndIdOfItsMenuEntry)
{
    const GlueSubstrateOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Glue Volumes");
    EXPECT_EQ(operation.id(), 12U);
    EXPECT_FALSE(isObserverClassWide);
}

TEST_F(GlueSubstrateOperationTest, WithNothingSelectedItAsksForTheBaseUntilThereIsOne)
{
    activate();
    EXPECT_EQ(log(), (Log{baseAsked, modeChanged}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{baseAsked});
    }
    select({boost::make_shared<Fakes::Object>()});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{baseAsked});
    chooseTop(m_base);
    EXPECT_EQ(countOf(baseSelected), 1);
}

TEST_F(GlueSubstrateOperationTest, SelectedVolumeIsTheBaseAndTheTopIsAskedForInSelectionMode)
{
    chooseBase(m_base);
    EXPECT_EQ(log(), (Log{updated, baseSelected, topAsked, modeChanged}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    EXPECT_NE(current(), nullptr);
}

TEST_F(GlueSubstrateOperationTest, EnterWithNothingPickedAsksForTheTopAgain)
{
    chooseBase(m_base);
    for (int round = 0; round < 2; ++round) {
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{topAsked});
        EXPECT_TRUE(workspace().selection().isSelectionMode());
    }
    select({boost::make_shared<Fakes::Object>()});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{topAsked});
    log().clear();
    chooseTop(m_top);
    EXPECT_EQ(log(), (Log{modeChanged, updated, topSelected, "dialog"}));
}

TEST_F(GlueSubstrateOperationTest, EnterWithTheTopPickedLeavesSelectionModeAndAsksTheObserver)
{
    chooseBase(m_base);
    log().clear();
    chooseTop(m_top);
    EXPECT_EQ(log(), (Log{modeChanged, updated, topSelected, "dialog"}));
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    log().clear();
    select({m_base});
    type("");
    current()->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(objects(), sources());
}

TEST_F(GlueSubstrateOperationTest, FirstSelectedVolumeIsTakenEachTime)
{
    const auto object = boost::make_shared<Fakes::Object>();
    select({object, m_base, m_top});
    activate();
    select({object, m_top, m_base});
    m_answer = [](GlueSubstrateOperation &operation) { operation.end(); };
    type("");
    ASSERT_NE(result(), nullptr);
    // The base's layers are the lowest.
    EXPECT_EQ(Support::materialsOf(*result()).front(), silicon);
}

TEST_F(GlueSubstrateOperationTest, LimitsAreZeroUntilBothVolumesAreThere)
{
    chooseBase(m_base);
    EXPECT_EQ(current()->minimumX(), 0U);
    EXPECT_EQ(current()->minimumZ(), 0U);
    EXPECT_EQ(current()->maximumDisplacementX(), 0U);
    chooseTop(m_top);
    EXPECT_EQ(current()->minimumX(), 6U);
    EXPECT_EQ(current()->minimumY(), 7U);
    EXPECT_EQ(current()->minimumZ(), 8U);
    EXPECT_EQ(current()->maximumDisplacementX(), 2U);
    EXPECT_EQ(current()->maximumDisplacementY(), 0U);
}

TEST_F(GlueSubstrateOperationTest, TwoEqualSubstratesWithThirtyLayersAreSixtyLayersHigh)
{
    const auto base = layers({100, 100, 80}, 0, 30, silicon);
    const auto top = layers({100, 100, 80}, 0, 30, gold);
    glue(base, top, [](GlueSubstrateOperation &operation) {
        EXPECT_EQ(operation.minimumZ(), 60U);
        EXPECT_EQ(operation.maximumDisplacementX(), 0U);
        operation.setFinalSize(100, 100, 60);
    });
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(Support::materialsOf(*made) ==
                Support::materialsBy({100, 100, 60},
                                     [](auto, auto, auto z) { return z < 30 ? silicon : gold; }));
}

TEST_F(GlueSubstrateOperationTest, WithoutOtherValuesTheResultHasTheSmallestSizesAndALayerOnTop)
{
    glue(m_base, m_top);
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->sizeX(), 6U);
    EXPECT_EQ(made->sizeY(), 7U);
    EXPECT_EQ(made->sizeZ(), 9U);
    Fakes::expectMaterials(*made, Support::materialsBy({6, 7, 9}, [](auto x, auto y, auto z) {
        if (z < 4)
            return y < 5 ? silicon : 0U;
        if (x >= 4)
            return 0U;
        return z < 6 ? oxide : z < 8 && x == 0 && y == 0 ? gold : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, LaterValuesOfTheDialogAreTaken)
{
    glue(m_base, m_top, [](GlueSubstrateOperation &operation) {
        operation.setFinalSize(1, 1, 1);
        operation.setDisplacement(9, 9);
        operation.setInvertTop(false);
        operation.setFinalSize(6, 7, 20);
        operation.setDisplacement(2, 0);
        operation.setInvertTop(true);
    });
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->sizeZ(), 20U);
    // The pillar comes down first, on the other side of x, and the oxide lies on its head.
    Fakes::expectMaterials(*made, Support::materialsBy({6, 7, 20}, [](auto x, auto y, auto z) {
        if (z < 4)
            return y < 5 ? silicon : 0U;
        if (x < 2 || z >= 8)
            return 0U;
        return z >= 6 ? oxide : x == 5 && y == 0 ? gold : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, ResultTakesTheLargerCellSizesAndThePlaceOfTheBase)
{
    m_base->translate(Vector3D(3.0, -4.0, 5.5));
    m_top->translate(Vector3D(100.0, 200.0, 300.0));
    glue(m_base, m_top);
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->cellSizeX(), 2.0F);
    EXPECT_EQ(made->cellSizeY(), 3.0F);
    EXPECT_EQ(made->cellSizeZ(), 2.5F);
    EXPECT_EQ(made->position()[0], 3.0);
    EXPECT_EQ(made->position()[1], -4.0);
    EXPECT_EQ(made->position()[2], 5.5);
}

TEST_F(GlueSubstrateOperationTest, PlaceOfTheTopInTheWorldPlaysNoPart)
{
    glue(m_base, m_top);
    const auto cells = Support::materialsOf(*result());
    workspace().history().undo();
    m_top->translate(Vector3D(-7.0, 8.0, 1e6));
    glue(m_base, m_top);
    EXPECT_EQ(Support::materialsOf(*result()), cells);
}

TEST_F(GlueSubstrateOperationTest, ResultStandsForBothSourcesWhenTheViewsAreUpdated)
{
    const auto other = boost::make_shared<Fakes::Object>();
    workspace().document().addObject(other);
    int looks = 0;
    watch([&](const std::string &entry) {
        if (entry != finished)
            return;
        ++looks;
        EXPECT_EQ(objects().size(), 2U);
        EXPECT_EQ(objects().front(), other);
    });
    choose(m_base, m_top, [](GlueSubstrateOperation &operation) {
        log().clear();
        operation.end();
    });
    EXPECT_EQ(log(), (Log{finished, updated, "undo changed", "redo changed", updated}));
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "Glue Volumes");
    // Nothing waits for Enter any more.
    select({m_base});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(GlueSubstrateOperationTest, SourcesKeepTheirCells)
{
    const auto baseCells = Support::materialsOf(*m_base);
    const auto topCells = Support::materialsOf(*m_top);
    glue(m_base, m_top);
    Fakes::expectMaterials(*m_base, baseCells);
    Fakes::expectMaterials(*m_top, topCells);
}

TEST_F(GlueSubstrateOperationTest, ResultHasNoSurfaceNoMasksNoCrystalAndStaleRecords)
{
    for (const Volume &volume : {m_base, m_top}) {
        workspace().objectRecords().setLatticeStale(volume->id(), false);
        workspace().objectRecords().setLastOperation(volume->id(), 77);
        volume->setTopMask({true}, 1, 1);
        volume->setBottomMask({true}, 1, 1);
    }
    m_base->rebuildSiLattice();
    glue(m_base, m_top);
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Fakes::faceCount(*made), 0U);
    EXPECT_TRUE(made->topMask().empty());
    EXPECT_TRUE(made->bottomMask().empty());
    EXPECT_EQ(made->siLattice(), nullptr);
    EXPECT_TRUE(workspace().objectRecords().isLatticeStale(made->id()));
    EXPECT_EQ(workspace().objectRecords().lastOperation(made->id()), 0U);
    const Model::Automaton::Voxel *cells = made->voxels();
    EXPECT_EQ(cells[0].atoms(), 0);
    made->releaseVoxels();
    made->painter().rebuild();
    EXPECT_GT(Fakes::faceCount(*made), 0U);
}

TEST_F(GlueSubstrateOperationTest, SameVolumeTwiceIsAskedAboutAndThenCancels)
{
    m_answer = [](GlueSubstrateOperation &operation) {
        log().push_back("end");
        operation.end();
    };
    chooseBase(m_base);
    log().clear();
    chooseTop(m_base);
    EXPECT_EQ(log(), (Log{modeChanged, updated, topSelected, "dialog", "end", updated}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_EQ(objects(), sources());
}

TEST_F(GlueSubstrateOperationTest, EndBeforeBothVolumesAreThereCancels)
{
    activate();
    log().clear();
    current()->end();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(current(), nullptr);
    chooseBase(m_base);
    log().clear();
    current()->end();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(current(), nullptr);
    EXPECT_EQ(objects(), sources());
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(GlueSubstrateOperationTest, CancelLeavesWithoutAMessageAndDropsTheWaitAtEveryStep)
{
    const auto expectLeft = [&] {
        log().clear();
        workspace().cancelCurrent();
        EXPECT_EQ(log(), Log{updated});
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        select({m_base});
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
        select({});
    };
    activate();
    expectLeft();
    chooseBase(m_base);
    expectLeft();
    choose(m_base, m_top);
    expectLeft();
    EXPECT_EQ(objects(), sources());
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(GlueSubstrateOperationTest, DialogThatDoesNothingLeavesItWaitingUntilTheNextOperation)
{
    choose(m_base, m_top);
    const boost::weak_ptr<GlueSubstrateOperation> waiting = current();
    ASSERT_FALSE(waiting.expired());
    EXPECT_EQ(objects(), sources());
    log().clear();
    activate();
    EXPECT_EQ(log(), (Log{updated, baseAsked, modeChanged}));
    EXPECT_TRUE(waiting.expired());
}

TEST_F(GlueSubstrateOperationTest, EachTellsItsOwnObserver)
{
    const auto observed = [](const std::string &entry) {
        const auto operation = boost::make_shared<GlueSubstrateOperation>(&workspace());
        operation->setObserver(Fakes::logging(log(), entry));
        return operation;
    };
    const Shared first = observed("first");
    const Shared second = observed("second");
    for (const Shared &operation : {first, second}) {
        select({m_base});
        operation->next();
        select({m_top});
        operation->next();
        EXPECT_EQ(log().back(), operation == first ? "first" : "second");
    }
}

TEST_F(GlueSubstrateOperationTest, WithoutAnObserverItWaitsForItsValues)
{
    m_observed = false;
    choose(m_base, m_top);
    const Shared operation = current();
    ASSERT_NE(operation, nullptr);
    operation->setFinalSize(6, 7, 12);
    operation->end();
    ASSERT_NE(result(), nullptr);
    EXPECT_EQ(result()->sizeZ(), 12U);
}

TEST_F(GlueSubstrateOperationTest, SecondEndDoesNotGlueAgain)
{
    const Shared operation = glue(m_base, m_top);
    const Volume made = result();
    operation->end();
    EXPECT_EQ(result(), made);
}

TEST_F(GlueSubstrateOperationTest, UndoAnswersZeroAndPutsBothSourcesBack)
{
    const Shared operation = glue(m_base, m_top);
    const Volume made = result();
    log().clear();
    EXPECT_EQ(operation->undo(), 0);
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(objects(), sources());
    log().clear();
    operation->redo();
    EXPECT_EQ(log(), Log{updated});
    EXPECT_EQ(result(), made);
}

TEST_F(GlueSubstrateOperationTest, UndoDoneTwiceLeavesItsEntryAndEachSourceOnce)
{
    glue(m_base, m_top);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(workspace().history().undo());
        EXPECT_EQ(objects(), sources());
        EXPECT_EQ(workspace().history().undoName(), "Glue Volumes");
        EXPECT_EQ(workspace().history().redoName(), "");
    }
}

TEST_F(GlueSubstrateOperationTest, EmptyTopIsToldAndCancelsBeforeTheDialog)
{
    chooseBase(m_base);
    log().clear();
    const Volume empty = layers(m_topGrid, 0, 0, 0);
    chooseTop(empty);
    EXPECT_EQ(log(), (Log{modeChanged, updated, topSelected, topEmpty, updated}));
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_EQ(workspace().history().undoName(), "");
    EXPECT_EQ(objects(), sources());
}

TEST_F(GlueSubstrateOperationTest, EmptyBaseHasOneLayerAndCarriesTheTop)
{
    glue(layers(m_baseGrid, 0, 0, 0), m_base,
         [](GlueSubstrateOperation &operation) { EXPECT_EQ(operation.minimumZ(), 5U); });
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, nullptr);
    Fakes::expectMaterials(*made, Support::materialsBy({6, 5, 6}, [](auto, auto, auto z) {
        return z >= 1 && z < 5 ? silicon : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, VolumesWithASizeOfZeroNeverCrash)
{
    const auto none = [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return Support::makeVolume({x, y, z}, std::vector<std::uint32_t>());
    };
    for (const Volume &empty : {none(0, 0, 0), none(4, 4, 0), none(4, 0, 4), none(0, 4, 4),
                                none(4294967295, 0, 4294967295), none(4294967295, 1, 0)}) {
        log().clear();
        glue(m_base, empty);
        EXPECT_EQ(countOf(topEmpty), 1);
        glue(empty, empty);
        EXPECT_EQ(countOf(topEmpty), 2);
        EXPECT_EQ(objects(), sources());
    }
    for (const Volume &empty : {none(0, 0, 0), none(4, 4, 0), none(4, 0, 4), none(0, 4, 4)}) {
        glue(empty, m_top);
        const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
        ASSERT_NE(made, m_top);
        EXPECT_EQ(made->sizeZ(), 6U);
        const auto cells = Support::materialsOf(*made);
        EXPECT_EQ(std::count(cells.begin(), cells.end(), oxide), 4 * 7 * 2);
        workspace().history().undo();
    }
    log().clear();
    glue(none(4294967295, 0, 4294967295), m_top);
    glue(none(4294967295, 1, 0), m_top);
    EXPECT_EQ(countOf(tooLarge), 2);
}

TEST_F(GlueSubstrateOperationTest, SizesThatWrapOrDoNotFitIntoMemoryAreToldAndCancel)
{
    // 2 ^ 32 cells, just more than that, many more, and some 200 gigabytes.
    const std::uint32_t sizes[][3] = {{65536, 65536, 1},
                                      {6, 7, 102261127},
                                      {4294967295, 4294967295, 4294967295},
                                      {65535, 65535, 1}};
    for (const auto &size : sizes) {
        choose(m_base, m_top, [&size](GlueSubstrateOperation &operation) {
            operation.setFinalSize(size[0], size[1], size[2]);
            log().clear();
            operation.end();
        });
        EXPECT_EQ(log(), (Log{tooLarge, updated}));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        EXPECT_EQ(workspace().history().undoName(), "");
        EXPECT_EQ(objects(), sources());
    }
}

// Its arrays are shorter than its sizes promise.
TEST_F(GlueSubstrateOperationTest, SourceWhoseCellCountWrappedIsNotWalked)
{
    const Volume wrapped = Support::makeVolume({65536, 65536, 4}, std::vector<std::uint32_t>());
    glue(m_base, wrapped);
    EXPECT_EQ(countOf(topEmpty), 1);
    glue(wrapped, m_top,
         [](GlueSubstrateOperation &operation) { operation.setFinalSize(6, 7, 9); });
    EXPECT_EQ(countOf(tooLarge), 1);
    EXPECT_EQ(objects(), sources());
}

TEST_F(GlueSubstrateOperationTest, ValuesBeyondTheLimitsCutTheTopOff)
{
    glue(m_base, m_top, [](GlueSubstrateOperation &operation) {
        operation.setFinalSize(5, 4, 5);
        operation.setDisplacement(4, 3);
    });
    const Volume made = result();
    ASSERT_NE(made, nullptr);
    Fakes::expectMaterials(*made, Support::materialsBy({5, 4, 5}, [](auto x, auto y, auto z) {
        if (z < 4)
            return silicon;
        return x == 4 && y == 3 ? oxide : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, FinalSizeWithoutRoomAboveTheBaseLeavesTheTopOut)
{
    // The base has four layers.
    for (const std::uint32_t sizeZ : {1U, 3U, 4U}) {
        for (const bool invert : {false, true}) {
            glue(m_base, m_top, [=](GlueSubstrateOperation &operation) {
                operation.setFinalSize(6, 7, sizeZ);
                operation.setDisplacement(2, 0);
                operation.setInvertTop(invert);
            });
            const Volume made = result();
            ASSERT_NE(made, nullptr);
            Fakes::expectMaterials(*made,
                                   Support::materialsBy({6, 7, sizeZ}, [](auto, auto y, auto) {
                                       return y < 5 ? silicon : 0U;
                                   }));
            workspace().history().undo();
        }
    }
}

TEST_F(GlueSubstrateOperationTest, FinalSizeOfZeroGivesAVolumeWithoutCells)
{
    const std::uint32_t sizes[][3] = {{0, 7, 9}, {6, 0, 9}, {6, 7, 0}, {0, 0, 0}};
    for (const auto &size : sizes) {
        for (const bool invert : {false, true}) {
            glue(m_base, m_top, [&](GlueSubstrateOperation &operation) {
                operation.setFinalSize(size[0], size[1], size[2]);
                operation.setInvertTop(invert);
            });
            const Volume made = result();
            ASSERT_NE(made, nullptr);
            EXPECT_EQ(made->sizeX(), size[0]);
            EXPECT_EQ(made->sizeY(), size[1]);
            EXPECT_EQ(made->sizeZ(), size[2]);
            EXPECT_TRUE(Support::materialsOf(*made).empty());
            workspace().history().undo();
        }
    }
}

TEST_F(GlueSubstrateOperationTest, CavityOnTheUndersideOfTheTopStaysOpenAtTheJoint)
{
    const auto isCavity = [](std::uint32_t x, std::uint32_t y) {
        return x >= 1 && x < 4 && y >= 1 && y < 3;
    };
    const Volume top = Support::makeVolume({6, 5, 9}, [&](auto x, auto y, auto z) {
        return z >= 3 && z < 8 && !(z < 5 && isCavity(x, y)) ? gold : 0U;
    });
    glue(m_base, top);
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, nullptr);
    Fakes::expectMaterials(*made, Support::materialsBy({6, 5, 10}, [&](auto x, auto y, auto z) {
        if (z < 4)
            return silicon;
        return z < 9 && !(z < 6 && isCavity(x, y)) ? gold : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, SmallerTopWithoutDisplacementSitsAtTheLowCorner)
{
    glue(m_base, layers({2, 3, 4}, 1, 2, gold));
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, nullptr);
    Fakes::expectMaterials(*made, Support::materialsBy({6, 5, 6}, [](auto x, auto y, auto z) {
        return z < 4 ? silicon : z == 4 && x < 2 && y < 3 ? gold : 0U;
    }));
}

TEST_F(GlueSubstrateOperationTest, HighestLayerOfAnInvertedTopLandsOnTheBase)
{
    // A material of its own in each layer.
    const Volume top =
        Support::makeVolume({3, 3, 7}, [](auto, auto, auto z) { return z < 6 ? 10 + z : 0U; });
    glue(m_base, top, [](GlueSubstrateOperation &operation) { operation.setInvertTop(true); });
    const auto made = boost::dynamic_pointer_cast<TotalVolume>(objects().back());
    ASSERT_NE(made, nullptr);
    Fakes::expectMaterials(*made, Support::materialsBy({6, 5, 11}, [](auto x, auto y, auto z) {
        if (z < 4)
            return silicon;
        return x < 3 && y < 3 && z < 10 ? 19 - z : 0U;
    }));
}
