#include "Core/CommandInterpreter.h"

#include "Core/Operations/Operation.h"

#include <boost/lexical_cast.hpp>

#include <algorithm>
#include <array>
#include <ios>
#include <locale>
#include <sstream>
#include <string_view>

namespace Core {

using Operations::Operation;

namespace {

// "light" stands twice.
constexpr std::array<std::string_view, 27> ReservedWords = {
    "rect",  "l",       "polygon", "undo", "redo",       "copy",    "move",     "del",   "sel",
    "color", "rotate",  "new",     "open", "save",       "close",   "render",   "light", "edge",
    "axis",  "extrude", "ext",     "cr",   "copyrotate", "setview", "set view", "light", "+"};

/// Three numbers with a comma behind the first two. What stands between a number and its comma is
/// passed over, up to 100 characters, so that without a comma the rest of the line is swallowed.
Util::Vector3D toVector(const std::string &text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    stream >> x;
    stream.ignore(100, ',');
    stream >> y;
    stream.ignore(100, ',');
    stream >> z;
    return {x, y, z};
}

} // namespace

void CommandInterpreter::writeMessage(const std::string &message)
{
    m_message = message;
    if (!m_message.empty())
        Util::notify(m_observers);
}

void CommandInterpreter::addObserver(const boost::shared_ptr<Util::IObserver> &observer)
{
    m_observers.push_back(observer);
}

void CommandInterpreter::awaitEnter(Operation *operation, bool *entered)
{
    take(operation);
    m_enterFlag = entered;
    m_enterArmed = true;
}

void CommandInterpreter::awaitInteger(Operation *operation, std::int32_t &target, bool &received)
{
    take(operation);
    m_kind = Integer;
    m_integerTarget = &target;
    m_receivedFlag = &received;
    received = false;
}

void CommandInterpreter::awaitDouble(Operation *operation, double &target, bool &received)
{
    take(operation);
    m_kind = Double;
    m_doubleTarget = &target;
    m_receivedFlag = &received;
    received = false;
}

void CommandInterpreter::awaitVector(Operation *operation, Util::Vector3D &target, bool &received)
{
    take(operation);
    m_kind = Vector;
    m_vectorTarget = &target;
    m_receivedFlag = &received;
    received = false;
}

void CommandInterpreter::awaitString(Operation *operation, std::string &target)
{
    take(operation);
    m_kind = String;
    m_stringTarget = &target;
    m_receivedFlag = nullptr;
}

void CommandInterpreter::awaitAnyText(Operation *operation)
{
    take(operation);
    m_kind = AnyText;
    m_receivedFlag = nullptr;
}

void CommandInterpreter::take(Operation *operation)
{
    if (m_operation == operation)
        return;
    if (m_operation)
        m_operation->end();
    m_operation = operation;
    // An Enter that an earlier waiter armed and never got is not this one's.
    m_enterArmed = false;
    m_enterFlag = nullptr;
    m_kind = Nothing;
}

void CommandInterpreter::clearRequest()
{
    dropRequest();
    m_reserved = nullptr;
    m_mode = RestMode;
}

void CommandInterpreter::dropRequest()
{
    m_operation = nullptr;
    m_kind = Nothing;
}

void CommandInterpreter::enter(const std::string &text)
{
    if (m_operation && !text.empty() && m_kind != Nothing && convert(text)) {
        if (m_receivedFlag)
            *m_receivedFlag = true;
        m_kind = Nothing;
        fire();
        return;
    }
    if (m_operation && m_enterArmed) {
        if (m_enterFlag)
            *m_enterFlag = true;
        m_enterArmed = false;
        fire();
        return;
    }
    // The text is discarded whether it is a word of the command language or not: menus and
    // shortcuts start operations, the console never does.
    static_cast<void>(isReservedWord(text));
}

bool CommandInterpreter::convert(const std::string &text)
{
    std::string failure;
    try {
        switch (m_kind) {
        case Integer:
            *m_integerTarget = boost::lexical_cast<std::int32_t>(text);
            break;
        case Double:
            *m_doubleTarget = boost::lexical_cast<double>(text);
            break;
        case Vector:
            *m_vectorTarget = toVector(text);
            break;
        case String:
            *m_stringTarget = text;
            break;
        case AnyText:
        case Nothing:
            break;
        }
        return true;
    } catch (const boost::bad_lexical_cast &) {
        failure = m_kind == Integer ? "Invalid entry. Please enter an intenger"
                                    : "Invalid entry. Please enter a floating point value";
    } catch (const std::ios_base::failure &) {
        failure = "Invalid entry. Enter the x, y, z coordinates.";
    }
    writeMessage(failure);
    return false;
}

// The request is gone before the call, so that the waiter can arm again within it.
void CommandInterpreter::fire()
{
    Operation *waiter = m_operation;
    m_operation = nullptr;
    waiter->next();
}

bool CommandInterpreter::isReservedWord(const std::string &text)
{
    return std::find(ReservedWords.begin(), ReservedWords.end(), text) != ReservedWords.end();
}

} // namespace Core
