#pragma once

#include "Util/Vector3D.h"

#include <cstdint>

namespace Model {

/// Anything that a document holds: drawn, picked, moved, saved or processed. Held by shared
/// pointer, also by the operations that worked on it.
class Object
{
public:
    /// What objectType() answers; archivers are keyed on it.
    enum Type : std::uint32_t
    {
        TotalVolumeType = 1,
        ExtractedModelType = 2
    };

    virtual ~Object() = default;
    Object(const Object &) = delete;
    Object &operator=(const Object &) = delete;

    virtual std::uint32_t objectType() const = 0;
    /// Draws in the matrix that is current, which it may leave changed: the walker restores it.
    /// Both draws need a current OpenGL context.
    virtual void draw(bool renderObjects, bool renderEdges) = 0;
    virtual void drawForPicking() = 0;
    /// A new object on the heap, owned by the caller; null where a class cannot be copied.
    virtual Object *clone() = 0;
    /// Adds the vector (world) to the object's position.
    virtual void translate(const Util::Vector3D &offset) = 0;
    /// A slot with no function.
    virtual void unusedVectorPair(const Util::Vector3D &first, const Util::Vector3D &second) = 0;
    virtual Util::Vector4D color() const;
    virtual Util::Vector3D outlineColor() const;
    virtual void setColor(const Util::Vector4D &color);
    virtual void setOutlineColor(const Util::Vector4D &color);
    virtual void setSelected(bool selected);
    virtual bool isSelected() const;

    /// Counts up from 0 over all objects of the program, clones included; never used again.
    std::uint32_t id() const;

    /// Drag state. It is kept for the object's operations; drawing does not read it.
    void setMoving(bool moving);
    bool isMoving() const;
    void setDisplacement(const Util::Vector3D &displacement);
    Util::Vector3D displacement() const;

protected:
    /// Takes its colours from the default colour scheme, whichever scheme is current.
    Object();

private:
    Util::Vector4D m_color;
    Util::Vector4D m_outlineColor;
    std::uint32_t m_id;
    bool m_moving = false;
    Util::Vector3D m_displacement;
    bool m_selected = false;
};

} // namespace Model
