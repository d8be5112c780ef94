#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <functional>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Support {

/// Sizes of a volume in cells and of a cell in drawing units.
struct Grid
{
    std::uint32_t sizeX = 1;
    std::uint32_t sizeY = 1;
    std::uint32_t sizeZ = 1;
    float cellSizeX = 1.0f;
    float cellSizeY = 1.0f;
    float cellSizeZ = 1.0f;

    std::size_t cells() const { return std::size_t{sizeX} * sizeY * sizeZ; }
    std::size_t index(std::uint32_t x, std::uint32_t y, std::uint32_t z) const
    {
        return (std::size_t{x} * sizeY + y) * sizeZ + z;
    }
};

/// The material of cell (x, y, z).
using MaterialRule = std::function<std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t)>;

/// One id a cell, in index order.
std::vector<std::uint32_t> materialsBy(const Grid &grid, const MaterialRule &rule);
boost::shared_ptr<Model::Automaton::TotalVolume>
makeVolume(const Grid &grid, const std::vector<std::uint32_t> &materials);
boost::shared_ptr<Model::Automaton::TotalVolume> makeVolume(const Grid &grid,
                                                            const MaterialRule &rule);

/// The materials of `voxels`, and of `nextVoxels`, in index order.
std::vector<std::uint32_t> materialsOf(Model::Automaton::TotalVolume &volume);
std::vector<std::uint32_t> nextMaterialsOf(Model::Automaton::TotalVolume &volume);

/// Sets the thread count of the global pool, which strips are cut by, and puts it back.
class PoolThreads final
{
public:
    explicit PoolThreads(int threads);
    ~PoolThreads();
    PoolThreads(const PoolThreads &) = delete;
    PoolThreads &operator=(const PoolThreads &) = delete;

private:
    int m_before;
};

} // namespace Support
