#pragma once

#include <cstdint>
#include <vector>

namespace Ui::Operations {

/// Is handed the masks of a photolithography while its dialog is open, to show them.
class MaskReceiver
{
public:
    virtual ~MaskReceiver() = default;

    /// A bit a pixel, x * height + y, true for an opaque one; extents in pixels. All empty for a
    /// mask that was removed.
    virtual void showBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                                std::uint32_t height) = 0;
    virtual void showTopMask(const std::vector<bool> &bits, std::uint32_t width,
                             std::uint32_t height) = 0;
};

} // namespace Ui::Operations
