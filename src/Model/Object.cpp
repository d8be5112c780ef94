#include "Model/Object.h"

#include "Model/ColorTable.h"

#include <atomic>

namespace Model {

namespace {

std::uint32_t nextId()
{
    // Volumes are also built on the batch worker.
    static std::atomic<std::uint32_t> s_nextId{0};
    return s_nextId++;
}

} // namespace

Object::Object()
    : m_color(ColorTable::colorSetting(ColorTable::ObjectColor, 0)),
      m_outlineColor(ColorTable::colorSetting(ColorTable::OutlineColor, 0)),
      m_id(nextId())
{}

Util::Vector4D Object::color() const
{
    return m_color;
}

Util::Vector3D Object::outlineColor() const
{
    return m_outlineColor;
}

void Object::setColor(const Util::Vector4D &color)
{
    m_color = color;
}

void Object::setOutlineColor(const Util::Vector4D &color)
{
    m_outlineColor = color;
}

void Object::setSelected(bool selected)
{
    m_selected = selected;
}

bool Object::isSelected() const
{
    return m_selected;
}

std::uint32_t Object::id() const
{
    return m_id;
}

void Object::setMoving(bool moving)
{
    m_moving = moving;
}

bool Object::isMoving() const
{
    return m_moving;
}

void Object::setDisplacement(const Util::Vector3D &displacement)
{
    m_displacement = displacement;
}

Util::Vector3D Object::displacement() const
{
    return m_displacement;
}

} // namespace Model
