#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the film and the masks of a photolithography and runs it. A rejected dialog cancels the
/// operation.
class PhotolithographyObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
