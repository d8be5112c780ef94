#pragma once

#include <cstdint>

namespace Model::Automaton {

/// One cell of a TotalVolume. Arrays of it are indexed by (x * sizeY + y) * sizeZ + z.
class Voxel final
{
public:
    /// What a distance-front process keeps in a cell. It starts at rest, but belongs to a process
    /// only once that has initialised it for every cell; nothing else may read it.
    struct Front
    {
        /// The front has reached this cell.
        bool reached;
        /// Vector from this cell to the nearest front cell, in drawing units.
        float distanceX;
        float distanceY;
        float distanceZ;
    };

    /// The material of the crystal.
    static constexpr std::uint32_t Silicon = 1;

    explicit Voxel(std::uint32_t material = 0)
        : m_material(material),
          m_front{false, 0.0f, 0.0f, 0.0f}
    {}

    /// Material id; 0 is an empty cell (void), every other value a filled one. 1 is silicon.
    std::uint32_t material() const { return m_material; }
    void setMaterial(std::uint32_t material) { m_material = material; }

    bool reached() const { return m_front.reached; }
    void setReached(bool reached) { m_front.reached = reached; }

    float distanceX() const { return m_front.distanceX; }
    float distanceY() const { return m_front.distanceY; }
    float distanceZ() const { return m_front.distanceZ; }
    void setDistanceX(float distance) { m_front.distanceX = distance; }
    void setDistanceY(float distance) { m_front.distanceY = distance; }
    void setDistanceZ(float distance) { m_front.distanceZ = distance; }
    void setDistance(float x, float y, float z)
    {
        m_front.distanceX = x;
        m_front.distanceY = y;
        m_front.distanceZ = z;
    }

    const Front &front() const { return m_front; }
    void setFront(const Front &front) { m_front = front; }

    /// Number of lattice atoms inside this cell; only silicon cells count up from 0.
    std::int32_t atoms() const { return m_atoms; }
    void setAtoms(std::int32_t atoms) { m_atoms = atoms; }

private:
    std::uint32_t m_material;
    Front m_front;
    std::int32_t m_atoms = 0;
};

} // namespace Model::Automaton
