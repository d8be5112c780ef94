#include "UI/ApplicationIcon.h"

#include <QColor>
#include <QPixmap>
#include <QString>

namespace Ui {

QIcon applicationIcon()
{
    QPixmap pixmap(32, 32);
    if (!pixmap.load(QStringLiteral("icon.ico"))) {
        // A failed load leaves the pixmap null.
        pixmap = QPixmap(32, 32);
        pixmap.fill(QColor(207, 8, 12, 255));
    }
    return QIcon(pixmap);
}

} // namespace Ui
