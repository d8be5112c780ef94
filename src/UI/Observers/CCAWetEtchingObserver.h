#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the depth of a wet etching of silicon by rates in a modal dialog and runs it. A
/// rejected dialog leaves the operation as it is.
class CCAWetEtchingObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
