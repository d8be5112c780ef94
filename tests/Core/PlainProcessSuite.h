#pragma once

#include "CommonProcessSuite.h"
#include "Fakes.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <utility>

namespace Fakes {

/// The processes that never reach the undo stack.
template <typename Process>
class PlainProcessSuite : public CommonProcessSuite<Process>
{
protected:
    using Base = CommonProcessSuite<Process>;
    using Base::Base;
    using Base::log;
    using Base::m_accepted;
    using Base::m_facts;
    using Base::m_other;
    using Base::m_volume;
    using Base::run;
    using Base::workspace;

    void finishedOneLeavesBothStacksAsTheyWere()
    {
        Log calls;
        Core::Operations::OperationHistory &history = workspace().history();
        history.push(boost::make_shared<ObjectOperation>("A", calls));
        history.push(boost::make_shared<ObjectOperation>("B", calls));
        history.undo();
        log().clear();
        run(m_volume);
        EXPECT_EQ(Base::countOf("undo changed"), 0);
        EXPECT_EQ(Base::countOf("redo changed"), 0);
        EXPECT_EQ(history.undoName(), "A");
        EXPECT_EQ(history.redoName(), "B");
        history.clear();
    }

    void finishedOneIsDestroyed()
    {
        boost::weak_ptr<Process> operation;
        Base::activateOn(m_volume, [&](Process &running) {
            operation = Base::current();
            m_accepted(running);
            // Held by the observer.
            EXPECT_FALSE(operation.expired());
            EXPECT_EQ(workspace().currentOperation(), nullptr);
        });
        EXPECT_TRUE(operation.expired());
        EXPECT_EQ(Base::countOf(m_facts.finished), 1);
    }

    /// Of a class whose observer stands in one slot.
    void replacedObserverIsReleased()
    {
        boost::shared_ptr<Util::IObserver> observer = logging(log(), "told");
        const boost::weak_ptr<Util::IObserver> watched = observer;
        Process::setObserver(std::move(observer));
        observer.reset();
        {
            const Process operation(&workspace());
        }
        EXPECT_FALSE(watched.expired());
        Process::setObserver(logging(log(), "later"));
        EXPECT_TRUE(watched.expired());
    }
};

} // namespace Fakes

/// The tests that other process operations share, on top of PROCESS_OPERATION_TESTS.
#define PLAIN_PROCESS_TESTS(Suite)                                                                 \
    TEST_F(Suite, FinishedOneLeavesBothStacksAsTheyWere)                                           \
    {                                                                                              \
        finishedOneLeavesBothStacksAsTheyWere();                                                   \
    }                                                                                              \
    TEST_F(Suite, FinishedOneIsDestroyed)                                                          \
    {                                                                                              \
        finishedOneIsDestroyed();                                                                  \
    }
