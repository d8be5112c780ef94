#pragma once

#include <cstdint>
#include <string>

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Restores the cells of a volume from the workspace's temporary state files, for operations that
/// change cells.
///
/// A state file is text, one record a line, fields separated by white space: the tag of the
/// operation class, the number of the operation, then the material id of each cell in index order.
class TotalVolumeUndoRedoHelper final
{
public:
    /// `tag` is a word that names the class of the operation, `instanceId` its number among those
    /// of that class. The workspace is not owned.
    TotalVolumeUndoRedoHelper(std::string tag, std::uint32_t instanceId, Workspace *workspace);

    /// Stores nothing, on purpose: undo of a process leaves the cells as they are and moves the
    /// operation between the stacks. Some operations call it where a state would be kept.
    void saveState(Model::Automaton::TotalVolume &volume);
    /// Looks for the operation's record in the file and writes its ids to both arrays of the
    /// volume. A file or record that is missing changes nothing; a record that ends early leaves
    /// the remaining cells as they are.
    void loadState(const std::string &fileName, Model::Automaton::TotalVolume &volume) const;
    /// loadState() of the undo file, or of the redo file, and a new picture.
    void loadUndoState(Model::Automaton::TotalVolume &volume) const;
    void loadRedoState(Model::Automaton::TotalVolume &volume) const;

private:
    std::string m_tag;
    std::uint32_t m_instanceId;
    Workspace *m_workspace;
};

} // namespace Core::Operations
