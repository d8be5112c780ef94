#include "Support/WindowDriver.h"

#include "Core/Operations/IOperationFactory.h"
#include "Core/Operations/ObjectOperation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"
#include "Support/Volumes.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QScreen>
#include <QTableView>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace {

using Core::Operations::Operation;
using Support::DialogAnswer;

/// Waits for a line from the console until it is cancelled.
class Listener final : public Operation
{
public:
    explicit Listener(Core::Workspace *workspace, std::uint32_t id)
        : Operation("Listener", id),
          m_workspace(workspace)
    {}
    void next() override
    {
        ++nextCalls;
        m_workspace->interpreter().awaitString(this, text);
        m_workspace->interpreter().awaitEnter(this);
    }
    void cancel() override
    {
        ++cancelCalls;
        m_workspace->interpreter().clearRequest();
        m_workspace->dropOperation();
    }
    void end() override {}

    int nextCalls = 0;
    int cancelCalls = 0;
    std::string text;

private:
    Core::Workspace *m_workspace;
};

class ListenerFactory final : public Core::Operations::IOperationFactory
{
public:
    explicit ListenerFactory(Core::Workspace *workspace) : m_workspace(workspace) {}
    boost::shared_ptr<Operation> create(std::uint32_t operationId) override
    {
        asked.push_back(operationId);
        if (operationId == 0)
            return {};
        return listener = boost::make_shared<Listener>(m_workspace, operationId);
    }

    std::vector<std::uint32_t> asked;
    boost::shared_ptr<Listener> listener;

private:
    Core::Workspace *m_workspace;
};

class MainWindowPresenterTest : public testing::Test
{
protected:
    MainWindowPresenterTest()
        : m_workspace(m_driver.workspace()),
          m_factory(boost::make_shared<ListenerFactory>(&m_workspace))
    {}

    void useListeners() { m_workspace.setOperationFactory(m_factory); }
    void createSubstrate()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    }

    Support::WindowDriver m_driver;
    Core::Workspace &m_workspace;
    boost::shared_ptr<ListenerFactory> m_factory;
};

TEST_F(MainWindowPresenterTest, TheConsoleStandsOverTheLowerRightOfTheScreen)
{
    const QWidget &console = m_driver.window().presenter().console();
    const QRect available = m_driver.window().screen()->availableGeometry();
    EXPECT_EQ(console.x(), static_cast<int>(0.9 * (available.width() - 400)));
    EXPECT_EQ(console.y(), static_cast<int>(0.9 * (available.height() - 140)));
    EXPECT_TRUE(console.isVisible());
    EXPECT_EQ(console.windowFlags() & Qt::WindowType_Mask, Qt::Tool);
}

TEST_F(MainWindowPresenterTest, AMenuActionReachesTheFactoryWithItsNumber)
{
    useListeners();
    m_driver.trigger("actionGlue_Substrate");
    m_driver.trigger("actionCopy");
    EXPECT_EQ(m_factory->asked, (std::vector<std::uint32_t>{12, 1}));
    EXPECT_EQ(m_factory->listener->nextCalls, 1);
}

TEST_F(MainWindowPresenterTest, ATextThatIsNoNumberAsksForOperationZero)
{
    useListeners();
    m_driver.window().presenter().operationActivated("no number");
    EXPECT_EQ(m_factory->asked, (std::vector<std::uint32_t>{0}));
    EXPECT_FALSE(m_workspace.currentOperation());
}

TEST_F(MainWindowPresenterTest, ReturnAndTheKeypadsEnterBothReachTheWaitingOperation)
{
    useListeners();
    m_driver.trigger("actionMove");
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_factory->listener->nextCalls, 2);
    m_driver.press(Qt::Key_Enter);
    EXPECT_EQ(m_factory->listener->nextCalls, 3);
}

TEST_F(MainWindowPresenterTest, EscapeCancelsTheOperation)
{
    useListeners();
    m_driver.trigger("actionMove");
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(m_factory->listener->cancelCalls, 1);
    EXPECT_FALSE(m_workspace.currentOperation());
}

TEST_F(MainWindowPresenterTest, EscapeWhileIdleOnlyClearsTheSelection)
{
    createSubstrate();
    m_workspace.selection().setSelectionMode(true);
    m_driver.click(m_driver.viewCenter() + QPoint(30, -30));
    ASSERT_EQ(m_workspace.pointer().selectedObjects().size(), 1u);
    m_driver.press(Qt::Key_Escape);
    EXPECT_TRUE(m_workspace.pointer().selectedObjects().empty());
    EXPECT_TRUE(m_workspace.selection().isSelectionMode());
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    m_workspace.selection().setSelectionMode(false);
}

TEST_F(MainWindowPresenterTest, EnterReachesTheInterpreterWithTheTextOfTheHiddenLine)
{
    useListeners();
    m_driver.trigger("actionMove");
    auto *line = m_driver.window().presenter().console().findChild<QLineEdit *>("line");
    line->setText("typed before it was hidden");
    m_driver.trigger("actionConsole");
    EXPECT_FALSE(m_driver.window().presenter().console().isVisible());
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_factory->listener->text, "typed before it was hidden");
    EXPECT_EQ(m_factory->listener->nextCalls, 2);
}

TEST_F(MainWindowPresenterTest, ClosingTheConsoleUnchecksItsActionWhichBringsItBack)
{
    QWidget &console = m_driver.window().presenter().console();
    EXPECT_TRUE(m_driver.action("actionConsole").isChecked());
    console.close();
    EXPECT_FALSE(m_driver.action("actionConsole").isChecked());
    m_driver.trigger("actionConsole");
    EXPECT_TRUE(console.isVisible());
}

TEST_F(MainWindowPresenterTest, CancelInTheNewBoxChangesNothing)
{
    createSubstrate();
    useListeners();
    m_driver.trigger("actionMove");
    m_driver.trigger("actionNew", {DialogAnswer().reject()});
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_EQ(m_workspace.currentOperation(), m_factory->listener);
    EXPECT_EQ(m_factory->listener->cancelCalls, 0);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
    // The operation goes on.
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_factory->listener->nextCalls, 2);
}

TEST_F(MainWindowPresenterTest, TheNewBoxAsksInItsWords)
{
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    m_driver.trigger("actionNew", {DialogAnswer()
                                       .look([&](QWidget &dialog) {
                                           auto &box = dynamic_cast<QMessageBox &>(dialog);
                                           title = box.windowTitle();
                                           text = box.text();
                                           buttons = box.standardButtons();
                                       })
                                       .reject()});
    EXPECT_EQ(title, "Create new document");
    EXPECT_EQ(text, "This will erase all data. Continue?");
    EXPECT_EQ(buttons, QMessageBox::Ok | QMessageBox::Cancel);
}

TEST_F(MainWindowPresenterTest, NewErasesEverythingAndClearsTheUndoAndRedoEntries)
{
    createSubstrate();
    createSubstrate();
    m_driver.trigger("actionUndo");
    ASSERT_EQ(m_driver.action("actionRedo").text(), "Redo Create Substrate");
    const std::uint32_t id = m_driver.volumes().front()->id();
    m_workspace.objectRecords().setLatticeStale(id, false);
    m_workspace.document().setFileName("somewhere.lth");
    useListeners();
    m_driver.trigger("actionMove");

    m_driver.trigger("actionNew", {DialogAnswer().accept()});

    EXPECT_TRUE(m_workspace.document().objects().empty());
    EXPECT_EQ(m_workspace.document().fileName(), "");
    EXPECT_TRUE(m_workspace.objectRecords().isLatticeStale(id));
    EXPECT_EQ(m_factory->listener->cancelCalls, 1);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo ");
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo ");
    EXPECT_FALSE(m_driver.action("actionRedo").isEnabled());
    EXPECT_EQ(m_driver.picture().pixelColor(m_driver.viewCenter()), QColor(Qt::black));
}

TEST_F(MainWindowPresenterTest, UndoAndRedoNameTheOperationOnTopOfTheirStack)
{
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
    createSubstrate();
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
    EXPECT_TRUE(m_driver.action("actionUndo").isEnabled());
    EXPECT_FALSE(m_driver.action("actionRedo").isEnabled());
    m_driver.trigger("actionUndo");
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo ");
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo Create Substrate");
    EXPECT_TRUE(m_driver.action("actionRedo").isEnabled());
}

TEST_F(MainWindowPresenterTest, AnOperationThatFinishesAfterAnUndoDisablesRedo)
{
    createSubstrate();
    m_driver.trigger("actionUndo");
    createSubstrate();
    EXPECT_FALSE(m_driver.action("actionRedo").isEnabled());
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo ");
}

/// Stays current and leaves every wait armed, as a careless operation would.
class Stubborn final : public Operation
{
public:
    explicit Stubborn(Core::Workspace *workspace) : Operation("Stubborn", 1), m_workspace(workspace)
    {}
    void next() override
    {
        ++nextCalls;
        m_workspace->interpreter().awaitEnter(this);
        m_workspace->pointer().awaitClick(this, position, button);
    }
    void cancel() override
    {
        ++cancelCalls;
        objectsAtCancel = m_workspace->document().objects().size();
        selectedAtCancel = m_workspace->pointer().selectedObjects().size();
    }
    void end() override {}

    int nextCalls = 0;
    int cancelCalls = 0;
    std::size_t objectsAtCancel = 0;
    std::size_t selectedAtCancel = 0;
    Util::Vector3D position;
    std::int32_t button = 3;

private:
    Core::Workspace *m_workspace;
};

class StubbornFactory final : public Core::Operations::IOperationFactory
{
public:
    explicit StubbornFactory(const boost::shared_ptr<Stubborn> &operation) : m_operation(operation)
    {}
    boost::shared_ptr<Operation> create(std::uint32_t /*operationId*/) override
    {
        return m_operation;
    }

private:
    boost::shared_ptr<Stubborn> m_operation;
};

TEST_F(MainWindowPresenterTest, NewForgetsEveryWaitAndCancelsBeforeItErases)
{
    createSubstrate();
    const auto operation = boost::make_shared<Stubborn>(&m_workspace);
    m_workspace.setOperationFactory(boost::make_shared<StubbornFactory>(operation));
    m_driver.trigger("actionMove");
    m_workspace.selection().setSelectionMode(true);
    m_driver.click(m_driver.viewCenter() + QPoint(30, -30));
    // The click fired the wait, which is armed again.
    ASSERT_EQ(operation->nextCalls, 2);
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    EXPECT_EQ(operation->cancelCalls, 1);
    EXPECT_EQ(operation->objectsAtCancel, 1u);
    EXPECT_EQ(operation->selectedAtCancel, 1u);
    EXPECT_TRUE(m_workspace.pointer().selectedObjects().empty());
    m_driver.click(QPoint(5, 5));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(operation->nextCalls, 2);
}

/// The registries as they were, whatever a test accepts.
class Registries final
{
public:
    ~Registries()
    {
        Model::Materials::MaterialFactory::instance()->loadDefaultMaterials();
        Model::Process::ProcessFactory::instance()->loadDefaultProcesses();
        Model::Process::ProcessFactory::instance()->saveProcesses();
    }
};

/// Sets a cell of the table of materials.
DialogAnswer setCell(int row, int column, const QVariant &value)
{
    return DialogAnswer().look([=](QWidget &dialog) {
        QAbstractItemModel *model = dialog.findChild<QTableView *>("tblMaterials")->model();
        EXPECT_TRUE(model->setData(model->index(row, column), value));
    });
}

TEST_F(MainWindowPresenterTest, AcceptedMaterialsReachTheRegistryButNotTheFile)
{
    const Registries registries;
    const auto registry = Model::Materials::MaterialFactory::instance();
    QFile file(QDir::home().filePath("Lithara/materials.xml"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    file.close();
    m_driver.trigger("actionManage_Materials",
                     {setCell(3, 1, "Copper").click("btnAddMaterial").accept()});
    EXPECT_EQ(registry->material(5).name(), "Copper");
    EXPECT_EQ(registry->material(17).name(), "New Material");
    EXPECT_EQ(registry->materials().size(), 16u);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), before);
}

TEST_F(MainWindowPresenterTest, RejectedMaterialsChangeNothing)
{
    const Registries registries;
    createSubstrate();
    m_workspace.selection().setSelectionMode(true);
    m_driver.click(m_driver.viewCenter() + QPoint(30, -30));
    m_driver.trigger("actionManage_Materials",
                     {setCell(0, 1, "Silicon").click("btnAddMaterial").reject()});
    const auto registry = Model::Materials::MaterialFactory::instance();
    EXPECT_EQ(registry->material(1).name(), "Si");
    EXPECT_EQ(registry->material(17).id(), 0u);
    EXPECT_EQ(m_workspace.pointer().selectedObjects().size(), 1u);
    m_workspace.selection().setSelectionMode(false);
}

TEST_F(MainWindowPresenterTest, AcceptedMaterialsClearTheSelectionAndShowTheirColours)
{
    const Registries registries;
    createSubstrate();
    // Without light, faces have the very colours of their materials.
    m_driver.trigger("actionLighting");
    const QPoint onTheWafer = m_driver.viewCenter() + QPoint(30, -30);
    m_workspace.selection().setSelectionMode(true);
    m_driver.click(onTheWafer);
    ASSERT_EQ(m_workspace.pointer().selectedObjects().size(), 1u);
    m_driver.trigger("actionManage_Materials", {setCell(0, 2, QColor(200, 40, 60)).accept()});
    EXPECT_TRUE(m_workspace.pointer().selectedObjects().empty());
    EXPECT_EQ(m_driver.picture().pixelColor(onTheWafer), QColor(200, 40, 60));
    EXPECT_EQ(m_driver.volumes().front()->painter().transparentFaces().size(), 0u);
    // What has become transparent moves to the faces that are blended.
    m_driver.trigger("actionManage_Materials", {setCell(0, 2, QColor(200, 40, 60, 128)).accept()});
    EXPECT_EQ(m_driver.volumes().front()->painter().opaqueFaces().size(), 0u);
    EXPECT_GT(m_driver.volumes().front()->painter().transparentFaces().size(), 0u);
    m_workspace.selection().setSelectionMode(false);
}

TEST_F(MainWindowPresenterTest, ManagingMaterialsLeavesTheRunningOperationAlone)
{
    const Registries registries;
    useListeners();
    m_driver.trigger("actionMove");
    m_driver.trigger("actionManage_Materials", {DialogAnswer().accept()});
    m_driver.trigger("actionManage_Compatible_Materials", {DialogAnswer().accept()});
    EXPECT_EQ(m_workspace.currentOperation(), m_factory->listener);
    EXPECT_EQ(m_factory->listener->cancelCalls, 0);
}

/// Takes everything out of the list of the first process.
DialogAnswer emptyFirstProcess()
{
    return DialogAnswer()
        .look(
            [](QWidget &dialog) { dialog.findChild<QListWidget *>("lstCompatible")->selectAll(); })
        .click("btnRemove");
}

TEST_F(MainWindowPresenterTest, AcceptedCompatibilitiesReachTheRegistryAndTheFile)
{
    const Registries registries;
    const auto registry = Model::Process::ProcessFactory::instance();
    m_driver.trigger("actionManage_Compatible_Materials", {emptyFirstProcess().accept()});
    EXPECT_TRUE(registry->process(1).compatibleMaterialIds().empty());
    EXPECT_EQ(registry->process(2).compatibleMaterialIds(), std::vector<std::uint32_t>{1});
    registry->loadDefaultProcesses();
    ASSERT_TRUE(registry->loadProcesses());
    EXPECT_TRUE(registry->process(1).compatibleMaterialIds().empty());
    EXPECT_EQ(registry->processes().size(), 14u);
}

TEST_F(MainWindowPresenterTest, RejectedCompatibilitiesChangeNeitherRegistryNorFile)
{
    const Registries registries;
    const auto registry = Model::Process::ProcessFactory::instance();
    m_driver.trigger("actionManage_Compatible_Materials", {emptyFirstProcess().reject()});
    EXPECT_EQ(registry->process(1).compatibleMaterialIds(), std::vector<std::uint32_t>{1});
    ASSERT_TRUE(registry->loadProcesses());
    EXPECT_EQ(registry->process(1).compatibleMaterialIds(), std::vector<std::uint32_t>{1});
}

} // namespace
