#pragma once

#include "Model/Automaton/TotalVolumePainter.h"
#include "Model/Automaton/VoxelArray.h"
#include "Model/Object.h"
#include "Util/Vector3D.h"

#include <boost/interprocess/sync/spin/mutex.hpp>
#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace Model::Automaton {

class SiLattice;

/// The simulation volume: a dense grid of cells in two parallel arrays, its place in space, the two
/// photomask overlays and its painter. It is the one document object that processes change.
///
/// The index of cell (x, y, z) in either array is (x * sizeY + y) * sizeZ + z; z is height. Sizes,
/// cell sizes and array lengths never change: what changes the extents builds a new volume.
/// There are no checks on arguments, coordinates or material ids.
class TotalVolume final : public Object
{
public:
    /// Sizes in cells, cell sizes in drawing units, `position` the world place of the corner of
    /// cell (0, 0, 0). `materialIds` holds one id a cell in index order: sizeX * sizeY * sizeZ of
    /// them, in unsigned 32-bit arithmetic, which is not tested. Builds no surface. A current
    /// OpenGL context is expected here and at destruction.
    TotalVolume(std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ, float cellSizeX,
                float cellSizeY, float cellSizeZ, const Util::Vector3D &position,
                const std::vector<std::uint32_t> &materialIds);

    std::uint32_t objectType() const override;
    void draw(bool renderObjects, bool renderEdges) override;
    void drawForPicking() override;
    /// Copies sizes, position and material ids and nothing else: no masks, no atoms, no surface,
    /// no painter settings.
    TotalVolume *clone() override;
    /// Cells stay as they are; the picture follows without a rebuild.
    void translate(const Util::Vector3D &offset) override;
    void unusedVectorPair(const Util::Vector3D &first, const Util::Vector3D &second) override;

    std::uint32_t sizeX() const { return m_sizeX; }
    std::uint32_t sizeY() const { return m_sizeY; }
    std::uint32_t sizeZ() const { return m_sizeZ; }
    float cellSizeX() const { return m_cellSizeX; }
    float cellSizeY() const { return m_cellSizeY; }
    float cellSizeZ() const { return m_cellSizeZ; }
    Util::Vector3D position() const { return m_position; }

    /// The current cells, with their lock taken: to be given back with releaseVoxels(). The locks
    /// are not re-entrant. Who needs both arrays takes `voxels` first. A run on several threads
    /// takes the pointers once, on its controlling thread.
    Voxel *voxels();
    /// The working buffer of a running simulation; outside one it agrees with `voxels` in material.
    Voxel *nextVoxels();
    void releaseVoxels();
    void releaseNextVoxels();
    /// Exchanges the two arrays. The caller holds both locks.
    void swapVoxels();

    TotalVolumePainter &painter() { return m_painter; }

    /// The silicon crystal over the cells; empty until it is first built.
    boost::shared_ptr<SiLattice> siLattice() const { return m_siLattice; }
    /// Lays a new crystal over the cells as they are now. The counts of atoms that the cells have
    /// are added to.
    void rebuildSiLattice();

    /// Bit x * height + y stands for the column (x, y) and is drawn if set. Extents in cells; they
    /// may differ from the footprint, and from the number of bits.
    void setTopMask(const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height);
    void setBottomMask(const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height);
    const std::vector<bool> &topMask() const { return m_topMask; }
    const std::vector<bool> &bottomMask() const { return m_bottomMask; }
    void topMaskExtent(std::uint32_t &width, std::uint32_t &height) const;
    void bottomMaskExtent(std::uint32_t &width, std::uint32_t &height) const;
    /// Every bit 0; length and extents stay.
    void clearTopMask();
    void clearBottomMask();
    /// Another number after every change of a mask.
    std::uint32_t maskRevision() const { return m_maskRevision; }

private:
    std::uint32_t cellCount() const { return m_sizeX * m_sizeY * m_sizeZ; }

    /// Compare-and-swap, yielding and finally sleeping under contention; Boost keeps it in a
    /// namespace of its own.
    using SpinLock = boost::interprocess::ipcdetail::spin_mutex;

    VoxelArray m_voxels;
    VoxelArray m_nextVoxels;
    SpinLock m_voxelsLock;
    SpinLock m_nextVoxelsLock;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    float m_cellSizeX;
    float m_cellSizeY;
    float m_cellSizeZ;
    Util::Vector3D m_position;
    std::vector<bool> m_topMask;
    std::vector<bool> m_bottomMask;
    std::uint32_t m_bottomMaskHeight = 0;
    std::uint32_t m_bottomMaskWidth = 0;
    std::uint32_t m_topMaskHeight = 0;
    std::uint32_t m_topMaskWidth = 0;
    std::uint32_t m_maskRevision = 0;
    boost::shared_ptr<SiLattice> m_siLattice;
    TotalVolumePainter m_painter;
};

} // namespace Model::Automaton
