#pragma once

#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"
#include "Support/Volumes.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

/// The rule of wafer bonding, stated plainly: cell by cell, on one thread.
namespace GlueSubstrateRule {

using Core::Operations::GlueChoices;
using Core::Operations::GlueMeasures;
using Materials = std::vector<std::uint32_t>;

struct Wafer
{
    Support::Grid grid;
    Materials materials;

    std::uint32_t at(std::uint32_t x, std::uint32_t y, std::uint32_t z) const
    {
        return materials[grid.index(x, y, z)];
    }
};

inline std::ostream &operator<<(std::ostream &stream, const Wafer &wafer)
{
    return stream << wafer.grid.sizeX << " x " << wafer.grid.sizeY << " x " << wafer.grid.sizeZ;
}

inline std::string textOf(const GlueChoices &choices)
{
    std::ostringstream stream;
    stream << "final " << choices.finalX << " x " << choices.finalY << " x " << choices.finalZ
           << ", displaced by " << choices.displacementX << ", " << choices.displacementY
           << (choices.invertTop ? ", inverted" : "");
    return stream.str();
}

inline GlueMeasures measuresOf(const Wafer &base, const Wafer &top)
{
    GlueMeasures measures;
    std::uint32_t highest = 0;
    for (std::uint32_t x = 0; x < base.grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < base.grid.sizeY; ++y)
            for (std::uint32_t z = 0; z < base.grid.sizeZ; ++z)
                if (base.at(x, y, z) != 0)
                    highest = std::max(highest, z);
    measures.baseHeight = highest + 1;

    measures.topLowest = top.grid.sizeZ;
    measures.topHeight = 0;
    measures.topEmpty = true;
    for (std::uint32_t x = 0; x < top.grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < top.grid.sizeY; ++y)
            for (std::uint32_t z = 0; z < top.grid.sizeZ; ++z)
                if (top.at(x, y, z) != 0) {
                    measures.topEmpty = false;
                    measures.topLowest = std::min(measures.topLowest, z);
                    measures.topHeight = std::max(measures.topHeight, z);
                }
    measures.topHeight += 1;

    measures.minimumX = std::max(base.grid.sizeX, top.grid.sizeX);
    measures.minimumY = std::max(base.grid.sizeY, top.grid.sizeY);
    measures.minimumZ = measures.baseHeight + measures.topHeight - measures.topLowest;
    measures.maximumDisplacementX = measures.minimumX - top.grid.sizeX;
    measures.maximumDisplacementY = measures.minimumY - top.grid.sizeY;
    return measures;
}

/// What lies beyond the final sizes is cut off.
inline Materials glued(const Wafer &base, const Wafer &top, const GlueChoices &choices)
{
    const GlueMeasures measures = measuresOf(base, top);
    const Support::Grid result{choices.finalX, choices.finalY, choices.finalZ};
    Materials ids(result.cells(), 0);
    const auto put = [&](std::uint32_t x, std::uint32_t y, std::uint32_t z, std::uint32_t id) {
        if (x < result.sizeX && y < result.sizeY && z < result.sizeZ)
            ids[result.index(x, y, z)] = id;
    };
    for (std::uint32_t x = 0; x < base.grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < base.grid.sizeY; ++y)
            for (std::uint32_t z = 0; z < std::min(measures.baseHeight, base.grid.sizeZ); ++z)
                put(x, y, z, base.at(x, y, z));
    for (std::uint32_t x = 0; x < top.grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < top.grid.sizeY; ++y)
            for (std::uint32_t z = measures.topLowest; z < measures.topHeight; ++z)
                if (choices.invertTop)
                    put(choices.displacementX + top.grid.sizeX - 1 - x, choices.displacementY + y,
                        measures.baseHeight + measures.topHeight - 1 - z, top.at(x, y, z));
                else
                    put(choices.displacementX + x, choices.displacementY + y,
                        measures.baseHeight + z - measures.topLowest, top.at(x, y, z));
    return ids;
}

} // namespace GlueSubstrateRule
