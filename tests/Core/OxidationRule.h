#pragma once

#include "CompatibleFrontRule.h"
#include "DistanceFrontRule.h"

#include "Support/Volumes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace CompatibleFrontRule {

struct Oxidation
{
    /// In cell units.
    double thickness;
};

class OxidationRule final : public Front
{
public:
    static constexpr std::uint32_t Oxide = 3;

    OxidationRule(const Support::Grid &grid, const Oxidation &process,
                  const MaterialSet &compatible, int threads, const Cells &voxels,
                  const Cells &nextVoxels)
        : Front(grid, compatible, DistanceFrontRule::stripsOf(grid, threads), voxels, nextVoxels),
          m_thickness(process.thickness),
          m_isConverted(int(grid.sizeX) / threads >= 2)
    {}

    double smallestCell() const
    {
        return std::min({m_grid.cellSizeX, m_grid.cellSizeY, m_grid.cellSizeZ});
    }
    /// Otherwise the run returns before it has touched anything.
    bool isRun() const { return m_thickness > smallestCell(); }

    std::uint32_t stepCount() const override
    {
        if (!isRun())
            return 0;
        const double stepFactor = (std::sqrt(2.0) + 1.0) / std::sqrt(2.0);
        return std::uint32_t(std::ceil(m_thickness / smallestCell()) * stepFactor);
    }
    float limit2(const Cell &cell) const override
    {
        return cell.material != 0 ? squared(0.44) : squared(0.56);
    }
    Cell taken(const Cell &cell) const override { return {cell.material, cell.reached}; }

    /// The material of the cell after the last pass.
    std::uint32_t converted(const Cell &cell) const
    {
        const float s = squaredLength(cell.distance);
        const bool inside = isCompatible(cell.material) && squared(0.3) > s;
        const bool above = cell.material == 0 && squared(0.6) > s;
        return m_isConverted && isRun() && (inside || above) ? Oxide : cell.material;
    }

private:
    /// The square of a fraction of the thickness.
    float squared(double fraction) const
    {
        const float length = float(m_thickness * fraction);
        return length * length;
    }

    bool takesPart(const Cell &) const override { return true; }
    bool passes(std::uint32_t material) const override
    {
        return material == 0 || material == Oxide || isCompatible(material);
    }
    bool listsCorners() const override { return false; }

    template <typename Test>
    bool hasFaceNeighbor(const Place &at, const Test &test) const
    {
        return std::any_of(faceNeighbors.begin(), faceNeighbors.end(), [&](const Place &face) {
            return isInside(m_grid, at + face) && test(at + face);
        });
    }
    std::uint32_t materialAt(const Place &at) const
    {
        return m_voxels[indexOf(m_grid, at)].material;
    }
    bool isSurface(const Place &at) const
    {
        return isCompatible(materialAt(at)) &&
               hasFaceNeighbor(at, [&](const Place &other) { return materialAt(other) == 0; });
    }

    void initialize(std::size_t strip) override
    {
        if (!isRun())
            return;
        const float t = float(m_thickness);
        for (int cell = 0; cell < int(m_voxels.size()); ++cell) {
            const Place at = placeOf(m_grid, cell);
            if (at.x < m_strips[strip].start || at.x >= m_strips[strip].end)
                continue;
            const std::uint32_t material = m_voxels[cell].material;
            bool isListed = false;
            if (isSurface(at)) {
                setFront(cell, true, {0.0f, 0.0f, 0.0f});
            } else if (isCompatible(material)) {
                setFront(cell, false, {t, t, t});
                isListed =
                    hasFaceNeighbor(at, [&](const Place &other) { return isSurface(other); });
            } else if (material == 0) {
                setFront(cell, false, {t, t, t});
                isListed = hasFaceNeighbor(
                    at, [&](const Place &other) { return isCompatible(materialAt(other)); });
            } else {
                setFront(cell, true, {t, t, t});
            }
            if (isListed)
                m_surface[strip].push_back(cell);
        }
    }

    void finish(std::size_t strip) override
    {
        for (int cell = 0; cell < int(m_voxels.size()); ++cell) {
            const int x = placeOf(m_grid, cell).x;
            if (x < m_strips[strip].start || x >= m_strips[strip].end)
                continue;
            const std::uint32_t material = converted(m_voxels[cell]);
            if (material == m_voxels[cell].material)
                continue;
            m_voxels[cell].material = material;
            m_nextVoxels[cell].material = material;
        }
    }

    double m_thickness;
    bool m_isConverted;
};

} // namespace CompatibleFrontRule
