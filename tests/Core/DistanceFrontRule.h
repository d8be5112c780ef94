#pragma once

#include "Support/Volumes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// The rule of isotropic deposition and etching, stated plainly: one list of cells a strip, two
/// arrays, every test for every cell. Slow, and meant to be read.
namespace DistanceFrontRule {

using Vector = std::array<float, 3>;

/// Every operation is rounded to float, and the squares are added in the order of the axes.
inline float squaredLength(const Vector &v)
{
    const float xx = v[0] * v[0];
    const float yy = v[1] * v[1];
    const float zz = v[2] * v[2];
    const float xxyy = xx + yy;
    return xxyy + zz;
}

struct Cell
{
    std::uint32_t material = 0;
    bool reached = false;
    Vector distance = {0.0f, 0.0f, 0.0f};
    std::int32_t atoms = 0;
};
using Cells = std::vector<Cell>;

struct Place
{
    int x;
    int y;
    int z;
};
inline Place operator+(const Place &a, const Place &b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Place operator-(const Place &a, const Place &b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline bool isInside(const Support::Grid &grid, const Place &at)
{
    return at.x >= 0 && at.x < int(grid.sizeX) && at.y >= 0 && at.y < int(grid.sizeY) &&
           at.z >= 0 && at.z < int(grid.sizeZ);
}
inline int indexOf(const Support::Grid &grid, const Place &at)
{
    return int(grid.index(at.x, at.y, at.z));
}
inline Place placeOf(const Support::Grid &grid, int index)
{
    const int sizeY = int(grid.sizeY);
    const int sizeZ = int(grid.sizeZ);
    return {index / (sizeY * sizeZ), index % (sizeY * sizeZ) / sizeZ, index % sizeZ};
}

const std::array<Place, 6> faceNeighbors = {
    {{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}}};

const std::array<Place, 26> mooreNeighbors = {
    {{-1, -1, -1}, {-1, -1, 0}, {-1, -1, 1}, {-1, 0, -1}, {-1, 0, 0}, {-1, 0, 1}, {-1, 1, -1},
     {-1, 1, 0},   {-1, 1, 1},  {0, -1, -1}, {0, -1, 0},  {0, -1, 1}, {0, 0, -1}, {0, 0, 1},
     {0, 1, -1},   {0, 1, 0},   {0, 1, 1},   {1, -1, -1}, {1, -1, 0}, {1, -1, 1}, {1, 0, -1},
     {1, 0, 0},    {1, 0, 1},   {1, 1, -1},  {1, 1, 0},   {1, 1, 1}}};

/// One of the two processes with its values.
struct Process
{
    bool etching;
    std::uint32_t material;
    /// In drawing units.
    float thickness;

    /// A cell that the front starts from and that never changes.
    bool isSource(std::uint32_t id) const { return etching ? id == 0 : id != 0; }
    /// What the front may be handed on to.
    bool isEnqueued(std::uint32_t id) const { return etching ? id != 0 : id == 0; }
    /// A cell that a step does not skip.
    bool takesPart(std::uint32_t id) const { return !etching || id == material || id == 0; }
    std::uint32_t changed(std::uint32_t id) const
    {
        if (etching)
            return id == material ? 0 : id;
        return id == 0 ? material : id;
    }
};

inline std::uint32_t stepCountOf(const Support::Grid &grid, const Process &process)
{
    const double stepFactor = (std::sqrt(2.0) + 1.0) / std::sqrt(2.0);
    const float smallest = std::min({grid.cellSizeX, grid.cellSizeY, grid.cellSizeZ});
    const float quotient = process.thickness / smallest;
    const float cells = std::ceil(quotient);
    const double steps = double(cells) * stepFactor;
    // Not so for what is negative or not a number.
    return steps >= 1.0 ? std::uint32_t(steps) : 0;
}

/// The ranges of x that `threads` workers get, each as its start and its end.
struct Strip
{
    int start;
    int end;
};
inline std::vector<Strip> stripsOf(const Support::Grid &grid, int threads)
{
    const int sizeX = int(grid.sizeX);
    const int width = sizeX / threads;
    if (width < 2)
        return {{0, sizeX}};
    std::vector<Strip> strips;
    for (int i = 0; i < threads; ++i)
        strips.push_back({i * width, i + 1 < threads ? (i + 1) * width : sizeX});
    return strips;
}

/// A run in which each strip finishes its part of a step before the next strip begins. With one
/// strip that is every run.
class Rule final
{
public:
    /// The cells of both arrays as they stand before the run; only `material` and `atoms` count.
    Rule(const Support::Grid &grid, const Process &process, const std::vector<Strip> &strips,
         const Cells &voxels, const Cells &nextVoxels)
        : m_grid(grid),
          m_process(process),
          m_strips(strips),
          m_voxels(voxels),
          m_nextVoxels(nextVoxels),
          m_surface(strips.size()),
          m_forPrevious(strips.size()),
          m_forNext(strips.size())
    {
        for (const Place &face : faceNeighbors) {
            m_stepVectors.push_back({float(face.x) * grid.cellSizeX, float(face.y) * grid.cellSizeY,
                                     float(face.z) * grid.cellSizeZ});
        }
    }

    void run()
    {
        for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
            initialize(strip);
        const std::uint32_t steps = stepCountOf(m_grid, m_process);
        for (std::uint32_t i = 0; i < steps; ++i)
            for (std::size_t strip = 0; strip < m_strips.size(); ++strip)
                step(strip);
    }

    const Cells &voxels() const { return m_voxels; }
    const Cells &nextVoxels() const { return m_nextVoxels; }

private:
    void initialize(std::size_t strip)
    {
        const float far = m_process.thickness;
        for (int cell = 0; cell < int(m_voxels.size()); ++cell) {
            const Place at = placeOf(m_grid, cell);
            if (at.x < m_strips[strip].start || at.x >= m_strips[strip].end)
                continue;
            const bool source = m_process.isSource(m_voxels[cell].material);
            const Vector distance = source ? Vector{0.0f, 0.0f, 0.0f} : Vector{far, far, far};
            m_voxels[cell].reached = source;
            m_voxels[cell].distance = distance;
            m_nextVoxels[cell].reached = source;
            m_nextVoxels[cell].distance = distance;
            if (!source && touchesSource(at))
                m_surface[strip].push_back(cell);
        }
    }

    bool touchesSource(const Place &at) const
    {
        return std::any_of(mooreNeighbors.begin(), mooreNeighbors.end(), [&](const Place &offset) {
            const Place other = at + offset;
            return isInside(m_grid, other) &&
                   m_process.isSource(m_voxels[indexOf(m_grid, other)].material);
        });
    }

    void step(std::size_t strip)
    {
        m_forPrevious[strip].clear();
        m_forNext[strip].clear();
        std::vector<int> list;
        const float limit2 = m_process.thickness * m_process.thickness;
        for (const int cell : m_surface[strip]) {
            const Place at = placeOf(m_grid, cell);
            const std::uint32_t material = m_voxels[cell].material;
            if (!m_process.takesPart(material) || m_voxels[cell].reached)
                continue;
            float best = squaredLength(m_voxels[cell].distance);
            Vector candidate = {};
            bool found = false;
            for (std::size_t k = 0; k < faceNeighbors.size(); ++k) {
                const Place other = at + faceNeighbors[k];
                if (!isInside(m_grid, other))
                    continue;
                const Vector &from = m_voxels[indexOf(m_grid, other)].distance;
                const Vector &by = m_stepVectors[k];
                const Vector v = {from[0] + by[0], from[1] + by[1], from[2] + by[2]};
                const float s = squaredLength(v);
                if (s < best && s <= limit2) {
                    best = s;
                    candidate = v;
                    found = true;
                }
            }
            if (!found)
                continue;
            m_nextVoxels[cell].material = m_process.changed(material);
            m_nextVoxels[cell].reached = false;
            m_nextVoxels[cell].distance = candidate;
            enqueueNeighbors(at, strip, list);
        }
        if (strip > 0)
            moveToEnd(list, m_forNext[strip - 1]);
        if (strip + 1 < m_strips.size())
            moveToEnd(list, m_forPrevious[strip + 1]);
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
        for (const int cell : m_surface[strip])
            m_voxels[cell] = m_nextVoxels[cell];
        m_surface[strip] = list;
    }

    void enqueueNeighbors(const Place &at, std::size_t strip, std::vector<int> &list)
    {
        for (const Place &offset : mooreNeighbors) {
            const Place other = at + offset;
            if (!isInside(m_grid, other))
                continue;
            const int cell = indexOf(m_grid, other);
            if (!m_process.isEnqueued(m_voxels[cell].material))
                continue;
            if (other.x >= m_strips[strip].end)
                m_forNext[strip].push_back(cell);
            else if (other.x < m_strips[strip].start)
                m_forPrevious[strip].push_back(cell);
            else
                list.push_back(cell);
        }
    }

    static void moveToEnd(std::vector<int> &list, std::vector<int> &from)
    {
        list.insert(list.end(), from.begin(), from.end());
        from.clear();
    }

    Support::Grid m_grid;
    Process m_process;
    std::vector<Strip> m_strips;
    Cells m_voxels;
    Cells m_nextVoxels;
    std::vector<Vector> m_stepVectors;
    std::vector<std::vector<int>> m_surface;
    std::vector<std::vector<int>> m_forPrevious;
    std::vector<std::vector<int>> m_forNext;
};

} // namespace DistanceFrontRule
