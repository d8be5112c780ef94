#include "UI/MainWindowPresenter.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/EditCompatibleMaterialsDialog.h"
#include "UI/MainWindow.h"
#include "UI/ManageMaterialsDialog.h"
#include "UI/ModalDialog.h"
#include "UI/Observers/UndoRedoObserver.h"
#include "UI/Observers/UpdateObserver.h"
#include "UI/OperationFactory.h"

#include <QMessageBox>
#include <QScreen>

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

namespace Ui {

MainWindowPresenter::MainWindowPresenter(MainWindow *mainWindow)
    : QObject(nullptr),
      m_mainWindow(mainWindow),
      m_console(mainWindow, Qt::Tool, &m_workspace.interpreter())
{
    placeConsole();
    m_console.show();
    // Volumes may come and go in what a line sets off, also in one that Return sends in the
    // console.
    connect(&m_console, &Console::CommandConsole::entering, this,
            [this] { m_mainWindow->makeViewCurrent(); });

    const auto undoObserver = boost::make_shared<Observers::UndoRedoObserver>();
    m_workspace.history().addUndoObserver(undoObserver);
    connect(undoObserver.get(), SIGNAL(stackChanged()), this, SLOT(undoStackChanged()));

    const auto redoObserver = boost::make_shared<Observers::UndoRedoObserver>();
    m_workspace.history().addRedoObserver(redoObserver);
    connect(redoObserver.get(), SIGNAL(stackChanged()), this, SLOT(redoStackChanged()));

    m_workspace.setOperationFactory(boost::make_shared<OperationFactory>(this));
}

MainWindowPresenter::~MainWindowPresenter() = default;

void MainWindowPresenter::placeConsole()
{
    const QRect available = m_mainWindow->screen()->availableGeometry();
    m_console.move(static_cast<int>(0.9 * (available.width() - m_console.width())),
                   static_cast<int>(0.9 * (available.height() - m_console.height())));
}

void MainWindowPresenter::undoOperation()
{
    m_mainWindow->makeViewCurrent();
    m_workspace.history().undo();
    // No process may start on a volume that is no longer there.
    selection().dropRemoved();
}

void MainWindowPresenter::redoOperation()
{
    m_mainWindow->makeViewCurrent();
    m_workspace.history().redo();
    selection().dropRemoved();
}

void MainWindowPresenter::setSelectionMode(bool on)
{
    if (on != selection().isSelectionMode())
        selection().setSelectionMode(on);
}

void MainWindowPresenter::setConsoleVisible(bool visible)
{
    m_console.setVisible(visible);
}

void MainWindowPresenter::registerUpdateObserver()
{
    const auto observer = boost::make_shared<Observers::UpdateObserver>();
    m_workspace.updateObservers().push_back(observer);
    connect(observer.get(), SIGNAL(updateGL()), m_mainWindow->centralWidget(), SLOT(updateGL()));
}

void MainWindowPresenter::newDocument()
{
    const QMessageBox::StandardButton answer =
        QMessageBox::information(m_mainWindow, QStringLiteral("Create new document"),
                                 QStringLiteral("This will erase all data. Continue?"),
                                 QMessageBox::Ok | QMessageBox::Cancel);
    if (answer != QMessageBox::Ok)
        return;
    m_mainWindow->makeViewCurrent();
    m_workspace.cancelCurrent();
    m_workspace.selection().clear();
    m_workspace.history().clear();
    m_workspace.interpreter().clearRequest();
    m_workspace.pointer().clearRequests();
    m_workspace.document().reset();
    m_workspace.objectRecords().clear();
    Util::notify(m_workspace.updateObservers());
}

void MainWindowPresenter::manageMaterials()
{
    ManageMaterialsDialog dialog(m_mainWindow);
    if (!runModally(dialog))
        return;
    const auto registry = Model::Materials::MaterialFactory::instance();
    for (const Model::Materials::Material &material : dialog.materials())
        registry->updateMaterial(material);
    selection().clear();
    // Colours are part of the pictures, and a new alpha changes which faces there are.
    for (const auto &object : document().objects())
        if (const auto volume = boost::dynamic_pointer_cast<Model::Automaton::TotalVolume>(object))
            volume->painter().rebuild();
    Util::notify(m_workspace.updateObservers());
}

void MainWindowPresenter::manageCompatibleMaterials()
{
    EditCompatibleMaterialsDialog dialog(m_mainWindow);
    if (!runModally(dialog))
        return;
    const auto registry = Model::Process::ProcessFactory::instance();
    for (const Model::Process::Process &process : dialog.processes())
        registry->updateProcess(process);
    registry->saveProcesses();
}

void MainWindowPresenter::undoStackChanged()
{
    m_mainWindow->setUndoName(QString::fromStdString(m_workspace.history().undoName()));
}

void MainWindowPresenter::redoStackChanged()
{
    m_mainWindow->setRedoName(QString::fromStdString(m_workspace.history().redoName()));
}

void MainWindowPresenter::operationActivated(const QString &operationId)
{
    m_mainWindow->makeViewCurrent();
    m_workspace.activate(operationId.toUInt());
}

void MainWindowPresenter::enterPressed()
{
    m_console.enterPressed();
}

void MainWindowPresenter::cancelPressed()
{
    m_mainWindow->makeViewCurrent();
    m_workspace.cancelCurrent();
    m_workspace.selection().clear();
    Util::notify(m_workspace.updateObservers());
}

} // namespace Ui
