#include "Core/Operations/OperationHistory.h"

#include "Core/Operations/ObjectOperation.h"
#include "Core/Workspace.h"

#include <boost/pointer_cast.hpp>

namespace Core::Operations {

OperationHistory::OperationHistory(Workspace *workspace) : m_workspace(workspace) {}

void OperationHistory::push(const boost::shared_ptr<Operation> &operation)
{
    m_undoStack.push_back(operation);
    m_redoStack.clear();
    Util::notify(m_undoObservers);
    Util::notify(m_redoObservers);
}

bool OperationHistory::undo()
{
    const boost::shared_ptr<Operation> operation = takeTop(m_undoStack);
    if (operation) {
        m_workspace->cancelCurrent();
        const auto undoable = boost::dynamic_pointer_cast<ObjectOperation>(operation);
        const std::int32_t result = undoable ? undoable->undo() : 0;
        if (result == 0) {
            m_undoStack.push_back(operation);
        } else if (result == 1) {
            m_redoStack.push_back(operation);
            Util::notify(m_redoObservers);
        }
    }
    Util::notify(m_undoObservers);
    return operation != nullptr;
}

bool OperationHistory::redo()
{
    const boost::shared_ptr<Operation> operation = takeTop(m_redoStack);
    if (operation) {
        m_workspace->cancelCurrent();
        if (const auto redoable = boost::dynamic_pointer_cast<ObjectOperation>(operation))
            redoable->redo();
        m_undoStack.push_back(operation);
        Util::notify(m_undoObservers);
    }
    Util::notify(m_redoObservers);
    return operation != nullptr;
}

void OperationHistory::clear()
{
    m_redoStack.clear();
    m_undoStack.clear();
    Util::notify(m_redoObservers);
    Util::notify(m_undoObservers);
}

std::string OperationHistory::undoName() const
{
    return topName(m_undoStack);
}

std::string OperationHistory::redoName() const
{
    return topName(m_redoStack);
}

void OperationHistory::addUndoObserver(const boost::shared_ptr<Util::IObserver> &observer)
{
    m_undoObservers.push_back(observer);
}

void OperationHistory::addRedoObserver(const boost::shared_ptr<Util::IObserver> &observer)
{
    m_redoObservers.push_back(observer);
}

boost::shared_ptr<Operation> OperationHistory::takeTop(Stack &stack)
{
    if (stack.empty())
        return {};
    const boost::shared_ptr<Operation> operation = stack.back();
    stack.pop_back();
    return operation;
}

std::string OperationHistory::topName(const Stack &stack)
{
    return stack.empty() ? std::string() : stack.back()->name();
}

} // namespace Core::Operations
