#pragma once

#include "Util/ObserverList.h"
#include "Util/Vector3D.h"

#include <cstdint>
#include <string>

namespace Core::Operations {
class Operation;
}

namespace Core {

/// Knows which operation waits for what from the console, and carries the messages to the user.
/// It holds at most one waiter, which it does not own: an operation calls clearRequest() or
/// dropRequest() before it leaves. Texts are UTF-8.
///
/// writeMessage() may run on a worker thread, where it and message(), which observers call, run one
/// after the other; there is no lock, so only one thread at a time may write. Everything else
/// belongs to the GUI thread.
class CommandInterpreter final
{
public:
    /// What a typed text is converted to.
    enum Kind : std::uint32_t
    {
        Integer = 0,
        Double = 1,
        Vector = 2,
        String = 3,
        AnyText = 4,
        Nothing = 5
    };

    CommandInterpreter() = default;
    CommandInterpreter(const CommandInterpreter &) = delete;
    CommandInterpreter &operator=(const CommandInterpreter &) = delete;

    /// Shows a text to the user. An empty one is stored and not shown.
    void writeMessage(const std::string &message);
    std::string message() const { return m_message; }
    void addObserver(const boost::shared_ptr<Util::IObserver> &observer);

    /// Arm calls. If a different operation waits, its end() is called first. The value arrives in
    /// `target` right before the waiter's next(); `received`, where there is one, is cleared here
    /// and set then.
    /// `entered`, where it is given, is set when an Enter fires the waiter; arming does not clear
    /// it.
    void awaitEnter(Operations::Operation *operation, bool *entered = nullptr);
    void awaitInteger(Operations::Operation *operation, std::int32_t &target, bool &received);
    void awaitDouble(Operations::Operation *operation, double &target, bool &received);
    void awaitVector(Operations::Operation *operation, Util::Vector3D &target, bool &received);
    void awaitString(Operations::Operation *operation, std::string &target);
    void awaitAnyText(Operations::Operation *operation);

    /// Forgets the waiting operation and the kind of value, and puts the rest of the request back
    /// to rest.
    void clearRequest();
    /// Forgets the waiting operation and the kind only.
    void dropRequest();

    /// A line from the user, which may be empty. A text that cannot be converted is answered with a
    /// message, and the operation goes on waiting.
    void enter(const std::string &text);

    /// Whether the text is a word of the command language, which is reserved and does nothing yet.
    static bool isReservedWord(const std::string &text);

private:
    void take(Operations::Operation *operation);
    /// Converts by kind into the target; false after a message if that fails.
    bool convert(const std::string &text);
    void fire();

    static constexpr std::uint32_t RestMode = 2;

    Operations::Operation *m_operation = nullptr;
    Operations::Operation *m_reserved = nullptr;
    std::string *m_stringTarget = nullptr;
    double *m_doubleTarget = nullptr;
    std::int32_t *m_integerTarget = nullptr;
    Util::Vector3D *m_vectorTarget = nullptr;
    Kind m_kind = Nothing;
    std::uint32_t m_mode = RestMode;
    bool *m_receivedFlag = nullptr;
    bool *m_enterFlag = nullptr;
    bool m_enterArmed = false;
    std::string m_message;
    Util::ObserverList m_observers;
};

} // namespace Core
