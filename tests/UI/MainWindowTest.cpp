#include "Support/WindowDriver.h"

#include "Core/Operations/IOperationFactory.h"
#include "Core/Operations/Operation.h"
#include "Core/Workspace.h"
#include "Model/ColorTable.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QImage>
#include <QLabel>

#include <gtest/gtest.h>

#include <map>

namespace {

using Model::ColorTable;
using Support::DialogAnswer;

/// Writes down what it is asked for and makes nothing.
class Recorder final : public Core::Operations::IOperationFactory
{
public:
    boost::shared_ptr<Core::Operations::Operation> create(std::uint32_t id) override
    {
        ids.push_back(id);
        return {};
    }
    std::vector<std::uint32_t> ids;
};

class MainWindowTest : public testing::Test
{
protected:
    MainWindowTest() : m_view(m_driver.view()) {}
    ~MainWindowTest() override { ColorTable::setCurrentScheme(ColorTable::DefaultScheme); }

    QString valueIn(const QString &action, const QString &widget)
    {
        QString value;
        m_driver.trigger(
            action, {DialogAnswer()
                         .look([&](QWidget &dialog) {
                             value =
                                 dialog.findChild<QWidget *>(widget)->property("value").toString();
                         })
                         .reject()});
        return value;
    }

    Support::WindowDriver m_driver;
    Ui::GLWidget &m_view;
};

TEST_F(MainWindowTest, IsDeletedWhenItIsClosed)
{
    EXPECT_TRUE(m_driver.window().testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(m_driver.window().windowTitle(), "Lithara");
}

TEST_F(MainWindowTest, ExitClosesTheWindowWithNoQuestionAndRemovesTheStateFiles)
{
    const QStringList patterns = {"undo*.temp", "redo*.temp"};
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    EXPECT_EQ(QDir().entryList(patterns, QDir::Files).size(), 2);
    m_driver.action("actionExit").trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_THROW(m_driver.window(), std::runtime_error);
    EXPECT_TRUE(QDir().entryList(patterns, QDir::Files).isEmpty());
}

TEST_F(MainWindowTest, EveryActionThatCarriesAnIdAsksForItsRow)
{
    const std::map<QString, std::uint32_t> rows = {{"actionCopy", 1},
                                                   {"actionCreate_Substrate", 2},
                                                   {"actionIon_Implantation", 3},
                                                   {"actionDelete", 4},
                                                   {"actionChange_Viewing_Options", 6},
                                                   {"actionMove", 7},
                                                   {"actionExtract_Film", 8},
                                                   {"actionSave", 9},
                                                   {"actionSave_as", 10},
                                                   {"actionOpen", 11},
                                                   {"actionGlue_Substrate", 12},
                                                   {"actionCVD", 13},
                                                   {"actionIsotropic_Film_Etching", 14},
                                                   {"actionElectrodeposition", 15},
                                                   {"actionCut_Cell_Volume", 16},
                                                   {"actionDoping", 17},
                                                   {"actionMoore_Deposition", 18},
                                                   {"actionMoore_Etching", 19},
                                                   {"actionPhotolithography", 20},
                                                   {"actionPlanarization", 22},
                                                   {"actionSpin_Coating", 23},
                                                   {"actionBatch_Run", 24},
                                                   {"actionSi_Oxidation", 26},
                                                   {"actionPVD", 27},
                                                   {"actionBCA_Wet_Etching", 28},
                                                   {"actionContinuous_Wet_Etching", 29},
                                                   {"actionSimple_RIE", 30},
                                                   {"actionModel_Extraction", 1000}};
    const boost::shared_ptr<Recorder> recorder(new Recorder);
    m_driver.workspace().setOperationFactory(recorder);
    for (const auto &row : rows) {
        recorder->ids.clear();
        QAction &action = m_driver.action(row.first);
        // Model extraction is disabled and in no menu, yet it works when it is activated.
        action.setEnabled(true);
        action.trigger();
        EXPECT_EQ(recorder->ids, std::vector<std::uint32_t>{row.second}) << row.first.toStdString();
    }
}

TEST_F(MainWindowTest, FourActionsStandInNoMenu)
{
    for (const char *name : {"actionRun_Step", "actionModel_Extraction",
                             "actionSi_Stochastic_Wet_Etch", "actionFilm_Deposition"})
        EXPECT_TRUE(m_driver.action(name).associatedWidgets().isEmpty()) << name;
    EXPECT_FALSE(m_driver.action("actionModel_Extraction").isEnabled());
}

TEST_F(MainWindowTest, SelectFollowsTheSelectionModeBothWays)
{
    QAction &select = m_driver.action("actionSelect");
    select.trigger();
    EXPECT_TRUE(m_driver.workspace().selection().isSelectionMode());
    m_driver.workspace().selection().setSelectionMode(false);
    EXPECT_FALSE(select.isChecked());
    m_driver.workspace().selection().setSelectionMode(true);
    EXPECT_TRUE(select.isChecked());
    select.trigger();
    EXPECT_FALSE(m_driver.workspace().selection().isSelectionMode());
}

TEST_F(MainWindowTest, TheZoomDialogShowsAHundredAtTheStart)
{
    EXPECT_EQ(valueIn("actionZoom", "dblZoom").toDouble(), 100.0);
}

TEST_F(MainWindowTest, TheZoomDialogSetsAPercentageOfTheNaturalScale)
{
    m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "400").accept()});
    EXPECT_EQ(m_view.zoomFactor(), 0.25f);
    EXPECT_EQ(valueIn("actionZoom", "dblZoom").toDouble(), 400.0);
    m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "50").reject()});
    EXPECT_EQ(m_view.zoomFactor(), 0.25f);
}

TEST_F(MainWindowTest, TheTranslationDialogPlacesTheScene)
{
    m_driver.trigger("actionTranslate", {DialogAnswer()
                                             .type("dblDistanceX", "1.125")
                                             .type("dblDistanceY", "-20")
                                             .type("dblDistanceZ", "30")
                                             .accept()});
    EXPECT_EQ(m_view.translation(), (std::array<double, 3>{1.125, -20, 30}));
    EXPECT_EQ(valueIn("actionTranslate", "dblDistanceX").toDouble(), 1.125);
    m_driver.trigger("actionTranslate", {DialogAnswer().type("dblDistanceX", "7").reject()});
    EXPECT_EQ(m_view.translation()[0], 1.125);
}

TEST_F(MainWindowTest, TheManualViewTurnsTheSceneAndRemembersItsAngles)
{
    m_driver.trigger("actionManual_View", {DialogAnswer()
                                               .type("dblAngleX", "90")
                                               .type("dblAngleY", "0")
                                               .type("dblAngleZ", "0")
                                               .accept()});
    EXPECT_NEAR(m_view.rotation().rotatedVector({0, 1, 0}).z(), 1.0, 1e-5);
    m_driver.trigger("actionTop_View");
    m_driver.trigger("actionManual_View", {DialogAnswer().type("dblAngleX", "10").reject()});
    EXPECT_EQ(m_view.rotation(), QQuaternion(1, 0, 0, 0));
    EXPECT_EQ(valueIn("actionManual_View", "dblAngleX").toDouble(), 90.0);
}

TEST_F(MainWindowTest, TheGridSpacingDialogSetsTheSpacing)
{
    m_driver.trigger("actionGrid_Spacing", {DialogAnswer().type("dblSpacing", "2.5").accept()});
    EXPECT_EQ(m_view.gridSpacing(), 2.5f);
    m_driver.trigger("actionGrid_Spacing", {DialogAnswer().type("dblSpacing", "9").reject()});
    EXPECT_EQ(m_view.gridSpacing(), 2.5f);
}

TEST_F(MainWindowTest, TheGridActionShowsTheGrid)
{
    const QImage without = m_driver.picture();
    m_driver.trigger("actionGrid");
    const QImage with = m_driver.picture();
    EXPECT_NE(with, without);
    m_driver.trigger("actionGrid");
    EXPECT_EQ(m_driver.picture(), without);
}

TEST_F(MainWindowTest, TheRenderingActionsChangeThePicture)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    const QImage plain = m_driver.picture();
    for (const char *name :
         {"actionLighting", "actionRender_Objects", "actionRender_Object_Edges"}) {
        m_driver.trigger(name);
        EXPECT_NE(m_driver.picture(), plain) << name;
        m_driver.trigger(name);
        EXPECT_EQ(m_driver.picture(), plain) << name;
    }
}

TEST_F(MainWindowTest, TheLowColourSchemeGivesAWhiteBackgroundAtOnceAndOverwritesTheCustomScheme)
{
    m_driver.trigger("actionConfigure_Window_Colors",
                     {DialogAnswer().click("btnLoadLowColors").accept()});
    EXPECT_EQ(m_driver.picture().pixelColor(2, 2), QColor(Qt::white));
    EXPECT_EQ(ColorTable::currentScheme(), 1u);
    const Util::Vector4D custom =
        ColorTable::colorSetting(ColorTable::BackgroundColor, ColorTable::CustomScheme);
    EXPECT_EQ(custom[0], 1.0);
    EXPECT_EQ(custom[1], 1.0);
    EXPECT_EQ(custom[2], 1.0);
}

TEST_F(MainWindowTest, AboutOpensItsDialog)
{
    QString title;
    m_driver.trigger("actionAbout_Lithara", {DialogAnswer().look([&](QWidget &dialog) {
                         title = dialog.windowTitle();
                         dialog.close();
                     })});
    EXPECT_EQ(title, "About");
}

TEST_F(MainWindowTest, SaveImageWritesWhatTheViewShowsInEachFormat)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    const QImage shown = m_driver.picture().convertToFormat(QImage::Format_RGB32);
    const QPoint onSubstrate = m_driver.viewCenter() + QPoint(30, -30);
    ASSERT_NE(shown.pixelColor(onSubstrate), QColor(Qt::black));
    for (const char *name : {"picture.png", "picture.xpm", "picture.jpg"}) {
        m_driver.window().saveImage(QString(name));
        const QImage saved(name);
        ASSERT_EQ(saved.size(), shown.size()) << name;
        const QColor wanted = shown.pixelColor(onSubstrate);
        EXPECT_NEAR(saved.pixelColor(onSubstrate).red(), wanted.red(), 3) << name;
        EXPECT_NEAR(saved.pixelColor(5, 5).red(), 0, 3) << name;
        QFile::remove(name);
    }
}

TEST_F(MainWindowTest, AnImageThatCannotBeWrittenIsPassedOver)
{
    m_driver.window().saveImage(QStringLiteral("/no/such/folder/picture.png"));
    m_driver.window().saveImage(QStringLiteral("picture-without-a-format"));
    EXPECT_FALSE(QFile::exists("picture-without-a-format"));
}

} // namespace
