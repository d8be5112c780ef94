#include "Core/Operations/Photolithography/PhotolithographyOperation.h"

#include "Core/Operations/Photolithography/Photolithography.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"

#include <utility>

namespace Core::Operations {

namespace {

constexpr ProcessMessages Messages{": Cell volume selected.", ": Operation Canceled!"};

} // namespace

boost::shared_ptr<Util::IObserver> PhotolithographyOperation::s_observer;

PhotolithographyOperation::PhotolithographyOperation(Workspace *workspace)
    : Operation("Photolithography", Id),
      m_workspace(workspace),
      m_sequence(workspace, this, Messages)
{}

void PhotolithographyOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void PhotolithographyOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    ++m_step;
}

void PhotolithographyOperation::setBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                                              std::uint32_t height)
{
    m_bottomMask = bits;
    m_bottomMaskWidth = width;
    m_bottomMaskHeight = height;
    if (!m_sequence.volume())
        return;
    m_sequence.volume()->setBottomMask(bits, width, height);
    Util::notify(m_workspace->updateObservers());
}

void PhotolithographyOperation::setTopMask(const std::vector<bool> &bits, std::uint32_t width,
                                           std::uint32_t height)
{
    m_topMask = bits;
    m_topMaskWidth = width;
    m_topMaskHeight = height;
    if (!m_sequence.volume())
        return;
    m_sequence.volume()->setTopMask(bits, width, height);
    Util::notify(m_workspace->updateObservers());
}

void PhotolithographyOperation::next()
{
    if (m_step != 0 || !m_sequence.selectVolume())
        return;
    m_step = 1;
    const boost::shared_ptr<Util::IObserver> held = s_observer;
    if (held)
        held->update();
}

void PhotolithographyOperation::cancel()
{
    m_sequence.cancel();
}

void PhotolithographyOperation::end()
{
    if (m_step <= 1 || !m_sequence.volume()) {
        cancel();
        return;
    }
    Model::Automaton::TotalVolume *volume = m_sequence.volume().get();
    Photolithography(volume, m_material, m_bottomMask, m_bottomMaskWidth, m_bottomMaskHeight,
                     m_topMask, m_topMaskWidth, m_topMaskHeight)
        .runDevelopment();
    volume->setBottomMask({}, 0, 0);
    volume->setTopMask({}, 0, 0);
    m_sequence.finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
