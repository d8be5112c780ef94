#include "Core/Operations/CellularProcess/DistanceFront.h"

#include "Model/Automaton/TotalVolume.h"

#include <algorithm>
#include <cmath>

namespace Core::Operations {

namespace {

DistanceFront::StepVectors stepVectorsOf(float cellSizeX, float cellSizeY, float cellSizeZ)
{
    DistanceFront::StepVectors vectors;
    for (std::size_t k = 0; k < faceNeighbors.size(); ++k)
        vectors[k] = {static_cast<float>(faceNeighbors[k].dx) * cellSizeX,
                      static_cast<float>(faceNeighbors[k].dy) * cellSizeY,
                      static_cast<float>(faceNeighbors[k].dz) * cellSizeZ};
    return vectors;
}

} // namespace

DistanceFront::DistanceFront(Model::Automaton::TotalVolume *volume)
    : m_volume(volume),
      m_sizeX(volume->sizeX()),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_smallestCellSize(std::min({volume->cellSizeX(), volume->cellSizeY(), volume->cellSizeZ()})),
      m_stepVectors(stepVectorsOf(volume->cellSizeX(), volume->cellSizeY(), volume->cellSizeZ())),
      m_strips(m_sizeX),
      m_front(m_strips, m_sizeX, m_sizeY, m_sizeZ),
      m_scratch(m_strips.threads())
{}

std::uint64_t DistanceFront::stepCount(float distance) const
{
    const float cells = std::ceil(distance / m_smallestCellSize);
    const double steps = std::trunc(static_cast<double>(cells) * stepFactor);
    // Also false for what is not a number.
    if (!(steps >= 1.0))
        return 0;
    constexpr double Most = 9.0e18;
    return static_cast<std::uint64_t>(std::min(steps, Most));
}

DistanceFront::TakenVoxels::TakenVoxels(DistanceFront &front) : m_volume(front.m_volume)
{
    front.m_voxels = m_volume->voxels();
    front.m_nextVoxels = m_volume->nextVoxels();
}

DistanceFront::TakenVoxels::~TakenVoxels()
{
    m_volume->releaseVoxels();
    m_volume->releaseNextVoxels();
}

// The Open cells of a plane with a starting cell among their Moore neighbours.
void DistanceFront::listPlane(std::uint32_t x, std::uint32_t strip, const Words &below,
                              const Words &plane, const Words &above)
{
    const std::uint32_t words = m_front.wordsInColumn();
    FrontList &list = m_front.surfaceCells(strip);
    for (std::uint32_t y = 0; y < m_sizeY; ++y) {
        const std::uint32_t firstY = y > 0 ? y - 1 : y;
        const std::uint32_t lastY = y + 1 < m_sizeY ? y + 1 : y;
        for (std::uint32_t word = 0; word < words; ++word) {
            const FrontWord open = m_front.passable(x, y, word);
            if (open == 0)
                continue;
            FrontWord touched = 0;
            for (std::uint32_t ny = firstY; ny <= lastY; ++ny) {
                const std::size_t at = std::size_t{ny} * words + word;
                for (const Words *source : {&below, &plane, &above}) {
                    const Words &bits = *source;
                    const FrontWord level = bits[at];
                    touched |= level << 1 | level >> 1;
                    if (word > 0)
                        touched |= bits[at - 1] >> (FrontWordBits - 1);
                    if (word + 1 < words)
                        touched |= bits[at + 1] << (FrontWordBits - 1);
                    // A cell is not its own neighbour.
                    if (ny != y || source != &plane)
                        touched |= level;
                }
            }
            list.add(x, y, word, open & touched);
        }
    }
}

} // namespace Core::Operations
