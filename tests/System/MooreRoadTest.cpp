#include "System/WaferRoad.h"

#include <QComboBox>
#include <QLabel>

namespace {

using Support::DialogAnswer;

class MooreRoadTest : public WaferRoad
{
protected:
    static DialogAnswer film(const char *material, const char *steps)
    {
        return DialogAnswer().choose("cbxMaterial", material).type("sbxValue", steps).accept();
    }
};

TEST_F(MooreRoadTest, AFilmIsDepositedAndEtchedBackByWholeLayers)
{
    run("actionMoore_Deposition", film("Au (bulk)", "5"));
    expectLayers(12, 5);
    EXPECT_EQ(lastLines(2), (QStringList{"Moore film deposition: Cell volume selected.",
                                         "Moore film deposition: Operation finished."}));
    EXPECT_EQ(undoText(), "Undo Moore film deposition");
    EXPECT_TRUE(idle());
    run("actionMoore_Etching", film("Au (bulk)", "2"));
    expectLayers(12, 3);
    // The etching goes by the name of the deposition.
    EXPECT_EQ(lastLines(2), (QStringList{"Moore film deposition: Cell volume selected.",
                                         "Moore film deposition: Operation finished."}));
    EXPECT_EQ(undoText(), "Undo Moore film deposition");
    // It stops at the silicon.
    run("actionMoore_Etching", film("Au (bulk)", "40"));
    expectLayers(12);
}

TEST_F(MooreRoadTest, AFilmGrowsAroundTheEdgesOfABlockWithSquareCorners)
{
    createBlock(20, 10);
    run("actionMoore_Deposition", film("Au (bulk)", "3"));
    expectCells([](std::uint32_t x, std::uint32_t, std::uint32_t z) {
        if (x >= 10 && x < 30 && z >= 10 && z < 22)
            return Silicon;
        return x >= 7 && x < 33 && z >= 7 && z < 25 ? Gold : 0u;
    });
}

TEST_F(MooreRoadTest, ARejectedDialogCancelsTheOperation)
{
    for (const char *action : {"actionMoore_Deposition", "actionMoore_Etching"}) {
        run(action, DialogAnswer().reject());
        EXPECT_TRUE(idle()) << action;
        EXPECT_EQ(lastLines(2), (QStringList{"Moore film deposition: Cell volume selected.",
                                             "Moore film deposition: Operation canceled."}));
        expectLayers(12);
        EXPECT_EQ(undoText(), "Undo Create Substrate");
    }
}

TEST_F(MooreRoadTest, TheDialogCallsTheValueByWhatItDoes)
{
    for (const auto &[action, text] : {std::make_pair("actionMoore_Deposition", "Film Thickness"),
                                       std::make_pair("actionMoore_Etching", "Etch Depth")}) {
        QStringList labels;
        int materials = 0;
        run(action, DialogAnswer()
                        .look([&](QWidget &dialog) {
                            for (const auto *label : dialog.findChildren<QLabel *>())
                                labels << label->text();
                            materials = dialog.findChild<QComboBox *>("cbxMaterial")->count();
                        })
                        .reject());
        EXPECT_EQ(labels, (QStringList{"Select Film", text}));
        EXPECT_EQ(materials, 15);
    }
}

} // namespace
