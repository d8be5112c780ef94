#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the substrate in a modal dialog and starts the waiting Create Substrate operation with
/// the answers, or cancels it.
class CreateSubstrateObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
