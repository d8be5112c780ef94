#include "Core/Operations/DragObjects.h"

#include "Core/Workspace.h"
#include "Model/Object.h"

#include <utility>

namespace Core::Operations {

DragObjects::DragObjects(std::string name, std::uint32_t id, Texts texts, Workspace *workspace)
    : ObjectOperation(std::move(name), id),
      m_workspace(workspace),
      m_texts(std::move(texts))
{}

DragObjects::~DragObjects() = default;

void DragObjects::next()
{
    if (m_step == Selecting) {
        const ObjectList selected = m_workspace->pointer().selectedObjects();
        takeObjects(selected);
        if (m_objects.empty()) {
            m_workspace->interpreter().writeMessage(m_texts.select);
            m_workspace->interpreter().awaitEnter(this);
            m_workspace->selection().setSelectionMode(true);
        } else {
            start();
        }
    } else if (m_step == AwaitingOrigin) {
        if (m_distanceEntered) {
            m_step = Placed;
            end();
        } else {
            m_workspace->interpreter().clearRequest();
            awaitDestination();
            write("Left click on destination.");
            m_step = Dragging;
        }
    } else if (m_step == Dragging) {
        dragOn();
    }
}

void DragObjects::takeObjects(const ObjectList &selected)
{
    for (const auto &chosen : selected) {
        const boost::shared_ptr<Model::Object> object = objectFor(chosen);
        if (!object)
            continue;
        object->setMoving(true);
        object->setDisplacement(m_distance);
        m_objects.push_back(object);
    }
}

void DragObjects::start()
{
    write("Left click or enter the distance into the console (x, y, z):");
    m_button = PointerTracker::NoButton;
    m_workspace->pointer().awaitClick(this, m_origin, m_button);
    m_distanceEntered = false;
    m_workspace->interpreter().awaitVector(this, m_distance, m_distanceEntered);
    m_step = AwaitingOrigin;
    m_workspace->selection().setSelectionMode(false);
    Util::notify(m_workspace->updateObservers());
}

void DragObjects::awaitDestination()
{
    m_button = PointerTracker::NoButton;
    m_workspace->pointer().awaitMove(this, m_previousPosition, m_position);
    m_workspace->pointer().awaitClick(this, m_position, m_button);
}

// Reached by any move of the pointer, and by a press, of which only a left one ends the drag.
void DragObjects::dragOn()
{
    m_distance += m_position - m_origin;
    for (const auto &object : m_objects)
        object->setDisplacement(m_distance);
    m_origin = m_position;
    Util::notify(m_workspace->updateObservers());
    if (m_button == PointerTracker::LeftPress) {
        m_step = Placed;
        end();
    } else {
        awaitDestination();
    }
}

void DragObjects::write(const std::string &text)
{
    m_workspace->interpreter().writeMessage(m_texts.prefix + text);
}

void DragObjects::placeObjects()
{
    releaseObjects();
    for (const auto &object : m_objects)
        object->translate(m_distance);
}

void DragObjects::releaseObjects()
{
    for (const auto &object : m_objects) {
        object->setMoving(false);
        object->setDisplacement(Util::Vector3D());
    }
}

void DragObjects::dropWaits()
{
    m_workspace->pointer().clearRequests();
    m_workspace->interpreter().dropRequest();
}

void DragObjects::finish(const std::string &text)
{
    m_workspace->selection().clear();
    dropWaits();
    write(text);
    m_workspace->finishOperation();
    Util::notify(m_workspace->updateObservers());
}

} // namespace Core::Operations
