#include "UI/ModalDialog.h"

#include "UI/MainWindow.h"

#include <QDialog>

namespace Ui {

bool runModally(QDialog &dialog)
{
    const bool accepted = dialog.exec() == QDialog::Accepted;
    makeViewCurrent(dialog.parentWidget());
    return accepted;
}

void makeViewCurrent(QWidget *window)
{
    if (auto *mainWindow = qobject_cast<MainWindow *>(window))
        mainWindow->makeViewCurrent();
}

} // namespace Ui
