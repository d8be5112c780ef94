#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>

namespace Model {

class Object;

/// An ordered list of objects. A document has one, with id 0.
class Layer final
{
public:
    using ObjectList = std::list<boost::shared_ptr<Object>>;

    explicit Layer(std::uint32_t id = 0);

    std::uint32_t id() const { return m_id; }
    bool isVisible() const { return m_visible; }

    void add(const boost::shared_ptr<Object> &object);
    /// Removes every entry with the same pointer.
    void remove(const boost::shared_ptr<Object> &object);
    ObjectList objects() const;
    /// The first object with that id, or an empty pointer; `found` says which.
    boost::shared_ptr<Object> find(std::uint32_t objectId, bool &found) const;

    /// Both draws need a current OpenGL context.
    ///
    /// Draws each object, or, in OpenGL's selection mode, does what drawForPicking does. Every
    /// object gets the same matrix, whatever the one before it left.
    void draw(bool renderObjects, bool renderEdges) const;
    /// Draws each object's pick target under its id as OpenGL name, each with the same matrix.
    void drawForPicking() const;

private:
    ObjectList m_objects;
    std::uint32_t m_id;
    bool m_visible = true;
};

} // namespace Model
