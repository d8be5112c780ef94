#include "System/WaferRoad.h"

#include <QComboBox>

namespace {

using Support::DialogAnswer;

class ElectroplatingRoadTest : public WaferRoad
{
protected:
    static DialogAnswer film(const char *conductor)
    {
        return DialogAnswer()
            .choose("cbxMaterial", "Au (bulk)")
            .choose("cbxConductingMaterial", conductor)
            .type("dblThickness", "5")
            .accept();
    }
};

TEST_F(ElectroplatingRoadTest, AConductingWaferIsPlated)
{
    run("actionElectrodeposition", film("Si"));
    expectLayers(12, 5);
    EXPECT_EQ(lastLines(2), (QStringList{"Electroplating: Cell volume selected.",
                                         "Electroplating: Operation finished."}));
    EXPECT_EQ(undoText(), "Undo Electroplating");
    EXPECT_TRUE(idle());
}

TEST_F(ElectroplatingRoadTest, NothingGrowsOnAWaferThatDoesNotConduct)
{
    run("actionElectrodeposition", film("Cu (bulk)"));
    expectLayers(12);
    EXPECT_EQ(lastLines(1), QStringList("Electroplating: Operation finished."));
    EXPECT_EQ(undoText(), "Undo Electroplating");
}

TEST_F(ElectroplatingRoadTest, ARejectedDialogLeavesTheOperationCurrentUntilTheNextOneStarts)
{
    run("actionElectrodeposition", DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Electroplating: Cell volume selected."));
    expectLayers(12);
    m_driver.trigger("actionPVD");
    EXPECT_EQ(lastLines(2),
              (QStringList{"Electroplating: Operation canceled.",
                           "Isotropic Deposition: Select a cell volume and press Enter/Return."}));
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(ElectroplatingRoadTest, BothChoosersOfferAllMaterials)
{
    std::vector<int> counts;
    run("actionElectrodeposition",
        DialogAnswer()
            .look([&](QWidget &dialog) {
                for (const auto *chooser : dialog.findChildren<QComboBox *>())
                    counts.push_back(chooser->count());
            })
            .reject());
    EXPECT_EQ(counts, (std::vector<int>{15, 15}));
}

} // namespace
