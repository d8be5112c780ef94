#include "Core/Operations/CellularProcess/StripRun.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QThread>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <set>
#include <tuple>
#include <vector>

namespace {

using Core::Operations::StripRun;
using Support::PoolThreads;

struct Call
{
    std::int32_t start;
    std::int32_t end;
    std::uint32_t strip;
    QThread *thread;
};

std::vector<Call> callsOf(const StripRun &strips)
{
    std::mutex mutex;
    std::vector<Call> calls;
    strips.runPhase([&](std::int32_t start, std::int32_t end, std::uint32_t strip) {
        const std::lock_guard<std::mutex> lock(mutex);
        calls.push_back({start, end, strip, QThread::currentThread()});
    });
    std::sort(calls.begin(), calls.end(),
              [](const Call &a, const Call &b) { return a.strip < b.strip; });
    return calls;
}

TEST(StripRunTest, TheLastStripTakesTheRemainder)
{
    const PoolThreads threads(3);
    const std::vector<Call> calls = callsOf(StripRun(11));
    ASSERT_EQ(calls.size(), 3u);
    const std::vector<std::pair<int, int>> ranges = {{0, 3}, {3, 6}, {6, 11}};
    for (std::uint32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(calls[i].strip, i);
        EXPECT_EQ(calls[i].start, ranges[i].first);
        EXPECT_EQ(calls[i].end, ranges[i].second);
    }
}

TEST(StripRunTest, FewerThanTwoLayersAThreadAreOneStripOnTheCallingThread)
{
    const PoolThreads threads(4);
    for (const std::uint32_t sizeX : {1u, 2u, 7u}) {
        const StripRun strips(sizeX);
        EXPECT_TRUE(strips.isSingle());
        const std::vector<Call> calls = callsOf(strips);
        ASSERT_EQ(calls.size(), 1u);
        EXPECT_EQ(calls[0].start, 0);
        EXPECT_EQ(calls[0].end, static_cast<std::int32_t>(sizeX));
        EXPECT_EQ(calls[0].strip, 0u);
        EXPECT_EQ(calls[0].thread, QThread::currentThread());
    }
    EXPECT_FALSE(StripRun(8).isSingle());
}

TEST(StripRunTest, OneThreadAndTwoLayersAreOneStripThatIsNotTheSingleOne)
{
    const PoolThreads threads(1);
    EXPECT_TRUE(StripRun(1).isSingle());
    const StripRun strips(2);
    EXPECT_FALSE(strips.isSingle());
    EXPECT_EQ(strips.strips(), 1u);
    EXPECT_EQ(callsOf(strips).size(), 1u);
}

TEST(StripRunTest, AVolumeWithoutCellsHasNoLayersWhateverItsSizes)
{
    for (const Support::Grid &grid :
         {Support::Grid{4000000000, 0, 9}, Support::Grid{7, 3, 0}, Support::Grid{0, 3, 3}})
        EXPECT_EQ(StripRun::layersOf(*Support::makeVolume(grid, std::vector<std::uint32_t>())), 0u);
    EXPECT_EQ(StripRun::layersOf(*Support::makeVolume({7, 3, 2}, std::vector<std::uint32_t>(42))),
              7u);
}

TEST(StripRunTest, TheNarrowestStripIsUpToTheProcess)
{
    const PoolThreads threads(4);
    EXPECT_FALSE(StripRun(11).isSingle());
    EXPECT_TRUE(StripRun(11, 3).isSingle());
    EXPECT_FALSE(StripRun(12, 3).isSingle());
    EXPECT_FALSE(StripRun(4, 1).isSingle());
    EXPECT_EQ(StripRun(11, 3).stripWidth(), 2u);
}

TEST(StripRunTest, APhaseEndsWhenAllItsStripsHaveEnded)
{
    const PoolThreads threads(2);
    const StripRun strips(4);
    std::atomic<int> running{0};
    for (int phase = 0; phase < 50; ++phase) {
        strips.runPhase([&](std::int32_t, std::int32_t, std::uint32_t) {
            ++running;
            QThread::yieldCurrentThread();
            --running;
        });
        ASSERT_EQ(running, 0);
    }
}

} // namespace
