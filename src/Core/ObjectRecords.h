#pragma once

#include <QMutex>

#include <cstdint>
#include <map>

namespace Core {

/// Per object id: the last operation that ran on the object, and whether its silicon lattice is
/// stale. Process operations write both when they end; wet etching rebuilds a stale lattice and
/// clears the flag. May be used from any thread: a batch worker writes it while the window lives on.
class ObjectRecords final
{
public:
    /// 0 where nothing is recorded.
    std::uint32_t lastOperation(std::uint32_t objectId) const;
    void setLastOperation(std::uint32_t objectId, std::uint32_t operationId);

    /// An object without a record has a stale lattice.
    bool isLatticeStale(std::uint32_t objectId) const;
    void setLatticeStale(std::uint32_t objectId, bool stale);

    void clear();

private:
    mutable QMutex m_mutex;
    std::map<std::uint32_t, std::uint32_t> m_lastOperations;
    std::map<std::uint32_t, bool> m_staleLattices;
};

} // namespace Core
