#pragma once

#include "Util/IObserver.h"

#include <boost/shared_ptr.hpp>

#include <list>

namespace Util {

using ObserverList = std::list<boost::shared_ptr<IObserver>>;

/// Calls update() on each member, front to back, in the caller's thread. An exception of a member
/// goes through to the caller.
inline void notify(const ObserverList &observers)
{
    for (const boost::shared_ptr<IObserver> &observer : observers)
        observer->update();
}

} // namespace Util
