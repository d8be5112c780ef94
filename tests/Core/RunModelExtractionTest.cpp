#include "Core/Operations/ModelExtraction/RunModelExtraction.h"

#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/ModelExtraction/ExtractedModel.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <boost/weak_ptr.hpp>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::RunModelExtraction;
using Fakes::Log;
using Model::Automaton::TotalVolume;
using Model::ModelExtraction::ExtractedModel;
using ObjectList = Core::PointerTracker::ObjectList;

namespace {

const char *const selected = "message Model Extraction: Cell volume selected.";
const char *const prompted =
    "message Model Extraction: Select a cell volume and press Enter/Return.";
const char *const extracted = "message Model Extraction: Model extracted.";

/// A beam of aluminium, 6 by 2 by 2 cells, on the side of a block of silicon.
std::uint32_t cantilever(std::uint32_t x, std::uint32_t y, std::uint32_t z)
{
    if (x < 3 && z < 5)
        return 1;
    return x < 9 && (y == 3 || y == 4) && (z == 3 || z == 4) ? 2 : 0;
}

class RunModelExtractionTest : public Fakes::WorkspaceSuite
{
protected:
    using Shared = boost::shared_ptr<RunModelExtraction>;

    void SetUp() override
    {
        WorkspaceSuite::SetUp();
        workspace().setOperationFactory(boost::make_shared<Fakes::OperationFactory>(
            [](std::uint32_t id) -> boost::shared_ptr<Core::Operations::Operation> {
                if (id != RunModelExtraction::Id)
                    return nullptr;
                const auto operation = boost::make_shared<RunModelExtraction>(&workspace());
                operation->setDialogObserver(Fakes::logging(log(), "dialog opened"));
                operation->setCloseObserver(Fakes::logging(log(), "dialog closed"));
                return operation;
            }));
        use(cantilever);
    }

    /// The document's one object.
    void use(const Support::MaterialRule &rule)
    {
        workspace().document().reset();
        m_volume = Support::makeVolume({12, 8, 8, 0.5f, 1.0f, 1.0f}, rule);
        m_volume->painter().rebuild();
        workspace().document().addObject(m_volume);
    }
    void start()
    {
        select({m_volume});
        workspace().activate(RunModelExtraction::Id);
    }
    void startBothSteps()
    {
        start();
        current()->runPreprocessing();
        current()->runFeatureDetection();
        log().clear();
    }

    static void select(const ObjectList &objects)
    {
        workspace().pointer().publishSelected(objects);
    }
    static void type(const std::string &text) { workspace().interpreter().enter(text); }
    static Shared current()
    {
        return boost::dynamic_pointer_cast<RunModelExtraction>(workspace().currentOperation());
    }
    static std::vector<ExtractedModel *> models()
    {
        std::vector<ExtractedModel *> found;
        for (const auto &object : workspace().document().objects())
            if (auto *model = dynamic_cast<ExtractedModel *>(object.get()))
                found.push_back(model);
        return found;
    }

    /// Whether the volume is drawn, which shows in its faces: they are recoloured by the first
    /// draw after the selection has changed.
    bool isDrawn()
    {
        m_volume->draw(true, false);
        const float before = firstColor();
        m_volume->setSelected(true);
        m_volume->draw(true, false);
        const bool changed = firstColor() != before;
        m_volume->setSelected(false);
        m_volume->draw(true, false);
        return changed;
    }
    float firstColor()
    {
        float first = NAN;
        m_volume->painter().opaqueFaces().forEach([&](const Model::Geometry::QuadFace &face) {
            if (std::isnan(first))
                first = face.color[0];
        });
        return first;
    }

    void expectEverythingIsAsBefore()
    {
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        EXPECT_EQ(workspace().document().objects(), ObjectList{m_volume});
        EXPECT_TRUE(isDrawn());
        EXPECT_EQ(workspace().history().undoName(), "");
    }

    boost::shared_ptr<TotalVolume> m_volume;
};

} // namespace

TEST_F(RunModelExtractionTest, HasItsNameAndIdAndIsNothingToTakeBack)
{
    const RunModelExtraction operation(&workspace());
    EXPECT_EQ(operation.name(), "Extract Model");
    EXPECT_EQ(operation.id(), 1000U);
    EXPECT_EQ(dynamic_cast<const Core::Operations::ObjectOperation *>(
                  static_cast<const Core::Operations::Operation *>(&operation)),
              nullptr);
}

TEST_F(RunModelExtractionTest, SelectedVolumeOpensTheDialogAndThenTheSelectionIsClear)
{
    workspace().selection().setSelectionMode(true);
    log().clear();
    watch([](const std::string &entry) {
        if (entry == selected || entry == "dialog opened") {
            EXPECT_FALSE(workspace().pointer().selectedObjects().empty());
            EXPECT_TRUE(workspace().selection().isSelectionMode());
        }
    });
    start();
    EXPECT_EQ(log(), (Log{selected, "dialog opened", "selection mode changed", "view updated"}));
    EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
    EXPECT_FALSE(workspace().selection().isSelectionMode());
    EXPECT_NE(current(), nullptr);
    EXPECT_TRUE(isDrawn());
}

TEST_F(RunModelExtractionTest, NothingSelectedGivesThePromptAndTurnsTheSelectionModeOn)
{
    workspace().activate(RunModelExtraction::Id);
    EXPECT_EQ(log(), (Log{prompted, "selection mode changed"}));
    EXPECT_TRUE(workspace().selection().isSelectionMode());
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{prompted});
    select({m_volume});
    log().clear();
    type("");
    EXPECT_EQ(log(), (Log{selected, "dialog opened", "selection mode changed", "view updated"}));
}

TEST_F(RunModelExtractionTest, SelectionOfAnExtractedModelAloneGivesThePrompt)
{
    const auto model = boost::make_shared<ExtractedModel>(Model::ModelExtraction::EnvelopeList());
    select({model});
    workspace().activate(RunModelExtraction::Id);
    EXPECT_EQ(log().front(), prompted);
}

TEST_F(RunModelExtractionTest, FirstVolumeOfTheSelectionIsTaken)
{
    const auto other = Support::makeVolume({2, 2, 2}, [](auto, auto, auto) { return 1U; });
    select({boost::make_shared<Fakes::Object>(), m_volume, other});
    workspace().activate(RunModelExtraction::Id);
    current()->runPreprocessing();
    ASSERT_EQ(models().size(), 1U);
    EXPECT_GT(models().front()->envelopes().size(), 1U);
}

TEST_F(RunModelExtractionTest, EnterWithTheDialogOpenDoesNothing)
{
    workspace().activate(RunModelExtraction::Id);
    select({m_volume});
    type("");
    select({m_volume});
    log().clear();
    type("");
    current()->next();
    EXPECT_EQ(log(), Log{});
}

TEST_F(RunModelExtractionTest, PreprocessingShowsTheBoxesInsteadOfTheVolume)
{
    start();
    log().clear();
    current()->runPreprocessing();
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_FALSE(isDrawn());
    ASSERT_EQ(models().size(), 1U);
    EXPECT_EQ(workspace().document().objects().front(), m_volume);
    // Silicon: cut in three along y and in two along z, then the beam.
    EXPECT_EQ(models().front()->envelopes().size(), 7U);
    EXPECT_EQ(models().front()->offset(), (std::array<float, 3>{}));
}

TEST_F(RunModelExtractionTest, FeatureDetectionShowsTheBeamTenCellsBesideTheVolume)
{
    start();
    current()->runPreprocessing();
    log().clear();
    current()->runFeatureDetection();
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_FALSE(isDrawn());
    ASSERT_EQ(models().size(), 2U);
    ASSERT_EQ(models().back()->envelopes().size(), 1U);
    const auto &beam = *models().back()->envelopes().front();
    EXPECT_EQ(beam.x(), 3);
    EXPECT_EQ(beam.width(), 6);
    EXPECT_EQ(beam.depth(), 2);
    EXPECT_EQ(beam.height(), 2);
    // Cells of 0.5: (12 + 10) / 2.
    EXPECT_EQ(models().back()->offset(), (std::array<float, 3>{11, 0, 0}));
}

TEST_F(RunModelExtractionTest, NetlistIsThatOfTheBeam)
{
    startBothSteps();
    // 24 cells of 2700; 3 E (8 * 2 / 12) / 216.
    EXPECT_EQ(current()->netlist(), "Model extracted by Lithara\n"
                                    "c1 1 0 3.05684e-13 \n"
                                    "l1 1 0 7.71429e-10 \n"
                                    ".end \n");
    EXPECT_EQ(log(), Log{});
}

TEST_F(RunModelExtractionTest, NetlistIsEmptyUntilABeamIsFound)
{
    const Shared operation = boost::make_shared<RunModelExtraction>(&workspace());
    EXPECT_EQ(operation->netlist(), "");
    start();
    EXPECT_EQ(current()->netlist(), "");
    current()->runPreprocessing();
    EXPECT_EQ(current()->netlist(), "");
}

TEST_F(RunModelExtractionTest, EmptyVolumeYieldsAnEmptyModelAndNoNetlist)
{
    use([](auto, auto, auto) { return 0U; });
    startBothSteps();
    ASSERT_EQ(models().size(), 1U);
    EXPECT_TRUE(models().front()->envelopes().empty());
    EXPECT_EQ(current()->netlist(), "");
}

// Its arrays are shorter than its sizes promise.
TEST_F(RunModelExtractionTest, VolumeWhoseCellCountWrappedHasNoBoxes)
{
    workspace().document().reset();
    m_volume = Support::makeVolume({65536, 65536, 4}, std::vector<std::uint32_t>());
    workspace().document().addObject(m_volume);
    startBothSteps();
    ASSERT_EQ(models().size(), 1U);
    EXPECT_TRUE(models().front()->envelopes().empty());
    EXPECT_EQ(current()->netlist(), "");
}

TEST_F(RunModelExtractionTest, VolumeOfOneMaterialYieldsOneBoxAndNoBeam)
{
    use([](auto, auto, auto) { return 2U; });
    startBothSteps();
    ASSERT_EQ(models().size(), 1U);
    ASSERT_EQ(models().front()->envelopes().size(), 1U);
    EXPECT_EQ(models().front()->envelopes().front()->neighbourCount(), 0U);
    EXPECT_EQ(current()->netlist(), "");
}

TEST_F(RunModelExtractionTest, MaterialsThatTheTablesDoNotHaveAreToldAndCountAsNothing)
{
    use([](auto x, auto y, auto z) {
        return cantilever(x, y, z) == 2 ? 16U : cantilever(x, y, z);
    });
    startBothSteps();
    const QString text = current()->netlist();
    EXPECT_EQ(log(), Log{"message Model Extraction: Material 16 has no density and no Young "
                         "modulus in the netlist."});
    EXPECT_EQ(text, "Model extracted by Lithara\n"
                    "c1 1 0 0 \n"
                    "l1 1 0 inf \n"
                    ".end \n");
}

TEST_F(RunModelExtractionTest, StepsInAnotherOrderOrTwiceShowNothingMore)
{
    workspace().activate(RunModelExtraction::Id);
    current()->runPreprocessing();
    current()->runFeatureDetection();
    EXPECT_TRUE(models().empty());
    select({m_volume});
    type("");
    current()->runFeatureDetection();
    EXPECT_TRUE(models().empty());
    current()->runPreprocessing();
    current()->runPreprocessing();
    EXPECT_EQ(models().size(), 1U);
    current()->runFeatureDetection();
    current()->runFeatureDetection();
    EXPECT_EQ(models().size(), 2U);
    current()->end();
    expectEverythingIsAsBefore();
}

TEST_F(RunModelExtractionTest, EndTakesTheModelsOutAndShowsTheVolume)
{
    startBothSteps();
    const boost::weak_ptr<RunModelExtraction> operation = current();
    current()->end();
    EXPECT_EQ(log(), (Log{"view updated", extracted, "view updated"}));
    EXPECT_TRUE(operation.expired());
    expectEverythingIsAsBefore();
}

TEST_F(RunModelExtractionTest, EndBeforeAnyStepOnlySaysSo)
{
    start();
    log().clear();
    current()->end();
    EXPECT_EQ(log(), (Log{"view updated", extracted, "view updated"}));
    expectEverythingIsAsBefore();
}

TEST_F(RunModelExtractionTest, EndBeforeTheDialogOrAfterwardsDoesNothing)
{
    workspace().activate(RunModelExtraction::Id);
    const Shared operation = current();
    log().clear();
    operation->end();
    EXPECT_EQ(log(), Log{});
    EXPECT_EQ(current(), operation);
    select({m_volume});
    type("");
    operation->end();
    log().clear();
    operation->end();
    EXPECT_EQ(log(), Log{});
}

TEST_F(RunModelExtractionTest, EndLeavesNoWaitBehind)
{
    workspace().activate(RunModelExtraction::Id);
    select({m_volume});
    // Not by Enter, which stays armed.
    current()->next();
    current()->end();
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(RunModelExtractionTest, CancelAtThePromptLeavesSilently)
{
    workspace().activate(RunModelExtraction::Id);
    log().clear();
    workspace().cancelCurrent();
    EXPECT_EQ(log(), Log{"view updated"});
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    log().clear();
    type("");
    EXPECT_EQ(log(), Log{});
}

TEST_F(RunModelExtractionTest, CancelClosesTheDialogAndSaysNothingOfAModel)
{
    startBothSteps();
    const boost::weak_ptr<RunModelExtraction> operation = current();
    watch([this](const std::string &entry) {
        if (entry == "dialog closed") {
            EXPECT_EQ(models().size(), 2U);
            current()->end();
        }
    });
    workspace().cancelCurrent();
    EXPECT_EQ(log(), (Log{"dialog closed", "view updated", "view updated"}));
    EXPECT_TRUE(operation.expired());
    expectEverythingIsAsBefore();
}

TEST_F(RunModelExtractionTest, CancelDoesWithoutObservers)
{
    const Shared operation = boost::make_shared<RunModelExtraction>(&workspace());
    select({m_volume});
    operation->next();
    operation->runPreprocessing();
    operation->cancel();
    expectEverythingIsAsBefore();
}

TEST_F(RunModelExtractionTest, StartingItTwiceRestarts)
{
    startBothSteps();
    const boost::weak_ptr<RunModelExtraction> first = current();
    workspace().activate(RunModelExtraction::Id);
    EXPECT_TRUE(first.expired());
    EXPECT_EQ(log(), (Log{"dialog closed", "view updated", "view updated", prompted,
                          "selection mode changed"}));
    EXPECT_TRUE(models().empty());
    EXPECT_TRUE(isDrawn());
}

TEST_F(RunModelExtractionTest, VolumeThatIsNoLongerInTheDocumentIsLeftOutOfIt)
{
    startBothSteps();
    workspace().document().reset();
    current()->end();
    EXPECT_TRUE(workspace().document().objects().empty());
    EXPECT_EQ(workspace().currentOperation(), nullptr);
    EXPECT_TRUE(isDrawn());
}
