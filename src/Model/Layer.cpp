#include "Model/Layer.h"

#include "Model/MatrixKeeper.h"
#include "Model/Object.h"

#include <GL/gl.h>

namespace Model {

Layer::Layer(std::uint32_t id) : m_id(id) {}

void Layer::add(const boost::shared_ptr<Object> &object)
{
    m_objects.push_back(object);
}

void Layer::remove(const boost::shared_ptr<Object> &object)
{
    // By value: the argument may be an element of the list.
    const boost::shared_ptr<Object> removed = object;
    m_objects.remove(removed);
}

Layer::ObjectList Layer::objects() const
{
    return m_objects;
}

boost::shared_ptr<Object> Layer::find(std::uint32_t objectId, bool &found) const
{
    for (const boost::shared_ptr<Object> &object : m_objects) {
        if (object->id() == objectId) {
            found = true;
            return object;
        }
    }
    found = false;
    return {};
}

void Layer::draw(bool renderObjects, bool renderEdges) const
{
    GLint mode = GL_RENDER;
    glGetIntegerv(GL_RENDER_MODE, &mode);
    if (mode == GL_SELECT) {
        drawForPicking();
        return;
    }
    const MatrixKeeper matrix;
    for (const boost::shared_ptr<Object> &object : m_objects) {
        object->draw(renderObjects, renderEdges);
        matrix.restore();
    }
}

void Layer::drawForPicking() const
{
    const MatrixKeeper matrix;
    for (const boost::shared_ptr<Object> &object : m_objects) {
        glPushName(object->id());
        object->drawForPicking();
        glPopName();
        matrix.restore();
    }
}

} // namespace Model
