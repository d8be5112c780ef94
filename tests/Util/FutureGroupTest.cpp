#include "Util/FutureGroup.h"

#include <QException>
#include <QSemaphore>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <utility>

namespace {

using Util::FutureGroup;

class Failure final : public QException
{
public:
    explicit Failure(std::string name) : m_name(std::move(name)) {}
    void raise() const override { throw *this; }
    Failure *clone() const override { return new Failure(*this); }
    const std::string &name() const { return m_name; }

private:
    std::string m_name;
};

class FutureGroupTest : public testing::Test
{
protected:
    FutureGroupTest() { QThreadPool::globalInstance()->setMaxThreadCount(3); }

    /// Ends when it is let, which is when another run has thrown.
    void addLateRun(FutureGroup &group)
    {
        group.add(QtConcurrent::run([this] {
            m_letGo.acquire();
            m_isOver = true;
        }));
    }
    void addFailingRun(FutureGroup &group, const std::string &name)
    {
        group.add(QtConcurrent::run([this, name] {
            m_letGo.release();
            throw Failure(name);
        }));
    }

    QSemaphore m_letGo;
    std::atomic<bool> m_isOver{false};
};

TEST_F(FutureGroupTest, WaitEndsWhenAllRunsAreOver)
{
    std::atomic<int> runs{0};
    FutureGroup group;
    for (int i = 0; i < 20; ++i)
        group.add(QtConcurrent::run([&runs] { ++runs; }));
    group.wait();
    EXPECT_EQ(runs, 20);
    group.wait();
}

TEST_F(FutureGroupTest, WhatOneThrowsIsThrownWhenTheOthersAreOverToo)
{
    FutureGroup group;
    addFailingRun(group, "first");
    addLateRun(group);
    EXPECT_THROW(group.wait(), Failure);
    EXPECT_TRUE(m_isOver);
}

TEST_F(FutureGroupTest, OfSeveralFailuresTheFirstInOrderIsThrown)
{
    FutureGroup group;
    addFailingRun(group, "first");
    addFailingRun(group, "second");
    try {
        group.wait();
        FAIL() << "nothing was thrown";
    } catch (const Failure &failure) {
        EXPECT_EQ(failure.name(), "first");
    }
}

TEST_F(FutureGroupTest, GroupThatIsLeftWaitsForItsRuns)
{
    try {
        FutureGroup group;
        addLateRun(group);
        addFailingRun(group, "lost");
        throw std::string("of the caller");
    } catch (const std::string &thrown) {
        EXPECT_EQ(thrown, "of the caller");
    }
    EXPECT_TRUE(m_isOver);
}

} // namespace
