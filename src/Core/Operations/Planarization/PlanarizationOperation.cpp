#include "Core/Operations/Planarization/PlanarizationOperation.h"

#include "Core/Operations/Planarization/Planarization.h"
#include "Model/Automaton/TotalVolume.h"
#include "Util/IObserver.h"

#include <utility>

namespace Core::Operations {

namespace {

constexpr ProcessMessages Messages{": Cell volume selected.", ": Operation canceled!"};

} // namespace

boost::shared_ptr<Util::IObserver> PlanarizationOperation::s_observer;

PlanarizationOperation::PlanarizationOperation(Workspace *workspace)
    : Operation("Planarization", Id),
      m_sequence(workspace, this, Messages)
{}

void PlanarizationOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

std::uint32_t PlanarizationOperation::volumeHeight() const
{
    return m_sequence.volume() ? m_sequence.volume()->sizeZ() : 0;
}

void PlanarizationOperation::setMaximumHeight(std::uint32_t height)
{
    m_maximumHeight = height;
    m_maximumSet = true;
}

void PlanarizationOperation::setMinimumHeight(std::uint32_t height)
{
    m_minimumHeight = height;
    m_minimumSet = true;
}

void PlanarizationOperation::next()
{
    m_sequence.selectThenAsk(s_observer);
}

void PlanarizationOperation::cancel()
{
    m_sequence.cancel();
}

void PlanarizationOperation::end()
{
    if (!m_sequence.volume() || !m_maximumSet || !m_minimumSet) {
        cancel();
        return;
    }
    Planarization(m_sequence.volume().get(), m_maximumHeight, m_minimumHeight).runPlanarization();
    m_sequence.finish(true);
}

} // namespace Core::Operations
