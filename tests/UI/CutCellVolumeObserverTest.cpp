#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"
#include "UI/Observers/CutCellVolumeObserver.h"
#include "Util/IObserver.h"

#include <QGLContext>
#include <QSlider>
#include <QTest>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace {

using Model::Automaton::CellTriple;
using Support::DialogAnswer;
using Limits = std::pair<CellTriple, CellTriple>;

class Recorder final : public Util::IObserver
{
public:
    explicit Recorder(std::function<void()> record) : m_record(std::move(record)) {}
    void update() override { m_record(); }

private:
    std::function<void()> m_record;
};

/// On a volume of 10 x 12 x 14 cells that is full of silicon.
class CutCellVolumeObserverTest : public testing::Test
{
protected:
    CutCellVolumeObserverTest()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "10")
                                                        .type("sbxTotalLength", "12")
                                                        .type("sbxTotalHeight", "14")
                                                        .type("sbxSubsHeight", "14")
                                                        .accept()});
        m_volume = m_driver.volumes().front();
    }

    Limits limits() const
    {
        Limits found;
        m_volume->painter().cutLimits(found.first, found.second);
        return found;
    }
    std::size_t faces() const { return m_volume->painter().opaqueFaces().size(); }
    /// The outer faces of what the limits leave.
    static std::size_t facesOf(const Limits &limits)
    {
        std::size_t edges[3];
        for (unsigned axis = 0; axis < 3; ++axis)
            edges[axis] = limits.second[axis] - limits.first[axis];
        return 2 * (edges[0] * edges[1] + edges[1] * edges[2] + edges[2] * edges[0]);
    }
    /// What the views are told from here on.
    DialogAnswer recording()
    {
        return DialogAnswer().look([this](QWidget &) {
            m_driver.workspace().updateObservers().push_back(boost::make_shared<Recorder>([this] {
                EXPECT_EQ(faces(), facesOf(limits()));
                m_seen.push_back(limits());
            }));
        });
    }
    void run(const DialogAnswer &answer)
    {
        m_driver.trigger("actionSelect");
        m_driver.click(m_driver.viewCenter() + QPoint(4, -4));
        m_driver.trigger("actionCut_Cell_Volume", {answer});
    }

    const Limits m_whole{{0, 0, 0}, {10, 12, 14}};
    Support::WindowDriver m_driver;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    std::vector<Limits> m_seen;
};

TEST_F(CutCellVolumeObserverTest, WithoutThePreviewNothingChangesUntilOk)
{
    run(recording()
            .type("sbxXLowerLimit", "3")
            .type("sbxZUpperLimit", "7")
            .look([this](QWidget &) {
                EXPECT_TRUE(m_seen.empty());
                EXPECT_EQ(limits(), m_whole);
            })
            .accept());
    const Limits cut{{3, 0, 0}, {10, 12, 7}};
    ASSERT_FALSE(m_seen.empty());
    EXPECT_EQ(m_seen.front(), cut);
    EXPECT_EQ(limits(), cut);
    EXPECT_FALSE(m_driver.workspace().currentOperation());
}

TEST_F(CutCellVolumeObserverTest, EachStepOfASliderIsSeenAtOnceWithThePreview)
{
    run(recording()
            .check("cbxPreview")
            .look([this](QWidget &dialog) {
                EXPECT_TRUE(m_seen.empty());
                for (int i = 0; i < 3; ++i)
                    QTest::keyClick(dialog.findChild<QSlider *>("sldYLowerLimit"), Qt::Key_Right);
                EXPECT_EQ(m_seen, (std::vector<Limits>{{{0, 1, 0}, {10, 12, 14}},
                                                       {{0, 2, 0}, {10, 12, 14}},
                                                       {{0, 3, 0}, {10, 12, 14}}}));
            })
            .accept());
    EXPECT_EQ(limits(), (Limits{{0, 3, 0}, {10, 12, 14}}));
    EXPECT_EQ(faces(), facesOf(limits()));
}

// What is rebuilt while the dialog is open may need OpenGL, and another window may have painted.
TEST_F(CutCellVolumeObserverTest, ThePreviewIsMadeInTheContextOfItsOwnWindow)
{
    Support::WindowDriver other;
    int looks = 0;
    run(DialogAnswer()
            .check("cbxPreview")
            .look([&](QWidget &dialog) {
                // Before the view itself is told, which makes its context current.
                m_driver.workspace().updateObservers().push_front(boost::make_shared<Recorder>([&] {
                    ++looks;
                    EXPECT_EQ(QGLContext::currentContext(), m_driver.view().context());
                }));
                other.view().makeCurrent();
                QTest::keyClick(dialog.findChild<QSlider *>("sldXLowerLimit"), Qt::Key_Right);
                other.view().makeCurrent();
            })
            .reject());
    m_driver.workspace().updateObservers().pop_front();
    EXPECT_GE(looks, 2);
}

TEST_F(CutCellVolumeObserverTest, CancelBringsTheLimitsFromBeforeTheDialogBack)
{
    const Limits before{{1, 1, 1}, {9, 11, 13}};
    m_volume->painter().setCutLimits(before.first, before.second);
    m_volume->painter().rebuild();
    run(recording()
            .check("cbxPreview")
            .type("sbxXLowerLimit", "5")
            .look([this](QWidget &) { EXPECT_EQ(limits().first[0], 5U); })
            .reject());
    EXPECT_EQ(limits(), before);
    EXPECT_EQ(faces(), facesOf(before));
    ASSERT_GE(m_seen.size(), 2U);
    EXPECT_EQ(m_seen[0], (Limits{{5, 1, 1}, {9, 11, 13}}));
    EXPECT_EQ(m_seen[1], before);
    EXPECT_FALSE(m_driver.workspace().currentOperation());
    EXPECT_EQ(m_driver.consoleLines().last(), "Change Cut Planes: Operation Canceled!");
}

TEST_F(CutCellVolumeObserverTest, CancelRebuildsAlsoWithoutThePreview)
{
    // As if something had changed the picture meanwhile.
    run(recording()
            .look([this](QWidget &) {
                m_volume->painter().setCutLimits({}, {1, 1, 1});
            })
            .reject());
    ASSERT_FALSE(m_seen.empty());
    EXPECT_EQ(m_seen.front(), m_whole);
}

TEST_F(CutCellVolumeObserverTest, TheDialogStartsWithTheLimitsOfTheVolume)
{
    run(DialogAnswer().type("sbxXLowerLimit", "3").type("sbxYUpperLimit", "7").accept());
    QStringList shown;
    run(DialogAnswer()
            .look([&](QWidget &dialog) {
                for (const char *name : {"sbxXLowerLimit", "sbxXUpperLimit", "sbxYLowerLimit",
                                         "sbxYUpperLimit", "sbxZLowerLimit", "sbxZUpperLimit"})
                    shown << QString::number(
                        dialog.findChild<QWidget *>(name)->property("value").toInt());
            })
            .reject());
    EXPECT_EQ(shown, (QStringList{"3", "10", "0", "7", "0", "14"}));
    EXPECT_EQ(limits(), (Limits{{3, 0, 0}, {10, 7, 14}}));
}

TEST_F(CutCellVolumeObserverTest, WithoutAVolumeThereIsNothingToAsk)
{
    m_driver.trigger("actionCut_Cell_Volume");
    ASSERT_TRUE(m_driver.workspace().currentOperation());
    Ui::Observers::CutCellVolumeObserver observer(&m_driver.workspace(), &m_driver.window());
    // Throws where a dialog comes up.
    EXPECT_NO_THROW(m_driver.answering({}, [&] { observer.update(); }));
    EXPECT_TRUE(m_driver.workspace().currentOperation()) << "it goes on waiting for a volume";
    EXPECT_EQ(limits(), m_whole);
}

} // namespace
