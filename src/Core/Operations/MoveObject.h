#pragma once

#include "Core/Operations/DragObjects.h"

namespace Core::Operations {

/// Moves the selected objects.
class MoveObject final : public DragObjects
{
public:
    static constexpr std::uint32_t Id = 7;

    /// The workspace is not owned.
    explicit MoveObject(Workspace *workspace);

    /// Stays current: it leaves when the next operation starts.
    void cancel() override;
    void end() override;
    std::int32_t undo() override;
    void redo() override;

private:
    boost::shared_ptr<Model::Object>
    objectFor(const boost::shared_ptr<Model::Object> &selected) override;
    void translateObjects(const Util::Vector3D &offset);
};

} // namespace Core::Operations
