#include "Core/Operations/SteppedProcessOperation.h"

#include <utility>

namespace Core::Operations {

SteppedProcessOperation::SteppedProcessOperation(std::string name, std::uint32_t id,
                                                 std::string tag, std::uint32_t instanceId,
                                                 Workspace *workspace)
    : ObjectOperation(std::move(name), id),
      m_sequence(workspace, this),
      m_states(std::move(tag), instanceId, workspace)
{}

SteppedProcessOperation::~SteppedProcessOperation() = default;

void SteppedProcessOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void SteppedProcessOperation::next()
{
    if (m_step != 0 || !m_sequence.selectVolume())
        return;
    m_step = 1;
    if (m_observer) {
        m_step = 2;
        m_observer->update();
    }
}

void SteppedProcessOperation::cancel()
{
    m_sequence.cancel();
}

std::int32_t SteppedProcessOperation::undo()
{
    m_states.loadUndoState(*volume());
    return 1;
}

void SteppedProcessOperation::redo()
{
    m_states.loadRedoState(*volume());
}

} // namespace Core::Operations
