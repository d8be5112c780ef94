#pragma once

#include "Util/IObserver.h"

namespace Ui::Observers {

/// Opens the file that the user chose in a new main window, which owns itself and has a document of
/// its own.
class DocumentOpenedObserver final : public Util::IObserver
{
public:
    DocumentOpenedObserver() = default;

    void update() override;
};

} // namespace Ui::Observers
