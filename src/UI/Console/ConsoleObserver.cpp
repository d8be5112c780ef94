#include "UI/Console/ConsoleObserver.h"

#include "Core/CommandInterpreter.h"

namespace Ui::Console {

ConsoleObserver::ConsoleObserver(const Core::CommandInterpreter *interpreter)
    : m_interpreter(interpreter)
{}

void ConsoleObserver::update()
{
    const QString message = QString::fromStdString(m_interpreter->message());
    if (!message.isEmpty())
        Q_EMIT messageWritten(message);
}

} // namespace Ui::Console
