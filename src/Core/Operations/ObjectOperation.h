#pragma once

#include "Core/Operations/Operation.h"

#include <cstdint>

namespace Core::Operations {

/// An operation that can be taken back: being one is what puts it on the undo stack when it
/// finishes. It keeps its fields there, and undo() and redo() work on them without any dialog,
/// console or pointer.
class ObjectOperation : public Operation
{
public:
    ~ObjectOperation() override;

    /// 1 when the state was restored; 0 keeps the operation on the undo stack; any other value
    /// drops it from both stacks.
    virtual std::int32_t undo() = 0;
    virtual void redo() = 0;

protected:
    using Operation::Operation;
};

} // namespace Core::Operations
