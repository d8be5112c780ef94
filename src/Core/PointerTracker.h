#pragma once

#include "Util/Vector3D.h"

#include <QMutex>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>

namespace Model {
class Object;
}

namespace Core::Operations {
class Operation;
}

namespace Core {

/// Where the pointer is, which operations wait for it, and the selection as last published.
///
/// A waiter slot is one-shot: it is emptied before the waiter's next(), which may arm it again
/// within that call; the mutex is re-entrant for that. Slots and result pointers are not owned: an
/// operation calls clearRequests() before it leaves.
class PointerTracker final
{
public:
    using ObjectList = std::list<boost::shared_ptr<Model::Object>>;

    /// Button codes. NoButton is what a waiter stores before it arms itself, and what a free move
    /// carries.
    enum Button : std::int32_t
    {
        LeftPress = 0,
        RightPress = 1,
        NoButton = 3
    };

    PointerTracker();

    /// The next press, with its world position.
    void awaitClick(Operations::Operation *operation, Util::Vector3D &position,
                    std::int32_t &button);
    /// All waits write through one set of result pointers, so that arming a second one redirects
    /// what an earlier one gets. The next move of any kind, with its world position; `secondary` is
    /// left alone.
    void awaitMove(Operations::Operation *operation, Util::Vector3D &secondary,
                   Util::Vector3D &position);
    /// The next move that carries a button code, with the world positions of this event
    /// (`position`) and of the one before (`secondary`).
    void awaitFreeMove(Operations::Operation *operation, Util::Vector3D &secondary,
                       Util::Vector3D &position, std::int32_t &button);
    /// The same three in window coordinates: pixels, y downward.
    void awaitWindowClick(Operations::Operation *operation, std::int32_t &x, std::int32_t &y,
                          std::int32_t &button);
    void awaitWindowMove(Operations::Operation *operation, std::int32_t &x, std::int32_t &y);
    void awaitWindowFreeMove(Operations::Operation *operation, std::int32_t &x, std::int32_t &y,
                             std::int32_t &button);
    void clearRequests();

    /// A press in the view, from the 3D view.
    void press(std::int32_t button, std::int32_t x, std::int32_t y, const Util::Vector3D &position);
    /// A move in the view; code 3 is a move with no button down.
    void move(std::int32_t button, std::int32_t x, std::int32_t y, const Util::Vector3D &position);

    void publishSelected(const ObjectList &selected);
    ObjectList selectedObjects() const;

private:
    void storePosition(std::int32_t x, std::int32_t y, const Util::Vector3D &position);
    void writeWindowPosition();
    static void fire(Operations::Operation *&slot);

    mutable QRecursiveMutex m_mutex;
    Operations::Operation *m_windowPress = nullptr;
    Operations::Operation *m_windowFreeMove = nullptr;
    Operations::Operation *m_windowMove = nullptr;
    Operations::Operation *m_worldPress = nullptr;
    Operations::Operation *m_worldFreeMove = nullptr;
    Operations::Operation *m_worldMove = nullptr;
    std::int32_t *m_resultX = nullptr;
    std::int32_t *m_resultY = nullptr;
    std::int32_t *m_resultButton = nullptr;
    Util::Vector3D *m_primary = nullptr;
    Util::Vector3D *m_secondary = nullptr;
    ObjectList m_selected;
    std::int32_t m_x = 0;
    std::int32_t m_y = 0;
    std::int32_t m_previousX = 0;
    std::int32_t m_previousY = 0;
    Util::Vector3D m_position;
    Util::Vector3D m_previousPosition;
};

} // namespace Core
