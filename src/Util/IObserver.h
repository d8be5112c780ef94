#pragma once

namespace Util {

/// The one notification interface of the program: a member of an observer list, or the options
/// observer of one operation.
class IObserver
{
public:
    virtual ~IObserver() = default;
    virtual void update() = 0;

protected:
    IObserver() = default;
    IObserver(const IObserver &) = default;
    IObserver &operator=(const IObserver &) = default;
};

} // namespace Util
