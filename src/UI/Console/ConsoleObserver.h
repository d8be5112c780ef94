#pragma once

#include "Util/IObserver.h"

#include <QObject>
#include <QString>

namespace Core {
class CommandInterpreter;
}

namespace Ui::Console {

/// Carries the interpreter's messages to the console; from a worker thread they arrive queued on
/// the GUI thread. Does not own the interpreter.
class ConsoleObserver final : public QObject, public Util::IObserver
{
    Q_OBJECT

public:
    explicit ConsoleObserver(const Core::CommandInterpreter *interpreter);

    void update() override;

Q_SIGNALS:
    void messageWritten(QString message);

private:
    const Core::CommandInterpreter *m_interpreter;
};

} // namespace Ui::Console
