#include "Core/Operations/UndoableProcessOperation.h"

#include <utility>

namespace Core::Operations {

UndoableProcessOperation::UndoableProcessOperation(std::string name, std::uint32_t id,
                                                   std::string tag, std::uint32_t instanceId,
                                                   Workspace *workspace,
                                                   const ProcessMessages &messages)
    : ObjectOperation(std::move(name), id),
      m_sequence(workspace, this, messages),
      m_states(std::move(tag), instanceId, workspace)
{}

UndoableProcessOperation::~UndoableProcessOperation() = default;

void UndoableProcessOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void UndoableProcessOperation::cancel()
{
    m_sequence.cancel();
}

std::int32_t UndoableProcessOperation::undo()
{
    m_states.loadUndoState(*volume());
    return 1;
}

void UndoableProcessOperation::redo()
{
    m_states.loadRedoState(*volume());
}

} // namespace Core::Operations
