#pragma once

#include "Util/IObserver.h"

#include <QObject>

namespace Ui::Observers {

/// Tells the 3D view that the picture has changed. A signal, so that a notification from a worker
/// thread arrives queued on the GUI thread.
class UpdateObserver final : public QObject, public Util::IObserver
{
    Q_OBJECT

public:
    UpdateObserver();

    void update() override;

Q_SIGNALS:
    void updateGL();
};

} // namespace Ui::Observers
