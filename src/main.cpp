#include "UI/MainWindow.h"

#include <QApplication>
#include <QColor>
#include <QIcon>
#include <QPixmap>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);

    QPixmap pixmap(32, 32);
    if (!pixmap.load(QStringLiteral("icon.ico"))) {
        // A failed load leaves the pixmap null.
        pixmap = QPixmap(32, 32);
        pixmap.fill(QColor(207, 8, 12, 255));
    }
    QApplication::setWindowIcon(QIcon(pixmap));

    // Deletes itself on close.
    auto *window = new Ui::MainWindow;
    window->showMaximized();
    return QApplication::exec();
}
