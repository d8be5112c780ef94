#include "Core/Operations/IonImplantation/IonImplantationOperation.h"

#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Util/IObserver.h"

#include <utility>

namespace Core::Operations {

namespace {

constexpr ProcessMessages Messages{": Cell volume selected.", ": Operation Canceled!"};

} // namespace

boost::shared_ptr<Util::IObserver> IonImplantationOperation::s_observer;

IonImplantationOperation::IonImplantationOperation(Workspace *workspace)
    : Operation("Ion Implantation", Id),
      m_sequence(workspace, this, Messages)
{}

void IonImplantationOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void IonImplantationOperation::setAnnealingDistance(float distance)
{
    m_annealingDistance = distance;
    m_annealingDistanceSet = true;
}

void IonImplantationOperation::setImplantationDepth(float depth)
{
    m_implantationDepth = depth;
    m_depthSet = true;
}

void IonImplantationOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    m_materialSet = true;
}

void IonImplantationOperation::next()
{
    m_sequence.selectThenAsk(s_observer);
}

void IonImplantationOperation::cancel()
{
    m_sequence.cancel();
}

void IonImplantationOperation::end()
{
    if (!m_sequence.volume() || !m_depthSet || !m_annealingDistanceSet || !m_materialSet) {
        cancel();
        return;
    }
    IonImplantation(m_sequence.volume().get(), m_material, m_implantationDepth, m_annealingDistance)
        .runImplantation();
    m_sequence.finish(true);
}

} // namespace Core::Operations
