#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the values of an ion implantation and runs it. A rejected dialog leaves the operation
/// current.
class IonImplantationOptionsObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
