#pragma once

#include "Util/IObserver.h"

#include <QPointer>
#include <QWidget>

namespace Ui::Observers {

/// Closes the dialog of a model extraction, if it is still there.
class DestroyModelExtractionDialogObserver final : public Util::IObserver
{
public:
    /// Not owned; may go at any time.
    void setDialog(QWidget *dialog) { m_dialog = dialog; }

    void update() override;

private:
    QPointer<QWidget> m_dialog;
};

} // namespace Ui::Observers
