#include "Core/Operations/CopyObject.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Object.h"

#include <boost/pointer_cast.hpp>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

CopyObject::CopyObject(Workspace *workspace)
    : DragObjects("Copy Objects", Id,
                  {"Copy: ", "Copy: Select the object(s) to be copied and press Enter"}, workspace)
{}

boost::shared_ptr<Model::Object>
CopyObject::objectFor(const boost::shared_ptr<Model::Object> &selected)
{
    const boost::shared_ptr<Model::Object> copy(selected->clone());
    if (!copy)
        write("An object of a kind that cannot be copied was left out.");
    return copy;
}

void CopyObject::cancel()
{
    dropWaits();
    write("Operation canceled");
}

void CopyObject::end()
{
    placeObjects();
    for (const auto &object : objects()) {
        // A clone of a volume comes without its picture.
        if (const auto volume = boost::dynamic_pointer_cast<TotalVolume>(object))
            volume->painter().rebuild();
        workspace().document().addObject(object);
    }
    finish("Object(s) copied");
}

std::int32_t CopyObject::undo()
{
    for (const auto &object : objects())
        workspace().document().removeObject(object);
    return 1;
}

void CopyObject::redo()
{
    for (const auto &object : objects())
        workspace().document().addObject(object);
}

} // namespace Core::Operations
