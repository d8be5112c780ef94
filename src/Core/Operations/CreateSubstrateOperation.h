#pragma once

#include "Core/Operations/ObjectOperation.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}
namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Adds a new cell volume with a substrate to the document. Its observer asks the user, hands the
/// answers to one of the two setters and calls next(). Sizes and places in cells,
/// but for `position`, the world position of the volume.
class CreateSubstrateOperation final : public ObjectOperation
{
public:
    static constexpr std::uint32_t Id = 2;

    /// The workspace is not owned.
    explicit CreateSubstrateOperation(Workspace *workspace);

    void setObserver(boost::shared_ptr<Util::IObserver> observer);
    void setBoxSubstrate(std::uint32_t material, std::uint32_t totalX, std::uint32_t totalY,
                         std::uint32_t totalZ, const Util::Vector3D &position,
                         std::uint32_t displacementX, std::uint32_t displacementY,
                         std::uint32_t displacementZ, std::uint32_t sizeX, std::uint32_t sizeY,
                         std::uint32_t sizeZ);
    void setSphericalSubstrate(std::uint32_t material, std::uint32_t totalX, std::uint32_t totalY,
                               std::uint32_t totalZ, const Util::Vector3D &position,
                               std::uint32_t centerX, std::uint32_t centerY, std::uint32_t centerZ,
                               std::uint32_t radius);

    void next() override;
    void cancel() override;
    void end() override;
    std::int32_t undo() override;
    void redo() override;

private:
    enum State : std::int32_t
    {
        Asking = 0,
        ValuesGiven = 1,
        Running = 2
    };

    Workspace *m_workspace;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_volume;
    std::uint32_t m_material = 0;
    std::uint32_t m_totalX = 0;
    std::uint32_t m_totalY = 0;
    std::uint32_t m_totalZ = 0;
    std::uint32_t m_sizeX = 0;
    std::uint32_t m_sizeY = 0;
    std::uint32_t m_sizeZ = 0;
    std::uint32_t m_displacementX = 0;
    std::uint32_t m_displacementY = 0;
    std::uint32_t m_displacementZ = 0;
    std::uint32_t m_radius = 0;
    std::uint32_t m_centerX = 0;
    std::uint32_t m_centerY = 0;
    std::uint32_t m_centerZ = 0;
    Util::Vector3D m_position;
    bool m_spherical = false;
    std::int32_t m_state = Asking;
    boost::shared_ptr<Util::IObserver> m_observer;
};

} // namespace Core::Operations
