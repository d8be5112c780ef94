#pragma once

#include <cstdint>

namespace Model::Automaton {

/// One cell of a TotalVolume. Arrays of it are indexed by (x * sizeY + y) * sizeZ + z.
class Voxel final
{
public:
    /// `reached`, the distances start at rest, but belong to a process only once it has initialised
    /// them for every cell; nothing else may read them.
    explicit Voxel(std::uint32_t material = 0) : m_material(material) {}

    /// Material id; 0 is an empty cell (void), every other value a filled one. 1 is silicon.
    std::uint32_t material() const { return m_material; }
    void setMaterial(std::uint32_t material) { m_material = material; }

    /// The front of a distance-front process has reached this cell.
    bool isReached() const { return m_reached != 0; }
    void setReached(bool reached) { m_reached = reached ? 1 : 0; }

    /// Vector from this cell to the nearest front cell, in drawing units.
    float distanceX() const { return m_distanceX; }
    float distanceY() const { return m_distanceY; }
    float distanceZ() const { return m_distanceZ; }
    void setDistanceX(float distance) { m_distanceX = distance; }
    void setDistanceY(float distance) { m_distanceY = distance; }
    void setDistanceZ(float distance) { m_distanceZ = distance; }
    void setDistance(float x, float y, float z)
    {
        m_distanceX = x;
        m_distanceY = y;
        m_distanceZ = z;
    }

    /// Number of lattice atoms inside this cell; only silicon cells count up from 0.
    std::int32_t atoms() const { return m_atoms; }
    void setAtoms(std::int32_t atoms) { m_atoms = atoms; }

private:
    std::uint32_t m_material;
    std::uint8_t m_reached = 0;
    float m_distanceX = 0.0f;
    float m_distanceY = 0.0f;
    float m_distanceZ = 0.0f;
    std::int32_t m_atoms = 0;
};

} // namespace Model::Automaton
