#include "System/WaferRoad.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

class SimpleRieRoadTest : public WaferRoad
{
protected:
    static DialogAnswer etch(const char *depth, bool top = true, bool below = false)
    {
        return DialogAnswer()
            .choose("cbxMaterial", "Si")
            .type("sbxDepth", depth)
            .check("cbxFromTop", top)
            .check("cbxFromBelow", below)
            .accept();
    }
    /// Silicon from one height to below another, across the block.
    void expectBlock(std::uint32_t from, std::uint32_t to)
    {
        expectCells([=](std::uint32_t x, std::uint32_t, std::uint32_t z) {
            return x >= 10 && x < 30 && z >= from && z < to ? Silicon : 0u;
        });
    }
};

TEST_F(SimpleRieRoadTest, TheWaferIsEtchedFromTheTopOneCellAStep)
{
    run("actionSimple_RIE", etch("5"));
    expectLayers(7);
    EXPECT_EQ(lastLines(2), (QStringList{"Simple RIE: Cell volume selected.",
                                         "Simple RIE: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(SimpleRieRoadTest, ABlockIsEtchedFromBothSides)
{
    createBlock(20, 10);
    run("actionSimple_RIE", etch("3", true, true));
    expectBlock(13, 19);
}

TEST_F(SimpleRieRoadTest, FromBelowAloneAndFromNowhereNothingIsEtched)
{
    createBlock(20, 10);
    run("actionSimple_RIE", etch("3", false, true));
    expectBlock(10, 22);
    run("actionSimple_RIE", etch("3", false, false));
    expectBlock(10, 22);
    EXPECT_EQ(lastLines(1), QStringList("Simple RIE: Operation finished."));
}

TEST_F(SimpleRieRoadTest, FromTheTopAloneTheSideBelowStays)
{
    createBlock(20, 10);
    run("actionSimple_RIE", etch("3", true, false));
    expectBlock(10, 19);
}

TEST_F(SimpleRieRoadTest, ADepthBeyondTheWaferTakesItAway)
{
    run("actionSimple_RIE", etch("20"));
    expectLayers(0);
}

TEST_F(SimpleRieRoadTest, ARejectedDialogCancelsTheOperation)
{
    int materials = 0;
    run("actionSimple_RIE", DialogAnswer()
                                .look([&](QWidget &dialog) {
                                    materials =
                                        dialog.findChild<QComboBox *>("cbxMaterial")->count();
                                })
                                .reject());
    EXPECT_EQ(materials, 15);
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(2), (QStringList{"Simple RIE: Cell volume selected.",
                                         "Simple RIE: Operation canceled."}));
    expectLayers(12);
}

} // namespace
