#include "Core/Operations/Visualization/ChangeTotalVolumeVisualizationOptions.h"

#include "CommonProcessSuite.h"

#include "Model/Geometry/QuadFace.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"

#include <QGLFormat>
#include <QGLWidget>

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

using Core::Operations::ChangeTotalVolumeVisualizationOptions;
using Core::Operations::VisualizationOptions;
using Fakes::faceCount;
using Fakes::Log;
using Model::Automaton::TotalVolumePainter;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;

namespace {

constexpr Support::Grid grid{3, 4, 5};

/// A floor of gold below void.
std::vector<std::uint32_t> floorOfGold()
{
    return Support::materialsBy(grid, [](auto, auto, auto z) { return z < 2 ? 9U : 0U; });
}

using Suite = Fakes::CommonProcessSuite<ChangeTotalVolumeVisualizationOptions>;

class ChangeTotalVolumeVisualizationOptionsTest : public Suite
{
protected:
    ChangeTotalVolumeVisualizationOptionsTest()
        : Suite({"Change Visualization", 6, "Change Visualization: Cell volume selected.",
                 "Change Visualization: Select a cell volume and press Enter/Return.",
                 "Change Visualization: Options changed.",
                 "Change Visualization: Operation Canceled!", grid, floorOfGold(), floorOfGold()},
                accept({}))
    {}

    // Atoms are switched off where there is no context to draw them in.
    static void SetUpTestSuite()
    {
        Suite::SetUpTestSuite();
        s_view = std::make_unique<QGLWidget>(QGLFormat(QGL::SingleBuffer));
        s_view->show();
        s_view->makeCurrent();
    }
    static void TearDownTestSuite()
    {
        s_view.reset();
        Suite::TearDownTestSuite();
    }
    void SetUp() override
    {
        Suite::SetUp();
        ASSERT_TRUE(s_view->isValid());
        s_view->makeCurrent();
    }
    void TearDown() override
    {
        MaterialFactory::instance()->updateMaterial(m_gold);
        Suite::TearDown();
    }

    static Answer accept(const VisualizationOptions &options)
    {
        return [=](ChangeTotalVolumeVisualizationOptions &operation) {
            operation.setOptions(options);
            operation.next();
        };
    }
    static void expectOptions(const VisualizationOptions &actual,
                              const VisualizationOptions &expected)
    {
        EXPECT_EQ(actual.renderAtoms, expected.renderAtoms);
        EXPECT_EQ(actual.surfaceAtomsOnly, expected.surfaceAtomsOnly);
        EXPECT_EQ(actual.renderLinks, expected.renderLinks);
        EXPECT_EQ(actual.renderUnitCells, expected.renderUnitCells);
        EXPECT_EQ(actual.renderOutlines, expected.renderOutlines);
        EXPECT_EQ(actual.showEmptyVoxels, expected.showEmptyVoxels);
        EXPECT_EQ(actual.surfaceAlgorithm, expected.surfaceAlgorithm);
    }
    static VisualizationOptions optionsOf(const Volume &volume)
    {
        const TotalVolumePainter &painter = volume->painter();
        VisualizationOptions options;
        options.renderAtoms = painter.renderAtoms();
        options.surfaceAtomsOnly = painter.surfaceAtomsOnly();
        options.renderLinks = painter.renderLinks();
        options.renderUnitCells = painter.renderUnitCells();
        options.renderOutlines = painter.renderOutlines();
        options.showEmptyVoxels = painter.showEmptyVoxels();
        options.surfaceAlgorithm = painter.surfaceAlgorithm();
        return options;
    }
    /// Each option alone in its other state, and all of them.
    static std::vector<VisualizationOptions> manyOptions()
    {
        std::vector<VisualizationOptions> many(9);
        many[0].renderAtoms = true;
        many[1].surfaceAtomsOnly = false;
        many[2].renderLinks = true;
        many[3].renderUnitCells = true;
        many[4].renderOutlines = true;
        many[5].showEmptyVoxels = true;
        many[6].surfaceAlgorithm = 1;
        many[7].surfaceAlgorithm = 2;
        many[8] = {true, false, true, true, true, true, 2};
        return many;
    }

    /// Every face of the volume has the colour, as fill and as edge.
    static void expectFaces(const Volume &volume, const float (&color)[4])
    {
        EXPECT_GT(faceCount(*volume), 0U);
        for (const auto *faces :
             {&volume->painter().opaqueFaces(), &volume->painter().transparentFaces()})
            faces->forEach([&](const Model::Geometry::QuadFace &face) {
                for (unsigned i = 0; i < 4; ++i) {
                    EXPECT_EQ(face.color[i], color[i]);
                    EXPECT_EQ(face.edgeColor[i], color[i]);
                }
            });
    }

    const Material m_gold = MaterialFactory::instance()->material(9);

private:
    static inline std::unique_ptr<QGLWidget> s_view;
};

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, HasTheNameAndIdOfItsMenuEntry)
{
    const ChangeTotalVolumeVisualizationOptions operation(&workspace());
    EXPECT_EQ(operation.name(), "Change Visualization");
    EXPECT_EQ(operation.id(), 6U);
    EXPECT_FALSE(isUndoable);
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, AllOfTheClassTellTheObserverThatWasSetLast)
{
    ASSERT_TRUE(isObserverClassWide);
    observerTold();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, SelectedVolumeGoesStraightToTheDialog)
{
    selectedVolumeGoesStraightToTheDialog();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest,
       SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated)
{
    selectionIsClearAndItsModeOffBeforeTheViewsAreUpdated();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest,
       WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)
{
    withNothingSelectedItPromptsAndTurnsTheSelectionModeOn();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, SelectionOfOtherObjectsAlonePromptsToo)
{
    selectionOfOtherObjectsAlonePromptsToo();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, EnterWithNothingPickedRepeatsThePrompt)
{
    enterWithNothingPickedRepeatsThePrompt();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, EnterAfterThePickGoesToTheDialog)
{
    enterAfterThePickGoesToTheDialog();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, CancelSaysSoAndStaysCurrent)
{
    activateOn(m_volume);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), Log{m_facts.canceled});
    EXPECT_NE(current(), nullptr);
    expectOptions(optionsOf(m_volume), {});
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, CancelledOneIsCancelledOnceMoreByTheNext)
{
    activateOn(m_volume);
    const boost::weak_ptr<ChangeTotalVolumeVisualizationOptions> cancelled = current();
    workspace().cancelCurrent();
    log().clear();
    activateOn(m_volume);
    EXPECT_EQ(log(), (Log{m_facts.canceled, "view updated", m_facts.selected, "dialog"}));
    EXPECT_TRUE(cancelled.expired());
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, UnknownIdCancelsItAndLeavesTheWorkspaceIdle)
{
    unknownOperationIdCancelsItAndLeavesTheWorkspaceIdle();
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, CancelAtThePromptDropsTheWait)
{
    activate();
    workspace().cancelCurrent();
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, EndWithoutOptionsCancelsAndLeaves)
{
    for (const bool atThePrompt : {true, false}) {
        if (atThePrompt)
            activate();
        else
            activateOn(m_volume);
        log().clear();
        const auto held = current();
        held->end();
        EXPECT_EQ(log(), cancelLog());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, NextInTheDialogDoesNothing)
{
    activateOn(m_volume);
    select({m_other});
    log().clear();
    current()->next();
    EXPECT_EQ(log(), Log{});
    EXPECT_NE(current(), nullptr);
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, OptionsAreThoseOfTheVolume)
{
    activate();
    expectOptions(current()->options(), {});
    for (const VisualizationOptions &options : manyOptions()) {
        const Volume volume = addSample();
        run(volume, accept(options));
        activateOn(volume);
        expectOptions(current()->options(), options);
        activateOn(m_other);
        expectOptions(current()->options(), {});
    }
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, NextWithOptionsAppliesEachToThisVolumeOnly)
{
    for (const VisualizationOptions &options : manyOptions()) {
        const Volume volume = addSample();
        log().clear();
        run(volume, accept(options));
        EXPECT_EQ(log(), (Log{"view updated", m_facts.selected, "dialog", m_facts.finished,
                              "view updated"}));
        expectOptions(optionsOf(volume), options);
        expectOptions(optionsOf(m_other), {});
        // And back.
        run(volume, accept({}));
        expectOptions(optionsOf(volume), {});
    }
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, OptionsThatComeBeforeTheVolumeAreIgnored)
{
    activate();
    current()->setOptions(manyOptions()[8]);
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    expectOptions(optionsOf(m_volume), {});
    const auto held = current();
    held->end();
    EXPECT_EQ(countOf(m_facts.canceled), 1);
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, PictureIsRebuiltBeforeTheViewsAreUpdated)
{
    VisualizationOptions options;
    options.showEmptyVoxels = true;
    EXPECT_EQ(faceCount(*m_volume), 0U);
    run(m_volume, accept(options));
    // The skin of 3 x 4 x 2 cells, and six faces of each empty cell.
    EXPECT_EQ(faceCount(*m_volume), 2U * (12 + 6 + 8));
    EXPECT_EQ(m_volume->painter().emptyFaces().size(), 6U * 3 * 4 * 3);
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, NewColoursReachAllVolumesOfTheDocument)
{
    m_volume->painter().rebuild();
    m_other->painter().rebuild();
    workspace().document().addObject(boost::make_shared<Fakes::Object>());
    const Volume outside = Support::makeVolume(grid, floorOfGold());
    outside->painter().rebuild();
    const float before[] = {m_gold.color()[0], m_gold.color()[1], m_gold.color()[2],
                            m_gold.color()[3]};
    const float after[] = {0.25F, 0.5F, 0.75F, 1.0F};
    Material gold = m_gold;
    gold.setColor(after);
    MaterialFactory::instance()->updateMaterial(gold);
    expectFaces(m_other, before);
    run(m_volume);
    expectFaces(m_volume, after);
    expectFaces(m_other, after);
    expectFaces(outside, before);
}

TEST_F(ChangeTotalVolumeVisualizationOptionsTest, FinishedOneIsDestroyedAndLeavesCellsAndUndoAlone)
{
    workspace().objectRecords().setLastOperation(m_volume->id(), 77);
    boost::weak_ptr<ChangeTotalVolumeVisualizationOptions> operation;
    activateOn(m_volume, [&](ChangeTotalVolumeVisualizationOptions &running) {
        operation = current();
        m_accepted(running);
        EXPECT_FALSE(operation.expired());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    });
    EXPECT_TRUE(operation.expired());
    Fakes::expectMaterials(*m_volume, floorOfGold());
    EXPECT_EQ(workspace().objectRecords().lastOperation(m_volume->id()), 77U);
    EXPECT_EQ(workspace().history().undoName(), "");
}

} // namespace
