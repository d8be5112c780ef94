#pragma once

#include "Util/IObserver.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>

namespace Core::Operations {

/// The unit of work: a small state machine that waits for events and never runs a loop of its own.
/// Each concrete class holds a pointer to its workspace, its targets and its step counter. All
/// calls come from the GUI thread.
class Operation
{
public:
    virtual ~Operation();
    Operation(const Operation &) = delete;
    Operation &operator=(const Operation &) = delete;

    /// Goes on with the step that an event has made ready.
    virtual void next() = 0;
    virtual void cancel() = 0;
    /// Does the work, if the steps before it are done.
    virtual void end() = 0;

    /// What Undo and Redo show, and the prefix of console messages.
    std::string name() const { return m_name; }
    /// What the operation writes into the object records.
    std::uint32_t id() const { return m_id; }

protected:
    Operation(std::string name, std::uint32_t id);

private:
    std::string m_name;
    std::uint32_t m_id;
    /// Kept empty: each operation class has observer fields of its own.
    std::list<std::unique_ptr<Util::IObserver>> m_observers;
};

} // namespace Core::Operations
