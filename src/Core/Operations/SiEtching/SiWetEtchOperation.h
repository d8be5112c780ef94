#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core::Operations {

/// What the wet etchings of the silicon crystal share: they keep no undo record, take the only
/// object of a document without a selection, and rebuild the volume's lattice only if a process
/// has made it stale, so that one etching goes on where the last has stopped.
class SiWetEtchOperation : public Operation
{
public:
    /// Units of the crystal, counted down a (100) surface.
    void setDepth(double depth);

    /// After a selected volume also ends the operation, which cancels it if the observer has not
    /// set a depth; after the document's only object the operation stays.
    void next() override;
    /// As end(), does nothing on an operation that has ended.
    void cancel() override;
    /// Etches if there are volume and depth, otherwise cancels. Does nothing on an operation that
    /// has ended. The operation may be destroyed within this call.
    void end() override;

protected:
    /// The workspace is not owned.
    SiWetEtchOperation(Workspace *workspace, std::string name, std::uint32_t id);

private:
    /// Runs the simulation on the current lattice of the volume.
    virtual void etch(Model::Automaton::TotalVolume *volume, double depth) const = 0;
    /// The one of the class, told when the volume is there; may be empty.
    virtual boost::shared_ptr<Util::IObserver> observer() const = 0;
    void ask();

    Workspace *m_workspace;
    ProcessSequence m_sequence;
    double m_depth = 0.0;
    bool m_depthSet = false;
    bool m_ended = false;
};

} // namespace Core::Operations
