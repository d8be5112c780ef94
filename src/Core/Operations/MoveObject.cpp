#include "Core/Operations/MoveObject.h"

#include "Core/Workspace.h"
#include "Model/Object.h"

namespace Core::Operations {

// The prompt speaks of copying, as that of CopyObject does.
MoveObject::MoveObject(Workspace *workspace)
    : DragObjects("Move Objects", Id,
                  {"Move: ", "Move: Select the object(s) to be copied and press Enter/Return."},
                  workspace)
{}

boost::shared_ptr<Model::Object>
MoveObject::objectFor(const boost::shared_ptr<Model::Object> &selected)
{
    return selected;
}

void MoveObject::cancel()
{
    if (step() == Placed)
        return;
    dropWaits();
    releaseObjects();
    write("Operation canceled");
    Util::notify(workspace().updateObservers());
}

void MoveObject::end()
{
    if (step() != Placed) {
        cancel();
        workspace().dropOperation();
        return;
    }
    placeObjects();
    finish("Object(s) moved");
}

std::int32_t MoveObject::undo()
{
    translateObjects(-1.0 * distance());
    return 1;
}

void MoveObject::redo()
{
    translateObjects(distance());
}

void MoveObject::translateObjects(const Util::Vector3D &offset)
{
    for (const auto &object : objects())
        object->translate(offset);
    Util::notify(workspace().updateObservers());
}

} // namespace Core::Operations
