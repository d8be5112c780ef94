#pragma once

#include "Core/Operations/IOperationFactory.h"
#include "Core/Operations/ObjectOperation.h"
#include "Core/Operations/Operation.h"
#include "Core/Workspace.h"
#include "Model/Object.h"
#include "Util/IObserver.h"
#include "Util/Vector3D.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Fakes {

/// What happened, in order.
using Log = std::vector<std::string>;
using Action = std::function<void()>;

/// Does what a test gave it. A copy runs, as the action may destroy its owner.
inline void perform(Action action)
{
    if (action)
        action();
}

class Observer final : public Util::IObserver
{
public:
    explicit Observer(Action action) : m_action(std::move(action)) {}
    void update() override { perform(m_action); }

private:
    Action m_action;
};

inline boost::shared_ptr<Util::IObserver> observing(Action action)
{
    return boost::make_shared<Observer>(std::move(action));
}

/// Appends the entry at each notification. The log outlives the observer.
inline boost::shared_ptr<Util::IObserver> logging(Log &log, const std::string &entry)
{
    return observing([&log, entry] { log.push_back(entry); });
}

/// What an operation does in its calls, beside logging them.
struct Script
{
    Action next;
    Action cancel;
    Action end;
    Action undo;
    Action redo;
    std::int32_t undoResult = 1;
};

/// Writes each call as "next A" into the log, A being its name, then follows its script; likewise
/// "destroy A". The log outlives it.
template <typename Base>
class Scripted : public Base
{
public:
    Scripted(const std::string &name, Log &log, Script script = {}, std::uint32_t id = 0)
        : Base(name, id),
          m_log(log),
          m_script(std::move(script))
    {}
    ~Scripted() override { m_log.push_back("destroy " + this->name()); }

    void next() override { play("next ", m_script.next); }
    void cancel() override { play("cancel ", m_script.cancel); }
    void end() override { play("end ", m_script.end); }

    Script &script() { return m_script; }

protected:
    void play(const char *call, const Action &action)
    {
        m_log.push_back(call + this->name());
        perform(action);
    }

private:
    Log &m_log;
    Script m_script;
};

class Operation final : public Scripted<Core::Operations::Operation>
{
public:
    using Scripted::Scripted;
};

class ObjectOperation final : public Scripted<Core::Operations::ObjectOperation>
{
public:
    using Scripted::Scripted;

    std::int32_t undo() override
    {
        const std::int32_t result = script().undoResult;
        play("undo ", script().undo);
        return result;
    }
    void redo() override { play("redo ", script().redo); }
};

/// Answers with what the test's function makes.
class OperationFactory final : public Core::Operations::IOperationFactory
{
public:
    using Maker = std::function<boost::shared_ptr<Core::Operations::Operation>(std::uint32_t)>;

    explicit OperationFactory(Maker maker) : m_maker(std::move(maker)) {}
    boost::shared_ptr<Core::Operations::Operation> create(std::uint32_t operationId) override
    {
        return m_maker(operationId);
    }

private:
    Maker m_maker;
};

/// An object that is not a cell volume. Its picking draws what the test gave it.
class Object final : public Model::Object
{
public:
    explicit Object(Action picking = nullptr) : m_picking(std::move(picking)) {}

    std::uint32_t objectType() const override { return ExtractedModelType; }
    void draw(bool, bool) override {}
    void drawForPicking() override { perform(m_picking); }
    Object *clone() override { return nullptr; }
    void translate(const Util::Vector3D &offset) override { m_position += offset; }
    void unusedVectorPair(const Util::Vector3D &, const Util::Vector3D &) override {}

    Util::Vector3D position() const { return m_position; }

private:
    Action m_picking;
    Util::Vector3D m_position;
};

/// One workspace for all tests of a suite, since each new one may have to wait for its state files;
/// every test finds it idle and empty. The log has what its observers are told, and whatever the
/// test adds.
class WorkspaceSuite : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_workspace = std::make_unique<Core::Workspace>();
        s_workspace->history().addUndoObserver(observing([] { note("undo changed"); }));
        s_workspace->history().addRedoObserver(observing([] { note("redo changed"); }));
        s_workspace->interpreter().addObserver(
            observing([] { note("message " + s_workspace->interpreter().message()); }));
        s_workspace->selection().addObserver(observing([] { note("selection mode changed"); }));
    }

    static void TearDownTestSuite() { s_workspace.reset(); }

    void SetUp() override
    {
        s_workspace->updateObservers().push_back(observing([] { note("view updated"); }));
        s_log.clear();
    }

    void TearDown() override
    {
        s_watch = nullptr;
        s_workspace->dropOperation();
        s_workspace->history().clear();
        s_workspace->interpreter().clearRequest();
        s_workspace->interpreter().writeMessage("");
        s_workspace->pointer().clearRequests();
        s_workspace->selection().setSelectionMode(false);
        s_workspace->document().reset();
        s_workspace->objectRecords().clear();
        s_workspace->updateObservers().clear();
        s_workspace->setOperationFactory(nullptr);
    }

    static Core::Workspace &workspace() { return *s_workspace; }
    static Log &log() { return s_log; }
    static std::ptrdiff_t countOf(const std::string &entry)
    {
        return std::count(s_log.begin(), s_log.end(), entry);
    }

    /// Called at each notification, with its entry: for looks at what holds in that moment.
    static void watch(std::function<void(const std::string &)> look) { s_watch = std::move(look); }

private:
    static void note(const std::string &entry)
    {
        s_log.push_back(entry);
        if (s_watch)
            s_watch(entry);
    }

    static inline Log s_log;
    static inline std::function<void(const std::string &)> s_watch;
    static inline std::unique_ptr<Core::Workspace> s_workspace;
};

} // namespace Fakes
