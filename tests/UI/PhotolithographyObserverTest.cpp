#include "Support/WindowDriver.h"

#include "Core/Operations/Photolithography/PhotolithographyOperation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/MainWindow.h"
#include "UI/MaskFiles.h"
#include "UI/Operations/PhotolithographyDialog.h"
#include "Util/IObserver.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

namespace {

using MaskFiles::path;
using Support::DialogAnswer;

class Recorder final : public Util::IObserver
{
public:
    explicit Recorder(std::function<void()> record) : m_record(std::move(record)) {}
    void update() override { m_record(); }

private:
    std::function<void()> m_record;
};

class PhotolithographyObserverTest : public testing::Test
{
protected:
    /// Widths of the bottom and of the top mask, heights of the two.
    using Extents = std::array<std::uint32_t, 4>;

    PhotolithographyObserverTest()
    {
        MaskFiles::imageOf({"#..", "##."}).save(path("wide.png"));
        MaskFiles::imageOf({"#"}).save(path("dot.png"));
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "20")
                                                        .type("sbxTotalLength", "20")
                                                        .type("sbxTotalHeight", "20")
                                                        .type("sbxSubsHeight", "6")
                                                        .accept()});
    }

    Extents extents()
    {
        Extents found{};
        m_volume->bottomMaskExtent(found[0], found[2]);
        m_volume->topMaskExtent(found[1], found[3]);
        return found;
    }
    void hideMasks()
    {
        m_volume->setBottomMask({}, 0, 0);
        m_volume->setTopMask({}, 0, 0);
    }
    void record()
    {
        m_driver.workspace().updateObservers().push_back(
            boost::make_shared<Recorder>([this] { m_seen.push_back(extents()); }));
    }
    void run(const DialogAnswer &answer)
    {
        m_volume = m_driver.volumes().front();
        m_driver.trigger("actionSelect");
        m_driver.click(m_driver.viewCenter() + QPoint(20, -15));
        m_driver.trigger("actionPhotolithography", {answer});
    }

    Support::WindowDriver m_driver;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    std::vector<Extents> m_seen;
};

TEST_F(PhotolithographyObserverTest, TheBottomMaskIsHandedOnBeforeTheTopMask)
{
    run(DialogAnswer()
            .type("ledTopMask", path("wide.png"))
            .click("btnApplyTopMask")
            .type("ledBottomMask", path("dot.png"))
            .click("btnApplyBottomMask")
            .look([this](QWidget &) {
                hideMasks();
                record();
            })
            .accept());
    ASSERT_GE(m_seen.size(), 3u);
    EXPECT_EQ(m_seen[0], (Extents{1, 0, 1, 0}));
    EXPECT_EQ(m_seen[1], (Extents{1, 3, 1, 2}));
    // The end takes both away before it tells anybody.
    EXPECT_EQ(m_seen[2], (Extents{0, 0, 0, 0}));
}

TEST_F(PhotolithographyObserverTest, AMaskThatWasRemovedIsHandedOnByItsWidthAlone)
{
    run(DialogAnswer()
            .type("ledTopMask", path("wide.png"))
            .click("btnApplyTopMask")
            .click("btnRemoveTopMask")
            .look([this](QWidget &) { record(); })
            .accept());
    ASSERT_GE(m_seen.size(), 2u);
    EXPECT_EQ(m_seen[1], (Extents{0, 3, 0, 0}));
}

TEST_F(PhotolithographyObserverTest, EachApplyAndRemoveIsSeenAtOnce)
{
    run(DialogAnswer()
            .look([this](QWidget &) { record(); })
            .type("ledBottomMask", path("dot.png"))
            .click("btnApplyBottomMask")
            .type("ledTopMask", path("wide.png"))
            .click("btnApplyTopMask")
            .click("btnRemoveBottomMask")
            .reject());
    ASSERT_GE(m_seen.size(), 3u);
    EXPECT_EQ(m_seen[0], (Extents{1, 0, 1, 0}));
    EXPECT_EQ(m_seen[1], (Extents{1, 3, 1, 2}));
    EXPECT_EQ(m_seen[2], (Extents{0, 3, 0, 2}));
}

TEST_F(PhotolithographyObserverTest, ANameThatIsOnlyTypedReachesNothing)
{
    run(DialogAnswer()
            .type("ledBottomMask", path("dot.png"))
            .type("ledTopMask", path("wide.png"))
            .look([this](QWidget &) { record(); })
            .accept());
    ASSERT_GE(m_seen.size(), 2u);
    for (const Extents &seen : m_seen)
        EXPECT_EQ(seen, (Extents{0, 0, 0, 0}));
}

} // namespace
