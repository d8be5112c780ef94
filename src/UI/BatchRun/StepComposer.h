#pragma once

#include "UI/BatchRun/ProcessData.h"

#include <cstdint>
#include <optional>

class QWidget;

namespace Ui::Operations {
class MaskReceiver;
}

namespace Ui {

/// Asks for the parameters of batch steps, each in the dialog that the operation of its process has
/// too. A short-lived value; owns none of what it is given.
class StepComposer final
{
public:
    /// `masks` is shown the masks of a photolithography while its dialog is open. `volumeHeight` is
    /// that of the volume which the step will meet, in layers of cells.
    StepComposer(QWidget *dialogParent, Operations::MaskReceiver *masks,
                 std::uint32_t volumeHeight);

    /// A step of that type; none if the user thought better of it, or the type is unknown.
    std::optional<ProcessData> compose(std::int32_t type) const;

private:
    std::optional<ProcessData> composePhotolithography() const;
    std::optional<ProcessData> composeSiWetEtching() const;
    std::optional<ProcessData> composeMooreDeposition() const;
    std::optional<ProcessData> composeMooreEtching() const;
    std::optional<ProcessData> composeCvd() const;
    std::optional<ProcessData> composeIsotropicEtching() const;
    std::optional<ProcessData> composePlanarization() const;
    std::optional<ProcessData> composeElectroplating() const;
    std::optional<ProcessData> composeDoping() const;
    std::optional<ProcessData> composeSpinCoating() const;
    std::optional<ProcessData> composeSaveImage() const;
    std::optional<ProcessData> composeCreateSubstrate() const;
    std::optional<ProcessData> composePvd() const;
    std::optional<ProcessData> composeSimpleRie() const;
    std::optional<ProcessData> composeIonImplantation() const;
    std::optional<ProcessData> composeSiOxidation() const;

    QWidget *m_dialogParent;
    Operations::MaskReceiver *m_masks;
    std::uint32_t m_volumeHeight;
};

} // namespace Ui
