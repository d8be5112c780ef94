#include "Core/StateFiles.h"

#include "Util/QtRandom.h"

#include <QDateTime>
#include <QFile>
#include <QString>

namespace Core {

namespace {

bool createEmpty(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadWrite | QIODevice::Text);
}

} // namespace

StateFiles::StateFiles()
{
    for (;;) {
        Util::seedRandom(static_cast<unsigned>(QDateTime::currentSecsSinceEpoch()));
        const QString number = QString::number(Util::nextRandom());
        const QString undoName = QStringLiteral("undo") + number + QStringLiteral(".temp");
        const QString redoName = QStringLiteral("redo") + number + QStringLiteral(".temp");
        if (QFile::exists(undoName) || QFile::exists(redoName))
            continue;
        const bool undoCreated = createEmpty(undoName);
        const bool redoCreated = createEmpty(redoName);
        if (undoCreated && redoCreated) {
            m_undoFileName = undoName.toStdString();
            m_redoFileName = redoName.toStdString();
            return;
        }
        QFile::remove(undoName);
        QFile::remove(redoName);
    }
}

StateFiles::~StateFiles()
{
    QFile::remove(QString::fromStdString(m_undoFileName));
    QFile::remove(QString::fromStdString(m_redoFileName));
}

} // namespace Core
