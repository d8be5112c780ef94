#include "System/WaferRoad.h"

#include "Model/Process/ProcessFactory.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

constexpr std::uint32_t PDoped = 15;

class DopingRoadTest : public WaferRoad
{
protected:
    ~DopingRoadTest() override
    {
        Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
    }

    static DialogAnswer dope(const char *depth)
    {
        return DialogAnswer()
            .choose("cbxMaterial", "P-doped Si (100)")
            .type("dblDepth", depth)
            .accept();
    }
};

TEST_F(DopingRoadTest, TheWaferIsDopedFromItsSurfaceToTheDepth)
{
    run("actionDoping", dope("4"));
    expectLayers(8, 4, PDoped);
    EXPECT_EQ(lastLines(2),
              (QStringList{"Doping: Cell volume selected.", "Doping: Operation finished."}));
    EXPECT_TRUE(idle());
}

TEST_F(DopingRoadTest, UndoLeavesTheCellsAndOffersItsRedo)
{
    run("actionDoping", dope("4"));
    EXPECT_EQ(undoText(), "Undo Doping");
    m_driver.trigger("actionUndo");
    expectLayers(8, 4, PDoped);
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo Doping");
    m_driver.trigger("actionRedo");
    expectLayers(8, 4, PDoped);
    EXPECT_EQ(undoText(), "Undo Doping");
}

TEST_F(DopingRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionDoping");
    EXPECT_EQ(lastLines(1), QStringList("Doping: Select a cell volume and press Enter/Return."));
    pick();
    m_driver.answering({dope("1.9999")}, [this] { m_driver.press(Qt::Key_Return); });
    expectLayers(11, 1, PDoped);
}

TEST_F(DopingRoadTest, DepthZeroAndADepthBelowACellChangeNothing)
{
    run("actionDoping", dope("0"));
    expectLayers(12);
    run("actionDoping", dope("0.9999"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Doping: Operation finished."));
}

TEST_F(DopingRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilEscape)
{
    run("actionDoping", DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Doping: Cell volume selected."));
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Doping: Operation canceled."));
    EXPECT_TRUE(idle());
    expectLayers(12);
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(DopingRoadTest, TheChooserOffersTheMaterialsOfTheProcess)
{
    QStringList materials;
    run("actionDoping", DialogAnswer()
                            .look([&](QWidget &dialog) {
                                const auto *chooser = dialog.findChild<QComboBox *>("cbxMaterial");
                                for (int i = 0; i < chooser->count(); ++i)
                                    materials << chooser->itemText(i);
                            })
                            .reject());
    EXPECT_EQ(materials, (QStringList{"Si", "N-doped Si (100)", "P-doped Si (100)", "Poly-Si"}));
}

TEST_F(DopingRoadTest, AProcessOfAnotherNameLeavesNothingToChooseAndNothingToDope)
{
    const auto processes = Model::Process::ProcessFactory::instance();
    const Model::Process::Process doping = processes->processByName("Simple Doping");
    processes->updateProcess({"Diffusion", doping.id(), doping.compatibleMaterialIds()});
    int items = -1;
    run("actionDoping",
        DialogAnswer()
            .look([&](QWidget &dialog) { items = dialog.findChild<QComboBox *>()->count(); })
            .accept());
    EXPECT_EQ(items, 0);
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Doping: Operation finished."));
}

} // namespace
