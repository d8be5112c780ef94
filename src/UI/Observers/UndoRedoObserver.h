#pragma once

#include "Util/IObserver.h"

#include <QObject>

namespace Ui::Observers {

/// Tells the presenter that a stack of the history has changed. A signal, so that a notification
/// from a worker thread arrives queued on the GUI thread.
class UndoRedoObserver final : public QObject, public Util::IObserver
{
    Q_OBJECT

public:
    UndoRedoObserver();

    void update() override;

Q_SIGNALS:
    void stackChanged();
};

} // namespace Ui::Observers
