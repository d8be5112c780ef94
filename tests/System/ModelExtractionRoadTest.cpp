#include "UI/ExtractionWindow.h"

#include <QAction>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QSet>

#include <cstdlib>

namespace {

using Support::DialogAnswer;

class ModelExtractionRoadTest : public ExtractionWindow
{
protected:
    ModelExtractionRoadTest()
    {
        // Colours as they are.
        m_driver.trigger("actionLighting");
    }

    static bool isAlike(int value, int other) { return std::abs(value - other) < 4; }
    int pixelsOf(const QColor &color)
    {
        const QImage picture = m_driver.picture();
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor found = picture.pixelColor(x, y);
                if (isAlike(found.red(), color.red()) && isAlike(found.green(), color.green()) &&
                    isAlike(found.blue(), color.blue()))
                    ++count;
            }
        }
        return count;
    }
    QByteArray content(const char *name)
    {
        QFile file(QString::fromLatin1(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }

    /// The colours of the first two boxes of a model, which the volume itself does not have.
    const QColor m_red{255, 0, 0};
    const QColor m_yellow{255, 255, 0};
};

TEST_F(ModelExtractionRoadTest, CantileverIsTurnedIntoANetlistInThreeSteps)
{
    const QImage before = m_driver.picture();
    start();
    EXPECT_EQ(lastLines(1), QStringList(Selected));
    EXPECT_EQ(m_driver.picture(), before);
    EXPECT_EQ(pixelsOf(m_red), 0);

    // From above 60 by 40 pixels: silicon in three pieces along y, and the beam of 25 by 6.
    step(1);
    const QImage boxes = m_driver.picture();
    EXPECT_NE(boxes, before);
    // The first box lies under the second.
    EXPECT_EQ(pixelsOf(m_red), 0);
    EXPECT_GT(pixelsOf(m_yellow), 18 * 15);

    // The beam once more, in the first colour and 70 pixels to the right.
    step(2);
    EXPECT_EQ(objectCount(), 3U);
    EXPECT_GT(pixelsOf(m_red), 23 * 4);
    const QPoint beam = m_driver.viewCenter() + QPoint(70 + 20 + 12, -20);
    EXPECT_EQ(m_driver.picture().pixelColor(beam), m_red);

    step(3, {DialogAnswer().fileName("beam.cir").accept()});
    EXPECT_EQ(content("beam.cir"), cantileverNetlist().toUtf8());
    EXPECT_EQ(content("beam.cir"), "Model extracted by Lithara\n"
                                   "c1 1 0 5.73158e-12 \n"
                                   "l1 1 0 5.51146e-09 \n"
                                   ".end \n");

    m_dialog->close();
    settle();
    EXPECT_EQ(lastLines(2), (QStringList{Selected, Extracted}));
    EXPECT_EQ(m_driver.picture(), before);
    EXPECT_EQ(objectCount(), 1U);
    EXPECT_EQ(current(), nullptr);
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
}

TEST_F(ModelExtractionRoadTest, SeveralBeamsAreNumberedFromOne)
{
    // Two beams on one block, each at a height of its own.
    use([](std::uint32_t x, std::uint32_t y, std::uint32_t z) -> std::uint32_t {
        if (x < 20 && z < 9)
            return 1;
        if (x < 40 && y >= 5 && y < 15 && z >= 6 && z < 9)
            return 3;
        if (x < 40 && y >= 25 && y < 35 && z >= 3 && z < 6)
            return 9;
        return 0;
    });
    start();
    step(1);
    step(2);
    step(3, {DialogAnswer().fileName("beams.cir").accept()});
    // Both 20 by 10 by 3: 600 cells, and 8000 / (3 E 270 / 12).
    const QList<QByteArray> lines = content("beams.cir").split('\n');
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[0], "Model extracted by Lithara");
    EXPECT_EQ(lines[5], ".end ");
    EXPECT_EQ(lines[6], "");
    EXPECT_EQ(lines[2], "l1 1 0 1.69312e-09 ");
    EXPECT_EQ(lines[4], "l2 2 0 1.69312e-09 ");
    // Densities 8940 and 1000.
    const QSet<QByteArray> values = {lines[1].mid(7), lines[3].mid(7)};
    EXPECT_EQ(values, (QSet<QByteArray>{"2.53038e-11 ", "2.83041e-12 "}));
    EXPECT_TRUE(lines[1].startsWith("c1 1 0 "));
    EXPECT_TRUE(lines[3].startsWith("c2 2 0 "));
}

TEST_F(ModelExtractionRoadTest, EscapeBringsTheVolumeBackAndSaysNothing)
{
    const QImage before = m_driver.picture();
    start();
    step(1);
    step(2);
    m_driver.press(Qt::Key_Escape);
    settle();
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_EQ(m_driver.consoleLines().last(), Selected);
    EXPECT_EQ(m_driver.picture(), before);
}

TEST_F(ModelExtractionRoadTest, EmptyVolumeShowsNothingAndHasNoModelData)
{
    use([](auto, auto, auto) { return 0U; });
    const QImage before = m_driver.picture();
    start();
    step(1);
    EXPECT_EQ(m_driver.picture(), before);
    step(2);
    QString read;
    step(3,
         {DialogAnswer().look([&read](QWidget &dialog) { read = dialog.windowTitle(); }).accept()});
    EXPECT_EQ(read, "No model data");
}

} // namespace
