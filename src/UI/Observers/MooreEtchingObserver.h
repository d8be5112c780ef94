#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the values of an etching by layers of the Moore neighbourhood and runs it. A rejected
/// dialog cancels the operation.
class MooreEtchingObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
