#pragma once

#include <string>

namespace Core {

/// The two temporary files of one workspace, "undo" and "redo" with a random number and ".temp" in
/// the working directory: created empty here, removed at destruction.
class StateFiles final
{
public:
    /// Tries numbers until both files are new and could be created. There is no bound: in a
    /// directory that cannot be written this never returns. Two instances made within one second
    /// draw the same numbers, so the later one waits for the next second.
    StateFiles();
    ~StateFiles();
    StateFiles(const StateFiles &) = delete;
    StateFiles &operator=(const StateFiles &) = delete;

    std::string undoFileName() const { return m_undoFileName; }
    std::string redoFileName() const { return m_redoFileName; }

private:
    std::string m_undoFileName;
    std::string m_redoFileName;
};

} // namespace Core
