#include "UI/ApplicationIcon.h"
#include "UI/MainWindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setWindowIcon(Ui::applicationIcon());
    // Deletes itself on close.
    auto *window = new Ui::MainWindow;
    window->showMaximized();
    return QApplication::exec();
}
