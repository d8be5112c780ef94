#pragma once

#include "Util/ObserverList.h"

#include <boost/shared_ptr.hpp>

#include <deque>
#include <string>

namespace Core {
class Workspace;
}

namespace Core::Operations {

class Operation;

/// The undo and redo stacks of one workspace. Nothing is replayed: a finished operation lives here
/// and knows how to take itself back. Neither stack has a limit. GUI thread only.
class OperationHistory final
{
public:
    /// The workspace owns the history.
    explicit OperationHistory(Workspace *workspace);
    OperationHistory(const OperationHistory &) = delete;
    OperationHistory &operator=(const OperationHistory &) = delete;

    /// Puts a finished operation on the undo stack and empties the redo stack.
    void push(const boost::shared_ptr<Operation> &operation);
    /// Takes the newest operation back, after cancelling the one in progress; whether there was
    /// one.
    bool undo();
    /// Does the last operation taken back again; whether there was one.
    bool redo();
    void clear();

    /// Name of the operation that undo() or redo() would take; empty if there is none.
    std::string undoName() const;
    std::string redoName() const;

    void addUndoObserver(const boost::shared_ptr<Util::IObserver> &observer);
    void addRedoObserver(const boost::shared_ptr<Util::IObserver> &observer);

private:
    using Stack = std::deque<boost::shared_ptr<Operation>>;

    static boost::shared_ptr<Operation> takeTop(Stack &stack);
    static std::string topName(const Stack &stack);

    Workspace *m_workspace;
    Stack m_undoStack;
    Stack m_redoStack;
    Util::ObserverList m_undoObservers;
    Util::ObserverList m_redoObservers;
};

} // namespace Core::Operations
