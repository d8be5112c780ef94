#include "Model/ModelExtraction/CuboidDecomposer.h"

#include "Model/Automaton/CellCount.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"

#include <boost/make_shared.hpp>

namespace Model::ModelExtraction {

using Automaton::Voxel;

CuboidDecomposer::CuboidDecomposer(Automaton::TotalVolume *volume) : m_volume(volume) {}

void CuboidDecomposer::run()
{
    m_envelopes.clear();
    // None, or more than its arrays hold.
    if (Automaton::countCells(m_volume->sizeX(), m_volume->sizeY(), m_volume->sizeZ())
            .value_or(0) == 0)
        return;
    {
        const Automaton::TakenCells voxels(*m_volume);
        findCuts(voxels.cells());
        findEnvelopes(voxels.cells());
    }
    findNeighbours();
}

void CuboidDecomposer::findCuts(const Voxel *voxels)
{
    const std::array<std::uint32_t, 3> sizes = {m_volume->sizeX(), m_volume->sizeY(),
                                                m_volume->sizeZ()};
    const std::size_t strideY = sizes[2];
    const std::size_t strideX = strideY * sizes[1];
    std::array<std::vector<std::uint8_t>, 3> isCut;
    for (unsigned axis = 0; axis < 3; ++axis)
        isCut[axis].resize(sizes[axis]);
    for (std::uint32_t x = 0; x + 1 < sizes[0]; ++x) {
        for (std::uint32_t y = 0; y + 1 < sizes[1]; ++y) {
            const Voxel *column = voxels + x * strideX + y * strideY;
            bool differsX = false;
            bool differsY = false;
            for (std::uint32_t z = 0; z + 1 < sizes[2]; ++z) {
                const std::uint32_t material = column[z].material();
                differsX |= material != column[z + strideX].material();
                differsY |= material != column[z + strideY].material();
                isCut[2][z + 1] |= material != column[z + 1].material();
            }
            isCut[0][x + 1] |= differsX;
            isCut[1][y + 1] |= differsY;
        }
    }
    for (unsigned axis = 0; axis < 3; ++axis) {
        m_starts[axis] = {0};
        for (std::uint32_t at = 1; at < sizes[axis]; ++at)
            if (isCut[axis][at])
                m_starts[axis].push_back(at);
        m_starts[axis].push_back(sizes[axis]);
    }
}

void CuboidDecomposer::findEnvelopes(const Voxel *voxels)
{
    const std::size_t places = count(0) * count(1) * count(2);
    m_placed.assign(places, nullptr);
    std::vector<bool> visited(places);
    std::vector<Place> seeds = {{0, 0, 0}};
    visited[0] = true;
    while (!seeds.empty()) {
        const Place place = seeds.back();
        seeds.pop_back();
        for (unsigned axis = 0; axis < 3; ++axis) {
            Place next = place;
            if (++next[axis] == count(axis) || visited[index(next)])
                continue;
            visited[index(next)] = true;
            seeds.push_back(next);
        }
        if (const auto envelope = envelopeAt(place, voxels)) {
            m_placed[index(place)] = envelope.get();
            m_envelopes.push_back(envelope);
        }
    }
}

boost::shared_ptr<RectangularCuboidEnvelope> CuboidDecomposer::envelopeAt(const Place &place,
                                                                          const Voxel *voxels) const
{
    std::array<std::uint32_t, 3> corner{};
    std::array<std::int32_t, 3> extent{};
    for (unsigned axis = 0; axis < 3; ++axis) {
        const std::uint32_t *start = &m_starts[axis][place[axis]];
        corner[axis] = start[0];
        extent[axis] = static_cast<std::int32_t>(start[1] - start[0]);
    }
    const std::size_t cell =
        (std::size_t{corner[0]} * m_volume->sizeY() + corner[1]) * m_volume->sizeZ() + corner[2];
    const std::uint32_t material = voxels[cell].material();
    if (material == 0)
        return {};
    return boost::make_shared<RectangularCuboidEnvelope>(
        static_cast<std::int32_t>(corner[0]), static_cast<std::int32_t>(corner[1]),
        static_cast<std::int32_t>(corner[2]), extent[0], extent[1], extent[2],
        static_cast<std::int32_t>(material));
}

// Boxes between cuts that go through the whole volume share a face with none but those beside them,
// and share it whole.
void CuboidDecomposer::findNeighbours()
{
    for (std::size_t x = 0; x < count(0); ++x) {
        for (std::size_t y = 0; y < count(1); ++y) {
            for (std::size_t z = 0; z < count(2); ++z) {
                const Place place = {x, y, z};
                RectangularCuboidEnvelope *lower = m_placed[index(place)];
                if (!lower)
                    continue;
                for (unsigned axis = 0; axis < 3; ++axis) {
                    Place next = place;
                    if (++next[axis] == count(axis))
                        continue;
                    RectangularCuboidEnvelope *upper = m_placed[index(next)];
                    if (!upper)
                        continue;
                    lower->setNeighbour(2 * axis + 1, upper);
                    upper->setNeighbour(2 * axis, lower);
                }
            }
        }
    }
}

} // namespace Model::ModelExtraction
