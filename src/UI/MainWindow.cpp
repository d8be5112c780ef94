#include "UI/MainWindow.h"

#include "UI/AboutWindow.h"
#include "UI/GLWidget.h"
#include "UI/Input/ChangeColorsDialog.h"
#include "UI/Input/ChangeGridSpacingDialog.h"
#include "UI/ModalDialog.h"
#include "UI/Observers/SelectionModeObserver.h"
#include "UI/SetViewAngleDialog.h"
#include "UI/SetZoomDialog.h"
#include "UI/TranslateDialog.h"
#include "ui_MainWindowForm.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QImage>

#include <boost/make_shared.hpp>

#include <array>
#include <cstdint>

namespace Ui {

namespace {

struct NamedView
{
    const char *name;
    double angleX;
    double angleY;
    double angleZ;
};

constexpr std::array<NamedView, 6> NamedViews = {{
    {"front", -90, 0, 0},
    {"back", -90, 0, 180},
    {"left", -90, 0, 90},
    {"right", -90, 0, -90},
    {"top", 0, 0, 0},
    {"bottom", 180, 0, 0},
}};

const char *const ManualView = "manual";

} // namespace

// The order of construction is what makes each reference valid: form, presenter, mappers and
// shortcuts before the form is set up, the view after it, and the connections last.
MainWindow::MainWindow(QWidget *parent)
    : QMainWindow(parent),
      m_form(std::make_unique<MainWindowForm>()),
      m_presenter(this),
      m_enter(this),
      m_return(this),
      m_escape(this),
      m_view(nullptr)
{
    m_form->setupUi(this);
    m_view = new GLWidget(this, m_presenter);
    setCentralWidget(m_view);
    m_presenter.registerUpdateObserver();
    mapOperations();
    mapViews();
    connectActions();
    connect(&m_operationMapper, SIGNAL(activated(const QString &)), &m_presenter,
            SLOT(operationActivated(const QString &)));
    connect(&m_viewMapper, SIGNAL(activated(const QString &)), this,
            SLOT(setView(const QString &)));
    // The keypad's Enter and the main Return are two keys.
    connectShortcut(m_enter, Qt::Key_Enter, SLOT(enterPressed()));
    connectShortcut(m_return, Qt::Key_Return, SLOT(enterPressed()));
    connectShortcut(m_escape, Qt::Key_Escape, SLOT(cancelPressed()));
    m_presenter.selection().addObserver(boost::make_shared<Observers::SelectionModeObserver>(
        m_form->actionSelect, &m_presenter.selection()));
    setAttribute(Qt::WA_DeleteOnClose);
}

MainWindow::~MainWindow()
{
    // The volumes go with the presenter, before the view does.
    makeViewCurrent();
}

void MainWindow::connectShortcut(QShortcut &shortcut, Qt::Key key, const char *slot)
{
    shortcut.setKey(key);
    connect(&shortcut, SIGNAL(activated()), &m_presenter, slot);
}

void MainWindow::mapOperations()
{
    const struct
    {
        QAction *action;
        std::uint32_t id;
    } rows[] = {
        {m_form->actionCopy, 1},
        {m_form->actionCreate_Substrate, 2},
        {m_form->actionIon_Implantation, 3},
        {m_form->actionDelete, 4},
        {m_form->actionChange_Viewing_Options, 6},
        {m_form->actionMove, 7},
        {m_form->actionExtract_Film, 8},
        {m_form->actionSave, 9},
        {m_form->actionSave_as, 10},
        {m_form->actionOpen, 11},
        {m_form->actionGlue_Substrate, 12},
        {m_form->actionCVD, 13},
        {m_form->actionIsotropic_Film_Etching, 14},
        {m_form->actionElectrodeposition, 15},
        {m_form->actionCut_Cell_Volume, 16},
        {m_form->actionDoping, 17},
        {m_form->actionMoore_Deposition, 18},
        {m_form->actionMoore_Etching, 19},
        {m_form->actionPhotolithography, 20},
        {m_form->actionPlanarization, 22},
        {m_form->actionSpin_Coating, 23},
        {m_form->actionBatch_Run, 24},
        {m_form->actionSi_Oxidation, 26},
        {m_form->actionPVD, 27},
        {m_form->actionBCA_Wet_Etching, 28},
        {m_form->actionContinuous_Wet_Etching, 29},
        {m_form->actionSimple_RIE, 30},
        {m_form->actionModel_Extraction, 1000},
    };
    for (const auto &row : rows)
        m_operationMapper.map(row.action, row.id);
}

void MainWindow::mapViews()
{
    m_viewMapper.map(m_form->actionFront_View, QStringLiteral("front"));
    m_viewMapper.map(m_form->actionBack_view, QStringLiteral("back"));
    m_viewMapper.map(m_form->actionLeft_View, QStringLiteral("left"));
    m_viewMapper.map(m_form->actionRight_View, QStringLiteral("right"));
    m_viewMapper.map(m_form->actionTop_View, QStringLiteral("top"));
    m_viewMapper.map(m_form->actionBottom_View, QStringLiteral("bottom"));
    m_viewMapper.map(m_form->actionManual_View, QLatin1String(ManualView));
}

void MainWindow::connectActions()
{
    const struct
    {
        QAction *action;
        const char *signal;
        const char *slot;
    } rows[] = {
        {m_form->actionExit, SIGNAL(triggered()), SLOT(close())},
        {m_form->actionConsole, SIGNAL(toggled(bool)), SLOT(showConsole(bool))},
        {m_form->actionUndo, SIGNAL(triggered()), SLOT(undoOperation())},
        {m_form->actionRedo, SIGNAL(triggered()), SLOT(redoOperation())},
        {m_form->actionSelect, SIGNAL(toggled(bool)), SLOT(selectionToggled(bool))},
        {m_form->actionRender_Objects, SIGNAL(toggled(bool)), SLOT(renderObjectsToggled(bool))},
        {m_form->actionLighting, SIGNAL(toggled(bool)), SLOT(lightingToggled(bool))},
        {m_form->actionRender_Object_Edges, SIGNAL(toggled(bool)),
         SLOT(renderObjectEdgesToggled(bool))},
        {m_form->actionGrid, SIGNAL(toggled(bool)), SLOT(renderGridToggled(bool))},
        {m_form->actionSnap_to_Grid, SIGNAL(toggled(bool)), SLOT(snapToGridToggled(bool))},
        {m_form->actionGrid_Spacing, SIGNAL(triggered()), SLOT(changeGridSpacing())},
        {m_form->actionAbout_Lithara, SIGNAL(triggered()), SLOT(showAboutInfo())},
        {m_form->actionConfigure_Window_Colors, SIGNAL(triggered()), SLOT(changeWindowColors())},
        {m_form->actionZoom, SIGNAL(triggered()), SLOT(changeZoom())},
        {m_form->actionTranslate, SIGNAL(triggered()), SLOT(changeTranslate())},
        {m_form->actionSave_Image, SIGNAL(triggered()), SLOT(saveImage())},
    };
    for (const auto &row : rows)
        connect(row.action, row.signal, this, row.slot);
    // Closing the console hides it; the menu entry brings it back.
    connect(&m_presenter.console(), &Console::CommandConsole::closed, m_form->actionConsole,
            [this] { m_form->actionConsole->setChecked(false); });
}

void MainWindow::makeViewCurrent()
{
    if (m_view)
        m_view->makeCurrent();
}

void MainWindow::setUndoName(const QString &name)
{
    m_form->actionUndo->setEnabled(!name.isEmpty());
    m_form->actionUndo->setText(QStringLiteral("Undo ") + name);
}

void MainWindow::setRedoName(const QString &name)
{
    m_form->actionRedo->setEnabled(!name.isEmpty());
    m_form->actionRedo->setText(QStringLiteral("Redo ") + name);
}

void MainWindow::showConsole(bool show)
{
    m_presenter.setConsoleVisible(show);
}

void MainWindow::undoOperation()
{
    m_presenter.undoOperation();
    m_view->update();
}

void MainWindow::redoOperation()
{
    m_presenter.redoOperation();
    m_view->update();
}

void MainWindow::selectionToggled(bool checked)
{
    m_presenter.setSelectionMode(checked);
    // Turning it off takes the highlight away.
    m_view->update();
}

void MainWindow::lightingToggled(bool checked)
{
    m_view->setLighting(checked);
    m_view->updateGL();
}

void MainWindow::renderObjectsToggled(bool checked)
{
    m_view->setRenderObjects(checked);
    m_view->updateGL();
}

void MainWindow::renderObjectEdgesToggled(bool checked)
{
    m_view->setRenderEdges(checked);
    m_view->updateGL();
}

void MainWindow::setView(const QString &viewAngle)
{
    if (viewAngle == QLatin1String(ManualView)) {
        SetViewAngleDialog dialog(this);
        if (runModally(dialog))
            m_view->setView(dialog.angleX(), dialog.angleY(), dialog.angleZ());
        return;
    }
    for (const NamedView &view : NamedViews)
        if (viewAngle == QLatin1String(view.name))
            m_view->setView(view.angleX, view.angleY, view.angleZ);
}

void MainWindow::renderGridToggled(bool checked)
{
    m_view->setRenderGrid(checked);
    m_view->updateGL();
}

void MainWindow::snapToGridToggled(bool checked)
{
    m_view->setSnapToGrid(checked);
    m_view->updateGL();
}

void MainWindow::changeGridSpacing()
{
    Input::ChangeGridSpacingDialog dialog(static_cast<double>(m_view->gridSpacing()), this);
    if (!runModally(dialog))
        return;
    m_view->setGridSpacing(static_cast<float>(dialog.spacing()));
    repaintCentralWidget();
}

void MainWindow::changeWindowColors()
{
    Input::ChangeColorsDialog dialog(this);
    if (runModally(dialog))
        repaintCentralWidget();
}

void MainWindow::changeZoom()
{
    SetZoomDialog dialog(100.0 / static_cast<double>(m_view->zoomFactor()), this);
    if (runModally(dialog))
        m_view->setZoom(static_cast<float>(100.0 / dialog.percentage()));
}

void MainWindow::changeTranslate()
{
    const std::array<double, 3> present = m_view->translation();
    TranslateDialog dialog(present[0], present[1], present[2], this);
    if (runModally(dialog))
        m_view->setTranslation(dialog.distanceX(), dialog.distanceY(), dialog.distanceZ());
}

void MainWindow::saveImage(const QString &filename)
{
    static QDir s_lastPlace = QDir::home();
    QString name = filename;
    if (name.isEmpty()) {
        name = QFileDialog::getSaveFileName(this, QStringLiteral("Save Screen Image"),
                                            s_lastPlace.absolutePath(),
                                            QStringLiteral("Images (*.png *.xpm *.jpg)"));
        if (name.isNull())
            return;
    }
    m_view->image().save(name);
    s_lastPlace.setPath(name);
}

void MainWindow::saveImage()
{
    saveImage(QString());
}

void MainWindow::showAboutInfo()
{
    AboutWindow about(this);
    runModally(about);
}

void MainWindow::on_actionManage_Materials_triggered()
{
    m_presenter.manageMaterials();
}

void MainWindow::on_actionManage_Compatible_Materials_triggered()
{
    m_presenter.manageCompatibleMaterials();
}

void MainWindow::on_actionNew_triggered()
{
    m_presenter.newDocument();
}

void MainWindow::repaintCentralWidget()
{
    m_view->repaint();
}

} // namespace Ui
