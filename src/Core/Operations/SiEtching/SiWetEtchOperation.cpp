#include "Core/Operations/SiEtching/SiWetEtchOperation.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>
#include <QElapsedTimer>

#include <utility>

namespace Core::Operations {

using Candidates = ProcessSequence::Candidates;

SiWetEtchOperation::SiWetEtchOperation(Workspace *workspace, std::string name, std::uint32_t id)
    : Operation(std::move(name), id),
      m_workspace(workspace),
      m_sequence(workspace, this)
{}

void SiWetEtchOperation::setDepth(double depth)
{
    m_depth = depth;
    m_depthSet = true;
}

void SiWetEtchOperation::next()
{
    if (m_sequence.volume())
        return;
    // The observer ends the operation if its dialog is accepted, and the workspace lets go of it.
    const boost::shared_ptr<Operation> self = m_workspace->currentOperation();
    if (m_sequence.takeSelectedVolume(Candidates::Selection)) {
        ask();
        end();
    } else if (m_sequence.selectVolume(Candidates::SelectionOrOnlyObject)) {
        ask();
    }
}

void SiWetEtchOperation::ask()
{
    if (const boost::shared_ptr<Util::IObserver> told = observer())
        told->update();
}

void SiWetEtchOperation::cancel()
{
    if (m_ended)
        return;
    m_ended = true;
    m_sequence.cancel();
}

void SiWetEtchOperation::end()
{
    if (m_ended)
        return;
    if (!m_sequence.volume() || !m_depthSet) {
        cancel();
        return;
    }
    m_ended = true;
    Model::Automaton::TotalVolume &volume = *m_sequence.volume();
    QElapsedTimer timer;
    timer.start();
    if (!volume.siLattice() || m_workspace->objectRecords().isLatticeStale(volume.id())) {
        volume.rebuildSiLattice();
        qDebug().nospace() << "Time to allocate Si structure " << timer.elapsed();
    }
    etch(&volume, m_depth);
    qDebug().nospace() << "Total time to allocate and run " << timer.elapsed();
    timer.restart();
    volume.painter().rebuild();
    qDebug().nospace() << "Time to build rendered structrure " << timer.elapsed();
    m_sequence.conclude(ProcessSequence::Lattice::Current);
}

} // namespace Core::Operations
