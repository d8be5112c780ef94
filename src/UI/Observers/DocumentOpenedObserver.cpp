#include "UI/Observers/DocumentOpenedObserver.h"

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Core/Workspace.h"
#include "UI/MainWindow.h"

namespace Ui::Observers {

void DocumentOpenedObserver::update()
{
    const QString fileName = Core::Operations::OpenDocumentOperation::fileName();
    auto *window = new MainWindow;
    Core::Workspace &workspace = window->presenter().workspace();
    window->makeViewCurrent();
    Core::Operations::openDocument(fileName, workspace);
    // Also where nothing could be read.
    window->setWindowTitle(QStringLiteral("Lithara  ") + workspace.document().fileName());
    window->showMaximized();
}

} // namespace Ui::Observers
