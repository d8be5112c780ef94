#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/ColorTable.h"
#include "UI/GLWidget.h"
#include "UI/Observers/UndoRedoObserver.h"
#include "UI/Observers/UpdateObserver.h"

#include <QCoreApplication>
#include <QObject>
#include <QThread>

#include <gtest/gtest.h>

#include <thread>

namespace {

/// Remembers in which thread it was told.
class Receiver final : public QObject
{
    Q_OBJECT

public:
    int calls = 0;
    QThread *thread = nullptr;

public Q_SLOTS:
    void hear()
    {
        ++calls;
        thread = QThread::currentThread();
    }
};

template <typename Observer>
void expectQueuedFromAWorker(Observer &observer, const char *signal)
{
    Receiver receiver;
    QObject::connect(&observer, signal, &receiver, SLOT(hear()));
    observer.update();
    EXPECT_EQ(receiver.calls, 1);
    std::thread([&observer] { observer.update(); }).join();
    EXPECT_EQ(receiver.calls, 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(receiver.calls, 2);
    EXPECT_EQ(receiver.thread, QThread::currentThread());
}

TEST(WorkerNotificationTest, AChangedStackIsToldOnTheThreadOfTheWindow)
{
    Ui::Observers::UndoRedoObserver observer;
    expectQueuedFromAWorker(observer, SIGNAL(stackChanged()));
}

TEST(WorkerNotificationTest, AChangedPictureIsToldOnTheThreadOfTheWindow)
{
    Ui::Observers::UpdateObserver observer;
    expectQueuedFromAWorker(observer, SIGNAL(updateGL()));
}

TEST(WorkerNotificationTest, TheViewRepaintsForAWorkerThroughTheEventLoop)
{
    Support::WindowDriver driver;
    const auto background = [&] {
        const QPoint at = driver.view().mapToGlobal(QPoint(5, 5));
        return driver.grabbed().pixelColor(at);
    };
    driver.settle();
    ASSERT_EQ(background(), QColor(Qt::black));
    Model::ColorTable::setCurrentScheme(Model::ColorTable::LowScheme);
    std::thread([&driver] { Util::notify(driver.workspace().updateObservers()); }).join();
    EXPECT_EQ(background(), QColor(Qt::black));
    driver.settle();
    EXPECT_EQ(background(), QColor(Qt::white));
    Model::ColorTable::setCurrentScheme(Model::ColorTable::DefaultScheme);
}

} // namespace

#include "WorkerNotificationTest.moc"
