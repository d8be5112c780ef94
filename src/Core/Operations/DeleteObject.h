#pragma once

#include "Core/Operations/ObjectOperation.h"
#include "Core/PointerTracker.h"

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Takes the selected objects out of the document. They live on here, for undo.
class DeleteObject final : public ObjectOperation
{
public:
    static constexpr std::uint32_t Id = 4;

    /// The workspace is not owned.
    explicit DeleteObject(Workspace *workspace);

    void next() override;
    void cancel() override;
    void end() override;
    std::int32_t undo() override;
    void redo() override;

private:
    void leave(const char *message);
    void removeObjects();

    Workspace *m_workspace;
    std::uint32_t m_step = 0;
    PointerTracker::ObjectList m_objects;
};

} // namespace Core::Operations
