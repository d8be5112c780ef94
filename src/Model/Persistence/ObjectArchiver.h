#pragma once

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace Model {
class Object;
}

namespace Model::Persistence {

/// Material ids of a file, or of a document, and the ids that stand for them on the other side.
using MaterialMap = std::map<std::uint32_t, std::uint32_t>;

/// Turns the objects of one type into elements of a document file and back. Lives as long as its
/// workspace and is used for file after file. Owns none of the pointers that it is given; each may
/// be null, and has to be there only until the next call of its setter.
class ObjectArchiver
{
public:
    virtual ~ObjectArchiver() = default;
    ObjectArchiver(const ObjectArchiver &) = delete;
    ObjectArchiver &operator=(const ObjectArchiver &) = delete;

    virtual void setWriter(QXmlStreamWriter *writer) = 0;
    virtual void setReader(QXmlStreamReader *reader) = 0;
    /// For both directions: an id with an entry is replaced by it, others stay.
    virtual void setMaterialMap(const MaterialMap *map) = 0;
    /// Writes one `Object` element; nothing without a writer, or for an object of another type.
    virtual void save(const boost::shared_ptr<Object> &object) = 0;
    /// Reads the `Object` element on whose start the reader stands. Empty without a reader, and for
    /// an object that this machine cannot hold. Expects a current OpenGL context.
    virtual boost::shared_ptr<Object> load() = 0;

protected:
    ObjectArchiver() = default;
};

} // namespace Model::Persistence
