#include "UI/ModalDialog.h"

#include "UI/MainWindow.h"

#include <QDialog>

namespace Ui {

bool runModally(QDialog &dialog)
{
    const bool accepted = dialog.exec() == QDialog::Accepted;
    if (auto *window = qobject_cast<MainWindow *>(dialog.parentWidget()))
        window->makeViewCurrent();
    return accepted;
}

} // namespace Ui
