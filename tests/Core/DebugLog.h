#pragma once

#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QtGlobal>

#include <string>
#include <vector>

namespace Fakes {

/// Collects what goes to the log while it lives, as "debug: text" or "other: text". Several threads
/// may log meanwhile; the lines are read when they are done.
class DebugLog final
{
public:
    DebugLog() : m_before(qInstallMessageHandler(&DebugLog::take)) { s_lines.clear(); }
    ~DebugLog() { qInstallMessageHandler(m_before); }
    DebugLog(const DebugLog &) = delete;
    DebugLog &operator=(const DebugLog &) = delete;

    const std::vector<std::string> &lines() const { return s_lines; }

private:
    static void take(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        const QMutexLocker locker(&s_mutex);
        s_lines.push_back((type == QtDebugMsg ? "debug: " : "other: ") + text.toStdString());
    }

    static inline QMutex s_mutex;
    static inline std::vector<std::string> s_lines;
    QtMessageHandler m_before;
};

} // namespace Fakes
