#include "UI/Operations/ChangeVolumeVisualizationDialog.h"

#include "UI/ColorDialogs.h"
#include "UI/OptionsDialogs.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QFrame>
#include <QGroupBox>
#include <QImage>
#include <QTabBar>
#include <QTabWidget>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using ColorDialogs::ColorDialogDriver;
using Core::Operations::VisualizationOptions;
using Model::Materials::Material;

/// Colours whose channels do not come back from whole numbers.
std::vector<Material> threeMaterials()
{
    const float grey[] = {0.5F, 0.5F, 0.5F, 1.0F};
    const float odd[] = {0.001F, 0.999F, 0.7F, 0.3F};
    const float blue[] = {0.0F, 0.05F, 1.0F, 0.5F};
    return {Material(1, "Silicon", 2329, 188e9F, 0.28F, grey),
            Material(7, "Nickel", 8908, 200e9F, 0.31F, odd),
            Material(4000000000U, "Oxide", 2200, 70e9F, 0.17F, blue)};
}

/// Each option alone in its other state, and all of them.
std::vector<VisualizationOptions> manyOptions()
{
    std::vector<VisualizationOptions> many(10);
    many[0].renderAtoms = true;
    many[1].surfaceAtomsOnly = false;
    many[2].renderLinks = true;
    many[3].renderUnitCells = true;
    many[4].renderOutlines = true;
    many[5].showEmptyVoxels = true;
    many[6].surfaceAlgorithm = 1;
    many[7].surfaceAlgorithm = 2;
    many[8] = {true, false, true, true, true, true, 1};
    return many;
}

class ChangeVolumeVisualizationDialogTest : public testing::Test
{
protected:
    ChangeVolumeVisualizationDialogTest() { m_dialog.setMaterials(threeMaterials()); }

    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }
    void openTab(int tab)
    {
        OptionsDialogs::open(m_dialog);
        find<QTabWidget>("tabWidget")->setCurrentIndex(tab);
    }
    void click(const char *box)
    {
        QTest::mouseClick(find<QCheckBox>(box), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    }
    QString tabOf(const char *widget)
    {
        const auto *tabs = find<QTabWidget>("tabWidget");
        for (int i = 0; i < tabs->count(); ++i)
            if (tabs->widget(i)->isAncestorOf(find<QWidget>(widget)))
                return tabs->tabText(i);
        return {};
    }
    QString shown() { return find<QFrame>("frmColor")->styleSheet(); }
    QColor iconColor(int item)
    {
        return find<QComboBox>("cbxMaterial")
            ->itemIcon(item)
            .pixmap(100, 100)
            .toImage()
            .pixelColor(50, 50);
    }
    void expectOptions(const VisualizationOptions &expected)
    {
        const VisualizationOptions actual = m_dialog.options();
        EXPECT_EQ(actual.renderAtoms, expected.renderAtoms);
        EXPECT_EQ(actual.surfaceAtomsOnly, expected.surfaceAtomsOnly);
        EXPECT_EQ(actual.renderLinks, expected.renderLinks);
        EXPECT_EQ(actual.renderUnitCells, expected.renderUnitCells);
        EXPECT_EQ(actual.renderOutlines, expected.renderOutlines);
        EXPECT_EQ(actual.showEmptyVoxels, expected.showEmptyVoxels);
        EXPECT_EQ(actual.surfaceAlgorithm, expected.surfaceAlgorithm);
    }

    Ui::Operations::ChangeVolumeVisualizationDialog m_dialog;
};

TEST_F(ChangeVolumeVisualizationDialogTest, ControlsStandOnThreeTabs)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Change Volume Visualization Options");
    const auto *tabs = find<QTabWidget>("tabWidget");
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->currentIndex(), 0);
    const std::pair<const char *, const char *> places[] = {
        {"cbxRenderAtoms", "Si Visualization"},       {"cbxSurfaceAtomsOnly", "Si Visualization"},
        {"cbxRenderLinks", "Si Visualization"},       {"cbxRenderOutlines", "Si Visualization"},
        {"cbxRenderUnitCells", "Si Visualization"},   {"cbxRenderEmptyVoxels", "Si Visualization"},
        {"cbxMaterial", "Film Visualization"},        {"frmColor", "Film Visualization"},
        {"btnChangeColor", "Film Visualization"},     {"cbxSurfaceAlgorithm", "Surface Generation"},
        {"lblSurfaceAlgorithm", "Surface Generation"}};
    for (const auto &[widget, tab] : places)
        EXPECT_EQ(tabOf(widget), tab) << widget;
}

TEST_F(ChangeVolumeVisualizationDialogTest, TextsStandWordForWord)
{
    QStringList boxes;
    for (const QCheckBox *box : m_dialog.findChildren<QCheckBox *>()) {
        const auto *group = qobject_cast<const QGroupBox *>(box->parentWidget());
        ASSERT_TRUE(group);
        boxes << group->title() + ": " + box->text();
    }
    EXPECT_EQ(boxes, (QStringList{"Atomistic Visualization: Render Si Atoms",
                                  "Atomistic Visualization: Render surface atoms only",
                                  "Atomistic Visualization: Render Si atom links",
                                  "Atomistic Visualization: Render Si unit cell outlines",
                                  "Atomistic Visualization: Render Si unit cells",
                                  "Voxel Visualization: Render Empty Voxel Outlines"}));
    QStringList labels = OptionsDialogs::labelsOf(m_dialog);
    labels.sort();
    EXPECT_EQ(labels, (QStringList{"Material: cbxMaterial",
                                   "Surface Generation Algorithm: cbxSurfaceAlgorithm"}));
    EXPECT_EQ(find<QPushButton>("btnChangeColor")->text(), "Change Color");
}

TEST_F(ChangeVolumeVisualizationDialogTest, SurfacesStandInTheOrderOfTheirNumbers)
{
    const auto *surfaces = find<QComboBox>("cbxSurfaceAlgorithm");
    EXPECT_EQ(OptionsDialogs::itemsOf(*surfaces),
              (QStringList{"Direct Cubic Surface Generation", "Marching Cubes",
                           "Octree Surface Generation"}));
    openTab(2);
    for (std::uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(m_dialog.options().surfaceAlgorithm, i);
        QTest::keyClick(find<QComboBox>("cbxSurfaceAlgorithm"), Qt::Key_Down);
    }
}

TEST_F(ChangeVolumeVisualizationDialogTest, OptionsComeBackAsTheyWereGiven)
{
    for (const VisualizationOptions &options : manyOptions()) {
        m_dialog.setOptions(options);
        expectOptions(options);
        EXPECT_EQ(find<QCheckBox>("cbxRenderAtoms")->isChecked(), options.renderAtoms);
        EXPECT_EQ(find<QCheckBox>("cbxSurfaceAtomsOnly")->isChecked(), options.surfaceAtomsOnly);
        EXPECT_EQ(find<QCheckBox>("cbxRenderLinks")->isChecked(), options.renderLinks);
        EXPECT_EQ(find<QCheckBox>("cbxRenderOutlines")->isChecked(), options.renderOutlines);
        EXPECT_EQ(find<QCheckBox>("cbxRenderUnitCells")->isChecked(), options.renderUnitCells);
        EXPECT_EQ(find<QCheckBox>("cbxRenderEmptyVoxels")->isChecked(), options.showEmptyVoxels);
    }
}

TEST_F(ChangeVolumeVisualizationDialogTest, AClickChangesOneOption)
{
    VisualizationOptions expected;
    m_dialog.setOptions(expected);
    openTab(0);
    for (const auto &[box, option] :
         {std::make_pair("cbxRenderAtoms", &VisualizationOptions::renderAtoms),
          std::make_pair("cbxSurfaceAtomsOnly", &VisualizationOptions::surfaceAtomsOnly),
          std::make_pair("cbxRenderLinks", &VisualizationOptions::renderLinks),
          std::make_pair("cbxRenderOutlines", &VisualizationOptions::renderOutlines),
          std::make_pair("cbxRenderUnitCells", &VisualizationOptions::renderUnitCells),
          std::make_pair("cbxRenderEmptyVoxels", &VisualizationOptions::showEmptyVoxels)}) {
        click(box);
        expected.*option = !(expected.*option);
        expectOptions(expected);
    }
}

TEST_F(ChangeVolumeVisualizationDialogTest, SurfaceAtomsAreAChoiceOnlyWhileAtomsAreRendered)
{
    const auto *only = find<QCheckBox>("cbxSurfaceAtomsOnly");
    EXPECT_FALSE(only->isEnabled());
    m_dialog.setOptions({});
    EXPECT_FALSE(only->isEnabled());
    EXPECT_TRUE(only->isChecked());
    openTab(0);
    click("cbxRenderAtoms");
    EXPECT_TRUE(only->isEnabled());
    click("cbxSurfaceAtomsOnly");
    click("cbxRenderAtoms");
    EXPECT_FALSE(only->isEnabled());
    // It keeps its state.
    EXPECT_FALSE(m_dialog.options().surfaceAtomsOnly);
    VisualizationOptions atoms;
    atoms.renderAtoms = true;
    m_dialog.setOptions(atoms);
    EXPECT_TRUE(only->isEnabled());
}

TEST_F(ChangeVolumeVisualizationDialogTest, AnUnknownSurfaceIsTakenAsTheFirst)
{
    VisualizationOptions options;
    for (const std::uint32_t unknown : {3U, 4294967295U}) {
        options.surfaceAlgorithm = unknown;
        m_dialog.setOptions(options);
        EXPECT_EQ(m_dialog.options().surfaceAlgorithm, 0U);
    }
}

TEST_F(ChangeVolumeVisualizationDialogTest, EachMaterialHasItsNameItsIdAndItsColour)
{
    const auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser), (QStringList{"Silicon", "Nickel", "Oxide"}));
    EXPECT_EQ(chooser->itemData(1).toUInt(), 7U);
    EXPECT_EQ(chooser->itemData(2).toUInt(), 4000000000U);
    EXPECT_EQ(iconColor(0), QColor(127, 127, 127));
    EXPECT_EQ(iconColor(2).rgb(), QColor(0, 12, 255, 127).rgb());
}

TEST_F(ChangeVolumeVisualizationDialogTest, TheSwatchShowsTheChosenMaterialWithoutAlpha)
{
    EXPECT_EQ(shown(), "background-color : #7f7f7f");
    openTab(1);
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    // Truncated and padded.
    EXPECT_EQ(shown(), "background-color : #00feb2");
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    EXPECT_EQ(shown(), "background-color : #000cff");
    const auto *swatch = find<QFrame>("frmColor");
    EXPECT_EQ(
        m_dialog.grab().toImage().pixelColor(swatch->mapTo(&m_dialog, swatch->rect().center())),
        QColor(0, 12, 255));
}

TEST_F(ChangeVolumeVisualizationDialogTest, ChangeColorAsksWithTheColourOfTheMaterialAndItsAlpha)
{
    openTab(1);
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    ColorDialogDriver driver([](QColorDialog &colors) {
        EXPECT_EQ(colors.windowTitle(), QStringLiteral("Select new film color"));
        EXPECT_EQ(colors.currentColor(), QColor(0, 254, 178, 76));
        EXPECT_TRUE(colors.testOption(QColorDialog::ShowAlphaChannel));
        colors.reject();
    });
    QTest::mouseClick(find<QPushButton>("btnChangeColor"), Qt::LeftButton);
    EXPECT_TRUE(driver.found());
}

TEST_F(ChangeVolumeVisualizationDialogTest, AChosenColourIsKeptForItsMaterialAlone)
{
    openTab(1);
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    ColorDialogDriver driver([](QColorDialog &colors) {
        colors.setCurrentColor(QColor(9, 128, 255, 51));
        colors.accept();
    });
    QTest::mouseClick(find<QPushButton>("btnChangeColor"), Qt::LeftButton);
    ASSERT_TRUE(driver.found());
    EXPECT_EQ(shown(), "background-color : #0980ff");
    EXPECT_EQ(iconColor(1).alpha(), 51);
    const std::array<float, 4> blue{9 / 255.0F, 128 / 255.0F, 1.0F, 0.2F};
    ASSERT_EQ(m_dialog.colors().size(), 3U);
    EXPECT_EQ(m_dialog.colors().at(7), blue);
    EXPECT_EQ(m_dialog.colors().at(1), (std::array<float, 4>{0.5F, 0.5F, 0.5F, 1.0F}));
    EXPECT_EQ(m_dialog.colors().at(4000000000U), (std::array<float, 4>{0.0F, 0.05F, 1.0F, 0.5F}));
    // It is there again after another material.
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Up);
    EXPECT_EQ(shown(), "background-color : #7f7f7f");
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    EXPECT_EQ(shown(), "background-color : #0980ff");
}

TEST_F(ChangeVolumeVisualizationDialogTest, ACanceledColourChangesNothing)
{
    openTab(1);
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    ColorDialogDriver driver([](QColorDialog &colors) {
        colors.setCurrentColor(QColor(9, 128, 255));
        colors.reject();
    });
    QTest::mouseClick(find<QPushButton>("btnChangeColor"), Qt::LeftButton);
    ASSERT_TRUE(driver.found());
    EXPECT_EQ(shown(), "background-color : #00feb2");
    EXPECT_EQ(m_dialog.colors().at(7), (std::array<float, 4>{0.001F, 0.999F, 0.7F, 0.3F}));
}

TEST_F(ChangeVolumeVisualizationDialogTest, WithoutMaterialsThereIsNoColourToChange)
{
    EXPECT_TRUE(find<QPushButton>("btnChangeColor")->isEnabled());
    m_dialog.setMaterials({});
    EXPECT_FALSE(find<QPushButton>("btnChangeColor")->isEnabled());
    m_dialog.changeColor();
    EXPECT_TRUE(m_dialog.colors().empty());
}

TEST_F(ChangeVolumeVisualizationDialogTest, TabGoesFromTopToBottom)
{
    VisualizationOptions atoms;
    atoms.renderAtoms = true;
    m_dialog.setOptions(atoms);
    const QStringList tabs[] = {{"cbxRenderAtoms", "cbxSurfaceAtomsOnly", "cbxRenderLinks",
                                 "cbxRenderOutlines", "cbxRenderUnitCells", "cbxRenderEmptyVoxels"},
                                {"cbxMaterial"},
                                {"cbxSurfaceAlgorithm"}};
    for (int tab = 0; tab < 3; ++tab) {
        openTab(tab);
        auto *bar = find<QTabWidget>("tabWidget")->tabBar();
        bar->setFocus();
        EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), QStringList(bar->objectName()) + tabs[tab]);
    }
}

TEST_F(ChangeVolumeVisualizationDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "cbxRenderAtoms");
}

TEST_F(ChangeVolumeVisualizationDialogTest, EverythingHasRoomOnEachTab)
{
    for (int tab = 0; tab < 3; ++tab) {
        openTab(tab);
        OptionsDialogs::expectRoom(m_dialog);
    }
    const auto *bar = find<QTabWidget>("tabWidget")->tabBar();
    EXPECT_TRUE(bar->rect().contains(bar->tabRect(0)));
    EXPECT_TRUE(bar->rect().contains(bar->tabRect(2)));
}

} // namespace
