#pragma once

#include "Core/Operations/ObjectOperation.h"
#include "Core/PointerTracker.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// What moving and copying objects share: objects are selected, then the distance is either typed
/// or taken from two clicks, the small steps between them added up. World units.
class DragObjects : public ObjectOperation
{
public:
    ~DragObjects() override;

    void next() override;

protected:
    using ObjectList = PointerTracker::ObjectList;

    enum Step : std::uint32_t
    {
        Selecting = 0,
        AwaitingOrigin = 1,
        Dragging = 2,
        Placed = 3
    };

    /// The words of a class; `prefix` begins the other messages.
    struct Texts
    {
        std::string prefix;
        std::string select;
    };

    DragObjects(std::string name, std::uint32_t id, Texts texts, Workspace *workspace);

    /// The object to displace for a selected one; empty where there can be none, which passes it
    /// over.
    virtual boost::shared_ptr<Model::Object>
    objectFor(const boost::shared_ptr<Model::Object> &selected) = 0;

    Workspace &workspace() const { return *m_workspace; }
    const ObjectList &objects() const { return m_objects; }
    std::uint32_t step() const { return m_step; }
    const Util::Vector3D &distance() const { return m_distance; }

    /// Writes to the console, behind the prefix.
    void write(const std::string &text);
    /// Ends the drag of each object and puts it where it belongs.
    void placeObjects();
    void releaseObjects();
    /// Forgets the waits for the pointer and for a typed distance.
    void dropWaits();
    /// The last act of end(), with what was done.
    void finish(const std::string &text);

private:
    void takeObjects(const ObjectList &selected);
    void start();
    void awaitDestination();
    void dragOn();

    Workspace *m_workspace;
    Texts m_texts;
    ObjectList m_objects;
    std::uint32_t m_step = Selecting;
    bool m_distanceEntered = false;
    Util::Vector3D m_origin;
    Util::Vector3D m_position;
    Util::Vector3D m_distance;
    Util::Vector3D m_previousPosition;
    std::int32_t m_button = PointerTracker::NoButton;
};

} // namespace Core::Operations
