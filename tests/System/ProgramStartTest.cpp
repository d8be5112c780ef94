#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <functional>

namespace {

constexpr int Patience = 60000; // milliseconds; a start takes less than one second

/// The program itself, as a newcomer starts it: in an empty home.
class ProgramStartTest : public testing::Test
{
protected:
    ~ProgramStartTest() override
    {
        if (m_program.state() != QProcess::NotRunning) {
            m_program.terminate();
            if (!m_program.waitForFinished(Patience))
                ADD_FAILURE() << "the program does not end";
        }
    }

    void start()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", m_home.path());
        m_program.setProcessEnvironment(environment);
        m_program.setWorkingDirectory(m_work.path());
        m_program.setProcessChannelMode(QProcess::ForwardedChannels);
        m_program.start(LITHARA_PROGRAM, QStringList());
    }

    bool comesTrue(const std::function<bool()> &condition)
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < Patience && m_program.state() != QProcess::NotRunning) {
            if (condition())
                return true;
            QCoreApplication::processEvents();
            QThread::msleep(20);
        }
        return false;
    }

    /// The window is up: the light menu bar above the black view.
    bool windowIsUp()
    {
        const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
        int light = 0;
        for (int x = 0; x < screen.width(); x += 8)
            for (int y = 0; y < screen.height(); y += 8)
                light += screen.pixelColor(x, y).lightness() > 200 ? 1 : 0;
        return light > 200;
    }

    QTemporaryDir m_home;
    QTemporaryDir m_work;
    QProcess m_program;
};

TEST_F(ProgramStartTest, InAnEmptyHomeWithoutAnIconTheWindowComesUpAndTheRegistriesAreWritten)
{
    start();
    ASSERT_TRUE(m_program.waitForStarted(Patience));
    EXPECT_TRUE(comesTrue([this] { return windowIsUp(); }));
    EXPECT_TRUE(QFile::exists(m_home.filePath("Lithara/materials.xml")));
    EXPECT_TRUE(QFile::exists(m_home.filePath("Lithara/processes.xml")));
    EXPECT_EQ(QDir(m_work.path()).entryList({"undo*.temp", "redo*.temp"}, QDir::Files).size(), 2);
}

TEST_F(ProgramStartTest, WithAnIconInTheWorkingDirectoryTheWindowComesUp)
{
    QImage icon(32, 32, QImage::Format_ARGB32);
    icon.fill(Qt::blue);
    ASSERT_TRUE(icon.save(m_work.filePath("icon.ico"), "ico"));
    start();
    ASSERT_TRUE(m_program.waitForStarted(Patience));
    EXPECT_TRUE(comesTrue([this] { return windowIsUp(); }));
}

TEST_F(ProgramStartTest, MalformedRegistriesAreReplacedAtTheStart)
{
    QDir(m_home.path()).mkdir("Lithara");
    for (const char *name : {"Lithara/materials.xml", "Lithara/processes.xml"}) {
        QFile file(m_home.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<Foreign/>");
    }
    start();
    ASSERT_TRUE(m_program.waitForStarted(Patience));
    EXPECT_TRUE(comesTrue([this] { return windowIsUp(); }));
    QFile materials(m_home.filePath("Lithara/materials.xml"));
    ASSERT_TRUE(materials.open(QIODevice::ReadOnly));
    EXPECT_EQ(materials.readAll().count("<Material "), 15);
    QFile processes(m_home.filePath("Lithara/processes.xml"));
    ASSERT_TRUE(processes.open(QIODevice::ReadOnly));
    EXPECT_EQ(processes.readAll().count("<Process "), 14);
}

} // namespace
