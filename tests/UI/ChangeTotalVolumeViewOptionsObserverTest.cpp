#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "UI/MainWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QTabWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

namespace {

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::DialogAnswer;

class ChangeTotalVolumeViewOptionsObserverTest : public testing::Test
{
protected:
    ChangeTotalVolumeViewOptionsObserverTest()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "10")
                                                        .type("sbxTotalLength", "10")
                                                        .type("sbxTotalHeight", "10")
                                                        .type("sbxSubsHeight", "4")
                                                        .accept()});
        m_volume = m_driver.volumes().front();
    }
    void TearDown() override
    {
        for (const Material &material : m_before)
            MaterialFactory::instance()->updateMaterial(material);
    }

    static DialogAnswer onTab(int tab)
    {
        return DialogAnswer().look([tab](QWidget &dialog) {
            dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(tab);
        });
    }
    void run(const std::vector<DialogAnswer> &answers)
    {
        m_driver.trigger("actionSelect");
        m_driver.click(m_driver.viewCenter() + QPoint(4, -4));
        m_driver.trigger("actionChange_Viewing_Options", answers);
    }
    static std::array<float, 4> colorOf(const Material &material)
    {
        std::array<float, 4> color{};
        std::copy_n(material.color(), 4, color.begin());
        return color;
    }
    /// All materials but this one have their colours, bit for bit, and all else of this one too.
    void expectOthersUntouched(std::uint32_t changed)
    {
        const std::vector<Material> after = MaterialFactory::instance()->materials();
        ASSERT_EQ(after.size(), m_before.size());
        for (std::size_t i = 0; i < after.size(); ++i) {
            EXPECT_EQ(after[i].id(), m_before[i].id());
            EXPECT_EQ(after[i].name(), m_before[i].name());
            EXPECT_EQ(after[i].density(), m_before[i].density());
            if (after[i].id() != changed) {
                EXPECT_EQ(colorOf(after[i]), colorOf(m_before[i]));
            }
        }
    }

    const std::vector<Material> m_before = MaterialFactory::instance()->materials();
    Support::WindowDriver m_driver;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
};

TEST_F(ChangeTotalVolumeViewOptionsObserverTest, AnAcceptedColourReachesTheRegistry)
{
    run({onTab(1).choose("cbxMaterial", "Au (bulk)").click("btnChangeColor").accept(),
         DialogAnswer().color(QColor(51, 102, 204, 128)).accept()});
    EXPECT_EQ(colorOf(MaterialFactory::instance()->material(9)),
              (std::array<float, 4>{0.2F, 0.4F, 0.8F, 128 / 255.0F}));
    expectOthersUntouched(9);
    EXPECT_FALSE(m_driver.workspace().currentOperation());
}

TEST_F(ChangeTotalVolumeViewOptionsObserverTest, AnAcceptedDialogWithoutANewColourKeepsAllColours)
{
    run({DialogAnswer().accept()});
    expectOthersUntouched(0);
}

TEST_F(ChangeTotalVolumeViewOptionsObserverTest, ARejectedDialogChangesNothingAndStaysCurrent)
{
    run({onTab(0)
             .check("cbxRenderEmptyVoxels")
             .look([](QWidget &dialog) {
                 dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(1);
             })
             .choose("cbxMaterial", "Au (bulk)")
             .click("btnChangeColor")
             .reject(),
         DialogAnswer().color(QColor(1, 2, 3)).accept()});
    expectOthersUntouched(0);
    EXPECT_FALSE(m_volume->painter().showEmptyVoxels());
    EXPECT_EQ(m_driver.consoleLines().last(), "Change Visualization: Operation Canceled!");
    EXPECT_TRUE(m_driver.workspace().currentOperation());
    // It is cancelled once more by what comes next.
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(m_driver.consoleLines().count("Change Visualization: Operation Canceled!"), 2);
}

TEST_F(ChangeTotalVolumeViewOptionsObserverTest, AllOptionsReachTheVolume)
{
    run({DialogAnswer()
             .check("cbxRenderAtoms")
             .check("cbxSurfaceAtomsOnly", false)
             .check("cbxRenderLinks")
             .check("cbxRenderOutlines")
             .check("cbxRenderUnitCells")
             .check("cbxRenderEmptyVoxels")
             .look([](QWidget &dialog) {
                 dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(2);
             })
             .choose("cbxSurfaceAlgorithm", "Octree Surface Generation")
             .accept()});
    const auto &painter = m_volume->painter();
    EXPECT_TRUE(painter.renderAtoms());
    EXPECT_FALSE(painter.surfaceAtomsOnly());
    EXPECT_TRUE(painter.renderLinks());
    EXPECT_TRUE(painter.renderOutlines());
    EXPECT_TRUE(painter.renderUnitCells());
    EXPECT_TRUE(painter.showEmptyVoxels());
    EXPECT_EQ(painter.surfaceAlgorithm(), 2U);
}

TEST_F(ChangeTotalVolumeViewOptionsObserverTest, TheDialogStartsWithTheOptionsOfTheVolume)
{
    run({DialogAnswer()
             .check("cbxRenderLinks")
             .check("cbxRenderEmptyVoxels")
             .look([](QWidget &dialog) {
                 dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(2);
             })
             .choose("cbxSurfaceAlgorithm", "Octree Surface Generation")
             .accept()});
    QStringList checked;
    int surface = -1;
    run({DialogAnswer()
             .look([&](QWidget &dialog) {
                 for (const QCheckBox *box : dialog.findChildren<QCheckBox *>())
                     if (box->isChecked())
                         checked << box->objectName();
                 surface = dialog.findChild<QComboBox *>("cbxSurfaceAlgorithm")->currentIndex();
             })
             .reject()});
    EXPECT_EQ(checked,
              (QStringList{"cbxSurfaceAtomsOnly", "cbxRenderLinks", "cbxRenderEmptyVoxels"}));
    EXPECT_EQ(surface, 2);
}

} // namespace
