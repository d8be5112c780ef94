#include "ui_MainWindowForm.h"

#include <QAction>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

enum State
{
    Plain,
    Disabled,
    Unchecked,
    Checked
};

struct ActionRow
{
    const char *name;
    const char *text;
    const char *shortcut;
    State state;
    /// Null where the action has none.
    const char *toolTip;
    const char *statusTip;
};

constexpr const char *none = nullptr;

const std::vector<ActionRow> actionRows = {
    {"actionExit", "Exit", "Ctrl+Q", Plain, "Exit Lithara", "Exit Lithara"},
    {"actionConsole", "Console", "", Checked, "View the console window.",
     "View the console window."},
    {"actionUndo", "Undo", "Ctrl+Z", Disabled, none, none},
    {"actionRedo", "Redo", "Ctrl+Y", Disabled, none, none},
    {"actionCopy", "Copy", "Ctrl+C", Plain, none, none},
    {"actionCreate_Substrate", "Create Substrate", "", Plain, "Create a substrate.",
     "This creates a simulation volume with a substrate inside."},
    {"actionRun_Step", "Run Simulation", "", Plain, "Run simulations on the substrate.",
     "This allows you to run simulations such as Si wet etching and photolithography."},
    {"actionDelete", "Delete", "", Plain, none, none},
    {"actionSelect", "Select", "", Unchecked, none, none},
    {"actionRender_Objects", "Render Objects", "", Checked, "Render object as solids.",
     "Render object as solids."},
    {"actionLighting", "Lighting", "", Checked, "Enable lighting.", "Enable or disable lighting."},
    {"actionRender_Object_Edges", "Render Object Edges", "", Unchecked,
     "Render the edges of the cells.", "Render the edges of the cells."},
    {"actionFront_View", "Front View", "", Plain, "Front View", "Front View"},
    {"actionTop_View", "Top View", "", Plain, none, none},
    {"actionRight_View", "Right View", "", Plain, none, none},
    {"actionLeft_View", "Left View", "", Plain, none, none},
    {"actionBack_view", "Back View", "", Plain, "Back View", none},
    {"actionBottom_View", "Bottom View", "", Plain, none, none},
    {"actionManual_View", "Manual View", "", Plain, "Choose an arbitrary viewing angle.",
     "Choose an arbitrary viewing angle."},
    {"actionGrid", "Grid", "", Unchecked, none, none},
    {"actionGrid_Spacing", "Grid Spacing", "", Plain, none, none},
    {"actionSnap_to_Grid", "Snap to Grid", "", Unchecked, none, none},
    {"actionAbout_Lithara", "About Lithara", "", Plain, none, none},
    {"actionConfigure_Window_Colors", "Configure Window Colors", "", Plain,
     "Change window background colors.", "Change window background colors."},
    {"actionZoom", "Zoom", "", Plain, "Choose an arbitrary zoom value.",
     "Choose an arbitrary zoom value."},
    {"actionTranslate", "Translation", "", Plain, "Displace the viewing volume.",
     "Displace the viewing volume. This can be used to center objects on the screen."},
    {"actionChange_Viewing_Options", "Change Cell Volume Viewing Options", "", Plain,
     "Change cell volume colors, transparency and use atomic viewing.",
     "Change cell volume colors, transparency and use atomic viewing."},
    {"actionMove", "Move", "", Plain, none, none},
    {"actionSave_Image", "Save Image", "", Plain, "Save a screenshot as an image.",
     "Save a screenshot as an image."},
    {"actionModel_Extraction", "Model Extraction", "", Disabled, none,
     "Extract a mechanical model for a cantilever."},
    {"actionExtract_Film", "Extract Film", "", Plain,
     "Extract a deposited film from a cell volume.",
     "Extract a deposited film from a cell volume."},
    {"actionSave", "Save", "Ctrl+S", Plain, none, none},
    {"actionOpen", "Open", "Ctrl+O", Plain, none, none},
    {"actionSave_as", "Save As ...", "", Plain, none, none},
    {"actionGlue_Substrate", "Glue Substrate", "", Plain,
     "Glue a substrate over another substrate.", "Glue a substrate over another substrate."},
    {"actionCVD", "CVD", "", Plain, "Run an isotropic film deposition simulation.",
     "Run an isotropic film deposition simulation."},
    {"actionIsotropic_Film_Etching", "Isotropic Etching", "", Plain,
     "Run an isotropic film etching simulation.", "Run an isotropic film etching simulation."},
    {"actionElectrodeposition", "Electroplating", "", Plain,
     "Simulates an electrodeposition of a metal over another conductor.",
     "Simulates an electrodeposition of a metal over another conductor."},
    {"actionCut_Cell_Volume", "Cut Cell Volume", "", Plain,
     "Cut Make cuts to view inside the cell volume. Volume",
     "Make cuts to view inside the cell volume."},
    {"actionManage_Materials", "Manage Materials", "", Plain,
     "Edit material names, colors and properties.", "Edit material names, colors and properties."},
    {"actionDoping", "Doping", "", Plain,
     "Dope a Si Simulate P and N type doping of Si substrates..",
     "Simulate P and N type doping of Si substrates."},
    {"actionManage_Compatible_Materials", "Manage Compatible Materials", "", Plain, none,
     "Change what materials may be used with a certain process."},
    {"actionMoore_Deposition", "Moore Deposition", "", Plain, none, none},
    {"actionMoore_Etching", "Moore Etching", "", Plain, none, none},
    {"actionPhotolithography", "Photolithography", "", Plain, none, none},
    {"actionBCA_Wet_Etching", "Si Wet Etching", "", Plain, none, none},
    {"actionBatch_Run", "Batch Run", "", Plain, none, none},
    {"actionPlanarization", "Planarization", "", Plain, none, none},
    {"actionSpin_Coating", "Pour Material", "", Plain, none, none},
    {"actionIon_Implantation", "Ion Implantation", "", Plain, none, none},
    {"actionSi_Stochastic_Wet_Etch", "Si Stochastic Wet Etch", "", Plain, none, none},
    {"actionSi_Oxidation", "Si Oxidation", "", Plain, none, none},
    {"actionFilm_Deposition", "Film Deposition", "", Plain, none, none},
    {"actionPVD", "PVD", "", Plain, none, none},
    {"actionSimple_RIE", "Simple RIE", "", Plain, none, none},
    {"actionContinuous_Wet_Etching", "Si Wet Etching (CCA)", "", Plain, none, none},
    {"actionNew", "New", "", Plain, none, none},
};

/// A separator.
const std::string line = "-";

using Menu = std::pair<std::string, std::vector<std::string>>;

const std::vector<Menu> menus = {
    {"File",
     {"actionNew", "actionOpen", "actionSave", "actionSave_as", line, "actionSave_Image", line,
      "actionExit"}},
    {"Edit",
     {"actionUndo", "actionRedo", line, "actionSelect", "actionCopy", "actionMove", "actionDelete",
      line, "actionGrid", "actionSnap_to_Grid", "actionGrid_Spacing"}},
    {"Simulation",
     {"actionCreate_Substrate",
      line,
      "actionDoping",
      "actionElectrodeposition",
      "actionIon_Implantation",
      "actionPVD",
      "actionCVD",
      "actionIsotropic_Film_Etching",
      "actionMoore_Deposition",
      "actionMoore_Etching",
      "actionPhotolithography",
      "actionPlanarization",
      "actionSi_Oxidation",
      "actionBCA_Wet_Etching",
      "actionContinuous_Wet_Etching",
      "actionSimple_RIE",
      "actionSpin_Coating",
      line,
      "actionExtract_Film",
      "actionGlue_Substrate",
      line,
      "actionBatch_Run",
      line}},
    {"Materials", {"actionManage_Materials", "actionManage_Compatible_Materials"}},
    {"Rendering",
     {"actionRender_Objects", "actionLighting", "actionRender_Object_Edges", line,
      "actionChange_Viewing_Options", "actionCut_Cell_Volume", line,
      "actionConfigure_Window_Colors"}},
    {"View",
     {"actionFront_View", "actionBack_view", "actionBottom_View", "actionTop_View",
      "actionRight_View", "actionLeft_View", line, "actionManual_View", line, "actionZoom", line,
      "actionTranslate"}},
    {"Windows", {"actionConsole"}},
    {"About", {"actionAbout_Lithara"}},
};

/// What an action answers that was given no tool tip: its text, without dots.
std::string generatedToolTip(const ActionRow &row)
{
    return QString::fromLatin1(row.text).remove(QStringLiteral("...")).trimmed().toStdString();
}

class MainWindowFormTest : public ::testing::Test
{
protected:
    MainWindowFormTest() { m_form.setupUi(&m_window); }

    /// The form's own actions, without separators and those that stand for menus.
    QList<QAction *> actions() const
    {
        QList<QAction *> named;
        for (QAction *action : m_window.findChildren<QAction *>()) {
            if (!action->objectName().isEmpty())
                named.append(action);
        }
        return named;
    }

    QMainWindow m_window;
    Ui::MainWindowForm m_form;
};

} // namespace

TEST_F(MainWindowFormTest, WindowHasItsTitleSizeAndBars)
{
    EXPECT_EQ(m_window.windowTitle(), QStringLiteral("Lithara"));
    EXPECT_EQ(m_window.size(), QSize(800, 600));
    EXPECT_NE(m_window.centralWidget(), nullptr);
    EXPECT_NE(m_window.findChild<QStatusBar *>(), nullptr);
    EXPECT_NE(m_window.findChild<QMenuBar *>(), nullptr);
}

TEST_F(MainWindowFormTest, MenusHoldTheirEntriesInOrder)
{
    std::vector<Menu> actual;
    for (const QAction *menuAction : m_window.menuBar()->actions()) {
        ASSERT_NE(menuAction->menu(), nullptr);
        Menu menu{menuAction->menu()->title().toStdString(), {}};
        for (const QAction *entry : menuAction->menu()->actions())
            menu.second.push_back(entry->isSeparator() ? line : entry->objectName().toStdString());
        actual.push_back(menu);
    }
    ASSERT_EQ(actual.size(), menus.size());
    for (std::size_t i = 0; i < menus.size(); ++i) {
        EXPECT_EQ(actual[i].first, menus[i].first);
        EXPECT_EQ(actual[i].second, menus[i].second) << menus[i].first;
    }
}

TEST_F(MainWindowFormTest, ActionsHaveTheirTextsShortcutsStatesAndTips)
{
    for (const ActionRow &row : actionRows) {
        SCOPED_TRACE(row.name);
        const auto *action = m_window.findChild<QAction *>(QLatin1String(row.name));
        ASSERT_NE(action, nullptr);
        EXPECT_EQ(action->text().toStdString(), row.text);
        EXPECT_EQ(action->shortcut(), QKeySequence(QLatin1String(row.shortcut)));
        EXPECT_EQ(action->isEnabled(), row.state != Disabled);
        EXPECT_EQ(action->isCheckable(), row.state == Checked || row.state == Unchecked);
        EXPECT_EQ(action->isChecked(), row.state == Checked);
        EXPECT_EQ(action->toolTip().toStdString(),
                  row.toolTip != none ? row.toolTip : generatedToolTip(row));
        EXPECT_EQ(action->statusTip().toStdString(), row.statusTip != none ? row.statusTip : "");
    }
}

TEST_F(MainWindowFormTest, ThereAreNoOtherActions)
{
    std::set<std::string> expected;
    for (const ActionRow &row : actionRows)
        expected.insert(row.name);
    std::set<std::string> actual;
    for (const QAction *action : actions())
        actual.insert(action->objectName().toStdString());
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(actions().size(), int(actionRows.size()));
}

TEST_F(MainWindowFormTest, FourActionsAreInNoMenu)
{
    std::set<std::string> outside;
    for (const QAction *action : actions()) {
        if (action->associatedWidgets().isEmpty())
            outside.insert(action->objectName().toStdString());
    }
    EXPECT_EQ(outside,
              (std::set<std::string>{"actionRun_Step", "actionModel_Extraction",
                                     "actionSi_Stochastic_Wet_Etch", "actionFilm_Deposition"}));
}
