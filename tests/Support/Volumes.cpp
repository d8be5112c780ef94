#include "Support/Volumes.h"

#include "Model/Automaton/TotalVolume.h"

#include <QThreadPool>

#include <boost/make_shared.hpp>

namespace Support {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

std::vector<std::uint32_t> materialsIn(const Voxel *cells, const TotalVolume &volume)
{
    const std::size_t count = std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
    std::vector<std::uint32_t> materials(count);
    for (std::size_t i = 0; i < count; ++i)
        materials[i] = cells[i].material();
    return materials;
}

} // namespace

std::vector<std::uint32_t> materialsBy(const Grid &grid, const MaterialRule &rule)
{
    std::vector<std::uint32_t> materials;
    materials.reserve(grid.cells());
    for (std::uint32_t x = 0; x < grid.sizeX; ++x)
        for (std::uint32_t y = 0; y < grid.sizeY; ++y)
            for (std::uint32_t z = 0; z < grid.sizeZ; ++z)
                materials.push_back(rule(x, y, z));
    return materials;
}

boost::shared_ptr<TotalVolume> makeVolume(const Grid &grid,
                                          const std::vector<std::uint32_t> &materials)
{
    return boost::make_shared<TotalVolume>(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX,
                                           grid.cellSizeY, grid.cellSizeZ, Util::Vector3D(),
                                           materials);
}

boost::shared_ptr<TotalVolume> makeVolume(const Grid &grid, const MaterialRule &rule)
{
    return makeVolume(grid, materialsBy(grid, rule));
}

std::vector<std::uint32_t> materialsOf(TotalVolume &volume)
{
    const std::vector<std::uint32_t> materials = materialsIn(volume.voxels(), volume);
    volume.releaseVoxels();
    return materials;
}

std::vector<std::uint32_t> nextMaterialsOf(TotalVolume &volume)
{
    const std::vector<std::uint32_t> materials = materialsIn(volume.nextVoxels(), volume);
    volume.releaseNextVoxels();
    return materials;
}

PoolThreads::PoolThreads(int threads) : m_before(QThreadPool::globalInstance()->maxThreadCount())
{
    QThreadPool::globalInstance()->setMaxThreadCount(threads);
}

PoolThreads::~PoolThreads()
{
    QThreadPool::globalInstance()->setMaxThreadCount(m_before);
}

} // namespace Support
