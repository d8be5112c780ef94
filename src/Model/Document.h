#pragma once

#include "Model/Layer.h"

#include <QMutex>
#include <QString>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <list>

namespace Model {

class Object;

/// The objects of one main window and the name of their file. One layer is the only case that
/// exists. The drawing walk and the changes of operations run on the GUI thread; objects() and
/// findObject() may be called from any thread.
class Document final
{
public:
    using ObjectList = Layer::ObjectList;

    Document();
    Document(const Document &) = delete;
    Document &operator=(const Document &) = delete;

    /// Appends to the current layer.
    void addObject(const boost::shared_ptr<Object> &object);
    /// Removes from the current layer; an object that is not there changes nothing. Takes no lock,
    /// so it is called on the GUI thread only.
    void removeObject(const boost::shared_ptr<Object> &object);
    /// All objects, layer by layer.
    ObjectList objects() const;
    /// The object with that id, or an empty pointer.
    boost::shared_ptr<Object> findObject(std::uint32_t objectId) const;

    /// Both draws need a current OpenGL context, and hold the lock of the objects meanwhile: what
    /// is drawn must not call the document.
    void draw(bool renderObjects, bool renderEdges) const;
    void drawForPicking() const;

    /// Path of the document's file; empty until the document is saved or opened.
    QString fileName() const;
    void setFileName(const QString &name);

    /// Back to one empty layer and no file name. GUI thread only: it leaves the objects unlocked.
    void reset();

private:
    void addFirstLayer();

    mutable QMutex m_objectsMutex;
    mutable QMutex m_nameMutex;
    std::list<boost::shared_ptr<Layer>> m_layers;
    boost::shared_ptr<Layer> m_currentLayer;
    QString m_fileName;
};

} // namespace Model
