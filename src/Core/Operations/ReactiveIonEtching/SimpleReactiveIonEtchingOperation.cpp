#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtchingOperation.h"

#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "Model/Automaton/Voxel.h"
#include "Util/IObserver.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Core::Operations {

namespace {

std::uint32_t stepsOf(double depth)
{
    // Also false for what is not a number.
    if (!(depth >= 1.0))
        return 0;
    constexpr double Most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(depth, Most));
}

} // namespace

SimpleReactiveIonEtchingOperation::SimpleReactiveIonEtchingOperation(Workspace *workspace)
    : Operation("Simple RIE", Id),
      m_sequence(workspace, this)
{}

void SimpleReactiveIonEtchingOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void SimpleReactiveIonEtchingOperation::setDepth(double depth)
{
    m_depth = depth;
    m_depthSet = true;
}

void SimpleReactiveIonEtchingOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    m_materialSet = true;
}

void SimpleReactiveIonEtchingOperation::setEtchFromBelow(bool etch)
{
    m_etchDirections = etch ? m_etchDirections | SimpleReactiveIonEtching::FromBelow : 0;
}

void SimpleReactiveIonEtchingOperation::setEtchFromTop(bool etch)
{
    m_etchDirections = etch ? m_etchDirections | SimpleReactiveIonEtching::FromTop : 0;
}

void SimpleReactiveIonEtchingOperation::next()
{
    m_sequence.selectThenAsk(m_observer);
}

void SimpleReactiveIonEtchingOperation::cancel()
{
    m_sequence.cancel();
}

void SimpleReactiveIonEtchingOperation::end()
{
    if (!m_sequence.volume() || !m_materialSet || !m_depthSet) {
        cancel();
        return;
    }
    SimpleReactiveIonEtching(m_sequence.volume().get(), m_material, stepsOf(m_depth),
                             m_etchDirections)
        .runEtching();
    m_sequence.finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
