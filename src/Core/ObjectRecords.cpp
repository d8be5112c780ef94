#include "Core/ObjectRecords.h"

#include <QMutexLocker>

namespace Core {

std::uint32_t ObjectRecords::lastOperation(std::uint32_t objectId) const
{
    const QMutexLocker lock(&m_mutex);
    const auto record = m_lastOperations.find(objectId);
    return record == m_lastOperations.end() ? 0 : record->second;
}

void ObjectRecords::setLastOperation(std::uint32_t objectId, std::uint32_t operationId)
{
    const QMutexLocker lock(&m_mutex);
    m_lastOperations[objectId] = operationId;
}

bool ObjectRecords::isLatticeStale(std::uint32_t objectId) const
{
    const QMutexLocker lock(&m_mutex);
    const auto record = m_staleLattices.find(objectId);
    return record == m_staleLattices.end() || record->second;
}

void ObjectRecords::setLatticeStale(std::uint32_t objectId, bool stale)
{
    const QMutexLocker lock(&m_mutex);
    m_staleLattices[objectId] = stale;
}

void ObjectRecords::clear()
{
    const QMutexLocker lock(&m_mutex);
    m_lastOperations.clear();
    m_staleLattices.clear();
}

} // namespace Core
