#include "Core/Archives.h"

#include "Model/Object.h"
#include "Model/Persistence/TotalVolumeArchiver.h"

#include <boost/make_shared.hpp>

namespace Core {

using Model::Persistence::ObjectArchiver;
using Model::Persistence::TotalVolumeArchiver;

Archives::Archives()
    : m_archivers{{Model::Object::TotalVolumeType, boost::make_shared<TotalVolumeArchiver>()}}
{}

Archives::~Archives() = default;

boost::shared_ptr<ObjectArchiver> Archives::archiver(std::uint32_t objectType) const
{
    const auto found = m_archivers.find(objectType);
    return found == m_archivers.end() ? boost::shared_ptr<ObjectArchiver>() : found->second;
}

} // namespace Core
