#include "Core/Operations/Visualization/CutCellVolumeOperation.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <utility>

namespace Core::Operations {

using Model::Automaton::CellTriple;

boost::shared_ptr<Util::IObserver> CutCellVolumeOperation::s_observer;

CutCellVolumeOperation::CutCellVolumeOperation(Workspace *workspace)
    : Operation("Change Cut Planes", Id),
      m_workspace(workspace),
      m_sequence(workspace, this, {": Cell volume selected.", ": Operation Canceled!"})
{}

void CutCellVolumeOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

bool CutCellVolumeOperation::limits(CellTriple &lower, CellTriple &upper, CellTriple &sizes) const
{
    const auto &volume = m_sequence.volume();
    if (!volume)
        return false;
    volume->painter().cutLimits(lower, upper);
    sizes = {volume->sizeX(), volume->sizeY(), volume->sizeZ()};
    return true;
}

void CutCellVolumeOperation::setLimits(const CellTriple &lower, const CellTriple &upper,
                                       bool rebuildNow)
{
    if (!m_sequence.volume())
        return;
    m_sequence.volume()->painter().setCutLimits(lower, upper);
    m_applied = rebuildNow;
    if (rebuildNow)
        rebuild();
    m_limitsGiven = true;
}

void CutCellVolumeOperation::next()
{
    m_sequence.selectThenAsk(s_observer);
}

void CutCellVolumeOperation::cancel()
{
    m_sequence.cancel();
}

void CutCellVolumeOperation::end()
{
    if (!m_limitsGiven) {
        cancel();
        return;
    }
    if (!m_applied)
        rebuild();
    m_workspace->interpreter().writeMessage(name() + ": Cut planes changed.");
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

void CutCellVolumeOperation::rebuild()
{
    m_sequence.volume()->painter().rebuild();
    Util::notify(m_workspace->updateObservers());
}

} // namespace Core::Operations
