#pragma once

#include "Util/ObserverList.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>

namespace Model {
class Document;
class Object;
} // namespace Model

namespace Core {

class PointerTracker;

/// The selected objects of a document, in the order of the clicks, kept apart from the document.
/// Each change is published to the pointer tracker, where operations read it.
class Selection final
{
public:
    using ObjectList = std::list<boost::shared_ptr<Model::Object>>;

    /// Neither is owned; both outlive the selection.
    Selection(Model::Document *document, PointerTracker *pointer);
    Selection(const Selection &) = delete;
    Selection &operator=(const Selection &) = delete;

    bool isSelectionMode() const { return m_selectionMode; }
    /// Turning it off clears the selection.
    void setSelectionMode(bool on);
    void clear();
    /// Takes out what the document no longer holds, for example after an undo.
    void dropRemoved();

    /// Toggles what lies under the window position (pixels, y downward), in selection mode only;
    /// returns whether anything was hit. Needs a current OpenGL context with the view's modelview
    /// matrix in place. Of several objects under the pointer the first drawn is hit, which need
    /// not be the nearest.
    bool pick(std::int32_t x, std::int32_t y);

    /// Told when the selection mode changes.
    void addObserver(const boost::shared_ptr<Util::IObserver> &observer);

private:
    void toggle(std::uint32_t objectId);
    void publish();

    Model::Document *m_document;
    PointerTracker *m_pointer;
    ObjectList m_selected;
    Util::ObserverList m_observers;
    bool m_selectionMode = false;
};

} // namespace Core
