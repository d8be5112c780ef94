#include "System/WaferRoad.h"

#include "Model/Automaton/SiAtom.h"
#include "Model/Automaton/SiCell.h"
#include "Model/Automaton/SiLattice.h"
#include "UI/MaskFiles.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace {

using MaskFiles::path;
using Support::DialogAnswer;

constexpr std::uint32_t PositiveResist = 11;
constexpr std::uint32_t WaferHeight = 12;
constexpr int Opening = 14;

// The side walls of a pit are (111) planes, which go down steeper than they go in, by the root of
// 2. So one below the opening of 14 cells ends in an edge less than 10 cells down.
class SiWetEtchRoadTest : public WaferRoad
{
protected:
    static bool isOpen(int x, int y, int margin = 0)
    {
        return x >= 13 - margin && x < 13 + Opening + margin && y >= 8 - margin &&
               y < 8 + Opening + margin;
    }
    /// A layer of resist on the wafer, with the opening.
    void maskWafer()
    {
        QImage mask(40, 30, QImage::Format_RGB32);
        mask.fill(Qt::black);
        for (int x = 0; x < 40; ++x)
            for (int y = 0; y < 30; ++y)
                if (isOpen(x, y))
                    mask.setPixelColor(x, 29 - y, Qt::white);
        mask.save(path("opening.png"));
        run("actionSpin_Coating",
            DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxHeight", "13").accept());
        run("actionPhotolithography", DialogAnswer()
                                          .choose("cbxMaterial", "Photoresist +")
                                          .type("ledTopMask", path("opening.png"))
                                          .click("btnApplyTopMask")
                                          .accept());
        expectMaskedWafer();
    }
    void expectMaskedWafer()
    {
        expectCells([](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (z < WaferHeight)
                return Silicon;
            return z == WaferHeight && !isOpen(int(x), int(y)) ? PositiveResist : 0u;
        });
    }
    static DialogAnswer depth(const char *text)
    {
        return DialogAnswer().type("dblDepth", text).accept();
    }
    boost::shared_ptr<Model::Automaton::SiLattice> lattice()
    {
        return m_driver.volumes().front()->siLattice();
    }

    /// How many cells of a row through the middle are empty, so many layers below the resist.
    std::uint32_t widthOfPit(std::uint32_t layer, bool alongX)
    {
        const auto cells = m_driver.materials();
        std::uint32_t width = 0;
        for (std::uint32_t i = 0; i < (alongX ? 40u : 30u); ++i)
            width +=
                cells[m_grid.index(alongX ? i : 20, alongX ? 15 : i, WaferHeight - 1 - layer)] == 0;
        return width;
    }
    /// Expects the walls of a pit with a flat floor, or with none, below so many layers.
    void expectPit(std::uint32_t layers)
    {
        for (const bool alongX : {true, false})
            for (std::uint32_t layer = 0; layer < WaferHeight; ++layer) {
                const double wall = Opening - 2.0 * (layer + 1) / std::sqrt(2.0);
                const double expected = layer < layers ? std::max(0.0, wall) : 0.0;
                // Which row of atoms lies at the edge of the resist differs from side to side, and a
                // cell is empty when its last atom has gone.
                const double tolerance = layer < layers ? 2.0 : 0.0;
                EXPECT_NEAR(widthOfPit(layer, alongX), expected, tolerance)
                    << "layer " << layer << (alongX ? " along x" : " along y");
            }
    }
    /// The resist, and the silicon below it but for a cell at its edge, are there.
    void expectRestIntact()
    {
        const auto cells = m_driver.materials();
        for (std::uint32_t x = 0; x < 40; ++x)
            for (std::uint32_t y = 0; y < 30; ++y) {
                const std::uint32_t resist = isOpen(int(x), int(y)) ? 0 : PositiveResist;
                ASSERT_EQ(cells[m_grid.index(x, y, WaferHeight)], resist) << x << " " << y;
                if (isOpen(int(x), int(y), 1))
                    continue;
                for (std::uint32_t z = 0; z < WaferHeight; ++z)
                    ASSERT_EQ(cells[m_grid.index(x, y, z)], Silicon) << x << " " << y << " " << z;
            }
    }
};

TEST_F(SiWetEtchRoadTest, APitWithSlantedWallsIsEtchedThroughTheOpening)
{
    maskWafer();
    run("actionBCA_Wet_Etching", depth("4"));
    EXPECT_EQ(lastLines(2), (QStringList{"BCA Wet Etch: Cell volume selected.",
                                         "BCA Wet Etch: Operation finished."}));
    EXPECT_TRUE(idle());
    // It is not undone.
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    expectPit(4);
    expectRestIntact();
}

TEST_F(SiWetEtchRoadTest, ASecondEtchGoesOnUntilTheWallsMeet)
{
    maskWafer();
    run("actionBCA_Wet_Etching", depth("4"));
    const auto first = lattice();
    ASSERT_TRUE(first);
    run("actionBCA_Wet_Etching", depth("3"));
    EXPECT_EQ(lattice(), first);
    expectPit(7);
    run("actionBCA_Wet_Etching", depth("20"));
    EXPECT_EQ(lattice(), first);
    expectPit(10);
    expectRestIntact();
    const auto complete = m_driver.materials();
    run("actionBCA_Wet_Etching", depth("20"));
    EXPECT_EQ(m_driver.materials(), complete);
    EXPECT_EQ(lastLines(1), QStringList("BCA Wet Etch: Operation finished."));
}

TEST_F(SiWetEtchRoadTest, WithoutTheResistTheSameLatticeIsEtchedFromTheTop)
{
    maskWafer();
    run("actionBCA_Wet_Etching", depth("4"));
    const auto first = lattice();
    run("actionSimple_RIE",
        DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxDepth", "1").accept());
    run("actionBCA_Wet_Etching", depth("2"));
    // No silicon has changed in between.
    EXPECT_EQ(lattice(), first);
    // The top goes, and the floor of the pit as before.
    EXPECT_EQ(cell(8, 15, WaferHeight), 0u);
    EXPECT_EQ(cell(8, 15, WaferHeight - 2), 0u);
    EXPECT_EQ(cell(8, 15, WaferHeight - 3), Silicon);
    EXPECT_EQ(cell(20, 15, WaferHeight - 6), 0u);
    EXPECT_EQ(cell(20, 15, WaferHeight - 7), Silicon);
}

TEST_F(SiWetEtchRoadTest, AProcessOnTheSiliconInBetweenLaysANewLattice)
{
    run("actionBCA_Wet_Etching", depth("0"));
    const auto first = lattice();
    ASSERT_TRUE(first);
    run("actionSimple_RIE",
        DialogAnswer().choose("cbxMaterial", "Si").type("sbxDepth", "2").accept());
    EXPECT_EQ(lattice(), first);
    run("actionBCA_Wet_Etching", depth("0"));
    EXPECT_NE(lattice(), first);
    EXPECT_LT(lattice()->cells().size(), first->cells().size());
    expectLayers(WaferHeight - 2);
}

TEST_F(SiWetEtchRoadTest, AFlatSurfaceHasNoRateInTheContinuousEtch)
{
    maskWafer();
    run("actionContinuous_Wet_Etching", depth("3"));
    EXPECT_EQ(lastLines(2), (QStringList{"Continuous Wet Etch: Cell volume selected.",
                                         "Continuous Wet Etch: Operation finished."}));
    EXPECT_TRUE(idle());
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    expectMaskedWafer();
    // It has run: that is where atoms get a mass.
    ASSERT_TRUE(lattice());
    std::size_t heavy = 0;
    for (const auto &entry : lattice()->cells())
        for (unsigned rank = 0; rank < Model::Automaton::SiCell::Atoms; ++rank)
            heavy += entry.second->atom(rank).mass() == 1.0f;
    EXPECT_GT(heavy, 40u * 30u * 11u * 8u);
}

TEST_F(SiWetEtchRoadTest, BothEntriesAskInTheSameDialogAndGoOnWithTheSameLattice)
{
    QStringList titles;
    const auto note = [&] {
        return DialogAnswer()
            .look([&](QWidget &dialog) { titles << dialog.windowTitle(); })
            .type("dblDepth", "0")
            .accept();
    };
    run("actionBCA_Wet_Etching", note());
    const auto first = lattice();
    run("actionContinuous_Wet_Etching", note());
    EXPECT_EQ(lattice(), first);
    EXPECT_EQ(titles, (QStringList{"Wet Etching Options", "Wet Etching Options"}));
    expectLayers(WaferHeight);
}

TEST_F(SiWetEtchRoadTest, ARejectedDialogOfASelectedVolumeCancels)
{
    for (const char *action : {"actionBCA_Wet_Etching", "actionContinuous_Wet_Etching"}) {
        run(action, DialogAnswer().reject());
        EXPECT_TRUE(idle());
        EXPECT_TRUE(lastLines(1).front().endsWith(": Operation canceled."));
        expectLayers(WaferHeight);
    }
    EXPECT_EQ(lastLines(4), (QStringList{"BCA Wet Etch: Cell volume selected.",
                                         "BCA Wet Etch: Operation canceled.",
                                         "Continuous Wet Etch: Cell volume selected.",
                                         "Continuous Wet Etch: Operation canceled."}));
}

TEST_F(SiWetEtchRoadTest, ARejectedDialogOfTheOnlyVolumeLeavesTheOperationCurrent)
{
    m_driver.trigger("actionBCA_Wet_Etching", {DialogAnswer().reject()});
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("BCA Wet Etch: Cell volume selected."));
    m_driver.trigger("actionContinuous_Wet_Etching", {DialogAnswer().reject()});
    EXPECT_EQ(lastLines(2), (QStringList{"BCA Wet Etch: Operation canceled.",
                                         "Continuous Wet Etch: Cell volume selected."}));
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Continuous Wet Etch: Operation canceled."));
    EXPECT_TRUE(idle());
    expectLayers(WaferHeight);
}

TEST_F(SiWetEtchRoadTest, OfTwoVolumesOneHasToBePicked)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    m_driver.trigger("actionBCA_Wet_Etching");
    EXPECT_EQ(lastLines(1),
              QStringList("BCA Wet Etch: Select a cell volume and press Enter/Return."));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(lastLines(2),
              (QStringList{"BCA Wet Etch: Select a cell volume and press Enter/Return.",
                           "BCA Wet Etch: Select a cell volume and press Enter/Return."}));
    pick();
    m_driver.answering({depth("0.25")}, [this] { m_driver.press(Qt::Key_Return); });
    EXPECT_EQ(lastLines(2), (QStringList{"BCA Wet Etch: Cell volume selected.",
                                         "BCA Wet Etch: Operation finished."}));
    EXPECT_TRUE(idle());
}

} // namespace
