#include "System/WaferRoad.h"

#include "Model/Materials/MaterialFactory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTabWidget>

#include <cstddef>

namespace {

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::DialogAnswer;

class VisualizationRoadTest : public WaferRoad
{
protected:
    void TearDown() override { MaterialFactory::instance()->updateMaterial(m_silicon); }

    static void openTab(QWidget &dialog, int tab)
    {
        dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(tab);
    }
    static DialogAnswer chooseSurface(const char *name)
    {
        return DialogAnswer()
            .look([](QWidget &dialog) { openTab(dialog, 2); })
            .choose("cbxSurfaceAlgorithm", name)
            .accept();
    }
    /// Gives silicon a colour while the wafer under the pointer is selected.
    void recolorSilicon(const QColor &color)
    {
        m_driver.trigger("actionSelect");
        pick();
        m_driver.trigger("actionChange_Viewing_Options",
                         {DialogAnswer()
                              .look([](QWidget &dialog) { openTab(dialog, 1); })
                              .choose("cbxMaterial", "Si")
                              .click("btnChangeColor")
                              .accept(),
                          DialogAnswer().color(color).accept()});
    }
    /// How many pixels of the view have exactly this colour.
    std::size_t pixels(const QColor &color)
    {
        const QImage picture = m_driver.picture();
        std::size_t count = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                if (picture.pixelColor(x, y) == color)
                    ++count;
        return count;
    }

    const Material m_silicon = MaterialFactory::instance()->material(Silicon);
};

TEST_F(VisualizationRoadTest, ANewColourShowsOnAllVolumesAndChangesNoCell)
{
    // Without light, faces have the very colours of their materials.
    m_driver.trigger("actionLighting");
    const QColor red(200, 40, 60);
    recolorSilicon(red);
    const std::size_t first = pixels(red);
    EXPECT_GT(first, 100U);
    expectLayers(12);
    EXPECT_EQ(lastLines(2), (QStringList{"Change Visualization: Cell volume selected.",
                                         "Change Visualization: Options changed."}));
    EXPECT_TRUE(idle());
    EXPECT_EQ(undoText(), "Undo Create Substrate");

    m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                    .type("sbxTotalWidth", "40")
                                                    .type("sbxTotalLength", "30")
                                                    .type("sbxTotalHeight", "50")
                                                    .type("sbxSubsHeight", "12")
                                                    .type("dblPositionX", "60")
                                                    .accept()});
    const std::size_t both = pixels(red);
    EXPECT_GT(both, first);
    // One of the two is selected, both change.
    const QColor green(40, 200, 60);
    recolorSilicon(green);
    EXPECT_EQ(pixels(red), 0U);
    EXPECT_EQ(pixels(green), both);
}

TEST_F(VisualizationRoadTest, ANewColourShowsOnEverySurface)
{
    m_driver.trigger("actionLighting");
    int blue = 60;
    for (const char *name :
         {"Direct Cubic Surface Generation", "Marching Cubes", "Octree Surface Generation"}) {
        run("actionChange_Viewing_Options", chooseSurface(name));
        const QColor color(200, 40, blue++);
        recolorSilicon(color);
        EXPECT_GT(pixels(color), 100U) << name;
    }
}

TEST_F(VisualizationRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionChange_Viewing_Options");
    EXPECT_EQ(lastLines(1),
              QStringList("Change Visualization: Select a cell volume and press Enter/Return."));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_driver.consoleLines().count(lastLines(1).first()), 2);
    pick();
    m_driver.answering({DialogAnswer().check("cbxRenderEmptyVoxels").accept()},
                       [this] { m_driver.press(Qt::Key_Return); });
    // Six outlines of each cell above the wafer.
    EXPECT_EQ(m_driver.volumes().front()->painter().emptyFaces().size(), 6U * 40 * 30 * 38);
}

TEST_F(VisualizationRoadTest, ARejectedDialogIsCancelledOnceMoreByTheNextOperation)
{
    run("actionChange_Viewing_Options", DialogAnswer().check("cbxRenderEmptyVoxels").reject());
    EXPECT_FALSE(m_driver.volumes().front()->painter().showEmptyVoxels());
    EXPECT_EQ(lastLines(1), QStringList("Change Visualization: Operation Canceled!"));
    EXPECT_FALSE(idle());
    m_driver.trigger("actionMove");
    EXPECT_EQ(m_driver.consoleLines().count("Change Visualization: Operation Canceled!"), 2);
}

TEST_F(VisualizationRoadTest, EscapeAtThePromptCancelsAndForgetsTheEnter)
{
    m_driver.trigger("actionChange_Viewing_Options");
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Change Visualization: Operation Canceled!"));
    pick();
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(lastLines(1), QStringList("Change Visualization: Operation Canceled!"));
}

TEST_F(VisualizationRoadTest, TheSurfaceIsChosenForEachVolume)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                    .type("sbxTotalWidth", "10")
                                                    .type("sbxTotalLength", "10")
                                                    .type("sbxTotalHeight", "10")
                                                    .type("dblPositionX", "100")
                                                    .accept()});
    const QImage cubes = m_driver.picture();
    std::uint32_t expected = 1;
    for (const char *name : {"Marching Cubes", "Octree Surface Generation"}) {
        run("actionChange_Viewing_Options", chooseSurface(name));
        EXPECT_EQ(m_driver.volumes()[0]->painter().surfaceAlgorithm(), expected++);
        EXPECT_EQ(m_driver.volumes()[1]->painter().surfaceAlgorithm(), 0U);
        EXPECT_NE(m_driver.picture().pixelColor(m_driver.viewCenter() + QPoint(20, -15)),
                  QColor(Qt::black));
    }
    run("actionChange_Viewing_Options", chooseSurface("Direct Cubic Surface Generation"));
    EXPECT_EQ(m_driver.volumes()[0]->painter().surfaceAlgorithm(), 0U);
    EXPECT_EQ(m_driver.picture(), cubes);
}

} // namespace
