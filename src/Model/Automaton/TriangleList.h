#pragma once

#include "Model/Automaton/Triangle.h"

#include <cstddef>
#include <memory>

namespace Model::Automaton {

/// Triangles one behind the other. Its memory is kept for what it holds next and is never written
/// before a triangle is.
class TriangleList final
{
public:
    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }
    const Triangle *data() const { return m_triangles.get(); }
    Triangle *data() { return m_triangles.get(); }
    const Triangle &operator[](std::size_t index) const { return m_triangles[index]; }
    Triangle &operator[](std::size_t index) { return m_triangles[index]; }
    Triangle *begin() { return data(); }
    Triangle *end() { return data() + m_size; }
    const Triangle *begin() const { return data(); }
    const Triangle *end() const { return data() + m_size; }

    /// What the list held before is lost, also where there is no memory for more; the caller writes
    /// every triangle.
    void reset(std::size_t size)
    {
        m_size = 0;
        if (size > m_capacity) {
            m_triangles.reset();
            m_capacity = 0;
            // Not value-initialised.
            m_triangles.reset(new Triangle[size]);
            m_capacity = size;
        }
        m_size = size;
    }

private:
    std::unique_ptr<Triangle[]> m_triangles;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace Model::Automaton
