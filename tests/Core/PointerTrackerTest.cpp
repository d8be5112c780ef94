#include "Core/PointerTracker.h"

#include "Fakes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

using Core::PointerTracker;
using Fakes::Log;
using Fakes::Operation;
using Util::Vector3D;

namespace {

constexpr std::int32_t untouched = -777;

/// Where a waiter lets the tracker write.
struct Results
{
    std::int32_t x = untouched;
    std::int32_t y = untouched;
    std::int32_t button = untouched;
    Vector3D position{untouched};
    Vector3D secondary{untouched};
};

std::string text(const Vector3D &vector)
{
    return std::to_string(static_cast<int>(vector[0])) + " " +
           std::to_string(static_cast<int>(vector[1])) + " " +
           std::to_string(static_cast<int>(vector[2]));
}

const char *const noVector = "-777 -777 -777";

class PointerTrackerTest : public ::testing::Test
{
protected:
    /// Arms all six slots, each with an operation of its own, and with one set of results.
    void armAll()
    {
        m_tracker.awaitWindowClick(&m_windowPress, m_results.x, m_results.y, m_results.button);
        m_tracker.awaitWindowFreeMove(&m_windowFreeMove, m_results.x, m_results.y,
                                      m_results.button);
        m_tracker.awaitWindowMove(&m_windowMove, m_results.x, m_results.y);
        m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
        m_tracker.awaitFreeMove(&m_worldFreeMove, m_results.secondary, m_results.position,
                                m_results.button);
        m_tracker.awaitMove(&m_worldMove, m_results.secondary, m_results.position);
    }

    /// Fires whatever is armed.
    void pressAndMove()
    {
        m_tracker.press(PointerTracker::LeftPress, 90, 91, Vector3D(92, 93, 94));
        m_tracker.move(PointerTracker::LeftPress, 95, 96, Vector3D(97, 98, 99));
    }

    Log m_log;
    PointerTracker m_tracker;
    Results m_results;
    Operation m_windowPress{"window press", m_log};
    Operation m_windowFreeMove{"window free move", m_log};
    Operation m_windowMove{"window move", m_log};
    Operation m_worldPress{"world press", m_log};
    Operation m_worldFreeMove{"world free move", m_log};
    Operation m_worldMove{"world move", m_log};
};

} // namespace

TEST_F(PointerTrackerTest, EventsWithNobodyWaitingChangeNothing)
{
    pressAndMove();
    m_tracker.move(PointerTracker::NoButton, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, Log{});
    EXPECT_TRUE(m_tracker.selectedObjects().empty());
}

TEST_F(PointerTrackerTest, PressReachesAWaiterWithWorldPosition)
{
    for (const std::int32_t button : {0, 1}) {
        m_log.clear();
        m_results = {};
        m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
        EXPECT_EQ(m_results.button, untouched);
        m_worldPress.script().next = [this, button] {
            EXPECT_EQ(m_results.button, button);
            EXPECT_EQ(text(m_results.position), "3 4 5");
        };
        m_tracker.press(button, 1, 2, Vector3D(3, 4, 5));
        EXPECT_EQ(m_log, (Log{"next world press"}));
        EXPECT_EQ(m_results.button, button);
    }
}

TEST_F(PointerTrackerTest, PressReachesAWaiterWithWindowPosition)
{
    for (const std::int32_t button : {0, 1}) {
        m_log.clear();
        m_results = {};
        m_tracker.awaitWindowClick(&m_windowPress, m_results.x, m_results.y, m_results.button);
        m_windowPress.script().next = [this, button] {
            EXPECT_EQ(m_results.button, button);
            EXPECT_EQ(m_results.x, -1);
            EXPECT_EQ(m_results.y, 2000);
        };
        m_tracker.press(button, -1, 2000, Vector3D(3, 4, 5));
        EXPECT_EQ(m_log, (Log{"next window press"}));
        EXPECT_EQ(m_results.button, button);
        EXPECT_EQ(text(m_results.position), noVector);
    }
}

TEST_F(PointerTrackerTest, PressFiresTheWindowSlotThenTheWorldSlotAndNoMove)
{
    armAll();
    m_windowPress.script().next = [this] {
        EXPECT_EQ(m_results.button, 1);
        EXPECT_EQ(m_results.x, 10);
        EXPECT_EQ(m_results.y, 20);
        EXPECT_EQ(text(m_results.position), noVector);
    };
    m_worldPress.script().next = [this] {
        EXPECT_EQ(m_results.button, 1);
        EXPECT_EQ(text(m_results.position), "30 40 50");
    };
    m_tracker.press(PointerTracker::RightPress, 10, 20, Vector3D(30, 40, 50));
    EXPECT_EQ(m_log, (Log{"next window press", "next world press"}));
    EXPECT_EQ(text(m_results.secondary), noVector);
}

TEST_F(PointerTrackerTest, MoveOfCodeThreeFiresTheAnyMoveSlotsAlone)
{
    armAll();
    m_windowMove.script().next = [this] {
        EXPECT_EQ(m_results.x, 10);
        EXPECT_EQ(m_results.y, 20);
        EXPECT_EQ(text(m_results.position), noVector);
    };
    m_worldMove.script().next = [this] { EXPECT_EQ(text(m_results.position), "30 40 50"); };
    m_tracker.move(PointerTracker::NoButton, 10, 20, Vector3D(30, 40, 50));
    EXPECT_EQ(m_log, (Log{"next window move", "next world move"}));
    EXPECT_EQ(m_results.button, untouched);
    EXPECT_EQ(text(m_results.secondary), noVector);
}

TEST_F(PointerTrackerTest, MoveOfAnyOtherCodeFiresTheFreeMoveSlotsFirst)
{
    for (const std::int32_t code : {0, 1, 2, 4, -1}) {
        SCOPED_TRACE(code);
        m_tracker.press(PointerTracker::LeftPress, 0, 0, Vector3D(6, 7, 8));
        m_log.clear();
        m_results = {};
        armAll();
        m_windowFreeMove.script().next = [this, code] {
            EXPECT_EQ(m_results.button, code);
            EXPECT_EQ(m_results.x, 10);
            EXPECT_EQ(m_results.y, 20);
            EXPECT_EQ(text(m_results.position), noVector);
            EXPECT_EQ(text(m_results.secondary), noVector);
            m_results.x = m_results.y = m_results.button = untouched;
        };
        m_worldFreeMove.script().next = [this, code] {
            EXPECT_EQ(m_results.button, code);
            EXPECT_EQ(text(m_results.position), "30 40 50");
            EXPECT_EQ(text(m_results.secondary), "6 7 8");
            EXPECT_EQ(m_results.x, untouched);
            m_results.position = m_results.secondary = Vector3D(untouched);
            m_results.button = untouched;
        };
        m_windowMove.script().next = [this] {
            EXPECT_EQ(m_results.x, 10);
            EXPECT_EQ(m_results.y, 20);
            EXPECT_EQ(m_results.button, untouched);
            EXPECT_EQ(text(m_results.position), noVector);
        };
        m_worldMove.script().next = [this] {
            EXPECT_EQ(text(m_results.position), "30 40 50");
            EXPECT_EQ(text(m_results.secondary), noVector);
            EXPECT_EQ(m_results.button, untouched);
        };
        m_tracker.move(code, 10, 20, Vector3D(30, 40, 50));
        EXPECT_EQ(m_log, (Log{"next window free move", "next world free move", "next window move",
                              "next world move"}));
    }
}

TEST_F(PointerTrackerTest, EachSlotIsOneShot)
{
    armAll();
    pressAndMove();
    EXPECT_EQ(m_log, (Log{"next window press", "next world press", "next window free move",
                          "next world free move", "next window move", "next world move"}));
    m_log.clear();
    m_results = {};
    pressAndMove();
    EXPECT_EQ(m_log, Log{});
    EXPECT_EQ(m_results.x, untouched);
    EXPECT_EQ(m_results.button, untouched);
    EXPECT_EQ(text(m_results.position), noVector);
    EXPECT_EQ(text(m_results.secondary), noVector);
}

TEST_F(PointerTrackerTest, SlotThatWasNotFiredGoesOnWaiting)
{
    armAll();
    m_tracker.move(PointerTracker::NoButton, 1, 2, Vector3D(3, 4, 5));
    m_log.clear();
    pressAndMove();
    EXPECT_EQ(m_log, (Log{"next window press", "next world press", "next window free move",
                          "next world free move"}));
}

TEST_F(PointerTrackerTest, PreviousPositionIsThatOfTheLastEventWhateverItWas)
{
    const auto secondaryOfMove = [this] {
        m_tracker.awaitFreeMove(&m_worldFreeMove, m_results.secondary, m_results.position,
                                m_results.button);
        m_tracker.move(PointerTracker::LeftPress, 0, 0, Vector3D(1, 2, 3));
        return text(m_results.secondary);
    };
    EXPECT_EQ(secondaryOfMove(), "0 0 0");
    EXPECT_EQ(secondaryOfMove(), "1 2 3");
    m_tracker.press(PointerTracker::LeftPress, 0, 0, Vector3D(4, 5, 6));
    EXPECT_EQ(secondaryOfMove(), "4 5 6");
    m_tracker.press(PointerTracker::LeftPress, 0, 0, Vector3D(4, 5, 6));
    m_tracker.move(PointerTracker::NoButton, 0, 0, Vector3D(7, 8, 9));
    EXPECT_EQ(secondaryOfMove(), "7 8 9");
}

TEST_F(PointerTrackerTest, LaterWaiterTakesTheSlotWithoutAWord)
{
    Results later;
    m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
    m_tracker.awaitClick(&m_worldMove, later.position, later.button);
    m_tracker.press(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, (Log{"next world move"}));
    EXPECT_EQ(later.button, 0);
    EXPECT_EQ(text(later.position), "3 4 5");
    EXPECT_EQ(m_results.button, untouched);
}

TEST_F(PointerTrackerTest, ClearRequestsEmptiesAllSixSlots)
{
    armAll();
    m_tracker.clearRequests();
    pressAndMove();
    m_tracker.move(PointerTracker::NoButton, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, Log{});
    EXPECT_EQ(m_results.button, untouched);
    EXPECT_EQ(text(m_results.position), noVector);
}

TEST_F(PointerTrackerTest, ClearRequestsKeepsThePositionAndTheSelection)
{
    m_tracker.publishSelected({boost::make_shared<Fakes::Object>()});
    m_tracker.press(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    m_tracker.clearRequests();
    EXPECT_EQ(m_tracker.selectedObjects().size(), 1U);
    m_tracker.awaitFreeMove(&m_worldFreeMove, m_results.secondary, m_results.position,
                            m_results.button);
    m_tracker.move(PointerTracker::LeftPress, 1, 2, Vector3D(6, 7, 8));
    EXPECT_EQ(text(m_results.secondary), "3 4 5");
}

TEST_F(PointerTrackerTest, OperationArmsAgainWithinItsCallFromTheSameThread)
{
    // As a drag does: move and press, until the left button comes.
    int calls = 0;
    const auto arm = [this] {
        m_results.button = PointerTracker::NoButton;
        m_tracker.awaitMove(&m_worldMove, m_results.secondary, m_results.position);
        m_tracker.awaitClick(&m_worldMove, m_results.position, m_results.button);
    };
    std::string path;
    m_worldMove.script().next = [this, arm, &calls, &path] {
        ++calls;
        path += text(m_results.position) + ";";
        if (m_results.button != PointerTracker::LeftPress)
            arm();
        else
            m_tracker.clearRequests();
    };
    arm();
    m_tracker.move(PointerTracker::NoButton, 0, 0, Vector3D(1, 0, 0));
    EXPECT_EQ(calls, 1);
    m_tracker.press(PointerTracker::RightPress, 0, 0, Vector3D(2, 0, 0));
    EXPECT_EQ(calls, 2);
    m_tracker.move(PointerTracker::LeftPress, 0, 0, Vector3D(3, 0, 0));
    EXPECT_EQ(calls, 3);
    m_tracker.press(PointerTracker::LeftPress, 0, 0, Vector3D(4, 0, 0));
    EXPECT_EQ(calls, 4);
    pressAndMove();
    EXPECT_EQ(calls, 4);
    EXPECT_EQ(path, "1 0 0;2 0 0;3 0 0;4 0 0;");
}

TEST_F(PointerTrackerTest, EachSlotMayBeArmedAgainWithinItsCall)
{
    m_windowPress.script().next = [this] {
        m_tracker.awaitWindowClick(&m_windowPress, m_results.x, m_results.y, m_results.button);
    };
    m_windowFreeMove.script().next = [this] {
        m_tracker.awaitWindowFreeMove(&m_windowFreeMove, m_results.x, m_results.y,
                                      m_results.button);
    };
    m_windowMove.script().next = [this] {
        m_tracker.awaitWindowMove(&m_windowMove, m_results.x, m_results.y);
    };
    m_worldPress.script().next = [this] {
        m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
    };
    m_worldFreeMove.script().next = [this] {
        m_tracker.awaitFreeMove(&m_worldFreeMove, m_results.secondary, m_results.position,
                                m_results.button);
    };
    m_worldMove.script().next = [this] {
        m_tracker.awaitMove(&m_worldMove, m_results.secondary, m_results.position);
    };
    armAll();
    const Log round = {"next window press",    "next world press", "next window free move",
                       "next world free move", "next window move", "next world move"};
    for (int i = 0; i < 3; ++i) {
        m_log.clear();
        pressAndMove();
        EXPECT_EQ(m_log, round);
    }
}

TEST_F(PointerTrackerTest, WorldPressArmedByTheWindowPressGetsTheSamePress)
{
    m_windowPress.script().next = [this] {
        m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
    };
    m_tracker.awaitWindowClick(&m_windowPress, m_results.x, m_results.y, m_results.button);
    m_tracker.press(PointerTracker::RightPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, (Log{"next window press", "next world press"}));
    EXPECT_EQ(text(m_results.position), "3 4 5");
}

TEST_F(PointerTrackerTest, RequestsClearedWithinACallAreNotServed)
{
    armAll();
    m_windowPress.script().next = [this] { m_tracker.clearRequests(); };
    m_tracker.press(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, (Log{"next window press"}));
    armAll();
    m_log.clear();
    m_windowFreeMove.script().next = [this] { m_tracker.clearRequests(); };
    m_tracker.move(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, (Log{"next window free move"}));
}

TEST_F(PointerTrackerTest, WaiterReadsAndPublishesTheSelectionWithinItsCall)
{
    m_tracker.publishSelected({boost::make_shared<Fakes::Object>()});
    m_worldPress.script().next = [this] {
        EXPECT_EQ(m_tracker.selectedObjects().size(), 1U);
        m_tracker.publishSelected({});
        EXPECT_TRUE(m_tracker.selectedObjects().empty());
    };
    m_tracker.awaitClick(&m_worldPress, m_results.position, m_results.button);
    m_tracker.press(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(m_log, (Log{"next world press"}));
    EXPECT_TRUE(m_tracker.selectedObjects().empty());
}

TEST_F(PointerTrackerTest, WaiterMayBeDestroyedWithinItsCall)
{
    // The results lie beside the operation, and go with it.
    struct Waiter
    {
        explicit Waiter(Log &log) : operation("C", log) {}
        Operation operation;
        Results results;
    };
    auto leaving = std::make_unique<Waiter>(m_log);
    leaving->operation.script().next = [this, &leaving] {
        m_tracker.clearRequests();
        leaving.reset();
    };
    Results &results = leaving->results;
    m_tracker.awaitMove(&leaving->operation, results.secondary, results.position);
    m_tracker.awaitClick(&leaving->operation, results.position, results.button);
    m_tracker.press(PointerTracker::LeftPress, 1, 2, Vector3D(3, 4, 5));
    EXPECT_EQ(leaving, nullptr);
    pressAndMove();
    EXPECT_EQ(m_log, (Log{"next C", "destroy C"}));
}

TEST_F(PointerTrackerTest, SelectedObjectsIsACopyOfTheListLastPublishedInItsOrder)
{
    const auto first = boost::make_shared<Fakes::Object>();
    const auto second = boost::make_shared<Fakes::Object>();
    m_tracker.publishSelected({second, first});
    PointerTracker::ObjectList copy = m_tracker.selectedObjects();
    EXPECT_EQ(copy, (PointerTracker::ObjectList{second, first}));
    copy.clear();
    EXPECT_EQ(m_tracker.selectedObjects().size(), 2U);
    m_tracker.publishSelected({first});
    EXPECT_EQ(m_tracker.selectedObjects(), (PointerTracker::ObjectList{first}));
    m_tracker.publishSelected({});
    EXPECT_TRUE(m_tracker.selectedObjects().empty());
}

TEST_F(PointerTrackerTest, ReadersOnOtherThreadsSeeWholeLists)
{
    const PointerTracker::ObjectList list(20, boost::make_shared<Fakes::Object>());
    std::thread publisher([this, &list] {
        for (int i = 0; i < 2000; ++i)
            m_tracker.publishSelected(i % 2 == 0 ? list : PointerTracker::ObjectList());
    });
    int torn = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::size_t size = m_tracker.selectedObjects().size();
        torn += size != 0 && size != list.size() ? 1 : 0;
    }
    publisher.join();
    EXPECT_EQ(torn, 0);
}
