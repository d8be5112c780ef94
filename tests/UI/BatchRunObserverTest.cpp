#include "UI/Observers/BatchRunObserver.h"

#include "Core/Operations/SelectVolumesOperation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Support/WindowDriver.h"
#include "UI/BatchDialogs.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QThread>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <thread>

namespace {

using namespace BatchDialogs;
using Model::Automaton::TotalVolume;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t Resist = 11;

class BatchRunObserverTest : public testing::Test
{
protected:
    BatchRunObserverTest()
    {
        for (int i = 0; i < 2; ++i) {
            m_volumes[i] = Support::makeVolume(
                Support::Grid{60, 60, 20},
                [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z < 5 ? Silicon : 0u; });
            m_driver->workspace().document().addObject(m_volumes[i]);
        }
        m_driver->window().makeViewCurrent();
        m_volumes[0]->painter().rebuild();
    }

    /// Opens the dialog on the first volume, or on none.
    void open(const std::vector<DialogAnswer> &answers, bool withVolume = true)
    {
        if (withVolume) {
            m_driver->workspace().selection().setSelectionMode(true);
            m_driver->click(m_driver->viewCenter() + QPoint(20, -15));
            m_driver->trigger("actionBatch_Run", answers);
        } else {
            m_driver->trigger("actionBatch_Run");
            m_driver->answering(answers, [this] { m_driver->typeIntoConsole("N"); });
        }
    }
    /// Loads a list into the open dialog; the file dialog is answered by loading().
    static DialogAnswer withList(const std::vector<Ui::ProcessData> &steps)
    {
        BatchDialogs::save(steps, "list.plst");
        return DialogAnswer().click("btnLoadList");
    }
    static DialogAnswer loading()
    {
        return DialogAnswer().fileName(listFile("list.plst")).accept();
    }
    /// The worker may have been between two steps.
    void expectWholeOrNotBegun()
    {
        const std::size_t resist = count(*m_volumes[0], Resist);
        EXPECT_TRUE(resist == 60u * 60u * 3u || resist == 0u) << resist;
    }
    static std::size_t count(TotalVolume &volume, std::uint32_t material)
    {
        const auto cells = Support::materialsOf(volume);
        return std::size_t(std::count(cells.begin(), cells.end(), material));
    }

    std::unique_ptr<Support::WindowDriver> m_driver = std::make_unique<Support::WindowDriver>();
    boost::shared_ptr<TotalVolume> m_volumes[2];
};

TEST_F(BatchRunObserverTest, AnIdleWorkspaceAndOtherOperationsAreAskedNothing)
{
    Ui::Observers::BatchRunObserver observer(&m_driver->workspace(), &m_driver->window());
    m_driver->answering({}, [&] { observer.update(); });
    m_driver->trigger("actionPlanarization");
    m_driver->answering({}, [&] { observer.update(); });
    EXPECT_TRUE(m_driver->workspace().currentOperation());
}

TEST_F(BatchRunObserverTest, TheDialogOpensOnTheSelectedVolume)
{
    QString title;
    const QWidget *parent = nullptr;
    int highest = 0;
    open({DialogAnswer()
              .look([&](QWidget &dialog) {
                  title = dialog.windowTitle();
                  parent = dialog.parentWidget();
                  EXPECT_TRUE(dialog.isModal());
              })
              .choose("cbxProcess", "Spin Coating")
              .click("btnAddProcess")
              .click("btnClose"),
          DialogAnswer()
              .look([&](QWidget &dialog) {
                  highest = dialog.findChild<QWidget *>("sbxHeight")->property("maximum").toInt();
              })
              .reject()});
    EXPECT_EQ(title, "Batch Run");
    EXPECT_EQ(parent, &m_driver->window());
    EXPECT_EQ(highest, 20);
    EXPECT_FALSE(m_driver->workspace().currentOperation());
    // Nothing is to be undone.
    EXPECT_FALSE(m_driver->action("actionUndo").isEnabled());
}

TEST_F(BatchRunObserverTest, TheDialogOpensWithoutAVolume)
{
    QString text;
    open({DialogAnswer().look([&](QWidget &dialog) {
              click(dialog, "btnRun");
              EXPECT_TRUE(QTest::qWaitFor([&] { return !text.isEmpty(); }, 20000));
              EXPECT_TRUE(QTest::qWaitFor(
                  [&] {
                      click(dialog, "btnClose");
                      return !dialog.isVisible();
                  },
                  20000));
          }),
          DialogAnswer().look([&](QWidget &box) { text = box.windowTitle(); }).accept()},
         false);
    EXPECT_EQ(text, "Missing Cell Volume");
}

TEST_F(BatchRunObserverTest, WhenItIsClosedNoVolumeShowsMasksAndAllHaveSurfaces)
{
    for (const auto &volume : m_volumes) {
        volume->setTopMask(std::vector<bool>(12, true), 3, 4);
        volume->setBottomMask(std::vector<bool>(6, true), 2, 3);
    }
    EXPECT_EQ(m_volumes[1]->painter().opaqueFaces().size(), 0u);
    open({DialogAnswer()
              .look([this](QWidget &) { EXPECT_TRUE(m_volumes[0]->topMask()[0]); })
              .click("btnClose")});
    for (const auto &volume : m_volumes) {
        EXPECT_EQ(volume->topMask(), std::vector<bool>(12));
        EXPECT_EQ(volume->bottomMask(), std::vector<bool>(6));
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        volume->topMaskExtent(width, height);
        EXPECT_EQ(width, 3u);
        EXPECT_EQ(height, 4u);
        EXPECT_GT(volume->painter().opaqueFaces().size(), 0u);
    }
}

TEST_F(BatchRunObserverTest, EscapeClosesTheDialog)
{
    open({DialogAnswer().look([](QWidget &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); })});
    EXPECT_FALSE(m_driver->workspace().currentOperation());
}

TEST_F(BatchRunObserverTest, AWindowThatIsClosedGoesAfterTheDialog)
{
    QPointer<QWidget> window = &m_driver->window();
    open({DialogAnswer().look([&](QWidget &dialog) {
        EXPECT_FALSE(window->close());
        QTest::qWait(50);
        EXPECT_TRUE(window);
        EXPECT_FALSE(dialog.isVisible());
    })});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
}

TEST_F(BatchRunObserverTest, AWindowThatIsClosedTakesTheDialogsOverTheDialogWithIt)
{
    // One dialog, a file dialog, and one over another.
    for (const QString process : {"CVD", "Save Image", "Photolithography"}) {
        m_driver = std::make_unique<Support::WindowDriver>();
        QPointer<QWidget> window = &m_driver->window();
        const auto close = [&](QWidget &dialog) {
            EXPECT_FALSE(window->close());
            EXPECT_FALSE(dialog.isVisible());
            EXPECT_FALSE(QApplication::activeModalWidget());
            EXPECT_TRUE(window);
        };
        std::vector<DialogAnswer> answers{
            DialogAnswer().choose("cbxProcess", process).click("btnAddProcess")};
        if (process == "Photolithography")
            answers.push_back(DialogAnswer()
                                  .type("ledTopMask", listFile("missing.png"))
                                  .click("btnApplyTopMask"));
        answers.push_back(DialogAnswer().look(close));
        open(answers, false);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_FALSE(window) << process.toStdString();
    }
}

TEST_F(BatchRunObserverTest, AWindowThatIsClosedOverTheMessageTakesItAlong)
{
    QPointer<QWidget> window = &m_driver->window();
    open({DialogAnswer().look([](QWidget &dialog) {
              click(dialog, "btnRun");
              EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }, 20000));
          }),
          DialogAnswer().look([&](QWidget &box) {
              EXPECT_EQ(dynamic_cast<QMessageBox &>(box).windowTitle(), "Missing Cell Volume");
              EXPECT_FALSE(window->close());
              EXPECT_FALSE(box.isVisible());
              EXPECT_TRUE(window);
          })},
         false);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
}

TEST_F(BatchRunObserverTest, AWindowThatIsClosedDuringARunTakesTheDialogsOverTheDialogWithIt)
{
    QPointer<QWidget> window = &m_driver->window();
    QPointer<QWidget> batch;
    open({withList({pour(Resist, 8), pour(Gold, 9)})
              .look([&](QWidget &dialog) {
                  batch = &dialog;
                  m_volumes[0]->voxels();
                  click(dialog, "btnRun");
              })
              .click("btnAddProcess")
              .look([&](QWidget &dialog) {
                  EXPECT_TRUE(dialog.isVisible());
                  m_volumes[0]->releaseVoxels();
                  EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }, 20000));
              }),
          loading(), DialogAnswer().look([&](QWidget &dialog) {
              EXPECT_FALSE(window->close());
              EXPECT_FALSE(dialog.isVisible());
              EXPECT_EQ(QApplication::activeModalWidget(), batch);
          })});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
    expectWholeOrNotBegun();
}

TEST_F(BatchRunObserverTest, AWindowThatIsClosedDuringARunGoesAfterTheStepInProgress)
{
    QPointer<QWidget> window = &m_driver->window();
    open({withList({pour(Resist, 8), pour(Gold, 9)}).look([&](QWidget &dialog) {
              m_volumes[0]->voxels();
              click(dialog, "btnRun");
              QTest::qWait(50);
              EXPECT_FALSE(window->close());
              EXPECT_FALSE(window->close());
              EXPECT_TRUE(dialog.isVisible());
              m_volumes[0]->releaseVoxels();
              EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.isVisible(); }, 20000));
              EXPECT_TRUE(window);
          }),
          loading()});
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
    expectWholeOrNotBegun();
    EXPECT_EQ(count(*m_volumes[0], Gold), 0u);
}

TEST_F(BatchRunObserverTest, TheEndOfTheProgramWaitsForTheStepInProgress)
{
    std::thread release;
    open({withList({pour(Resist, 8), picture(listFile("late.png")), pour(Gold, 9)})
              .look([&](QWidget &dialog) {
                  m_volumes[0]->voxels();
                  click(dialog, "btnRun");
                  release = std::thread([this] {
                      QThread::msleep(200);
                      m_volumes[0]->releaseVoxels();
                  });
                  // What Quit does to the dialog's event loop: it returns with the dialog open.
                  QMetaObject::invokeMethod(
                      &dialog, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
              }),
          loading()});
    release.join();
    expectWholeOrNotBegun();
    EXPECT_EQ(count(*m_volumes[0], Gold), 0u);
    EXPECT_FALSE(m_driver->workspace().currentOperation());
    // No event loop runs after an exit until the program's own has begun anew.
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
    QCoreApplication::exec();
}

// The slot of the class may hold the observer of a window that was closed meanwhile.
TEST_F(BatchRunObserverTest, AnObserverWhoseWindowIsGoneDoesNothing)
{
    auto other = std::make_unique<Support::WindowDriver>();
    Ui::Observers::BatchRunObserver observer(&m_driver->workspace(), &other->window());
    m_driver->trigger("actionBatch_Run");
    other.reset();
    m_driver->answering({}, [&] { observer.update(); });
    EXPECT_TRUE(m_driver->workspace().currentOperation());
}

} // namespace
