#pragma once

#include "LayerFrontRule.h"
#include "LayerFrontSample.h"

#include "Support/Volumes.h"

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <vector>

/// The rule of reactive ion etching, and the values of a run.
namespace ReactiveIonEtchingRule {

using LayerFrontRule::Cells;
using LayerFrontRule::Materials;
using Support::Grid;

constexpr std::uint8_t fromTop = 1;
constexpr std::uint8_t fromBelow = 2;

/// The etched film of all tests that need but one.
constexpr std::uint32_t film = 7;

struct Etching
{
    std::uint32_t steps;
    std::uint8_t directions = fromTop;
    std::uint32_t material = film;
};

/// What a run gets. Printed by tests that fail.
struct EtchingCase
{
    Grid grid;
    Materials materials;
    Etching process;
};

inline std::ostream &operator<<(std::ostream &stream, const EtchingCase &given)
{
    return stream << "etching of " << given.process.material << ", " << given.process.steps
                  << " steps, directions " << int(given.process.directions) << ", "
                  << given.grid.sizeX << " x " << given.grid.sizeY << " x " << given.grid.sizeZ
                  << " cells";
}

inline EtchingCase etchingOf(const Grid &grid, const Etching &process,
                             const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), process};
}

/// The rule, stated plainly: one ordered set of cells a strip, two arrays, every test for every
/// cell. No strip hears of another, so that their order does not matter.
class EtchingRule final
{
public:
    EtchingRule(const EtchingCase &given, int threads)
        : m_grid(given.grid),
          m_process(given.process),
          m_voxels(LayerFrontRule::leftovers(given.materials)),
          m_nextVoxels(LayerFrontRule::nextLeftovers(given.materials))
    {
        const int sizeX = int(m_grid.sizeX);
        const int strips = sizeX / threads == 0 ? 1 : threads;
        const int width = sizeX / strips;
        for (int strip = 0; strip < strips; ++strip) {
            const int end = strip + 1 < strips ? width * (strip + 1) : sizeX;
            m_surface.push_back(firstCells(width * strip, end));
        }
        for (std::uint32_t i = 0; i < m_process.steps; ++i) {
            for (std::size_t strip = 0; strip < m_surface.size(); ++strip) {
                step(m_surface[strip]);
                m_log.push_back("Surface list size for thread " + std::to_string(strip) + ": " +
                                std::to_string(m_surface[strip].size()));
            }
        }
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }
    /// The lines of each step from strip to strip.
    const std::vector<std::string> &log() const { return m_log; }
    std::size_t strips() const { return m_surface.size(); }

private:
    using CellSet = std::set<int>;

    bool etches(std::uint8_t direction) const { return (m_process.directions & direction) != 0; }
    bool isFilm(int cell) const { return m_voxels[cell].material == m_process.material; }
    bool isVoid(int cell) const { return m_voxels[cell].material == 0; }

    CellSet firstCells(int startX, int endX) const
    {
        const int sizeZ = int(m_grid.sizeZ);
        const int layer = int(m_grid.sizeY) * sizeZ;
        CellSet cells;
        for (int c = startX * layer; c < endX * layer; ++c) {
            const int z = c % sizeZ;
            const bool above = etches(fromTop) && z + 1 < sizeZ && isVoid(c + 1);
            const bool below = etches(fromBelow) && z > 0 && isVoid(c - 1);
            if (isFilm(c) && (above || below))
                cells.insert(c);
        }
        return cells;
    }

    void step(CellSet &surface)
    {
        const int sizeZ = int(m_grid.sizeZ);
        CellSet next;
        for (const int c : surface) {
            if (!isFilm(c))
                continue;
            m_nextVoxels[c].material = 0;
            const int z = c % sizeZ;
            if (z + 1 < sizeZ && etches(fromBelow) && isFilm(c + 1))
                next.insert(c + 1);
            if (z > 0 && etches(fromTop) && isFilm(c - 1))
                next.insert(c - 1);
        }
        for (const int c : surface)
            m_voxels[c].material = m_nextVoxels[c].material;
        surface = next;
    }

    Grid m_grid;
    Etching m_process;
    Cells m_voxels;
    Cells m_nextVoxels;
    std::vector<CellSet> m_surface;
    std::vector<std::string> m_log;
};

} // namespace ReactiveIonEtchingRule
