#include "System/WaferRoad.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

class SpinCoatingRoadTest : public WaferRoad
{
protected:
    static DialogAnswer pour(const char *height)
    {
        return DialogAnswer().choose("cbxMaterial", "Au (bulk)").type("sbxHeight", height).accept();
    }
};

TEST_F(SpinCoatingRoadTest, TheHeightCountsFromTheFloorOfTheVolume)
{
    run("actionSpin_Coating", pour("20"));
    expectLayers(12, 8);
    EXPECT_EQ(lastLines(2), (QStringList{"Spin Coating: Cell volume selected.",
                                         "Spin Coating: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(SpinCoatingRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionSpin_Coating");
    EXPECT_EQ(lastLines(1),
              QStringList("Spin Coating: Select a cell volume and press Enter/Return."));
    pick();
    m_driver.answering({pour("13")}, [this] { m_driver.press(Qt::Key_Return); });
    expectLayers(12, 1);
}

TEST_F(SpinCoatingRoadTest, HeightZeroChangesNothingAndTheWaferStaysAboveTheFilm)
{
    run("actionSpin_Coating", pour("0"));
    expectLayers(12);
    run("actionSpin_Coating", pour("7"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Spin Coating: Operation finished."));
}

TEST_F(SpinCoatingRoadTest, TheHeightOfTheVolumeIsTheLimit)
{
    int highest = 0;
    int materials = 0;
    run("actionSpin_Coating",
        DialogAnswer()
            .look([&](QWidget &dialog) {
                highest = dialog.findChild<QWidget *>("sbxHeight")->property("maximum").toInt();
                materials = dialog.findChild<QComboBox *>("cbxMaterial")->count();
            })
            .choose("cbxMaterial", "Au (bulk)")
            .type("sbxHeight", "50")
            .accept());
    EXPECT_EQ(highest, 50);
    EXPECT_EQ(materials, 15);
    expectLayers(12, 38);
}

TEST_F(SpinCoatingRoadTest, ARejectedDialogCancelsTheOperation)
{
    run("actionSpin_Coating", DialogAnswer().type("sbxHeight", "20").reject());
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(2), (QStringList{"Spin Coating: Cell volume selected.",
                                         "Spin Coating: Operation canceled."}));
    expectLayers(12);
}

} // namespace
