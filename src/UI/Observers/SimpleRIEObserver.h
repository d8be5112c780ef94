#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks for the values of a reactive ion etching and runs it. A rejected dialog cancels the
/// operation.
class SimpleRIEObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
