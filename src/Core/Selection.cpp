#include "Core/Selection.h"

#include "Core/PointerTracker.h"
#include "Model/Document.h"
#include "Model/Object.h"

#include <GL/gl.h>
#include <GL/glu.h>

namespace Core {

namespace {

constexpr GLsizei PickBufferSize = 2048;
constexpr double PickRegion = 4.0;
/// A hit record begins with its number of names and two depths.
constexpr unsigned FirstName = 3;

GLuint s_pickBuffer[PickBufferSize];

} // namespace

Selection::Selection(Model::Document *document, PointerTracker *pointer)
    : m_document(document),
      m_pointer(pointer)
{}

void Selection::setSelectionMode(bool on)
{
    if (on == m_selectionMode)
        return;
    m_selectionMode = on;
    if (!on)
        clear();
    Util::notify(m_observers);
}

void Selection::clear()
{
    for (const boost::shared_ptr<Model::Object> &object : m_selected)
        object->setSelected(false);
    m_selected.clear();
    publish();
}

void Selection::dropRemoved()
{
    m_selected.remove_if([this](const boost::shared_ptr<Model::Object> &object) {
        const bool removed = !m_document->findObject(object->id());
        if (removed)
            object->setSelected(false);
        return removed;
    });
    publish();
}

bool Selection::pick(std::int32_t x, std::int32_t y)
{
    if (!m_selectionMode)
        return false;
    glSelectBuffer(PickBufferSize, s_pickBuffer);
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    GLdouble projection[16] = {};
    glGetDoublev(GL_PROJECTION_MATRIX, projection);

    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    gluPickMatrix(x, viewport[1] + viewport[3] - y, PickRegion, PickRegion, viewport);
    glMultMatrixd(projection);
    glMatrixMode(GL_MODELVIEW);

    glRenderMode(GL_SELECT);
    glInitNames();
    m_document->drawForPicking();
    const GLint hits = glRenderMode(GL_RENDER);

    if (hits > 0) {
        const GLuint names = s_pickBuffer[0];
        for (GLuint i = 0; i < names; ++i)
            toggle(s_pickBuffer[FirstName + i]);
    }

    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    publish();
    return hits >= 1;
}

void Selection::addObserver(const boost::shared_ptr<Util::IObserver> &observer)
{
    m_observers.push_back(observer);
}

void Selection::toggle(std::uint32_t objectId)
{
    const boost::shared_ptr<Model::Object> object = m_document->findObject(objectId);
    if (!object)
        return;
    if (object->isSelected()) {
        object->setSelected(false);
        m_selected.remove(object);
    } else {
        object->setSelected(true);
        m_selected.push_back(object);
    }
}

void Selection::publish()
{
    m_pointer->publishSelected(m_selected);
}

} // namespace Core
