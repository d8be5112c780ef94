#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// An empty home directory, the user's for as long as it lives.
class TemporaryHome final
{
public:
    TemporaryHome() : m_wasSet(qEnvironmentVariableIsSet("HOME")), m_previous(qgetenv("HOME"))
    {
        qputenv("HOME", QFile::encodeName(m_folder.path()));
    }

    ~TemporaryHome()
    {
        if (m_wasSet) {
            qputenv("HOME", m_previous);
        } else {
            qunsetenv("HOME");
        }
    }

    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;

    /// Absolute path of a file or folder in this home.
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Makes the folders on the way too.
    void write(const QString &name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(content), content.size());
    }

    /// Null if there is no such file.
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Everything in this home, with paths below it, sorted.
    std::vector<std::string> content() const { return contentOf(QDir(m_folder.path()), ""); }

private:
    static std::vector<std::string> contentOf(const QDir &folder, const std::string &prefix)
    {
        std::vector<std::string> result;
        const auto entries = folder.entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo &entry : entries) {
            const std::string name = prefix + entry.fileName().toStdString();
            result.push_back(name);
            if (entry.isDir()) {
                const auto below = contentOf(QDir(entry.filePath()), name + "/");
                result.insert(result.end(), below.begin(), below.end());
            }
        }
        return result;
    }

    QTemporaryDir m_folder;
    bool m_wasSet;
    QByteArray m_previous;
};

/// Collects the log lines instead of printing them. Only one thread may log meanwhile.
class LogRecorder final
{
public:
    struct Line
    {
        QtMsgType type;
        std::string text;
        std::string file;
        std::string function;
        int line;
    };

    LogRecorder()
    {
        s_lines.clear();
        m_previous = qInstallMessageHandler(record);
    }
    ~LogRecorder() { qInstallMessageHandler(m_previous); }

    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;

    const std::vector<Line> &lines() const { return s_lines; }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> result;
        for (const Line &line : s_lines) {
            result.push_back(line.text);
        }
        return result;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const auto orEmpty = [](const char *part) { return std::string(part ? part : ""); };
        s_lines.push_back({type, text.toStdString(), orEmpty(context.file),
                           orEmpty(context.function), context.line});
    }

    static inline std::vector<Line> s_lines;
    QtMessageHandler m_previous = nullptr;
};

/// Calls a function when it is first read from, which is in the middle of a registry's loading.
class HookedBuffer final : public QBuffer
{
public:
    HookedBuffer(const QByteArray &content, std::function<void()> hook) : m_hook(std::move(hook))
    {
        setData(content);
        open(QIODevice::ReadOnly);
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (m_hook) {
            const auto hook = std::exchange(m_hook, nullptr);
            hook();
        }
        return QBuffer::readData(data, maxSize);
    }

private:
    std::function<void()> m_hook;
};

/// Runs one test of this binary in a process of its own, whose registries start in the home
/// directory that is set now. For what happens before main().
inline ::testing::AssertionResult
passesInNewProcess(const std::string &test, const std::map<std::string, std::string> &variables)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("GTEST_OUTPUT"));
    for (const auto &variable : variables) {
        environment.insert(QString::fromStdString(variable.first),
                           QString::fromStdString(variable.second));
    }

    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QFileInfo(QStringLiteral("/proc/self/exe")).symLinkTarget(),
                  {QStringLiteral("--gtest_color=no"),
                   QStringLiteral("--gtest_filter=") + QString::fromStdString(test)});
    const bool finished = process.waitForFinished(60000);
    const QByteArray output = process.readAll();
    if (finished && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0 &&
        output.contains("[  PASSED  ] 1 test.")) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure()
           << test << " in a process of its own: " << output.toStdString();
}

/// A known-answer file beside these tests.
inline QByteArray expectedFile(const QString &name)
{
    QFile file(QStringLiteral(LITHARA_TEST_DATA_DIR "/") + name);
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "cannot open " << file.fileName().toStdString();
    }
    return file.readAll();
}
