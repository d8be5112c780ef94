#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/Electrodeposition/Electrodeposition.h"
#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"
#include "Core/Operations/Photolithography/Photolithography.h"
#include "Core/Operations/Planarization/Planarization.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"
#include "Core/Operations/SpinCoating/SpinCoating.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Support/WindowDriver.h"
#include "UI/BatchDialogs.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"
#include "UI/MaskFiles.h"
#include "UI/Operations/MaskImage.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <set>
#include <vector>

namespace {

using BatchDialogs::bar;
using BatchDialogs::click;
using BatchDialogs::listFile;
using Support::DialogAnswer;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Copper = 5;
constexpr std::uint32_t Chromium = 6;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t Resist = 11;
constexpr std::uint32_t Pdms = 13;
constexpr std::uint32_t NDoped = 14;
constexpr std::uint32_t PDoped = 15;
constexpr std::uint32_t PolySilicon = 16;

class BatchRunRoadTest : public testing::Test
{
protected:
    BatchRunRoadTest()
    {
        // Opaque but for a square in the middle.
        QImage mask(40, 30, QImage::Format_RGB32);
        mask.fill(Qt::black);
        for (int x = 12; x < 28; ++x)
            for (int y = 8; y < 22; ++y)
                mask.setPixelColor(x, y, Qt::white);
        mask.save(MaskFiles::path("opening.png"));
    }

    struct Addition
    {
        const char *process;
        DialogAnswer answer;
    };
    /// All kinds of step, as a user enters them.
    static std::vector<Addition> allSixteen()
    {
        const auto film = [](const char *material) {
            return DialogAnswer().choose("cbxMaterial", material);
        };
        return {
            {"Create Substrate", DialogAnswer()
                                     .type("sbxTotalWidth", "40")
                                     .type("sbxTotalLength", "30")
                                     .type("sbxTotalHeight", "50")
                                     .type("sbxSubsHeight", "16")
                                     .accept()},
            {"Thermal Oxidation", DialogAnswer().type("dblThickness", "4").accept()},
            {"Spin Coating", film("Photoresist +").type("sbxHeight", "22").accept()},
            {"Photolithography", film("Photoresist +")
                                     .type("ledTopMask", MaskFiles::path("opening.png"))
                                     .click("btnApplyTopMask")
                                     .accept()},
            {"Save Image", DialogAnswer().fileName(listFile("opened.png")).accept()},
            {"Simple RIE", film("Thermal Si02").type("sbxDepth", "9").accept()},
            {"Isotropic Etching", film("Photoresist +").type("dblThickness", "12").accept()},
            {"Si Wet Etching", DialogAnswer().type("dblDepth", "3").accept()},
            {"Doping", film("N-doped Si (100)").type("dblDepth", "1.5").accept()},
            {"Ion Implantation", film("P-doped Si (100)")
                                     .type("dblImplantationDepth", "5")
                                     .type("dblAnnealingDistance", "2")
                                     .accept()},
            {"PVD", film("Au (bulk)").type("dblThickness", "2").accept()},
            {"Electroplating", film("Cu (bulk)")
                                   .choose("cbxConductingMaterial", "Au (bulk)")
                                   .type("dblThickness", "3")
                                   .accept()},
            {"CVD", film("Poly-Si").type("dblThickness", "2").accept()},
            {"Moore Deposition", film("PDMS").type("sbxValue", "2").accept()},
            {"Moore Etching", film("PDMS").type("sbxValue", "1").accept()},
            {"Planarization",
             DialogAnswer().type("sbxMaximumHeight", "24").type("sbxMinimumHeight", "2").accept()},
            // Once more, to see that each picture is that of its place in the list.
            {"Save Image", DialogAnswer().fileName(listFile("planar.png")).accept()},
        };
    }
    /// The same by the engines themselves, one after the other; `opened` is called where the list
    /// has its first picture.
    static std::vector<std::uint32_t> byEngines(
        const std::function<void(const boost::shared_ptr<Model::Automaton::TotalVolume> &)> &opened)
    {
        using namespace Core::Operations;
        const auto volume = Support::makeVolume(
            Support::Grid{40, 30, 50},
            [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z < 16 ? Silicon : 0u; });
        Model::Automaton::TotalVolume *cells = volume.get();
        Ui::Operations::MaskImage mask;
        EXPECT_TRUE(mask.load(MaskFiles::path("opening.png")));
        SimpleSiOxidation(cells, 100.0).oxidateTo(4.0);
        SpinCoating(cells, Resist, 22).runDeposition();
        Photolithography(cells, Resist, {}, 0, 0, mask.bits(), mask.width(), mask.height())
            .runDevelopment();
        opened(volume);
        SimpleReactiveIonEtching(cells, Oxide, 9, SimpleReactiveIonEtching::FromTop).runEtching();
        IsotropicFilmEtching(cells, Resist, 12.0f).runEtching();
        cells->rebuildSiLattice();
        AtomicStructureSimpleSiWetEtch(cells, 3.0).runEtching();
        SimpleDoping(cells, NDoped, 1.5f).runDoping();
        IonImplantation(cells, PDoped, 5.0f, 2.0f).runImplantation();
        AnisotropicFilmDeposition(cells, Gold, 2.0f, 0.5f, AnisotropicFilmDeposition::OnTop)
            .runDeposition();
        Electrodeposition(cells, Copper, Gold, 3.0f).runDeposition();
        IsotropicFilmDeposition(cells, PolySilicon, 2.0f).runDeposition();
        MooreNeighborhoodDeposition(cells, Pdms, 2).runDeposition();
        MooreNeighborhoodEtching(cells, Pdms, 1).runEtching();
        Planarization(cells, 24, 2).runPlanarization();
        return Support::materialsOf(*volume);
    }

    /// Opens the dialog without a volume.
    static void open(Support::WindowDriver &driver, const std::vector<DialogAnswer> &answers)
    {
        driver.trigger("actionBatch_Run");
        driver.answering(answers, [&] { driver.typeIntoConsole("N"); });
    }
    /// Where somebody asked for pictures, the screen goes there.
    static void shoot(Support::WindowDriver &driver, const char *name)
    {
        const QString folder = qEnvironmentVariable("LITHARA_SHOTS");
        if (!folder.isEmpty())
            driver.screen().save(folder + "/" + name);
    }

    const Support::PoolThreads m_threads{1};
};

TEST_F(BatchRunRoadTest, AListOfAllSixteenStepsRunsInANewProgramAsItsEnginesDo)
{
    {
        Support::WindowDriver driver;
        DialogAnswer batch;
        std::vector<DialogAnswer> nested;
        for (const Addition &addition : allSixteen()) {
            batch.choose("cbxProcess", addition.process).click("btnAddProcess");
            nested.push_back(addition.answer);
        }
        batch.click("btnSaveList")
            .look([&](QWidget &dialog) {
                BatchDialogs::tree(dialog).topLevelItem(0)->setExpanded(true);
                shoot(driver, "sixteen.png");
                EXPECT_EQ(BatchDialogs::steps(dialog).size(), 17);
            })
            .click("btnClose");
        nested.push_back(DialogAnswer().fileName(listFile("sixteen.plst")).accept());
        nested.insert(nested.begin(), batch);
        open(driver, nested);
        EXPECT_TRUE(driver.volumes().empty());
    }

    Support::WindowDriver driver;
    QStringList names;
    std::set<int> shown;
    const auto play = [&](QWidget &dialog) {
        names = BatchDialogs::steps(dialog);
        click(dialog, "btnRun");
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                shown.insert(bar(dialog).value());
                return bar(dialog).value() == 17;
            },
            90000));
        EXPECT_EQ(bar(dialog).maximum(), 17);
        shoot(driver, "finished.png");
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                click(dialog, "btnClose");
                return !dialog.isVisible();
            },
            20000));
    };
    open(driver, {DialogAnswer().click("btnLoadList").look(play),
                  DialogAnswer().fileName(listFile("sixteen.plst")).accept()});
    EXPECT_EQ(names,
              (QStringList{"Create Substrate", "Si Oxidation", "Spin Coating", "Photolithography",
                           "Save Image", "Simple RIE", "Isotropic etching", "Si wet etching",
                           "Doping", "Ion Implantation", "PVD", "Electroplating", "CVD",
                           "Moore deposition", "Moore etching", "Planarization", "Save Image"}));
    EXPECT_EQ(*shown.begin(), 0);
    ASSERT_EQ(driver.volumes().size(), 1u);
    const QImage planar(listFile("planar.png"));
    EXPECT_EQ(planar, driver.picture().convertToFormat(planar.format()));
    // A window of its own shows what the engines had made by the first picture.
    const QImage opened(listFile("opened.png"));
    Support::WindowDriver other;
    EXPECT_TRUE(driver.materials() == byEngines([&](const auto &volume) {
                    other.workspace().document().addObject(volume);
                    other.window().makeViewCurrent();
                    volume->painter().rebuild();
                    other.window().repaintCentralWidget();
                    EXPECT_EQ(opened, other.picture().convertToFormat(opened.format()));
                }));
    EXPECT_NE(opened, planar);
    // All materials of the list had their part.
    const auto cells = driver.materials();
    const std::set<std::uint32_t> present(cells.begin(), cells.end());
    for (const std::uint32_t material :
         {0u, Silicon, Oxide, Copper, Gold, Pdms, NDoped, PDoped, PolySilicon})
        EXPECT_TRUE(present.count(material)) << material;
    EXPECT_FALSE(present.count(Chromium));
    // The picture is that of the fifth step: resist with an opening.
    EXPECT_EQ(opened.size(), driver.view().size());
    int resist = 0;
    for (int y = 0; y < opened.height(); ++y)
        for (int x = 0; x < opened.width(); ++x) {
            const QColor color = opened.pixelColor(x, y);
            resist += color.red() > 1.5 * color.green() && color.red() > 1.5 * color.blue();
        }
    EXPECT_GT(resist, 100);
    EXPECT_FALSE(driver.workspace().currentOperation());
    EXPECT_EQ(driver.workspace().objectRecords().lastOperation(driver.volumes().front()->id()),
              22u);
}

TEST_F(BatchRunRoadTest, ALongListMovesTheBarWhileTheViewTurns)
{
    std::vector<Ui::ProcessData> steps{BatchDialogs::substrate(120, 120, 80, 10)};
    for (int i = 0; i < 12; ++i)
        steps.push_back(BatchDialogs::deposit(i % 2 ? PolySilicon : Oxide, 4.0));
    BatchDialogs::save(steps, "long.plst");
    Support::WindowDriver driver;
    std::set<int> shown;
    const auto play = [&](QWidget &dialog) {
        click(dialog, "btnRun");
        click(dialog, "btnRun");
        int turns = 0;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                driver.view().setView(-90, 0, 10.0 * ++turns);
                const int value = bar(dialog).value();
                // Once, in the middle.
                if (value >= 4 && value < 13 && *shown.rbegin() < 4)
                    shoot(driver, "running.png");
                shown.insert(value);
                return value == 13;
            },
            110000));
        EXPECT_GT(turns, 2);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                click(dialog, "btnClose");
                return !dialog.isVisible();
            },
            20000));
    };
    open(driver, {DialogAnswer().click("btnLoadList").look(play),
                  DialogAnswer().fileName(listFile("long.plst")).accept()});
    EXPECT_EQ(*shown.rbegin(), 13);
    // One run: one volume.
    ASSERT_EQ(driver.volumes().size(), 1u);
    // Twelve layers of 4 cells on 10.
    EXPECT_TRUE(driver.materials() ==
                Support::materialsBy(Support::Grid{120, 120, 80},
                                     [](std::uint32_t, std::uint32_t, std::uint32_t z) {
                                         if (z < 10)
                                             return Silicon;
                                         const std::uint32_t layer = (z - 10) / 4;
                                         return layer >= 12 ? 0u : layer % 2 ? PolySilicon : Oxide;
                                     }));
}

} // namespace
