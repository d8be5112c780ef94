#pragma once

#include "Model/Materials/Material.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace Model::Process {

/// Which materials a fabrication process may produce or act on; a value, copied everywhere.
class Process final
{
public:
    /// The empty record: no name, id 0, no materials.
    Process() = default;
    Process(const QString &name, std::uint32_t id);
    Process(const QString &name, std::uint32_t id,
            const std::vector<std::uint32_t> &compatibleMaterialIds);

    /// Operations look their record up by this name, exactly.
    const QString &name() const { return m_name; }
    /// Key in the registry; 0 means no process.
    std::uint32_t id() const { return m_id; }
    /// Ids in the order in which they were added; some may be unknown to the material registry.
    std::vector<std::uint32_t> compatibleMaterialIds() const { return m_compatibleMaterialIds; }
    /// Replaces the whole list.
    void setCompatibleMaterialIds(const std::vector<std::uint32_t> &ids);
    /// Appends the id, also if it is in the list already.
    void addCompatibleMaterial(std::uint32_t id);

    /// The registry's materials of `compatibleMaterialIds`, in that order; unknown ids are left
    /// out.
    std::vector<Materials::Material> compatibleMaterials() const;

private:
    QString m_name;
    std::uint32_t m_id = 0;
    std::vector<std::uint32_t> m_compatibleMaterialIds;
};

} // namespace Model::Process
