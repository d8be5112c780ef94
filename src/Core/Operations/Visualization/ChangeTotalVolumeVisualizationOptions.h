#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"
#include "Core/Operations/Visualization/VisualizationOptions.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core {
class Workspace;
}

namespace Core::Operations {

/// Chooses how a cell volume is drawn: its surface, its atoms, its empty cells. Colours are those
/// of the registry; all volumes of the document show them afterwards. Changes no cell and cannot be
/// undone.
///
/// A cancelled one stays the current operation until another one starts, which cancels it again.
class ChangeTotalVolumeVisualizationOptions final : public Operation
{
public:
    static constexpr std::uint32_t Id = 6;

    /// The workspace is not owned.
    explicit ChangeTotalVolumeVisualizationOptions(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// Those of the volume; the defaults while there is none.
    VisualizationOptions options() const;
    /// For next(), which applies them. Does nothing while there is no volume.
    void setOptions(const VisualizationOptions &options);

    void next() override;
    void cancel() override;
    /// Applies the options, if there are any; cancels otherwise, and leaves. Needs a current OpenGL
    /// context.
    void end() override;

private:
    void apply();

    static boost::shared_ptr<Util::IObserver> s_observer;

    Workspace *m_workspace;
    ProcessSequence m_sequence;
    VisualizationOptions m_options;
    bool m_optionsGiven = false;
};

} // namespace Core::Operations
