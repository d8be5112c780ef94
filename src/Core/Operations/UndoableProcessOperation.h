#pragma once

#include "Core/Operations/ObjectOperation.h"
#include "Core/Operations/ProcessSequence.h"
#include "Core/Operations/TotalVolumeUndoRedoHelper.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core::Operations {

/// A process on a cell volume that reaches the undo stack. Undo and redo load the states that the
/// helper finds. A class adds its values, next() and end().
class UndoableProcessOperation : public ObjectOperation
{
public:
    ~UndoableProcessOperation() override;

    void setObserver(boost::shared_ptr<Util::IObserver> observer);

    void cancel() override;
    /// 1: the state counts as restored, whether or not a record was found.
    std::int32_t undo() override;
    void redo() override;

protected:
    /// `instanceId` numbers the operations of one class from 0.
    UndoableProcessOperation(std::string name, std::uint32_t id, std::string tag,
                             std::uint32_t instanceId, Workspace *workspace,
                             const ProcessMessages &messages = {});

    Model::Automaton::TotalVolume *volume() const { return m_sequence.volume().get(); }
    const boost::shared_ptr<Util::IObserver> &observer() const { return m_observer; }
    ProcessSequence &sequence() { return m_sequence; }
    TotalVolumeUndoRedoHelper &states() { return m_states; }

private:
    ProcessSequence m_sequence;
    boost::shared_ptr<Util::IObserver> m_observer;
    TotalVolumeUndoRedoHelper m_states;
};

} // namespace Core::Operations
