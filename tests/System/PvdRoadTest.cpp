#include "System/WaferRoad.h"

#include "Model/Process/ProcessFactory.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

class PvdRoadTest : public WaferRoad
{
protected:
    ~PvdRoadTest() override { Model::Process::ProcessFactory::instance()->loadDefaultProcesses(); }

    static DialogAnswer film(const char *thickness, const char *ratio = "0.5")
    {
        return DialogAnswer()
            .choose("cbxMaterial", "Au (bulk)")
            .type("dblThickness", thickness)
            .type("dblHorizontalRatio", ratio);
    }
};

TEST_F(PvdRoadTest, AFlatWaferGetsAFilmOfItsThickness)
{
    run("actionPVD", film("10").accept());
    expectLayers(12, 10);
    // The words stand twice.
    EXPECT_EQ(lastLines(2),
              (QStringList{"Isotropic Deposition: Isotropic Deposition: Cell volume selected.",
                           "Isotropic Deposition: Operation finished."}));
    EXPECT_EQ(undoText(), "Undo Isotropic Deposition");
    EXPECT_TRUE(idle());
}

TEST_F(PvdRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionPVD");
    EXPECT_EQ(lastLines(1),
              QStringList("Isotropic Deposition: Select a cell volume and press Enter/Return."));
    pick();
    m_driver.answering({film("3").accept()}, [this] { m_driver.press(Qt::Key_Return); });
    expectLayers(12, 3);
}

TEST_F(PvdRoadTest, WhateverSideIsChosenTheFilmIsDepositedOnTop)
{
    run("actionPVD", film("2").check("rbtBottom").accept());
    expectLayers(12, 2);
    run("actionPVD", film("2").check("rbtBothSides").accept());
    expectLayers(12, 4);
}

TEST_F(PvdRoadTest, TheRatioSaysHowFarTheFilmGrowsSideways)
{
    struct Case
    {
        const char *ratio;
        bool firstBeside;
        bool secondBeside;
    };
    // One step sideways counts 100, 2 and 1 cells. The two cells beside the lowest layer of the
    // film are then (100, 1) and (200, 1), (2, 1) and (4, 1), (1, 1) and (2, 1) away from the
    // block's edge; the film is 4 thick.
    for (const Case &wanted :
         {Case{"0.01", false, false}, Case{"0.5", true, false}, Case{"1", true, true}}) {
        createBlock(20, 0);
        run("actionPVD", film("4", wanted.ratio).accept());
        EXPECT_EQ(cell(15, 15, 12), Gold) << wanted.ratio;
        EXPECT_EQ(cell(15, 15, 15), Gold) << wanted.ratio;
        EXPECT_EQ(cell(15, 15, 16), 0u) << wanted.ratio;
        EXPECT_EQ(cell(30, 15, 12) == Gold, wanted.firstBeside) << wanted.ratio;
        EXPECT_EQ(cell(31, 15, 12) == Gold, wanted.secondBeside) << wanted.ratio;
    }
}

TEST_F(PvdRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilEscape)
{
    run("actionPVD", DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1),
              QStringList("Isotropic Deposition: Isotropic Deposition: Cell volume selected."));
    expectLayers(12);
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Isotropic Deposition: Operation canceled."));
    EXPECT_TRUE(idle());
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(PvdRoadTest, AnEmptyChooserGivesMaterialZeroAndChangesNothing)
{
    const auto processes = Model::Process::ProcessFactory::instance();
    Model::Process::Process pvd = processes->processByName("PVD");
    pvd.setCompatibleMaterialIds({});
    processes->updateProcess(pvd);
    int items = -1;
    run("actionPVD",
        DialogAnswer()
            .look([&](QWidget &dialog) { items = dialog.findChild<QComboBox *>()->count(); })
            .accept());
    EXPECT_EQ(items, 0);
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Isotropic Deposition: Operation finished."));
}

TEST_F(PvdRoadTest, TheDialogOffersTheMaterialsOfItsProcessUnderItsName)
{
    QString title;
    QStringList materials;
    const auto look = DialogAnswer()
                          .look([&](QWidget &dialog) {
                              title = dialog.windowTitle();
                              const auto *chooser = dialog.findChild<QComboBox *>("cbxMaterial");
                              for (int i = 0; i < chooser->count(); ++i)
                                  materials << chooser->itemText(i);
                          })
                          .reject();
    run("actionPVD", look);
    EXPECT_EQ(title, "PVD Options");
    EXPECT_EQ(materials, (QStringList{"Al (bulk)", "Cu (bulk)", "Cr (bulk)", "Ni (bulk)",
                                      "Pt (bulk)", "Au (bulk)", "Ti (bulk)"}));
}

} // namespace
