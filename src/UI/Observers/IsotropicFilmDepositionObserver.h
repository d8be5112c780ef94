#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the values of an isotropic deposition in a modal dialog and runs it. A rejected dialog
/// leaves the operation current.
class IsotropicFilmDepositionObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
