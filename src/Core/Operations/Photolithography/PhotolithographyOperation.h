#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace Core::Operations {

/// Develops a film of a cell volume through masks, which hang over and under the volume meanwhile.
class PhotolithographyOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 20;

    /// The workspace is not owned.
    explicit PhotolithographyOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    void setMaterial(std::uint32_t material);
    /// A bit a pixel, x * height + y, true for an opaque one; extents in pixels. The picture of the
    /// volume, if there is one, follows at once.
    void setBottomMask(const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height);
    void setTopMask(const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height);

    void next() override;
    /// Leaves the masks over the volume.
    void cancel() override;
    /// Develops and takes the masks from the picture, if volume and material are there; cancels
    /// otherwise.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    Workspace *m_workspace;
    ProcessSequence m_sequence;
    std::vector<bool> m_bottomMask;
    std::vector<bool> m_topMask;
    std::uint32_t m_material = 0;
    std::uint32_t m_bottomMaskHeight = 0;
    std::uint32_t m_bottomMaskWidth = 0;
    std::uint32_t m_topMaskHeight = 0;
    std::uint32_t m_topMaskWidth = 0;
    std::int32_t m_step = 0;
};

} // namespace Core::Operations
