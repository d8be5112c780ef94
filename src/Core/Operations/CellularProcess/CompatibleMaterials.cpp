#include "Core/Operations/CellularProcess/CompatibleMaterials.h"

#include "Model/Process/ProcessFactory.h"

namespace Core::Operations {

CompatibleMaterials::CompatibleMaterials(const QString &processName)
{
    const std::vector<std::uint32_t> ids = Model::Process::ProcessFactory::instance()
                                               ->processByName(processName)
                                               .compatibleMaterialIds();
    m_ids.insert(ids.begin(), ids.end());
    for (const std::uint32_t id : m_ids) {
        if (id >= DenseIds)
            break;
        m_dense.resize(std::size_t{id} + 1, 0);
        m_dense[id] = 1;
    }
}

} // namespace Core::Operations
