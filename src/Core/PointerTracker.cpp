#include "Core/PointerTracker.h"

#include "Core/Operations/Operation.h"

#include <QMutexLocker>

namespace Core {

using Operations::Operation;

PointerTracker::PointerTracker() = default;

void PointerTracker::awaitClick(Operation *operation, Util::Vector3D &position,
                                std::int32_t &button)
{
    const QMutexLocker lock(&m_mutex);
    m_worldPress = operation;
    m_primary = &position;
    m_resultButton = &button;
}

void PointerTracker::awaitMove(Operation *operation, Util::Vector3D &secondary,
                               Util::Vector3D &position)
{
    const QMutexLocker lock(&m_mutex);
    m_worldMove = operation;
    m_secondary = &secondary;
    m_primary = &position;
}

void PointerTracker::awaitFreeMove(Operation *operation, Util::Vector3D &secondary,
                                   Util::Vector3D &position, std::int32_t &button)
{
    const QMutexLocker lock(&m_mutex);
    m_worldFreeMove = operation;
    m_secondary = &secondary;
    m_primary = &position;
    m_resultButton = &button;
}

void PointerTracker::awaitWindowClick(Operation *operation, std::int32_t &x, std::int32_t &y,
                                      std::int32_t &button)
{
    const QMutexLocker lock(&m_mutex);
    m_windowPress = operation;
    m_resultX = &x;
    m_resultY = &y;
    m_resultButton = &button;
}

void PointerTracker::awaitWindowMove(Operation *operation, std::int32_t &x, std::int32_t &y)
{
    const QMutexLocker lock(&m_mutex);
    m_windowMove = operation;
    m_resultX = &x;
    m_resultY = &y;
}

void PointerTracker::awaitWindowFreeMove(Operation *operation, std::int32_t &x, std::int32_t &y,
                                         std::int32_t &button)
{
    const QMutexLocker lock(&m_mutex);
    m_windowFreeMove = operation;
    m_resultX = &x;
    m_resultY = &y;
    m_resultButton = &button;
}

void PointerTracker::clearRequests()
{
    const QMutexLocker lock(&m_mutex);
    m_windowPress = nullptr;
    m_windowFreeMove = nullptr;
    m_windowMove = nullptr;
    m_worldPress = nullptr;
    m_worldFreeMove = nullptr;
    m_worldMove = nullptr;
}

void PointerTracker::press(std::int32_t button, std::int32_t x, std::int32_t y,
                           const Util::Vector3D &position)
{
    const QMutexLocker lock(&m_mutex);
    storePosition(x, y, position);
    if (m_windowPress) {
        *m_resultButton = button;
        writeWindowPosition();
        fire(m_windowPress);
    }
    if (m_worldPress) {
        *m_resultButton = button;
        *m_primary = m_position;
        fire(m_worldPress);
    }
}

// The free-move slots fire on every code but the free one. It reads reversed and is meant: the
// view sends code 3 alone, so that only the slots for any move hear from it.
void PointerTracker::move(std::int32_t button, std::int32_t x, std::int32_t y,
                          const Util::Vector3D &position)
{
    const QMutexLocker lock(&m_mutex);
    storePosition(x, y, position);
    if (button != NoButton) {
        if (m_windowFreeMove) {
            *m_resultButton = button;
            writeWindowPosition();
            fire(m_windowFreeMove);
        }
        if (m_worldFreeMove) {
            *m_resultButton = button;
            *m_primary = m_position;
            *m_secondary = m_previousPosition;
            fire(m_worldFreeMove);
        }
    }
    if (m_windowMove) {
        writeWindowPosition();
        fire(m_windowMove);
    }
    if (m_worldMove) {
        *m_primary = m_position;
        fire(m_worldMove);
    }
}

void PointerTracker::publishSelected(const ObjectList &selected)
{
    const QMutexLocker lock(&m_mutex);
    m_selected = selected;
}

PointerTracker::ObjectList PointerTracker::selectedObjects() const
{
    const QMutexLocker lock(&m_mutex);
    return m_selected;
}

void PointerTracker::storePosition(std::int32_t x, std::int32_t y, const Util::Vector3D &position)
{
    m_previousX = m_x;
    m_previousY = m_y;
    m_previousPosition = m_position;
    m_x = x;
    m_y = y;
    m_position = position;
}

void PointerTracker::writeWindowPosition()
{
    *m_resultX = m_x;
    *m_resultY = m_y;
}

void PointerTracker::fire(Operation *&slot)
{
    Operation *waiter = slot;
    slot = nullptr;
    waiter->next();
}

} // namespace Core
