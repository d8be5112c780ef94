#pragma once

#include "Core/Operations/CellularProcess/ColumnFront.h"
#include "Core/Operations/CellularProcess/StripRun.h"

#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Exposes a film through masks from above and below and develops it: removes it column by column,
/// from its open ends, wherever a mask lets light through.
class Photolithography final
{
public:
    /// The one material that is a negative resist, whatever its record says; all others are
    /// positive.
    static constexpr std::uint32_t NegativeResist = 12;

    /// `material` is the film. A mask has a bit a pixel, x * height + y, true for an opaque one;
    /// width and height in pixels, a pixel for each column of cells from the corner (0, 0) on. What
    /// a positive resist has under opaque pixels stays, what it has beside the mask goes; for a
    /// negative resist both are the other way round. A mask whose bits are not width * height
    /// shades nothing. The volume is not owned; its cells are not touched yet.
    Photolithography(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                     const std::vector<bool> &bottomMask, std::uint32_t bottomWidth,
                     std::uint32_t bottomHeight, const std::vector<bool> &topMask,
                     std::uint32_t topWidth, std::uint32_t topHeight);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDevelopment();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDevelopmentStep(std::uint32_t strip);

    std::uint32_t m_steps;
    /// A bit a column: no light from below, from above.
    std::vector<bool> m_bottomBlocked;
    std::vector<bool> m_topBlocked;
    StripRun m_strips;
    ColumnFront m_front;
};

} // namespace Core::Operations
