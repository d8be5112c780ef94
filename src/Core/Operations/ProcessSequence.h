#pragma once

#include <boost/shared_ptr.hpp>

#include <string>

namespace Util {
class IObserver;
}

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

class Operation;

/// What the messages of a process add to its name, where classes differ.
struct ProcessMessages
{
    const char *selected = ": Cell volume selected.";
    const char *canceled = ": Operation canceled.";
    const char *request = ": Select a cell volume and press Enter/Return.";
};

/// What the process operations share: a cell volume is selected first, then a dialog asks for the
/// values, then the cells change. Each operation is composed of one and keeps for itself which
/// values it has. GUI thread only.
class ProcessSequence final
{
public:
    /// Where a target may come from.
    enum class Candidates
    {
        Selection,
        /// With no volume selected also the document's one object, if it is a volume.
        SelectionOrOnlyObject
    };

    /// How the silicon lattice stands to the cells after a process.
    enum class Lattice
    {
        AsBefore,
        /// No longer fits them.
        Stale,
        /// Stands for them.
        Current
    };

    /// Neither is owned; `operation` owns the sequence, and its name is the prefix of the messages.
    ProcessSequence(Workspace *workspace, Operation *operation,
                    const ProcessMessages &messages = {});
    ProcessSequence(const ProcessSequence &) = delete;
    ProcessSequence &operator=(const ProcessSequence &) = delete;

    /// Takes the first cell volume of the selection as target, in the order of the clicks, and says
    /// so; whether there was one.
    bool takeSelectedVolume(Candidates candidates = Candidates::Selection);
    /// The same; if there is none, asks for one on the console and waits for Enter, which calls the
    /// operation's next().
    bool selectVolume(Candidates candidates = Candidates::Selection);
    /// The same until there is a target, then updates the observer, if there is one. Does nothing
    /// with a target. The operation may be destroyed within this call.
    void selectThenAsk(const boost::shared_ptr<Util::IObserver> &observer,
                       Candidates candidates = Candidates::Selection);
    /// The target; empty until there is one.
    const boost::shared_ptr<Model::Automaton::TotalVolume> &volume() const { return m_volume; }

    /// Says so, and leaves the workspace idle. The operation may be destroyed within this call.
    void cancel();
    /// What follows a simulation: the picture, the records, the message, the undo stack.
    /// `latticeStale` says that the silicon lattice no longer fits the cells. The operation may be
    /// destroyed within this call.
    void finish(bool latticeStale);
    /// The same where the picture is there already.
    void conclude(Lattice lattice);

private:
    boost::shared_ptr<Model::Automaton::TotalVolume> findVolume(Candidates candidates) const;
    void write(const std::string &suffix);

    Workspace *m_workspace;
    Operation *m_operation;
    ProcessMessages m_messages;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
};

} // namespace Core::Operations
