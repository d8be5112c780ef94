#include "UI/Observers/RunModelExtractionObserver.h"

#include "UI/ExtractionWindow.h"
#include "UI/Observers/DestroyModelExtractionDialogObserver.h"

#include <QAction>
#include <QDialog>

#include <boost/weak_ptr.hpp>

#include <memory>

namespace {

using Core::Operations::RunModelExtraction;
using Support::DialogAnswer;
using Ui::Observers::DestroyModelExtractionDialogObserver;
using Ui::Observers::RunModelExtractionObserver;

class RunModelExtractionObserverTest : public ExtractionWindow
{
protected:
    void startWithBothModels()
    {
        start();
        step(1);
        step(2);
        EXPECT_EQ(objectCount(), 3U);
    }
    void expectItIsGone()
    {
        settle();
        EXPECT_TRUE(m_dialog.isNull());
        EXPECT_EQ(findDialog(), nullptr);
        EXPECT_EQ(current(), nullptr);
        EXPECT_FALSE(m_driver.consoleLines().contains(Extracted));
    }
};

TEST_F(RunModelExtractionObserverTest, NothingIsOpenedForAnIdleWorkspaceOrAnotherOperation)
{
    RunModelExtraction operation(&m_driver.workspace());
    RunModelExtractionObserver observer(&m_driver.workspace(), &m_driver.window(), &operation);
    observer.update();
    m_driver.trigger("actionPVD");
    observer.update();
    EXPECT_EQ(findDialog(), nullptr);
    // Nor is anything there to be closed.
    operation.cancel();
}

TEST_F(RunModelExtractionObserverTest, DialogStaysOpenWhileTheProgramGoesOn)
{
    start();
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_NE(current(), nullptr);
    EXPECT_FALSE(m_driver.action("actionSelect").isChecked());
    m_driver.trigger("actionTop_View");
    m_driver.trigger("actionSelect");
    m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
    EXPECT_EQ(m_driver.workspace().pointer().selectedObjects().size(), 1U);
    m_driver.press(Qt::Key_Return);
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_NE(current(), nullptr);
}

TEST_F(RunModelExtractionObserverTest, ModelsCanBePickedAndLeaveWithTheOperation)
{
    startWithBothModels();
    m_driver.trigger("actionSelect");
    // The volume is picked where it is, hidden as it is: it is the first in the document.
    m_driver.click(m_driver.viewCenter() + QPoint(30, -20));
    m_driver.workspace().document().removeObject(m_driver.volumes().front());
    m_driver.click(m_driver.viewCenter() + QPoint(5, -5));
    EXPECT_EQ(m_driver.workspace().pointer().selectedObjects().size(), 2U);
    m_dialog->close();
    settle();
    EXPECT_TRUE(m_driver.workspace().pointer().selectedObjects().empty());
    EXPECT_EQ(objectCount(), 0U);
    EXPECT_EQ(current(), nullptr);
}

TEST_F(RunModelExtractionObserverTest, EscapeInTheMainWindowClosesTheDialog)
{
    startWithBothModels();
    m_driver.press(Qt::Key_Escape);
    expectItIsGone();
    EXPECT_EQ(objectCount(), 1U);
}

TEST_F(RunModelExtractionObserverTest, SecondActivationClosesTheDialogAndAsksForAVolume)
{
    startWithBothModels();
    activate();
    settle();
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_EQ(objectCount(), 1U);
    EXPECT_EQ(m_driver.consoleLines().last(), Prompted);
    m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_driver.consoleLines().last(), Selected);
    EXPECT_NE(findDialog(), nullptr);
}

TEST_F(RunModelExtractionObserverTest, DeletingTheVolumeClosesTheDialogFirst)
{
    startWithBothModels();
    m_driver.trigger("actionDelete");
    expectItIsGone();
    EXPECT_EQ(objectCount(), 1U);
    m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(objectCount(), 0U);
}

TEST_F(RunModelExtractionObserverTest, NewDocumentClosesTheDialogAndIsEmpty)
{
    startWithBothModels();
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    expectItIsGone();
    EXPECT_EQ(objectCount(), 0U);
}

TEST_F(RunModelExtractionObserverTest, UndoClosesTheDialog)
{
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    start();
    step(1);
    m_driver.trigger("actionUndo");
    expectItIsGone();
    EXPECT_EQ(objectCount(), 0U);
    m_driver.trigger("actionRedo");
    EXPECT_EQ(objectCount(), 1U);
}

TEST_F(RunModelExtractionObserverTest, ClosingTheMainWindowTakesTheDialogAlong)
{
    startWithBothModels();
    const boost::weak_ptr<RunModelExtraction> operation = current();
    m_driver.window().close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_TRUE(operation.expired());
}

TEST_F(RunModelExtractionObserverTest, ClosingAgainWhenTheDialogIsGoneDoesNothing)
{
    DestroyModelExtractionDialogObserver observer;
    observer.update();
    auto dialog = std::make_unique<QDialog>();
    dialog->show();
    observer.setDialog(dialog.get());
    observer.update();
    EXPECT_FALSE(dialog->isVisible());
    dialog.reset();
    observer.update();
}

} // namespace
