#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QComboBox>

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;
using Support::Grid;

constexpr std::uint32_t Oxide = 3;

/// Depositing and etching from the menu, on a small wafer of 12 layers.
class IsotropicRoadTest : public testing::Test
{
protected:
    IsotropicRoadTest()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "40")
                                                        .type("sbxTotalLength", "30")
                                                        .type("sbxTotalHeight", "50")
                                                        .type("sbxSubsHeight", "12")
                                                        .accept()});
    }
    ~IsotropicRoadTest() override
    {
        Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
    }

    /// With the selection mode on, picks the wafer.
    void pick() { m_driver.click(m_driver.viewCenter() + QPoint(20, -15)); }
    void expectLayers(std::uint32_t silicon, std::uint32_t film)
    {
        EXPECT_TRUE(
            m_driver.materials() ==
            Support::materialsBy(m_grid, [=](std::uint32_t, std::uint32_t, std::uint32_t z) {
                return z < silicon ? 1u : z < silicon + film ? Oxide : 0u;
            }));
    }
    static DialogAnswer film(const char *thickness)
    {
        return DialogAnswer()
            .choose("cbxMaterial", "Thermal Si02")
            .type("dblThickness", thickness)
            .accept();
    }

    Support::WindowDriver m_driver;
    const Grid m_grid{40, 30, 50};
};

TEST_F(IsotropicRoadTest, AFilmIsDepositedOnTheVolumeThatIsPickedAtThePrompt)
{
    m_driver.trigger("actionCVD");
    EXPECT_EQ(m_driver.consoleLines().last(),
              "Isotropic Deposition: Select a cell volume and press Enter/Return.");
    EXPECT_TRUE(m_driver.action("actionSelect").isChecked());
    // Enter with nothing picked repeats the prompt.
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_driver.consoleLines().count(
                  "Isotropic Deposition: Select a cell volume and press Enter/Return."),
              2);
    pick();
    m_driver.answering({film("10")}, [this] { m_driver.press(Qt::Key_Return); });
    expectLayers(12, 10);
    EXPECT_EQ(m_driver.consoleLines().mid(m_driver.consoleLines().size() - 2),
              (QStringList{"Isotropic Deposition: Cell volume selected.",
                           "Isotropic Deposition: Operation finished."}));
    EXPECT_FALSE(m_driver.action("actionSelect").isChecked());
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Isotropic Deposition");
    // The picture follows: the film is on top.
    m_driver.trigger("actionLighting");
    const QColor top = m_driver.picture().pixelColor(m_driver.viewCenter() + QPoint(20, -15));
    EXPECT_EQ(top.blue(), 255);
    EXPECT_NEAR(top.red(), 127.5, 1.0);
}

TEST_F(IsotropicRoadTest, AVolumeSelectedBeforehandGoesStraightToTheDialog)
{
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {film("3")});
    expectLayers(12, 3);
}

TEST_F(IsotropicRoadTest, TheFilmIsEtchedBack)
{
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {film("10")});
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionIsotropic_Film_Etching", {film("4")});
    expectLayers(12, 6);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Isotropic Etching");
    // Silicon does not etch with the film.
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionIsotropic_Film_Etching", {film("30")});
    expectLayers(12, 0);
}

TEST_F(IsotropicRoadTest, UndoLeavesTheCellsAndOffersItsRedo)
{
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {film("5")});
    const QImage before = m_driver.picture();
    m_driver.trigger("actionUndo");
    expectLayers(12, 5);
    EXPECT_EQ(m_driver.picture(), before);
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo Isotropic Deposition");
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
    m_driver.trigger("actionRedo");
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Isotropic Deposition");
    expectLayers(12, 5);
}

TEST_F(IsotropicRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilTheNextOneStarts)
{
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {DialogAnswer().reject()});
    EXPECT_TRUE(m_driver.workspace().currentOperation());
    EXPECT_EQ(m_driver.consoleLines().last(), "Isotropic Deposition: Cell volume selected.");
    expectLayers(12, 0);
    m_driver.trigger("actionIsotropic_Film_Etching");
    EXPECT_TRUE(m_driver.consoleLines().contains("Isotropic Deposition: Operation canceled."));
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(m_driver.consoleLines().last(), "Isotropic Etching: Operation canceled.");
    EXPECT_FALSE(m_driver.workspace().currentOperation());
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
}

TEST_F(IsotropicRoadTest, ThicknessZeroChangesNothingAndCanBeUndone)
{
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {film("0")});
    expectLayers(12, 0);
    EXPECT_EQ(m_driver.consoleLines().last(), "Isotropic Deposition: Operation finished.");
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Isotropic Deposition");
}

TEST_F(IsotropicRoadTest, AnEmptyChooserGivesMaterialZeroAndChangesNothing)
{
    const auto processes = Model::Process::ProcessFactory::instance();
    Model::Process::Process cvd = processes->processByName("CVD");
    cvd.setCompatibleMaterialIds({});
    processes->updateProcess(cvd);
    Model::Process::Process etching = processes->processByName("Isotropic Etching");
    etching.setCompatibleMaterialIds({});
    processes->updateProcess(etching);
    int items = -1;
    const DialogAnswer accept =
        DialogAnswer()
            .look([&](QWidget &dialog) { items = dialog.findChild<QComboBox *>()->count(); })
            .accept();
    for (const char *action : {"actionCVD", "actionIsotropic_Film_Etching"}) {
        m_driver.trigger("actionSelect");
        pick();
        m_driver.trigger(action, {accept});
        EXPECT_EQ(items, 0);
        expectLayers(12, 0);
    }
    EXPECT_EQ(m_driver.consoleLines().last(), "Isotropic Etching: Operation finished.");
}

TEST_F(IsotropicRoadTest, TheDialogsOfferTheMaterialsOfTheirProcessAndTheirLimits)
{
    QStringList materials;
    QString title;
    double highest = 0;
    double preset = 0;
    QString suffix;
    const DialogAnswer look = DialogAnswer().look([&](QWidget &dialog) {
        title = dialog.windowTitle();
        materials.clear();
        auto *chooser = dialog.findChild<QComboBox *>("cbxMaterial");
        for (int i = 0; i < chooser->count(); ++i)
            materials << chooser->itemText(i);
        const auto *box = dialog.findChild<QWidget *>("dblThickness");
        highest = box->property("maximum").toDouble();
        preset = box->property("value").toDouble();
        suffix = box->property("suffix").toString();
    });
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionCVD", {DialogAnswer(look).reject()});
    EXPECT_EQ(title, "Isotropic Film Deposition");
    EXPECT_EQ(materials, (QStringList{"Thermal Si02", "Poly-Si"}));
    EXPECT_EQ(highest, 1e9);
    EXPECT_EQ(preset, 10.0);
    EXPECT_EQ(suffix, " units");
    m_driver.press(Qt::Key_Escape);

    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger("actionIsotropic_Film_Etching", {DialogAnswer(look).reject()});
    EXPECT_EQ(title, "Isotropic Etching Options");
    EXPECT_EQ(materials.size(), 12);
    EXPECT_EQ(materials.first(), "Si");
    EXPECT_EQ(preset, 10.0);
}

TEST_F(IsotropicRoadTest, TheTitleOfTheEtchingFollowsTheNameOfItsProcessAlone)
{
    const auto processes = Model::Process::ProcessFactory::instance();
    Model::Process::Process etching = processes->processByName("Isotropic Etching");
    QString title;
    // Renamed in the registry, the process is no longer found, and its name is empty.
    processes->updateProcess(
        Model::Process::Process("Dry etch", etching.id(), etching.compatibleMaterialIds()));
    m_driver.trigger("actionSelect");
    pick();
    m_driver.trigger(
        "actionIsotropic_Film_Etching",
        {DialogAnswer().look([&](QWidget &dialog) { title = dialog.windowTitle(); }).reject()});
    EXPECT_EQ(title, " Options");
}

} // namespace
