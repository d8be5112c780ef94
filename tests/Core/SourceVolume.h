#pragma once

#include "DistanceFrontRuns.h"
#include "PassRuns.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

using Corner = std::array<double, 3>;

/// Where a volume is in the world.
inline Corner cornerOf(const Model::Automaton::TotalVolume &volume)
{
    const Util::Vector3D position = volume.position();
    return {position[0], position[1], position[2]};
}

/// A volume that is read and must not change, somewhere in the world and with what earlier
/// processes left in its two arrays. The working array is full of another material, which nobody
/// may take for those of the volume.
class SourceVolume final
{
public:
    using Materials = std::vector<std::uint32_t>;

    SourceVolume(const Support::Grid &grid, const Materials &materials,
                 std::uint32_t workingMaterial, const Util::Vector3D &position = {})
        : m_volume(boost::make_shared<Model::Automaton::TotalVolume>(
              grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX, grid.cellSizeY, grid.cellSizeZ,
              position, materials)),
          m_voxels(DistanceFrontRule::leftoversIn(materials, 1)),
          m_nextVoxels(
              DistanceFrontRule::leftoversIn(Materials(materials.size(), workingMaterial), 1000000))
    {
        DistanceFrontRule::write(m_volume->voxels(), m_voxels);
        DistanceFrontRule::write(m_volume->nextVoxels(), m_nextVoxels);
        release();
    }

    const boost::shared_ptr<Model::Automaton::TotalVolume> &volume() const { return m_volume; }

    /// Both arrays are as before, and can be taken, or this would never return.
    void expectUnchanged()
    {
        const std::size_t count = m_voxels.size();
        EXPECT_TRUE(
            PassRuns::areSame(DistanceFrontRule::read(m_volume->voxels(), count), m_voxels));
        EXPECT_TRUE(PassRuns::areSame(DistanceFrontRule::read(m_volume->nextVoxels(), count),
                                      m_nextVoxels));
        release();
    }

private:
    void release()
    {
        m_volume->releaseVoxels();
        m_volume->releaseNextVoxels();
    }

    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    DistanceFrontRule::Cells m_voxels;
    DistanceFrontRule::Cells m_nextVoxels;
};
