#pragma once

#include "Core/Archives.h"
#include "Core/CommandInterpreter.h"
#include "Core/ObjectRecords.h"
#include "Core/Operations/OperationHistory.h"
#include "Core/PointerTracker.h"
#include "Core/Selection.h"
#include "Model/Document.h"
#include "Util/ObserverList.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {
class IOperationFactory;
class Operation;
} // namespace Core::Operations

namespace Core {

/// The running state of one main window: its document and the one operation in progress. The
/// presenter owns it; every operation and options observer reaches it through a plain pointer.
/// GUI thread, but for what a member says itself.
class Workspace final
{
public:
    /// Creates the two state files in the working directory.
    Workspace();
    ~Workspace();
    Workspace(const Workspace &) = delete;
    Workspace &operator=(const Workspace &) = delete;

    void setOperationFactory(const boost::shared_ptr<Operations::IOperationFactory> &factory);

    /// Cancels the operation in progress and starts the one of that id; an unknown id leaves the
    /// workspace idle.
    void activate(std::uint32_t operationId);
    /// Cancels the operation in progress, which may stay current: that is for each class to say.
    void cancelCurrent();
    /// The last act of an operation that succeeded: puts it on the undo stack if it can be taken
    /// back, and goes idle. The operation may be destroyed within this call.
    void finishOperation();
    /// Goes idle without a record. The operation may be destroyed within this call.
    void dropOperation();

    /// Empty when idle.
    boost::shared_ptr<Operations::Operation> currentOperation() const;

    CommandInterpreter &interpreter() { return m_interpreter; }
    PointerTracker &pointer() { return m_pointer; }
    Model::Document &document() { return m_document; }
    Operations::OperationHistory &history() { return m_history; }
    /// Told whenever the picture has changed.
    Util::ObserverList &updateObservers() { return m_updateObservers; }
    Selection &selection() { return m_selection; }
    Archives &archives() { return m_archives; }
    ObjectRecords &objectRecords() { return m_objectRecords; }

private:
    boost::shared_ptr<Operations::Operation> m_currentOperation;
    CommandInterpreter m_interpreter;
    PointerTracker m_pointer;
    Model::Document m_document;
    Operations::OperationHistory m_history;
    Util::ObserverList m_updateObservers;
    Selection m_selection;
    Archives m_archives;
    ObjectRecords m_objectRecords;
    boost::shared_ptr<Operations::IOperationFactory> m_operationFactory;
};

} // namespace Core
