#pragma once

#include "CompatibleFrontRule.h"
#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace CompatibleFrontRule {

/// Lengths in drawing units.
struct Doping
{
    std::uint32_t material;
    float depth;
};

class DopingRule final : public Front
{
public:
    DopingRule(const Support::Grid &grid, const Doping &process, const MaterialSet &compatible,
               int threads, const Cells &voxels, const Cells &nextVoxels)
        : Front(grid, compatible, DistanceFrontRule::stripsOf(grid, threads), voxels, nextVoxels),
          m_process(process)
    {}

    std::uint32_t stepCount() const override
    {
        return DistanceFrontRule::stepCountOf(m_grid, {false, 0, m_process.depth});
    }
    float limit2(const Cell &) const override { return m_process.depth * m_process.depth; }
    Cell taken(const Cell &) const override { return {m_process.material, false}; }

private:
    bool takesPart(const Cell &cell) const override { return isCompatible(cell.material); }
    bool passes(std::uint32_t material) const override { return isCompatible(material); }
    bool listsCorners() const override { return true; }

    void initialize(std::size_t strip) override
    {
        const float t = m_process.depth;
        for (int x = m_strips[strip].start; x < m_strips[strip].end; ++x) {
            for (int y = 0; y < int(m_grid.sizeY); ++y) {
                for (int z = 0; z < int(m_grid.sizeZ); ++z) {
                    const int cell = indexOf(m_grid, {x, y, z});
                    const std::uint32_t material = m_voxels[cell].material;
                    if (material == 0) {
                        setFront(cell, true, {0.0f, 0.0f, 0.0f});
                    } else if (isCompatible(material)) {
                        setFront(cell, false, {t, t, t});
                        if (touchesVoid({x, y, z}))
                            m_surface[strip].push_back(cell);
                    } else {
                        setFront(cell, true, {t, t, t});
                    }
                }
            }
        }
    }

    bool touchesVoid(const Place &at) const
    {
        for (const Place &offset : mooreNeighbors) {
            const Place other = at + offset;
            if (isInside(m_grid, other) && m_voxels[indexOf(m_grid, other)].material == 0)
                return true;
        }
        return false;
    }

    Doping m_process;
};

/// Lengths in drawing units.
struct Implantation
{
    std::uint32_t material;
    float depth;
    float annealing;
};

class ImplantationRule final : public Front
{
public:
    ImplantationRule(const Support::Grid &grid, const Implantation &process,
                     const MaterialSet &compatible, int threads, const Cells &voxels,
                     const Cells &nextVoxels)
        : Front(grid, compatible, DistanceFrontRule::stripsOf(grid, threads), voxels, nextVoxels),
          m_process(process)
    {}

    std::uint32_t stepCount() const override
    {
        return DistanceFrontRule::stepCountOf(m_grid, {false, 0, m_process.annealing});
    }
    float limit2(const Cell &) const override { return m_process.annealing * m_process.annealing; }
    Cell taken(const Cell &) const override { return {m_process.material, false}; }

private:
    bool takesPart(const Cell &cell) const override { return isCompatible(cell.material); }
    bool passes(std::uint32_t material) const override { return isCompatible(material); }
    bool listsCorners() const override { return false; }

    void initialize(std::size_t strip) override
    {
        std::vector<int> &list = m_surface[strip];
        for (int x = m_strips[strip].start; x < m_strips[strip].end; ++x)
            for (int y = 0; y < int(m_grid.sizeY); ++y)
                walkColumn(x, y, strip);
        takeFromNeighbors(strip, list);
    }

    void walkColumn(int x, int y, std::size_t strip)
    {
        const float a = m_process.annealing;
        const int sizeZ = int(m_grid.sizeZ);
        const int base = indexOf(m_grid, {x, y, 0});
        int z = sizeZ - 1;
        for (; z >= 0 && m_voxels[base + z].material == 0; --z)
            setFront(base + z, true, {a, a, a});
        const int top = z >= 0 ? z + 1 : sizeZ;
        int i = 0;
        // At sizeZ stands the lowest cell of the next column. After the last column there is none.
        for (z = top; z >= 1; --z, ++i)
            if (base + z < int(m_voxels.size()))
                walkCell(base + z, i, strip);
    }

    void walkCell(int cell, int i, std::size_t strip)
    {
        const float a = m_process.annealing;
        if (!isCompatible(m_voxels[cell].material)) {
            setFront(cell, true, {a, a, a});
            return;
        }
        const float depth = float(i) * m_grid.cellSizeZ;
        const float off = std::abs(depth - m_process.depth);
        if (double(off) > double(m_grid.cellSizeZ) * 0.5) {
            setFront(cell, false, {a, a, a});
            return;
        }
        setFront(cell, true, {a, a, a});
        m_voxels[cell].distance = {0.0f, 0.0f, 0.0f};
        m_voxels[cell].material = m_process.material;
        m_nextVoxels[cell].material = m_process.material;
        enqueueNeighbors(placeOf(m_grid, cell), strip, m_surface[strip]);
    }

    Implantation m_process;
};

} // namespace CompatibleFrontRule
