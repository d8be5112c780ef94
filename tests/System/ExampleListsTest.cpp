#include "ExampleLists.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Support/WindowDriver.h"
#include "UI/BatchDialogs.h"
#include "UI/GLWidget.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace {

using BatchDialogs::bar;
using BatchDialogs::click;
using Support::DialogAnswer;

constexpr std::uint32_t Void = 0;
constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Copper = 5;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t PositiveResist = 11;
constexpr std::uint32_t NegativeResist = 12;
constexpr std::uint32_t Pdms = 13;
constexpr std::uint32_t PolySilicon = 16;

/// The lists that come with the program, run as a user runs them.
class ExampleListsTest : public testing::Test
{
protected:
    void run(const char *name)
    {
        const QString file = QStringLiteral(LITHARA_EXAMPLE_LISTS "/") + QLatin1String(name);
        const auto play = [](QWidget &dialog) {
            const int steps = BatchDialogs::steps(dialog).size();
            EXPECT_GT(steps, 3);
            click(dialog, "btnRun");
            EXPECT_TRUE(QTest::qWaitFor([&] { return bar(dialog).value() == steps; }, 90000));
            EXPECT_TRUE(QTest::qWaitFor(
                [&] {
                    click(dialog, "btnClose");
                    return !dialog.isVisible();
                },
                20000));
        };
        m_driver.trigger("actionBatch_Run");
        m_driver.answering({DialogAnswer().click("btnLoadList").look(play),
                            DialogAnswer().fileName(file).accept()},
                           [this] { m_driver.typeIntoConsole("N"); });
        m_cells = m_driver.materials();
        m_grid = {60, 60, m_driver.volumes().front()->sizeZ()};
        ASSERT_EQ(m_cells.size(), m_grid.cells());
        const QString folder = qEnvironmentVariable("LITHARA_SHOTS");
        if (folder.isEmpty())
            return;
        m_driver.view().setZoom(0.15f);
        for (const double tilt : {-50.0, -130.0}) {
            m_driver.view().setView(tilt, 0, 30);
            m_driver.picture().save(QString("%1/%2%3.png").arg(folder, name).arg(tilt));
        }
    }
    std::uint32_t cell(std::uint32_t x, std::uint32_t y, std::uint32_t z)
    {
        return m_cells[m_grid.index(x, y, z)];
    }
    /// All cells of a column from `first` to `last`.
    void expectColumn(std::uint32_t x, std::uint32_t y, std::uint32_t first, std::uint32_t last,
                      std::uint32_t material)
    {
        for (std::uint32_t z = first; z <= last; ++z)
            EXPECT_EQ(cell(x, y, z), material) << x << " " << y << " " << z;
    }
    std::ptrdiff_t count(std::uint32_t material)
    {
        return std::count(m_cells.begin(), m_cells.end(), material);
    }
    /// Void cells of a layer along x through the middle.
    int openAt(std::uint32_t z)
    {
        int open = 0;
        for (std::uint32_t x = 0; x < 60; ++x)
            open += cell(x, 30, z) == Void;
        return open;
    }

    Support::WindowDriver m_driver;
    std::vector<std::uint32_t> m_cells;
    Support::Grid m_grid;
};

TEST_F(ExampleListsTest, TheFilesAreWhatTheirSourceWrites)
{
    const auto contents = [](const QString &name) {
        QFile file(name);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        return file.readAll();
    };
    const QDir folder(QStringLiteral(LITHARA_EXAMPLE_LISTS));
    QStringList names;
    for (const ExampleList &list : exampleLists()) {
        BatchDialogs::save(list.steps, list.fileName);
        EXPECT_EQ(contents(folder.filePath(list.fileName)),
                  contents(BatchDialogs::listFile(list.fileName)))
            << list.fileName;
        names << list.fileName;
    }
    names.sort();
    EXPECT_EQ(folder.entryList({"*.plst"}, QDir::Files, QDir::Name), names);
}

TEST_F(ExampleListsTest, TheMembraneHangsOverAPitWithLeaningWalls)
{
    run("membrane.plst");
    // The membrane is whole, and free in the middle.
    for (std::uint32_t x = 0; x < 60; ++x)
        for (std::uint32_t y = 0; y < 60; ++y)
            for (std::uint32_t z = 26; z < 29; ++z)
                ASSERT_EQ(cell(x, y, z), Oxide);
    expectColumn(30, 30, 0, 25, Void);
    // Under the mask the wafer stands.
    expectColumn(3, 30, 6, 25, Silicon);
    expectColumn(3, 30, 3, 5, Oxide);
    // The window has 44 cells. Up the wafer the walls come closer by 1 / tan(54.74 degrees) a
    // side, that is the square root of 2 a layer in all.
    EXPECT_NEAR(openAt(6), 44, 4);
    EXPECT_NEAR(openAt(16), 44 - 14.1, 4);
    EXPECT_NEAR(openAt(25), 44 - 26.9, 4);
}

TEST_F(ExampleListsTest, TheCantileverIsHeldAtOneEndAndFreeAtTheOther)
{
    run("cantilever.plst");
    // The anchor stands on the wafer, the beam hangs four cells above it.
    expectColumn(9, 30, 8, 10, PolySilicon);
    for (const std::uint32_t x : {20u, 35u, 50u}) {
        expectColumn(x, 30, 8, 11, Void);
        expectColumn(x, 30, 12, 14, PolySilicon);
        expectColumn(x, 30, 15, 29, Void);
        expectColumn(x, 10, 8, 29, Void);
    }
    expectColumn(52, 30, 8, 29, Void);
    expectColumn(30, 30, 0, 7, Silicon);
    EXPECT_EQ(count(PositiveResist), 0);
    EXPECT_EQ(count(Oxide), 0);
}

TEST_F(ExampleListsTest, TheCoilStandsOnItsSeedAlone)
{
    run("coil.plst");
    for (const auto &[x, y] : {std::pair{10u, 12u},
                               {30u, 10u},
                               {50u, 30u},
                               {30u, 50u},
                               {30u, 22u},
                               {38u, 30u},
                               {30u, 38u},
                               {14u, 34u}}) {
        EXPECT_EQ(cell(x, y, 6), Gold) << x << " " << y;
        expectColumn(x, y, 7, 12, Copper);
    }
    for (const auto &[x, y] : {std::pair{2u, 2u}, {15u, 15u}, {30u, 30u}, {10u, 28u}, {22u, 28u}})
        expectColumn(x, y, 6, 29, Void);
    EXPECT_EQ(count(PositiveResist), 0);
}

TEST_F(ExampleListsTest, TheChannelIsOpenBelowAndClosedAbove)
{
    run("channel.plst");
    for (const std::uint32_t x : {8u, 15u, 30u, 45u, 52u}) {
        expectColumn(x, 30, 0, 13, Void);
        expectColumn(x, 30, 14, 23, Pdms);
    }
    // Beside it, and beside what joins the reservoirs.
    for (const auto &[x, y] : {std::pair{2u, 30u}, {30u, 20u}, {30u, 26u}, {30u, 33u}})
        expectColumn(x, y, 6, 23, Pdms);
    expectColumn(10, 26, 6, 13, Void);
    EXPECT_EQ(count(NegativeResist), 0);
    EXPECT_EQ(count(Silicon), 0);
}

} // namespace
