#include "Core/Operations/SimpleDoping/DopingOperation.h"

#include "Core/Operations/SimpleDoping/SimpleDoping.h"

namespace Core::Operations {

namespace {

std::uint32_t s_nextInstanceId = 0;

} // namespace

DopingOperation::DopingOperation(Workspace *workspace)
    : UndoableProcessOperation("Doping", Id, "Doping", s_nextInstanceId++, workspace)
{}

void DopingOperation::setDepth(float depth)
{
    m_depth = depth;
    m_depthSet = true;
}

void DopingOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    m_materialSet = true;
}

void DopingOperation::next()
{
    sequence().selectThenAsk(observer());
}

void DopingOperation::end()
{
    if (!volume() || !m_materialSet || !m_depthSet) {
        cancel();
        return;
    }
    states().saveState(*volume());
    SimpleDoping(volume(), m_material, m_depth).runDoping();
    states().saveState(*volume());
    sequence().finish(true);
}

} // namespace Core::Operations
