#include "Model/Automaton/VertexLattice.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Model::Automaton {

namespace {

/// Halves go upward. What is beyond all cell numbers, or no number, as cell sizes of next to
/// nothing make it, counts as 0.
std::int64_t roundedCell(float cell)
{
    const double rounded = std::floor(static_cast<double>(cell) + 0.5);
    return std::abs(rounded) < 4294967296.0 ? static_cast<std::int64_t>(rounded) : 0;
}

} // namespace

VertexLattice::VertexLattice(const CellTriple &sizes, const std::array<float, 3> &cellSizes)
{
    // The cell size along y serves for z as well: pictures made so far rely on the groups.
    const float keySizes[3] = {cellSizes[0], cellSizes[1], cellSizes[1]};
    const std::uint32_t strides[3] = {sizes[1] * sizes[2], sizes[2], 1};
    std::array<std::vector<std::int64_t>, 3> cells;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const std::size_t count = 2 * std::size_t{sizes[axis]} + 1;
        m_positions[axis].resize(count);
        m_keys[axis].resize(count);
        cells[axis].resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const float first = static_cast<float>(i / 2) * cellSizes[axis];
            const float second = static_cast<float>((i + 1) / 2) * cellSizes[axis];
            const float position = (first + second) * 0.5f;
            m_positions[axis][i] = position;
            cells[axis][i] = roundedCell(position / keySizes[axis]);
            m_keys[axis][i] = static_cast<std::uint32_t>(cells[axis][i]) * strides[axis];
        }
    }
    findKeyRange(sizes, cells);
}

void VertexLattice::findKeyRange(const CellTriple &sizes,
                                 const std::array<std::vector<std::int64_t>, 3> &cells)
{
    const double strides[3] = {double{static_cast<double>(sizes[1])} * sizes[2],
                               static_cast<double>(sizes[2]), 1.0};
    double highest = 0;
    for (unsigned axis = 0; axis < 3; ++axis) {
        if (cells[axis].front() < 0 || !std::is_sorted(cells[axis].begin(), cells[axis].end()))
            return;
        highest += strides[axis] * static_cast<double>(cells[axis].back());
    }
    if (highest > double{std::numeric_limits<std::uint32_t>::max()})
        return;
    std::int64_t steps = 0;
    for (std::size_t i = 2; i < cells[0].size(); i += 2)
        steps = std::max(steps, cells[0][i] - cells[0][i - 2]);
    const std::int64_t plane = std::int64_t{sizes[1]} * sizes[2];
    m_keyRange =
        static_cast<std::size_t>(steps * plane + cells[1].back() * sizes[2] + cells[2].back() + 1);
}

} // namespace Model::Automaton
