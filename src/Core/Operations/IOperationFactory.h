#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

class Operation;

/// Turns the number that a menu action carries into a live operation with its observer.
class IOperationFactory
{
public:
    virtual ~IOperationFactory() = default;
    /// Empty for an unknown id.
    virtual boost::shared_ptr<Operation> create(std::uint32_t operationId) = 0;
};

} // namespace Core::Operations
