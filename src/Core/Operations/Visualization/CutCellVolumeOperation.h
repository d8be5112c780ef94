#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"
#include "Model/Automaton/CutLimits.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Limits what is drawn of a cell volume to a box of cells, so that its inside can be seen. Changes
/// no cell, writes no record and cannot be undone.
class CutCellVolumeOperation final : public Operation
{
public:
    /// That of substrate creation on purpose; the menu starts this operation by another number.
    static constexpr std::uint32_t Id = 2;

    /// The workspace is not owned.
    explicit CutCellVolumeOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// The box that is drawn, upper exclusive, and the sizes of the volume, all in cells. False,
    /// with nothing written, while there is no volume.
    bool limits(Model::Automaton::CellTriple &lower, Model::Automaton::CellTriple &upper,
                Model::Automaton::CellTriple &sizes) const;
    /// Gives the volume new limits; `rebuildNow` rebuilds its picture and updates the views at
    /// once, otherwise end() does. Does nothing while there is no volume. Needs a current OpenGL
    /// context.
    void setLimits(const Model::Automaton::CellTriple &lower,
                   const Model::Automaton::CellTriple &upper, bool rebuildNow);

    void next() override;
    void cancel() override;
    /// Finishes, if there are limits; cancels otherwise.
    void end() override;

private:
    void rebuild();

    static boost::shared_ptr<Util::IObserver> s_observer;

    Workspace *m_workspace;
    ProcessSequence m_sequence;
    /// The picture shows the limits.
    bool m_applied = false;
    bool m_limitsGiven = false;
};

} // namespace Core::Operations
