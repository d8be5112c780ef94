#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks how a volume is drawn and which colours materials have, and hands both on: the colours to
/// the registry. A rejected dialog cancels the operation.
class ChangeTotalVolumeViewOptionsObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
