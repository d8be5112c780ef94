#include "Model/Automaton/TotalVolume.h"

#include "Model/Automaton/SiLattice.h"

#include <QDebug>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace Model::Automaton {

TotalVolume::TotalVolume(std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ,
                         float cellSizeX, float cellSizeY, float cellSizeZ,
                         const Util::Vector3D &position,
                         const std::vector<std::uint32_t> &materialIds)
    : m_voxels(sizeX * sizeY * sizeZ, materialIds),
      m_nextVoxels(sizeX * sizeY * sizeZ, materialIds),
      m_sizeX(sizeX),
      m_sizeY(sizeY),
      m_sizeZ(sizeZ),
      m_cellSizeX(cellSizeX),
      m_cellSizeY(cellSizeY),
      m_cellSizeZ(cellSizeZ),
      m_position(position),
      m_painter(this)
{}

std::uint32_t TotalVolume::objectType() const
{
    return TotalVolumeType;
}

void TotalVolume::draw(bool renderObjects, bool renderEdges)
{
    m_painter.draw(renderObjects, renderEdges);
}

void TotalVolume::drawForPicking()
{
    m_painter.drawForPicking();
}

TotalVolume *TotalVolume::clone()
{
    std::vector<std::uint32_t> materialIds(cellCount());
    const Voxel *cells = voxels();
    for (std::size_t i = 0; i < materialIds.size(); ++i)
        materialIds[i] = cells[i].material();
    releaseVoxels();
    return new TotalVolume(m_sizeX, m_sizeY, m_sizeZ, m_cellSizeX, m_cellSizeY, m_cellSizeZ,
                           m_position, materialIds);
}

void TotalVolume::translate(const Util::Vector3D &offset)
{
    m_position += offset;
}

void TotalVolume::unusedVectorPair(const Util::Vector3D & /*first*/,
                                   const Util::Vector3D & /*second*/)
{}

Voxel *TotalVolume::voxels()
{
    m_voxelsLock.lock();
    return m_voxels.data();
}

Voxel *TotalVolume::nextVoxels()
{
    m_nextVoxelsLock.lock();
    return m_nextVoxels.data();
}

void TotalVolume::releaseVoxels()
{
    m_voxelsLock.unlock();
}

void TotalVolume::releaseNextVoxels()
{
    m_nextVoxelsLock.unlock();
}

void TotalVolume::swapVoxels()
{
    m_voxels.swap(m_nextVoxels);
}

void TotalVolume::rebuildSiLattice()
{
    m_siLattice = boost::make_shared<SiLattice>(this);
    m_siLattice->build();
    qDebug() << "Done initializing";
}

void TotalVolume::setTopMask(const std::vector<bool> &bits, std::uint32_t width,
                             std::uint32_t height)
{
    m_topMask = bits;
    m_topMaskWidth = width;
    m_topMaskHeight = height;
    ++m_maskRevision;
}

void TotalVolume::setBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                                std::uint32_t height)
{
    m_bottomMask = bits;
    m_bottomMaskWidth = width;
    m_bottomMaskHeight = height;
    ++m_maskRevision;
}

void TotalVolume::topMaskExtent(std::uint32_t &width, std::uint32_t &height) const
{
    width = m_topMaskWidth;
    height = m_topMaskHeight;
}

void TotalVolume::bottomMaskExtent(std::uint32_t &width, std::uint32_t &height) const
{
    width = m_bottomMaskWidth;
    height = m_bottomMaskHeight;
}

void TotalVolume::clearTopMask()
{
    std::fill(m_topMask.begin(), m_topMask.end(), false);
    ++m_maskRevision;
}

void TotalVolume::clearBottomMask()
{
    std::fill(m_bottomMask.begin(), m_bottomMask.end(), false);
    ++m_maskRevision;
}

} // namespace Model::Automaton
