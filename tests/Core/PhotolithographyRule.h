#pragma once

#include "LayerFrontRule.h"
#include "LayerFrontSample.h"

#include "Support/Volumes.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

/// The rule of photolithography, and the values of a run.
namespace PhotolithographyRule {

using LayerFrontRule::Cell;
using LayerFrontRule::Cells;
using LayerFrontRule::Materials;
using Support::Grid;

constexpr std::uint32_t positive = 11;
constexpr std::uint32_t negative = 12;

/// A mask as it is handed over: bit x * height + y, true for an opaque pixel.
struct Mask
{
    std::vector<bool> bits;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// Whether the pixel (x, y) is opaque.
using Picture = std::function<bool(std::uint32_t, std::uint32_t)>;

inline Mask maskOf(std::uint32_t width, std::uint32_t height, const Picture &picture)
{
    Mask mask = {{}, width, height};
    for (std::uint32_t x = 0; x < width; ++x)
        for (std::uint32_t y = 0; y < height; ++y)
            mask.bits.push_back(picture(x, y));
    return mask;
}
inline Mask plainMask(std::uint32_t width, std::uint32_t height, bool opaque)
{
    return {std::vector<bool>(std::size_t{width} * height, opaque), width, height};
}

inline bool operator==(const Mask &a, const Mask &b)
{
    return a.bits == b.bits && a.width == b.width && a.height == b.height;
}
/// Whether a column lies under an opaque pixel, of a mask that has a bit a pixel.
inline bool isOpaque(const Mask &mask, std::uint32_t x, std::uint32_t y)
{
    return x < mask.width && y < mask.height && mask.bits[std::size_t{x} * mask.height + y];
}

/// What a run gets. Printed by tests that fail.
struct Lithography
{
    Grid grid;
    Materials materials;
    std::uint32_t film;
    Mask bottom;
    Mask top;
};

inline std::ostream &operator<<(std::ostream &stream, const Mask &mask)
{
    return stream << mask.width << " x " << mask.height << " with " << mask.bits.size() << " bits";
}
inline std::ostream &operator<<(std::ostream &stream, const Lithography &given)
{
    return stream << "development of " << given.film << ", " << given.grid.sizeX << " x "
                  << given.grid.sizeY << " x " << given.grid.sizeZ << " cells, bottom mask "
                  << given.bottom << ", top mask " << given.top;
}

/// Whether a mask keeps its light from the column (x, y).
inline bool isBlocked(const Mask &mask, std::uint32_t film, std::uint32_t x, std::uint32_t y)
{
    if (mask.bits.size() != std::uint64_t{mask.width} * mask.height)
        return false;
    const bool opaque = isOpaque(mask, x, y);
    return film == negative ? !opaque : opaque;
}

/// The rule, stated plainly: one ordered set of cells, two arrays, every test for every cell. No
/// column hears of another, so that strips play no part.
class DevelopmentRule final
{
public:
    explicit DevelopmentRule(const Lithography &given)
        : m_given(given),
          m_voxels(LayerFrontRule::leftovers(given.materials)),
          m_nextVoxels(LayerFrontRule::nextLeftovers(given.materials))
    {
        for (std::uint32_t x = 0; x < given.grid.sizeX; ++x)
            for (std::uint32_t y = 0; y < given.grid.sizeY; ++y) {
                m_bottomBlocked.push_back(isBlocked(given.bottom, given.film, x, y));
                m_topBlocked.push_back(isBlocked(given.top, given.film, x, y));
            }
        CellSet surface = firstCells();
        for (std::uint32_t i = 0; i < given.grid.sizeZ; ++i)
            surface = step(surface);
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }

private:
    using CellSet = std::set<int>;

    int sizeZ() const { return int(m_given.grid.sizeZ); }
    bool isFilm(int cell) const { return m_voxels[cell].material == m_given.film; }
    bool isVoid(int cell) const { return m_voxels[cell].material == 0; }

    CellSet firstCells() const
    {
        CellSet cells;
        for (int c = 0; c < int(m_voxels.size()); ++c) {
            const int z = c % sizeZ();
            const int column = c / sizeZ();
            if (!isFilm(c))
                continue;
            if (z + 1 < sizeZ() && isVoid(c + 1) && !m_topBlocked[column])
                cells.insert(c);
            if (z > 0 && isVoid(c - 1) && !m_bottomBlocked[column])
                cells.insert(c);
        }
        return cells;
    }

    CellSet step(const CellSet &surface)
    {
        CellSet next;
        for (const int c : surface) {
            if (!isFilm(c))
                continue;
            m_nextVoxels[c].material = 0;
            const int z = c % sizeZ();
            const int column = c / sizeZ();
            if (z + 1 < sizeZ() && isFilm(c + 1) && !m_bottomBlocked[column])
                next.insert(c + 1);
            if (z >= 1 && isFilm(c - 1) && !m_topBlocked[column])
                next.insert(c - 1);
        }
        for (const int c : surface)
            m_voxels[c].material = m_nextVoxels[c].material;
        return next;
    }

    Lithography m_given;
    std::vector<bool> m_bottomBlocked;
    std::vector<bool> m_topBlocked;
    Cells m_voxels;
    Cells m_nextVoxels;
};

/// The same without steps: a stretch of film in a column goes as a whole if one of its ends is void
/// of the volume that the light of that side comes to, and stays otherwise.
inline Materials developedByStretches(const Lithography &given)
{
    Materials result = given.materials;
    const Grid &grid = given.grid;
    for (std::uint32_t x = 0; x < grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < grid.sizeY; ++y) {
            const bool dark = isBlocked(given.top, given.film, x, y);
            const bool darkBelow = isBlocked(given.bottom, given.film, x, y);
            for (std::uint32_t first = 0; first < grid.sizeZ; ++first) {
                std::uint32_t end = first;
                while (end < grid.sizeZ && given.materials[grid.index(x, y, end)] == given.film)
                    ++end;
                if (end == first)
                    continue;
                const bool openAbove =
                    end < grid.sizeZ && given.materials[grid.index(x, y, end)] == 0;
                const bool openBelow =
                    first > 0 && given.materials[grid.index(x, y, first - 1)] == 0;
                if ((openAbove && !dark) || (openBelow && !darkBelow))
                    for (std::uint32_t z = first; z < end; ++z)
                        result[grid.index(x, y, z)] = 0;
                first = end - 1;
            }
        }
    return result;
}

} // namespace PhotolithographyRule
