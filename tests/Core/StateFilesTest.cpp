#include "Core/StateFiles.h"

#include "Util/QtRandom.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include <unistd.h>

using Core::StateFiles;

namespace {

/// The number that belongs to a second of the clock.
std::string numberAt(std::time_t second)
{
    Util::seedRandom(static_cast<unsigned>(second));
    return std::to_string(Util::nextRandom());
}

/// The present second by the exact clock; time() may be some milliseconds behind it.
std::time_t exactSecond()
{
    return std::chrono::system_clock::to_time_t(
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()));
}

std::set<std::string> numbersBetween(std::time_t first, std::time_t last)
{
    std::set<std::string> numbers;
    for (std::time_t second = first; second <= last; ++second)
        numbers.insert(numberAt(second));
    return numbers;
}

/// What stands between "undo" and ".temp".
std::string numberOf(const StateFiles &files)
{
    const std::string name = files.undoFileName();
    return name.size() > 9 ? name.substr(4, name.size() - 9) : std::string();
}

void write(const std::string &file, const std::string &content)
{
    std::ofstream(file) << content;
}

std::string contentOf(const std::string &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Each test works in an empty directory of its own.
class StateFilesTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_folder.isValid());
        ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    }
    void TearDown() override { QDir::setCurrent(m_before); }

    QStringList entries() const
    {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

private:
    QString m_before = QDir::currentPath();
    QTemporaryDir m_folder;
};

} // namespace

TEST_F(StateFilesTest, NamesAreUndoAndRedoWithOneNumberInTheWorkingDirectory)
{
    const StateFiles files;
    const std::string number = numberOf(files);
    ASSERT_FALSE(number.empty());
    EXPECT_EQ(number.find_first_not_of("0123456789"), std::string::npos);
    EXPECT_EQ(files.undoFileName(), "undo" + number + ".temp");
    EXPECT_EQ(files.redoFileName(), "redo" + number + ".temp");
}

TEST_F(StateFilesTest, NumberIsTheFirstOfTheSequenceOfThePresentSecond)
{
    const std::time_t before = std::time(nullptr);
    const StateFiles files;
    const std::time_t after = exactSecond();
    EXPECT_EQ(numbersBetween(before, after).count(numberOf(files)), 1U) << numberOf(files);
}

TEST_F(StateFilesTest, FilesAreCreatedEmptyAndRemovedAtTheEnd)
{
    auto files = std::make_unique<StateFiles>();
    const QStringList names{QString::fromStdString(files->redoFileName()),
                            QString::fromStdString(files->undoFileName())};
    EXPECT_EQ(entries(), names);
    for (const QString &name : names) {
        EXPECT_TRUE(QFileInfo(name).isFile());
        EXPECT_EQ(QFileInfo(name).size(), 0);
    }
    files.reset();
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(StateFilesTest, FilesWithContentAreRemovedToo)
{
    auto files = std::make_unique<StateFiles>();
    write(files->undoFileName(), "Doping 0 1 1\n");
    write(files->redoFileName(), "Doping 0 2 2\n");
    files.reset();
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(StateFilesTest, FileThatIsGoneAlreadyIsNoTrouble)
{
    auto files = std::make_unique<StateFiles>();
    QFile::remove(QString::fromStdString(files->undoFileName()));
    files.reset();
    EXPECT_EQ(entries(), QStringList());
}

TEST_F(StateFilesTest, TwoInstancesGetFilesOfTheirOwn)
{
    const StateFiles first;
    auto second = std::make_unique<StateFiles>();
    EXPECT_NE(first.undoFileName(), second->undoFileName());
    EXPECT_NE(first.redoFileName(), second->redoFileName());
    EXPECT_EQ(entries().size(), 4);
    second.reset();
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(first.undoFileName())));
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(first.redoFileName())));
}

TEST_F(StateFilesTest, NumberWithAnUndoFileIsPassedOver)
{
    const std::time_t now = std::time(nullptr);
    const std::set<std::string> taken = numbersBetween(now, now + 1);
    for (const std::string &number : taken)
        write("undo" + number + ".temp", "of another");
    {
        const StateFiles files;
        EXPECT_EQ(taken.count(numberOf(files)), 0U);
        EXPECT_EQ(entries().size(), static_cast<int>(taken.size()) + 2);
    }
    EXPECT_EQ(entries().size(), static_cast<int>(taken.size()));
    for (const std::string &number : taken)
        EXPECT_EQ(contentOf("undo" + number + ".temp"), "of another");
}

TEST_F(StateFilesTest, NumberWithARedoFileIsPassedOverAndNoUndoFileIsLeft)
{
    const std::time_t now = std::time(nullptr);
    const std::set<std::string> taken = numbersBetween(now, now + 1);
    for (const std::string &number : taken)
        write("redo" + number + ".temp", "of another");
    {
        const StateFiles files;
        EXPECT_EQ(taken.count(numberOf(files)), 0U);
        EXPECT_EQ(entries().size(), static_cast<int>(taken.size()) + 2);
    }
    EXPECT_EQ(entries().size(), static_cast<int>(taken.size()));
    for (const std::string &number : taken)
        EXPECT_EQ(contentOf("redo" + number + ".temp"), "of another");
}

// A link into a folder that is not there: no file exists under its name, and none can be opened.
TEST_F(StateFilesTest, PairThatCannotBeOpenedIsRemovedBeforeTheNextTry)
{
    for (const char *const broken : {"undo", "redo"}) {
        SCOPED_TRACE(broken);
        const std::time_t before = std::time(nullptr);
        const std::set<std::string> numbers = numbersBetween(before, before + 10);
        for (const std::string &number : numbers)
            std::filesystem::create_symlink("missing/file", broken + number + ".temp");
        auto files = std::make_unique<StateFiles>();
        for (const std::string &name : {files->undoFileName(), files->redoFileName()}) {
            EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(name)))
                << name;
        }
        // The number was tried, failed, and was free then.
        EXPECT_EQ(numbers.count(numberOf(*files)), 1U) << numberOf(*files);
        files.reset();
        for (const std::string &number : numbers)
            QFile::remove(QString::fromStdString(broken + number + ".temp"));
        EXPECT_EQ(entries(), QStringList());
    }
}

// A working directory that has been deleted takes no files, whoever the user is.
TEST_F(StateFilesTest, TriesGoOnUntilTheWorkingDirectoryTakesFiles)
{
    const QString writable = QDir::currentPath();
    QTemporaryDir other;
    const std::string doomed = other.filePath("doomed").toStdString();
    ASSERT_TRUE(std::filesystem::create_directory(doomed));
    ASSERT_EQ(::chdir(doomed.c_str()), 0);
    ASSERT_TRUE(std::filesystem::remove(doomed));

    std::unique_ptr<StateFiles> files;
    std::thread starting([&files] { files = std::make_unique<StateFiles>(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(::chdir(writable.toStdString().c_str()), 0);
    starting.join();

    EXPECT_EQ(entries().size(), 2);
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(files->undoFileName())));
    EXPECT_TRUE(QFileInfo::exists(QString::fromStdString(files->redoFileName())));
    files.reset();
    EXPECT_EQ(entries(), QStringList());
}
