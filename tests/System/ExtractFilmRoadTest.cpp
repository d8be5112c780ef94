#include "System/WaferRoad.h"

#include <QColor>
#include <QComboBox>
#include <QImage>

namespace {

using Support::DialogAnswer;

/// The wafer is plated with 5 layers of gold.
class ExtractFilmRoadTest : public WaferRoad
{
protected:
    ExtractFilmRoadTest()
    {
        plate("5");
        m_driver.trigger("actionLighting");
    }

    void plate(const char *thickness)
    {
        run("actionElectrodeposition", DialogAnswer()
                                           .choose("cbxMaterial", "Au (bulk)")
                                           .choose("cbxConductingMaterial", "Si")
                                           .type("dblThickness", thickness)
                                           .accept());
    }
    void expectResult(const Support::MaterialRule &rule)
    {
        ASSERT_EQ(m_driver.volumes().size(), 2u);
        EXPECT_TRUE(m_driver.materials(1) == Support::materialsBy(m_grid, rule));
    }
    bool shownBeside() { return m_driver.picture().pixelColor(beside()) != QColor(Qt::black); }
    /// On the result, which starts ten cells beside the wafer of 40.
    QPoint beside() { return m_driver.viewCenter() + QPoint(70, -15); }
};

TEST_F(ExtractFilmRoadTest, TheFilmStandsBesideTheWaferOnLayerZero)
{
    run("actionExtract_Film", DialogAnswer().choose("cbxFilm", "Au (bulk)").accept());
    expectResult([](auto, auto, std::uint32_t z) { return z < 5 ? Gold : 0u; });
    EXPECT_EQ(m_driver.volumes()[1]->position()[0], 50.0);
    expectLayers(12, 5);
    EXPECT_EQ(lastLines(2), (QStringList{"Extract Film: cell volume selected.",
                                         "Extract Film: film extracted."}));
    EXPECT_TRUE(idle());
    EXPECT_EQ(undoText(), "Undo Extract Film");
    // It is not drawn until its surfaces are built, but it is picked.
    EXPECT_FALSE(shownBeside());
    m_driver.trigger("actionSelect");
    m_driver.click(beside());
    m_driver.trigger("actionPlanarization",
                     {DialogAnswer().type("sbxMaximumHeight", "3").accept()});
    EXPECT_TRUE(shownBeside());
    expectResult([](auto, auto, std::uint32_t z) { return z < 3 ? Gold : 0u; });
    expectLayers(12, 5);
}

TEST_F(ExtractFilmRoadTest, WithNothingSelectedItAsksAndEnterGoesOn)
{
    m_driver.trigger("actionExtract_Film");
    EXPECT_EQ(lastLines(1),
              QStringList("Extract Film: select a cell volume and press Enter/Return."));
    EXPECT_TRUE(m_driver.action("actionSelect").isChecked());
    pick();
    m_driver.answering({DialogAnswer().choose("cbxFilm", "Si").accept()},
                       [&] { m_driver.press(Qt::Key_Return); });
    expectResult([](auto, auto, std::uint32_t z) { return z < 12 ? Silicon : 0u; });
    EXPECT_FALSE(m_driver.action("actionSelect").isChecked());
}

TEST_F(ExtractFilmRoadTest, AnInvertedFilmHasItsTopSideDown)
{
    // A cap on a narrow block, with skirts down its sides to the floor.
    createBlock(20, 0);
    plate("3");
    const std::vector<std::uint32_t> source = m_driver.materials();
    ASSERT_EQ(source[m_grid.index(20, 15, 14)], Gold);
    ASSERT_EQ(source[m_grid.index(9, 15, 0)], Gold);
    run("actionExtract_Film",
        DialogAnswer().choose("cbxFilm", "Au (bulk)").check("chkInvertFilm").accept());
    expectResult([&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return z < 15 && source[m_grid.index(x, 29 - y, 14 - z)] == Gold ? Gold : 0u;
    });
}

TEST_F(ExtractFilmRoadTest, AllMaterialsAreOffered)
{
    int count = 0;
    run("actionExtract_Film", DialogAnswer()
                                  .look([&](QWidget &dialog) {
                                      count = dialog.findChild<QComboBox *>("cbxFilm")->count();
                                  })
                                  .reject());
    EXPECT_EQ(count, 15);
}

TEST_F(ExtractFilmRoadTest, ARejectedDialogCancelsTheOperation)
{
    run("actionExtract_Film", DialogAnswer().reject());
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(2), (QStringList{"Extract Film: cell volume selected.",
                                         "Extract Film: Operation Canceled!"}));
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_EQ(undoText(), "Undo Electroplating");
}

TEST_F(ExtractFilmRoadTest, EscapeCancelsTheSelection)
{
    m_driver.trigger("actionExtract_Film");
    m_driver.press(Qt::Key_Escape);
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Extract Film: Operation Canceled!"));
}

TEST_F(ExtractFilmRoadTest, AFilmThatTheWaferDoesNotHoldGivesAnEmptyVolumeAndSaysSo)
{
    run("actionExtract_Film", DialogAnswer().choose("cbxFilm", "Cu (bulk)").accept());
    expectResult([](auto, auto, auto) { return 0u; });
    EXPECT_EQ(
        lastLines(2),
        (QStringList{"Extract Film: the cell volume does not hold this film, the result is empty.",
                     "Extract Film: film extracted."}));
}

TEST_F(ExtractFilmRoadTest, UndoDoneTwiceTakesTheFilmOutAndLeavesItsEntry)
{
    run("actionExtract_Film", DialogAnswer().choose("cbxFilm", "Au (bulk)").accept());
    for (int round = 0; round < 2; ++round) {
        m_driver.trigger("actionUndo");
        EXPECT_EQ(m_driver.volumes().size(), 1u);
        expectLayers(12, 5);
        EXPECT_EQ(undoText(), "Undo Extract Film");
        EXPECT_FALSE(m_driver.action("actionRedo").isEnabled());
    }
}

} // namespace
