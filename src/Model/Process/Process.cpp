#include "Model/Process/Process.h"

#include "Model/Materials/MaterialFactory.h"

namespace Model::Process {

Process::Process(const QString &name, std::uint32_t id) : m_name(name), m_id(id) {}

Process::Process(const QString &name, std::uint32_t id,
                 const std::vector<std::uint32_t> &compatibleMaterialIds)
    : m_name(name),
      m_id(id),
      m_compatibleMaterialIds(compatibleMaterialIds)
{}

void Process::setCompatibleMaterialIds(const std::vector<std::uint32_t> &ids)
{
    m_compatibleMaterialIds = ids;
}

void Process::addCompatibleMaterial(std::uint32_t id)
{
    m_compatibleMaterialIds.push_back(id);
}

std::vector<Materials::Material> Process::compatibleMaterials() const
{
    const auto registry = Materials::MaterialFactory::instance();
    std::vector<Materials::Material> result;
    for (const std::uint32_t id : m_compatibleMaterialIds) {
        const Materials::Material material = registry->material(id);
        if (material.id() != 0) {
            result.push_back(material);
        }
    }
    return result;
}

} // namespace Model::Process
