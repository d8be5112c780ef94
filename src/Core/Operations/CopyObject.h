#pragma once

#include "Core/Operations/DragObjects.h"

namespace Core::Operations {

/// Adds displaced clones of the selected objects to the document. The objects themselves are not
/// touched.
class CopyObject final : public DragObjects
{
public:
    static constexpr std::uint32_t Id = 1;

    /// The workspace is not owned.
    explicit CopyObject(Workspace *workspace);

    /// Stays current: it leaves when the next operation starts.
    void cancel() override;
    void end() override;
    std::int32_t undo() override;
    void redo() override;

private:
    boost::shared_ptr<Model::Object>
    objectFor(const boost::shared_ptr<Model::Object> &selected) override;
};

} // namespace Core::Operations
