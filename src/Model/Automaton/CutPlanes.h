#pragma once

#include <QMutex>

#include <array>
#include <list>

namespace Model::Automaton {

/// The faces of the box that is drawn, as planes, for what is not made of cells. A plane a, b, c, d
/// keeps the side where a * x + b * y + c * z + d is negative or as good as 0.
class CutPlanes final
{
public:
    using Plane = std::array<float, 4>;

    CutPlanes() = default;
    CutPlanes(const CutPlanes &) = delete;
    CutPlanes &operator=(const CutPlanes &) = delete;

    void clear() { m_planes.clear(); }
    /// Drops a plane without a direction and one that is there already. Takes the mutex.
    void add(float a, float b, float c, float d);
    /// Whether all planes keep the point. Takes no lock.
    bool contains(float x, float y, float z) const;

    const std::list<Plane> &planes() const { return m_planes; }

private:
    QMutex m_mutex;
    std::list<Plane> m_planes;
};

} // namespace Model::Automaton
