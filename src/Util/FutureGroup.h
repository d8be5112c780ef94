#pragma once

#include <QFuture>

#include <exception>
#include <vector>

namespace Util {

/// Runs on other threads that work on what the caller owns. It does not go before they are over,
/// also where an exception passes through the caller.
class FutureGroup final
{
public:
    FutureGroup() = default;
    /// Waits; what the runs throw is lost.
    ~FutureGroup();
    FutureGroup(const FutureGroup &) = delete;
    FutureGroup &operator=(const FutureGroup &) = delete;

    void add(const QFuture<void> &run) { m_runs.push_back(run); }
    /// Until all are over; then throws what the first of them, in the order in which they were
    /// added, has thrown.
    void wait();

private:
    std::exception_ptr waitForAll();

    std::vector<QFuture<void>> m_runs;
};

} // namespace Util
