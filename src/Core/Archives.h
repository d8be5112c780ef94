#pragma once

#include "Core/StateFiles.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>

namespace Model::Persistence {
class ObjectArchiver;
}

namespace Core {

/// What one workspace keeps on disk: the archivers of its document's objects, by object type, and
/// the names of the two temporary state files, which exist as long as this does.
class Archives final
{
public:
    Archives();
    ~Archives();
    Archives(const Archives &) = delete;
    Archives &operator=(const Archives &) = delete;

    /// Empty for a type that cannot be saved.
    boost::shared_ptr<Model::Persistence::ObjectArchiver> archiver(std::uint32_t objectType) const;

    std::string undoFileName() const { return m_stateFiles.undoFileName(); }
    std::string redoFileName() const { return m_stateFiles.redoFileName(); }

private:
    std::map<std::uint32_t, boost::shared_ptr<Model::Persistence::ObjectArchiver>> m_archivers;
    StateFiles m_stateFiles;
};

} // namespace Core
