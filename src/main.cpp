#include "Model/Process/ProcessFactory.h"
#include "UI/ApplicationIcon.h"
#include "UI/MainWindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    // Both registries are loaded by now, and written where they were missing. The window uses the
    // materials; the processes have to be named, or the linker leaves them out.
    static_cast<void>(Model::Process::ProcessFactory::instance());

    QApplication application(argc, argv);
    QApplication::setWindowIcon(Ui::applicationIcon());
    // Deletes itself on close.
    auto *window = new Ui::MainWindow;
    window->showMaximized();
    return QApplication::exec();
}
