#include "Model/Document.h"

#include "Model/Object.h"

#include <QMutexLocker>

#include <boost/make_shared.hpp>

namespace Model {

Document::Document()
{
    addFirstLayer();
}

void Document::addObject(const boost::shared_ptr<Object> &object)
{
    const QMutexLocker lock(&m_objectsMutex);
    m_currentLayer->add(object);
}

void Document::removeObject(const boost::shared_ptr<Object> &object)
{
    m_currentLayer->remove(object);
}

Document::ObjectList Document::objects() const
{
    const QMutexLocker lock(&m_objectsMutex);
    ObjectList all;
    for (const boost::shared_ptr<Layer> &layer : m_layers)
        all.splice(all.end(), layer->objects());
    return all;
}

boost::shared_ptr<Object> Document::findObject(std::uint32_t objectId) const
{
    const QMutexLocker lock(&m_objectsMutex);
    for (const boost::shared_ptr<Layer> &layer : m_layers) {
        bool found = false;
        const boost::shared_ptr<Object> object = layer->find(objectId, found);
        if (found)
            return object;
    }
    return {};
}

void Document::draw(bool renderObjects, bool renderEdges) const
{
    const QMutexLocker lock(&m_objectsMutex);
    for (const boost::shared_ptr<Layer> &layer : m_layers)
        layer->draw(renderObjects, renderEdges);
}

void Document::drawForPicking() const
{
    const QMutexLocker lock(&m_objectsMutex);
    for (const boost::shared_ptr<Layer> &layer : m_layers)
        layer->drawForPicking();
}

QString Document::fileName() const
{
    const QMutexLocker lock(&m_nameMutex);
    return m_fileName;
}

void Document::setFileName(const QString &name)
{
    const QMutexLocker lock(&m_nameMutex);
    m_fileName = name;
}

void Document::reset()
{
    m_layers.clear();
    addFirstLayer();
    setFileName(QString());
}

void Document::addFirstLayer()
{
    m_currentLayer = boost::make_shared<Layer>(0);
    m_layers.push_back(m_currentLayer);
}

} // namespace Model
