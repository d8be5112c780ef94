#include "Core/Operations/CreateSubstrateOperation.h"

#include "Core/Operations/SubstrateBuilder.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <utility>

namespace Core::Operations {

CreateSubstrateOperation::CreateSubstrateOperation(Workspace *workspace)
    : ObjectOperation("Create Substrate", Id),
      m_workspace(workspace)
{}

void CreateSubstrateOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    m_observer = std::move(observer);
}

void CreateSubstrateOperation::setBoxSubstrate(
    std::uint32_t material, std::uint32_t totalX, std::uint32_t totalY, std::uint32_t totalZ,
    const Util::Vector3D &position, std::uint32_t displacementX, std::uint32_t displacementY,
    std::uint32_t displacementZ, std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ)
{
    m_spherical = false;
    m_material = material;
    m_totalX = totalX;
    m_totalY = totalY;
    m_totalZ = totalZ;
    m_position = position;
    m_displacementX = displacementX;
    m_displacementY = displacementY;
    m_displacementZ = displacementZ;
    m_sizeX = sizeX;
    m_sizeY = sizeY;
    m_sizeZ = sizeZ;
    m_state = ValuesGiven;
}

void CreateSubstrateOperation::setSphericalSubstrate(std::uint32_t material, std::uint32_t totalX,
                                                     std::uint32_t totalY, std::uint32_t totalZ,
                                                     const Util::Vector3D &position,
                                                     std::uint32_t centerX, std::uint32_t centerY,
                                                     std::uint32_t centerZ, std::uint32_t radius)
{
    m_spherical = true;
    m_material = material;
    m_totalX = totalX;
    m_totalY = totalY;
    m_totalZ = totalZ;
    m_position = position;
    m_centerX = centerX;
    m_centerY = centerY;
    m_centerZ = centerZ;
    m_radius = radius;
    m_state = ValuesGiven;
}

void CreateSubstrateOperation::next()
{
    if (m_state == Asking) {
        if (m_observer)
            m_observer->update();
    } else if (m_state == ValuesGiven) {
        m_state = Running;
        end();
    }
}

void CreateSubstrateOperation::cancel()
{
    m_workspace->dropOperation();
}

void CreateSubstrateOperation::end()
{
    if (m_state != Running)
        return;
    SubstrateBuilder builder =
        m_spherical ? SubstrateBuilder(m_material, m_totalX, m_totalY, m_totalZ, m_position,
                                       m_centerX, m_centerY, m_centerZ, m_radius)
                    : SubstrateBuilder(m_material, m_totalX, m_totalY, m_totalZ, m_position,
                                       m_displacementX, m_displacementY, m_displacementZ, m_sizeX,
                                       m_sizeY, m_sizeZ);
    m_volume = builder.build();
    m_volume->painter().rebuild();
    m_workspace->document().addObject(m_volume);
    m_workspace->interpreter().writeMessage("Create Substrate: substrate created successfully.");
    Util::notify(m_workspace->updateObservers());
    m_workspace->finishOperation();
}

std::int32_t CreateSubstrateOperation::undo()
{
    m_workspace->document().removeObject(m_volume);
    return 1;
}

void CreateSubstrateOperation::redo()
{
    m_workspace->document().addObject(m_volume);
}

} // namespace Core::Operations
