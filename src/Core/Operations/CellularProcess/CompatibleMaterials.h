#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <vector>

class QString;

namespace Core::Operations {

/// The materials that take part in a process, from the record of a process; loops over cells ask
/// it.
class CompatibleMaterials final
{
public:
    /// Those of the process of this name, as the registry has it now; none if there is no such
    /// process.
    explicit CompatibleMaterials(const QString &processName);

    bool contains(std::uint32_t material) const
    {
        if (material < DenseIds)
            return material < m_dense.size() && m_dense[material] != 0;
        return m_ids.count(material) != 0;
    }

private:
    static constexpr std::uint32_t DenseIds = 65536;

    std::set<std::uint32_t> m_ids;
    /// A byte an id, as far as they are small.
    std::vector<std::uint8_t> m_dense;
};

} // namespace Core::Operations
