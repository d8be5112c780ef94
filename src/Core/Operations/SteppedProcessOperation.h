#pragma once

#include "Core/Operations/ObjectOperation.h"
#include "Core/Operations/ProcessSequence.h"
#include "Core/Operations/TotalVolumeUndoRedoHelper.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core::Operations {

/// A process on a cell volume that counts its steps: 0 waits for the volume, 1 has it, 2 asks the
/// options observer, and each value that the observer hands over is one step more. Undo and redo
/// load the states that the helper finds. A class adds its values and end().
class SteppedProcessOperation : public ObjectOperation
{
public:
    ~SteppedProcessOperation() override;

    void setObserver(boost::shared_ptr<Util::IObserver> observer);

    void next() override;
    void cancel() override;
    /// 1: the state counts as restored, whether or not a record was found.
    std::int32_t undo() override;
    void redo() override;

protected:
    /// `instanceId` numbers the operations of one class from 0.
    SteppedProcessOperation(std::string name, std::uint32_t id, std::string tag,
                            std::uint32_t instanceId, Workspace *workspace);

    std::uint32_t step() const { return m_step; }
    /// A setter has stored its value.
    void valueGiven() { ++m_step; }
    Model::Automaton::TotalVolume *volume() const { return m_sequence.volume().get(); }
    ProcessSequence &sequence() { return m_sequence; }
    TotalVolumeUndoRedoHelper &states() { return m_states; }

private:
    std::uint32_t m_step = 0;
    ProcessSequence m_sequence;
    boost::shared_ptr<Util::IObserver> m_observer;
    TotalVolumeUndoRedoHelper m_states;
};

} // namespace Core::Operations
