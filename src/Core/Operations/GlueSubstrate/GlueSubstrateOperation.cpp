#include "Core/Operations/GlueSubstrate/GlueSubstrateOperation.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

namespace {

constexpr ProcessMessages BaseMessages{
    ": base cell volume selected. Select top cell volume and press enter", "",
    ": select the base cell volume and press Enter/Return."};
constexpr ProcessMessages TopMessages{": top cell volume selected.", "",
                                      ": select the top cell volume and press Enter/Return."};

/// Adds an object that the document may hold already.
void addOnce(Model::Document &document, const boost::shared_ptr<TotalVolume> &volume)
{
    if (!document.findObject(volume->id()))
        document.addObject(volume);
}

} // namespace

GlueSubstrateOperation::GlueSubstrateOperation(Workspace *workspace)
    : ObjectOperation("Glue Volumes", Id),
      m_workspace(workspace),
      m_base(workspace, this, BaseMessages),
      m_top(workspace, this, TopMessages)
{}

void GlueSubstrateOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void GlueSubstrateOperation::setFinalSize(std::uint32_t x, std::uint32_t y, std::uint32_t z)
{
    m_choices.finalX = x;
    m_choices.finalY = y;
    m_choices.finalZ = z;
}

void GlueSubstrateOperation::setDisplacement(std::uint32_t x, std::uint32_t y)
{
    m_choices.displacementX = x;
    m_choices.displacementY = y;
}

void GlueSubstrateOperation::setInvertTop(bool invert)
{
    m_choices.invertTop = invert;
}

void GlueSubstrateOperation::next()
{
    if (m_state == ChoosingBase)
        takeBase();
    else if (m_state == ChoosingTop)
        takeTop();
}

void GlueSubstrateOperation::takeBase()
{
    if (!m_base.selectVolume())
        return;
    m_state = ChoosingTop;
    // Asks for it: the selection is empty now.
    m_top.selectVolume();
}

void GlueSubstrateOperation::takeTop()
{
    if (!m_top.selectVolume())
        return;
    const TotalVolume &base = *m_base.volume();
    const TotalVolume &top = *m_top.volume();
    m_measures = GlueSubstrate::measure(*m_base.volume(), *m_top.volume());
    if (m_measures.topEmpty) {
        write("Glue Volumes: the top cell volume is empty.");
        cancel();
        return;
    }
    m_choices.finalX = m_measures.minimumX;
    m_choices.finalY = m_measures.minimumY;
    m_choices.finalZ = m_measures.minimumZ + 1;
    m_cellSizeX = std::max(base.cellSizeX(), top.cellSizeX());
    m_cellSizeY = std::max(base.cellSizeY(), top.cellSizeY());
    m_cellSizeZ = std::max(base.cellSizeZ(), top.cellSizeZ());
    m_state = Running;
    // A copy: the dialog may end the operation that holds the observer.
    const boost::shared_ptr<Util::IObserver> held = m_observer;
    if (held)
        held->update();
}

void GlueSubstrateOperation::cancel()
{
    m_workspace->interpreter().clearRequest();
    m_workspace->dropOperation();
}

void GlueSubstrateOperation::end()
{
    if (m_state != Running || m_base.volume() == m_top.volume()) {
        cancel();
        return;
    }
    m_state = Done;
    m_result = makeResult();
    if (!m_result) {
        write("Glue Volumes: the final volume does not fit into memory.");
        cancel();
        return;
    }
    m_workspace->document().addObject(m_result);
    m_workspace->document().removeObject(m_base.volume());
    m_workspace->document().removeObject(m_top.volume());
    // The words of the film extraction, which users of both know: they stay as they are.
    write("Extract Film: film extracted.");
    Util::notify(m_workspace->updateObservers());
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

boost::shared_ptr<TotalVolume> GlueSubstrateOperation::makeResult() const
{
    GlueSubstrate glue(m_base.volume().get(), m_top.volume().get(), m_measures, m_choices);
    if (!glue.fits())
        return {};
    try {
        const std::vector<std::uint32_t> ids = glue.glue();
        return boost::make_shared<TotalVolume>(m_choices.finalX, m_choices.finalY, m_choices.finalZ,
                                               m_cellSizeX, m_cellSizeY, m_cellSizeZ,
                                               m_base.volume()->position(), ids);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

std::int32_t GlueSubstrateOperation::undo()
{
    // It may be undone already: the entry stays on the undo stack.
    m_workspace->document().removeObject(m_result);
    addOnce(m_workspace->document(), m_base.volume());
    addOnce(m_workspace->document(), m_top.volume());
    Util::notify(m_workspace->updateObservers());
    return 0;
}

void GlueSubstrateOperation::redo()
{
    addOnce(m_workspace->document(), m_result);
    m_workspace->document().removeObject(m_base.volume());
    m_workspace->document().removeObject(m_top.volume());
    Util::notify(m_workspace->updateObservers());
}

void GlueSubstrateOperation::write(const char *message)
{
    m_workspace->interpreter().writeMessage(message);
}

} // namespace Core::Operations
