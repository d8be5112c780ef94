#include "Core/Workspace.h"

#include "Core/Operations/IOperationFactory.h"
#include "Core/Operations/ObjectOperation.h"

#include <boost/pointer_cast.hpp>

namespace Core {

using Operations::ObjectOperation;
using Operations::Operation;

Workspace::Workspace() : m_history(this), m_selection(&m_document, &m_pointer) {}

Workspace::~Workspace() = default;

void Workspace::setOperationFactory(const boost::shared_ptr<Operations::IOperationFactory> &factory)
{
    m_operationFactory = factory;
}

void Workspace::activate(std::uint32_t operationId)
{
    cancelCurrent();
    m_currentOperation = m_operationFactory ? m_operationFactory->create(operationId)
                                            : boost::shared_ptr<Operation>();
    // A copy: the operation may leave the slot within its first step.
    if (const boost::shared_ptr<Operation> operation = m_currentOperation)
        operation->next();
}

void Workspace::cancelCurrent()
{
    if (const boost::shared_ptr<Operation> operation = m_currentOperation)
        operation->cancel();
}

void Workspace::finishOperation()
{
    if (const auto undoable = boost::dynamic_pointer_cast<ObjectOperation>(m_currentOperation))
        m_history.push(undoable);
    dropOperation();
}

void Workspace::dropOperation()
{
    m_currentOperation.reset();
    m_selection.clear();
    Util::notify(m_updateObservers);
}

boost::shared_ptr<Operation> Workspace::currentOperation() const
{
    return m_currentOperation;
}

} // namespace Core
