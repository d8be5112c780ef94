#include "System/WaferRoad.h"

namespace {

using Support::DialogAnswer;

class PlanarizationRoadTest : public WaferRoad
{};

TEST_F(PlanarizationRoadTest, TheWaferIsCutDownBetweenTheTwoHeights)
{
    run("actionPlanarization", DialogAnswer().type("sbxMaximumHeight", "9").accept());
    expectLayers(9);
    EXPECT_EQ(lastLines(2), (QStringList{"Planarization: Cell volume selected.",
                                         "Planarization: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    run("actionPlanarization",
        DialogAnswer().type("sbxMinimumHeight", "3").type("sbxMaximumHeight", "8").accept());
    expectCells([](std::uint32_t, std::uint32_t, std::uint32_t z) {
        return z >= 3 && z < 8 ? Silicon : 0u;
    });
}

TEST_F(PlanarizationRoadTest, WhatTheDialogStartsWithChangesNothing)
{
    int highest = 0;
    int lowest = -1;
    run("actionPlanarization",
        DialogAnswer()
            .look([&](QWidget &dialog) {
                highest =
                    dialog.findChild<QWidget *>("sbxMaximumHeight")->property("value").toInt();
                lowest = dialog.findChild<QWidget *>("sbxMinimumHeight")->property("value").toInt();
            })
            .accept());
    EXPECT_EQ(highest, 50);
    EXPECT_EQ(lowest, 0);
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Planarization: Operation finished."));
}

TEST_F(PlanarizationRoadTest, ARejectedDialogCancelsTheOperation)
{
    run("actionPlanarization", DialogAnswer().type("sbxMaximumHeight", "2").reject());
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(2), (QStringList{"Planarization: Cell volume selected.",
                                         "Planarization: Operation canceled!"}));
    expectLayers(12);
}

} // namespace
