#pragma once

#include "Core/Operations/UndoableProcessOperation.h"

#include <cstdint>
#include <string>

namespace Core::Operations {

/// A process on a cell volume that counts its steps: 0 waits for the volume, 1 has it, 2 asks the
/// options observer, and each value that the observer hands over is one step more. A class adds its
/// values and end().
class SteppedProcessOperation : public UndoableProcessOperation
{
public:
    ~SteppedProcessOperation() override;

    void next() override;

protected:
    using UndoableProcessOperation::UndoableProcessOperation;

    std::uint32_t step() const { return m_step; }
    /// A setter has stored its value.
    void valueGiven() { ++m_step; }

private:
    std::uint32_t m_step = 0;
};

} // namespace Core::Operations
