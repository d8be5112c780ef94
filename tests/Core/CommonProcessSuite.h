#pragma once

#include "Fakes.h"
#include "ProcessSuite.h"

#include "Core/Operations/ObjectOperation.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Fakes {

/// The words and numbers of a process, and a volume on which an accepted dialog shows. The volume
/// and what it becomes are not empty and differ.
struct ProcessFacts
{
    std::string name;
    std::uint32_t id;
    std::string selected;
    std::string prompted;
    std::string finished;
    std::string canceled;
    Support::Grid grid;
    std::vector<std::uint32_t> before;
    std::vector<std::uint32_t> after;
};

/// What every process operation does, whatever its values are. Its tests are made by
/// PROCESS_OPERATION_TESTS or PROCESS_SELECTION_TESTS below.
template <typename Process>
class CommonProcessSuite : public ProcessSuite<Process>
{
protected:
    using Base = ProcessSuite<Process>;
    using typename Base::Answer;
    using typename Base::Shared;
    using typename Base::Volume;
    using Materials = std::vector<std::uint32_t>;

    static constexpr bool isUndoable =
        std::is_base_of_v<Core::Operations::ObjectOperation, Process>;
    static constexpr std::uint32_t silicon = 1;
    static constexpr std::uint32_t oxide = 3;
    static constexpr std::uint32_t unknownId = 5;

    /// `accepted` gives the values that turn `before` into `after`, and ends the operation.
    CommonProcessSuite(ProcessFacts facts, Answer accepted)
        : m_facts(std::move(facts)),
          m_accepted(std::move(accepted))
    {
        for (std::string *const text :
             {&m_facts.selected, &m_facts.prompted, &m_facts.finished, &m_facts.canceled})
            text->insert(0, "message ");
        m_volume = addSample();
        m_other = addSample();
    }

    /// A volume in the document, as before the process.
    Volume addSample() const
    {
        const Volume volume = Support::makeVolume(m_facts.grid, m_facts.before);
        Base::workspace().document().addObject(volume);
        return volume;
    }
    using Base::run;
    Shared run(const Volume &volume) { return Base::run(volume, m_accepted); }

    /// What the end of a run tells.
    Log endLog() const
    {
        if (isUndoable)
            return {"view updated", m_facts.finished, "undo changed", "redo changed",
                    "view updated"};
        return {"view updated", m_facts.finished, "view updated"};
    }
    Log cancelLog() const { return {m_facts.canceled, "view updated"}; }

    /// Calls end(), without holding the operation, and expects that it runs or that it cancels.
    void expectEnd(const Volume &volume, bool runs)
    {
        const std::uint32_t untouched = 77;
        Base::workspace().history().clear();
        Base::workspace().objectRecords().setLastOperation(volume->id(), untouched);
        Process *const operation = current().get();
        ASSERT_NE(operation, nullptr);
        log().clear();
        operation->end();
        EXPECT_EQ(log(), runs ? endLog() : cancelLog());
        EXPECT_EQ(Base::workspace().currentOperation(), nullptr);
        EXPECT_EQ(Base::workspace().history().undoName(),
                  runs && isUndoable ? m_facts.name : std::string());
        EXPECT_EQ(Base::workspace().objectRecords().lastOperation(volume->id()),
                  runs ? m_facts.id : untouched);
        if (!runs)
            expectMaterials(*volume, m_facts.before);
        // Nothing waits for Enter any more.
        select({m_volume});
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
        select({});
    }

    /// Expects that a run with this answer makes the lattice of its volume stale, before the views
    /// are updated, or leaves it as it was.
    void expectLattice(const Answer &answer, bool becomesStale)
    {
        Core::ObjectRecords &records = Base::workspace().objectRecords();
        for (const bool before : {false, true}) {
            const Volume volume = addSample();
            records.setLatticeStale(volume->id(), before);
            records.setLatticeStale(m_other->id(), false);
            std::ptrdiff_t looks = 0;
            Base::watch([&](const std::string &entry) {
                if (entry != "view updated" || faceCount(*volume) == 0)
                    return;
                ++looks;
                EXPECT_EQ(records.isLatticeStale(volume->id()), before || becomesStale);
            });
            run(volume, answer);
            Base::watch(nullptr);
            EXPECT_EQ(looks, 2);
            EXPECT_EQ(records.isLatticeStale(volume->id()), before || becomesStale);
            EXPECT_FALSE(records.isLatticeStale(m_other->id()));
        }
    }

    /// Expects that a run with this answer finishes as any other and leaves such a volume.
    void expectResult(const Answer &answer, const Materials &expected)
    {
        const Volume volume = addSample();
        log().clear();
        run(volume, answer);
        Log whole{"view updated", m_facts.selected, "dialog"};
        for (const std::string &entry : endLog())
            whole.push_back(entry);
        EXPECT_EQ(log(), whole);
        EXPECT_EQ(Base::workspace().objectRecords().lastOperation(volume->id()), m_facts.id);
        expectMaterials(*volume, expected);
        expectMaterials(*m_other, m_facts.before);
    }

    /// Expects that end() cancels below a step: the selection counts one, the observer another,
    /// each of the values one more, whichever it is.
    void expectStepsNeeded(int threshold, const std::vector<std::function<void(Process &)>> &values)
    {
        for (const auto &value : values)
            for (const bool observed : {false, true})
                for (int count = 0; count <= 4; ++count) {
                    SCOPED_TRACE(::testing::Message()
                                 << (observed ? "observed, " : "alone, ") << count << " values");
                    this->m_observed = observed;
                    const Volume volume = addSample();
                    Base::activateOn(volume);
                    for (int i = 0; i < count; ++i)
                        value(*current());
                    expectEnd(volume, (observed ? 2 : 1) + count >= threshold);
                }
    }

    /// Expects that end() cancels unless every one of the values was given, in any order; that one
    /// given twice does not stand for another; and that they may come before the volume.
    void expectAllNeeded(const std::vector<std::function<void(Process &)>> &values)
    {
        const unsigned all = (1U << values.size()) - 1;
        for (unsigned given = 0; given <= all; ++given)
            for (const bool backwards : {false, true})
                for (const bool atThePrompt : {false, true}) {
                    SCOPED_TRACE(::testing::Message()
                                 << "values " << given << (backwards ? ", backwards" : "")
                                 << (atThePrompt ? ", at the prompt" : ""));
                    const Volume volume = addSample();
                    if (atThePrompt)
                        activate();
                    else
                        Base::activateOn(volume);
                    for (int round = 0; round < 2; ++round)
                        for (std::size_t i = 0; i < values.size(); ++i) {
                            const std::size_t value = backwards ? values.size() - 1 - i : i;
                            if (given >> value & 1U)
                                values[value](*current());
                        }
                    if (atThePrompt) {
                        select({volume});
                        log().clear();
                        type("");
                        EXPECT_EQ(log(), (Log{"selection mode changed", "view updated",
                                              m_facts.selected, "dialog"}));
                    }
                    expectEnd(volume, given == all);
                }
        activate();
        for (const auto &value : values)
            value(*current());
        expectEnd(m_volume, false);
    }

    void selectedVolumeGoesStraightToTheDialog()
    {
        Base::activateOn(m_volume);
        EXPECT_EQ(log(), (Log{"view updated", m_facts.selected, "dialog"}));
        EXPECT_NE(current(), nullptr);
        EXPECT_TRUE(Base::workspace().pointer().selectedObjects().empty());
    }

    void withoutAnObserverItWaitsForItsValues()
    {
        this->m_observed = false;
        Base::activateOn(m_volume);
        EXPECT_EQ(log(), (Log{"view updated", m_facts.selected}));
        m_accepted(*Shared(current()));
        expectMaterials(*m_volume, m_facts.after);
    }

    void selectionIsClearAndItsModeOffBeforeTheViewsAreUpdated()
    {
        Base::workspace().selection().setSelectionMode(true);
        log().clear();
        Base::watch([](const std::string &entry) {
            if (entry != "view updated")
                return;
            EXPECT_TRUE(Base::workspace().pointer().selectedObjects().empty());
            EXPECT_FALSE(Base::workspace().selection().isSelectionMode());
        });
        Base::activateOn(m_volume);
        EXPECT_EQ(log(),
                  (Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
    }

    void firstVolumeOfTheSelectionIsTheTarget()
    {
        this->m_answer = m_accepted;
        select({boost::make_shared<Fakes::Object>(), m_other, m_volume});
        activate();
        expectMaterials(*m_volume, m_facts.before);
        expectMaterials(*m_other, m_facts.after);
    }

    void withNothingSelectedItPromptsAndTurnsTheSelectionModeOn()
    {
        activate();
        EXPECT_EQ(log(), (Log{m_facts.prompted, "selection mode changed"}));
        EXPECT_TRUE(Base::workspace().selection().isSelectionMode());
        EXPECT_NE(current(), nullptr);
    }

    void selectionOfOtherObjectsAlonePromptsToo()
    {
        select({boost::make_shared<Fakes::Object>()});
        activate();
        EXPECT_EQ(log(), (Log{m_facts.prompted, "selection mode changed"}));
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{m_facts.prompted});
    }

    void enterWithNothingPickedRepeatsThePrompt()
    {
        activate();
        for (int round = 0; round < 2; ++round) {
            log().clear();
            type("");
            EXPECT_EQ(log(), Log{m_facts.prompted});
            EXPECT_TRUE(Base::workspace().selection().isSelectionMode());
        }
    }

    void enterAfterThePickGoesToTheDialog()
    {
        activate();
        select({m_volume});
        log().clear();
        type("");
        EXPECT_EQ(log(),
                  (Log{"selection mode changed", "view updated", m_facts.selected, "dialog"}));
        EXPECT_FALSE(Base::workspace().selection().isSelectionMode());
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
    }

    void nextAfterTheSelectionDoesNothing()
    {
        for (const bool observed : {false, true}) {
            this->m_observed = observed;
            Base::workspace().cancelCurrent();
            Base::activateOn(m_volume);
            select({m_other});
            log().clear();
            current()->next();
            EXPECT_EQ(log(), Log{});
        }
        m_accepted(*Shared(current()));
        expectMaterials(*m_volume, m_facts.after);
        expectMaterials(*m_other, m_facts.before);
    }

    void acceptedDialogChangesTheCells()
    {
        expectResult(m_accepted, m_facts.after);
        EXPECT_EQ(Base::workspace().history().undoName(),
                  isUndoable ? m_facts.name : std::string());
    }

    void pictureAndRecordsAreReadyWhenTheViewsAreUpdated()
    {
        int looks = 0;
        Base::watch([&](const std::string &entry) {
            if (entry != "view updated" || faceCount(*m_volume) == 0)
                return;
            ++looks;
            EXPECT_EQ(Base::workspace().objectRecords().lastOperation(m_volume->id()), m_facts.id);
        });
        run(m_volume);
        EXPECT_EQ(looks, 2);
        const std::size_t faces = faceCount(*m_volume);
        m_volume->painter().rebuild();
        EXPECT_EQ(faceCount(*m_volume), faces);
    }

    void lastOperationOfTheVolumeIsRecorded()
    {
        Base::workspace().objectRecords().setLastOperation(m_volume->id(), 99);
        run(m_volume);
        EXPECT_EQ(Base::workspace().objectRecords().lastOperation(m_volume->id()), m_facts.id);
        EXPECT_EQ(Base::workspace().objectRecords().lastOperation(m_other->id()), 0U);
    }

    void endAtThePromptCancels()
    {
        activate();
        expectEnd(m_volume, false);
    }

    void cancelAtThePromptLeavesAndDropsTheWait()
    {
        activate();
        const boost::weak_ptr<Process> operation = current();
        log().clear();
        Base::workspace().cancelCurrent();
        EXPECT_EQ(log(), cancelLog());
        EXPECT_EQ(Base::workspace().currentOperation(), nullptr);
        EXPECT_TRUE(operation.expired());
        select({m_volume});
        log().clear();
        type("");
        EXPECT_EQ(log(), Log{});
    }

    void cancelInTheDialogLeavesAtOnceAndChangesNothing()
    {
        Base::activateOn(m_volume, [](Process &operation) { operation.cancel(); });
        EXPECT_EQ(log(), (Log{"view updated", m_facts.selected, "dialog", m_facts.canceled,
                              "view updated"}));
        EXPECT_EQ(Base::workspace().currentOperation(), nullptr);
        EXPECT_EQ(Base::workspace().history().undoName(), "");
        EXPECT_EQ(Base::workspace().objectRecords().lastOperation(m_volume->id()), 0U);
        expectMaterials(*m_volume, m_facts.before);
        // It has left: nothing more is said of it.
        log().clear();
        activate();
        EXPECT_EQ(log(), (Log{m_facts.prompted, "selection mode changed"}));
    }

    void dialogThatDoesNothingLeavesItCurrentUntilTheNextOperation()
    {
        Base::activateOn(m_volume);
        const boost::weak_ptr<Process> waiting = current();
        ASSERT_FALSE(waiting.expired());
        EXPECT_EQ(Base::countOf(m_facts.canceled), 0);
        log().clear();
        Base::activateOn(m_volume);
        // The cancelled one leaves and takes the selection with it.
        EXPECT_EQ(log(), (Log{m_facts.canceled, "view updated", m_facts.prompted,
                              "selection mode changed"}));
        EXPECT_TRUE(waiting.expired());
        EXPECT_NE(current(), nullptr);
    }

    void escapeAfterTheDialogCancelsIt()
    {
        Base::activateOn(m_volume);
        log().clear();
        Base::workspace().cancelCurrent();
        EXPECT_EQ(log(), cancelLog());
        EXPECT_EQ(Base::workspace().currentOperation(), nullptr);
    }

    void unknownOperationIdCancelsItAndLeavesTheWorkspaceIdle()
    {
        Base::activateOn(m_volume);
        Base::workspace().activate(unknownId);
        EXPECT_EQ(Base::countOf(m_facts.canceled), 1);
        EXPECT_EQ(Base::workspace().currentOperation(), nullptr);
    }

    /// An operation with an observer of its own, told in the log; not the current one.
    Shared observedBy(const std::string &entry)
    {
        const Shared operation = boost::make_shared<Process>(&Base::workspace());
        operation->setObserver(logging(log(), entry));
        return operation;
    }

    void observerTold()
    {
        const Shared first = observedBy("first");
        const Shared second = observedBy("second");
        for (const Shared &operation : {first, second}) {
            select({m_volume});
            log().clear();
            operation->next();
            const std::string told =
                Base::isObserverClassWide || operation == second ? "second" : "first";
            EXPECT_EQ(log(), (Log{"view updated", m_facts.selected, told}));
        }
    }

    using Base::activate;
    using Base::current;
    using Base::log;
    using Base::select;
    using Base::type;

    ProcessFacts m_facts;
    Answer m_accepted;
    Volume m_volume;
    Volume m_other;
};

} // namespace Fakes

/// The tests that all process operations share, but that of end() without a volume.
#define PROCESS_SELECTION_TESTS(Suite)                                                             \
    TEST_F(Suite, SelectedVolumeGoesStraightToTheDialog)                                           \
    {                                                                                              \
        selectedVolumeGoesStraightToTheDialog();                                                   \
    }                                                                                              \
    TEST_F(Suite, WithoutAnObserverItWaitsForItsValues)                                            \
    {                                                                                              \
        withoutAnObserverItWaitsForItsValues();                                                    \
    }                                                                                              \
    TEST_F(Suite, SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated)                           \
    {                                                                                              \
        selectionIsClearAndItsModeOffBeforeTheViewsAreUpdated();                                   \
    }                                                                                              \
    TEST_F(Suite, FirstVolumeOfTheSelectionIsTheTarget)                                            \
    {                                                                                              \
        firstVolumeOfTheSelectionIsTheTarget();                                                    \
    }                                                                                              \
    TEST_F(Suite, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn)                          \
    {                                                                                              \
        withNothingSelectedItPromptsAndTurnsTheSelectionModeOn();                                  \
    }                                                                                              \
    TEST_F(Suite, SelectionOfOtherObjectsAlonePromptsToo)                                          \
    {                                                                                              \
        selectionOfOtherObjectsAlonePromptsToo();                                                  \
    }                                                                                              \
    TEST_F(Suite, EnterWithNothingPickedRepeatsThePrompt)                                          \
    {                                                                                              \
        enterWithNothingPickedRepeatsThePrompt();                                                  \
    }                                                                                              \
    TEST_F(Suite, EnterAfterThePickGoesToTheDialog)                                                \
    {                                                                                              \
        enterAfterThePickGoesToTheDialog();                                                        \
    }                                                                                              \
    TEST_F(Suite, NextAfterTheSelectionDoesNothing)                                                \
    {                                                                                              \
        nextAfterTheSelectionDoesNothing();                                                        \
    }                                                                                              \
    TEST_F(Suite, AcceptedDialogChangesTheCells)                                                   \
    {                                                                                              \
        acceptedDialogChangesTheCells();                                                           \
    }                                                                                              \
    TEST_F(Suite, PictureAndRecordsAreReadyWhenTheViewsAreUpdated)                                 \
    {                                                                                              \
        pictureAndRecordsAreReadyWhenTheViewsAreUpdated();                                         \
    }                                                                                              \
    TEST_F(Suite, LastOperationOfTheVolumeIsRecorded)                                              \
    {                                                                                              \
        lastOperationOfTheVolumeIsRecorded();                                                      \
    }                                                                                              \
    TEST_F(Suite, CancelAtThePromptLeavesAndDropsTheWait)                                          \
    {                                                                                              \
        cancelAtThePromptLeavesAndDropsTheWait();                                                  \
    }                                                                                              \
    TEST_F(Suite, CancelInTheDialogLeavesAtOnceAndChangesNothing)                                  \
    {                                                                                              \
        cancelInTheDialogLeavesAtOnceAndChangesNothing();                                          \
    }                                                                                              \
    TEST_F(Suite, DialogThatDoesNothingLeavesItCurrentUntilTheNextOperation)                       \
    {                                                                                              \
        dialogThatDoesNothingLeavesItCurrentUntilTheNextOperation();                               \
    }                                                                                              \
    TEST_F(Suite, EscapeAfterTheDialogCancelsIt)                                                   \
    {                                                                                              \
        escapeAfterTheDialogCancelsIt();                                                           \
    }                                                                                              \
    TEST_F(Suite, UnknownOperationIdCancelsItAndLeavesTheWorkspaceIdle)                            \
    {                                                                                              \
        unknownOperationIdCancelsItAndLeavesTheWorkspaceIdle();                                    \
    }

/// The tests of those that cancel in end() when something is missing.
#define PROCESS_OPERATION_TESTS(Suite)                                                             \
    PROCESS_SELECTION_TESTS(Suite)                                                                 \
    TEST_F(Suite, EndAtThePromptCancels)                                                           \
    {                                                                                              \
        endAtThePromptCancels();                                                                   \
    }
