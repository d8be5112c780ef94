#pragma once

#include "UI/Observers/OptionsObserver.h"

namespace Ui::Observers {

/// Asks where a volume is cut, and cuts it there. A rejected dialog takes back what it has shown of
/// the cut, and cancels the operation.
class CutCellVolumeObserver final : public OptionsObserver
{
public:
    using OptionsObserver::OptionsObserver;

    void update() override;
};

} // namespace Ui::Observers
