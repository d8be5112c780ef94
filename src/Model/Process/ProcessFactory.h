#pragma once

#include "Model/Process/Process.h"

#include <QMutex>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <vector>

class QIODevice;
class QXmlStreamReader;

namespace Model::Process {

/// The registry of all processes, one for the whole program, built before main() runs. It starts
/// with the user's file `processes.xml`; where that is missing, unreadable or malformed, with the
/// built-in table, which it then writes there.
///
/// All functions but `updateProcess` may be called from any thread. Each holds one non-recursive
/// lock for its whole length and hands out copies, so none may call another one that locks.
class ProcessFactory final
{
public:
    ProcessFactory(const ProcessFactory &) = delete;
    ProcessFactory &operator=(const ProcessFactory &) = delete;

    /// The one registry.
    static boost::shared_ptr<ProcessFactory> instance();

    /// All processes in ascending id order.
    std::vector<Process> processes() const;
    /// The process with this id; the empty record (id 0) if there is none.
    Process process(std::uint32_t id) const;
    /// The process with the lowest id among those of exactly this name; the empty record (id 0) if
    /// there is none.
    Process processByName(const QString &name) const;
    /// Inserts the process or replaces the one with its id. False, with nothing changed, for id 0.
    /// Takes no lock: to be called on the user-interface thread only, while no simulation runs.
    bool updateProcess(const Process &process);

    /// Enters the processes of the user's `processes.xml`. False if the file is missing, cannot be
    /// opened, has another root element or is malformed; what stood before the error is entered.
    bool loadProcesses();
    /// As `loadProcesses`, from a device that is open for reading.
    bool readProcesses(QIODevice &device);
    /// Replaces everything by the built-in table.
    void loadDefaultProcesses();
    /// Writes all processes to the user's `processes.xml`; does nothing if that cannot be opened.
    void saveProcesses();

private:
    ProcessFactory();

    /// Enters the process of the reader's element, if it is one. Called under the lock.
    static void enterElement(QXmlStreamReader &reader);

    static std::map<std::uint32_t, Process> s_processes;
    static QMutex s_mutex;
    static const Process s_emptyProcess;
    static boost::shared_ptr<ProcessFactory> s_instance;
};

} // namespace Model::Process
