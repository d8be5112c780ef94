#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

/// Cuts a cell volume down between two heights. Needs the volume and both heights, in any order.
class PlanarizationOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 22;

    /// The workspace is not owned.
    explicit PlanarizationOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// Layers of cells that the volume has; 0 with no volume.
    std::uint32_t volumeHeight() const;
    /// Cells: the cell at this height and all above it go.
    void setMaximumHeight(std::uint32_t height);
    /// Cells: the cell at this height stays, all below it go.
    void setMinimumHeight(std::uint32_t height);

    void next() override;
    void cancel() override;
    /// Cuts, if volume and heights are there; cancels otherwise.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    ProcessSequence m_sequence;
    std::uint32_t m_maximumHeight = 0;
    std::uint32_t m_minimumHeight = 0;
    bool m_maximumSet = false;
    bool m_minimumSet = false;
};

} // namespace Core::Operations
