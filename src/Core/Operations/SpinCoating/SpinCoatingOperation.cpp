#include "Core/Operations/SpinCoating/SpinCoatingOperation.h"

#include "Core/Operations/SpinCoating/SpinCoating.h"
#include "Model/Automaton/TotalVolume.h"
#include "Util/IObserver.h"

#include <utility>

namespace Core::Operations {

boost::shared_ptr<Util::IObserver> SpinCoatingOperation::s_observer;

SpinCoatingOperation::SpinCoatingOperation(Workspace *workspace)
    : Operation("Spin Coating", Id),
      m_sequence(workspace, this)
{}

void SpinCoatingOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void SpinCoatingOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    m_materialSet = true;
}

void SpinCoatingOperation::setDepositionHeight(std::uint32_t height)
{
    m_depositionHeight = height;
    m_heightSet = true;
}

std::uint32_t SpinCoatingOperation::heightLimit() const
{
    return m_sequence.volume() ? m_sequence.volume()->sizeZ() : 0;
}

void SpinCoatingOperation::next()
{
    m_sequence.selectThenAsk(s_observer);
}

void SpinCoatingOperation::cancel()
{
    m_sequence.cancel();
}

void SpinCoatingOperation::end()
{
    if (!m_sequence.volume() || !m_heightSet || !m_materialSet) {
        cancel();
        return;
    }
    SpinCoating(m_sequence.volume().get(), m_material, m_depositionHeight).runDeposition();
    // What is poured fills void only: the silicon lattice still fits.
    m_sequence.finish(false);
}

} // namespace Core::Operations
