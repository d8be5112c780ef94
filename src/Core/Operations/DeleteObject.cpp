#include "Core/Operations/DeleteObject.h"

#include "Core/Workspace.h"

namespace Core::Operations {

DeleteObject::DeleteObject(Workspace *workspace)
    : ObjectOperation("Delete Objects", Id),
      m_workspace(workspace)
{}

void DeleteObject::next()
{
    if (m_step != 0)
        return;
    const PointerTracker::ObjectList selected = m_workspace->pointer().selectedObjects();
    if (selected.empty()) {
        m_workspace->interpreter().writeMessage(
            "Delete: Select the objects to be deleted and press Return/Enter");
        m_workspace->interpreter().awaitEnter(this);
        m_workspace->selection().setSelectionMode(true);
        return;
    }
    m_objects = selected;
    m_workspace->selection().clear();
    m_workspace->selection().setSelectionMode(false);
    m_step = 1;
    end();
}

void DeleteObject::cancel()
{
    leave("Delete: Operation canceled.");
}

void DeleteObject::end()
{
    if (m_step != 1) {
        leave("Delete: Operation canceled, no selected objects.");
        return;
    }
    removeObjects();
    m_workspace->interpreter().writeMessage("Delete: objects deleted.");
    m_workspace->finishOperation();
}

std::int32_t DeleteObject::undo()
{
    for (const auto &object : m_objects)
        m_workspace->document().addObject(object);
    Util::notify(m_workspace->updateObservers());
    return 1;
}

void DeleteObject::redo()
{
    removeObjects();
}

void DeleteObject::leave(const char *message)
{
    Util::notify(m_workspace->updateObservers());
    m_workspace->interpreter().clearRequest();
    m_workspace->interpreter().writeMessage(message);
    m_workspace->dropOperation();
}

void DeleteObject::removeObjects()
{
    for (const auto &object : m_objects)
        m_workspace->document().removeObject(object);
    Util::notify(m_workspace->updateObservers());
}

} // namespace Core::Operations
