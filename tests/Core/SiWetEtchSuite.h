#pragma once

#include "DebugLog.h"
#include "Fakes.h"
#include "PlainProcessSuite.h"

#include "Model/Automaton/SiAtom.h"
#include "Model/Automaton/SiCell.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace Fakes {

/// What both wet etchings of the silicon crystal do, on a block of silicon that floats in the void
/// over a floor of oxide: 5 x 5 cells and 4 layers high. Its tests are made by SI_WET_ETCH_TESTS
/// below.
template <typename Process>
class SiWetEtchSuite : public PlainProcessSuite<Process>
{
protected:
    using Base = PlainProcessSuite<Process>;
    using typename Base::Answer;
    using typename Base::Materials;
    using typename Base::ObjectList;
    using typename Base::Shared;
    using typename Base::Volume;
    using Lattice = boost::shared_ptr<Model::Automaton::SiLattice>;
    using SiAtom = Model::Automaton::SiAtom;

    /// `depth` and `after` are those of an accepted dialog.
    SiWetEtchSuite(const std::string &name, std::uint32_t id, double depth, const Materials &after)
        : Base({name, id, name + ": Cell volume selected.",
                name + ": Select a cell volume and press Enter/Return.",
                name + ": Operation finished.", name + ": Operation canceled.", grid(), block(),
                after},
               accept(depth)),
          m_depth(depth)
    {}

    static Support::Grid grid() { return {7, 7, 8}; }
    /// The block from one layer up to but not including another.
    static Materials block(std::uint32_t from = 2, std::uint32_t to = 6)
    {
        return Support::materialsBy(grid(), [=](auto x, auto y, auto z) {
            const bool isInside = x > 0 && x < 6 && y > 0 && y < 6 && z >= from && z < to;
            return z == 0 ? 3U : isInside ? 1U : 0U;
        });
    }
    static Answer accept(double depth)
    {
        return [=](Process &operation) {
            operation.setDepth(depth);
            operation.end();
        };
    }

    Fakes::Log promptLog() const { return {m_facts.prompted, "selection mode changed"}; }
    Fakes::Log selectedLog() const { return {"view updated", m_facts.selected, "dialog"}; }
    static Fakes::Log joined(Fakes::Log first, const Fakes::Log &second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }
    /// A selected volume whose dialog was rejected.
    Fakes::Log rejectedLog() const { return joined(selectedLog(), Base::cancelLog()); }

    /// The document holds these objects alone.
    static void setDocument(const ObjectList &objects)
    {
        workspace().document().reset();
        for (const auto &object : objects)
            workspace().document().addObject(object);
    }
    static boost::shared_ptr<Fakes::Object> otherObject()
    {
        return boost::make_shared<Fakes::Object>();
    }
    /// On the document's only object, whose dialog leaves the operation current.
    Volume activateOnOnlyObject()
    {
        const Volume volume = Base::addSample();
        setDocument({volume});
        this->m_answer = nullptr;
        Base::activate();
        return volume;
    }

    static Core::ObjectRecords &records() { return workspace().objectRecords(); }
    static std::vector<std::int32_t> atomCounts(Model::Automaton::TotalVolume &volume, bool next)
    {
        const std::size_t cells = grid().cells();
        const Model::Automaton::Voxel *voxels = next ? volume.nextVoxels() : volume.voxels();
        std::vector<std::int32_t> counts(cells);
        for (std::size_t i = 0; i < cells; ++i)
            counts[i] = voxels[i].atoms();
        if (next)
            volume.releaseNextVoxels();
        else
            volume.releaseVoxels();
        return counts;
    }
    static void forEachAtom(const Lattice &lattice, const std::function<void(SiAtom &)> &visit)
    {
        for (const auto &entry : lattice->cells())
            for (unsigned rank = 0; rank < Model::Automaton::SiCell::Atoms; ++rank)
                visit(entry.second->atom(rank));
    }
    /// Of all atoms in cells of silicon.
    static std::vector<float> masses(Model::Automaton::TotalVolume &volume)
    {
        const Materials materials = Support::materialsOf(volume);
        std::vector<float> found;
        forEachAtom(volume.siLattice(), [&](SiAtom &atom) {
            if (atom.cellIndex() >= 0 && materials[std::size_t(atom.cellIndex())] == 1)
                found.push_back(atom.mass());
        });
        return found;
    }

    /// What the run logs, with all numbers as N.
    Fakes::Log logOf(const Volume &volume, double depth)
    {
        const DebugLog debug;
        Base::run(volume, accept(depth));
        Fakes::Log lines;
        for (const std::string &line : debug.lines()) {
            std::string plain;
            for (const char c : line) {
                if (std::isdigit(static_cast<unsigned char>(c)) == 0)
                    plain += c;
                else if (plain.empty() || plain.back() != 'N')
                    plain += 'N';
            }
            lines.push_back(plain);
        }
        return lines;
    }
    static bool contains(const Fakes::Log &lines, const std::string &line)
    {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    /// A run on the lattice that is there, or one that builds it.
    void expectBuild(const Volume &volume, bool builds)
    {
        const Lattice before = volume->siLattice();
        EXPECT_EQ(contains(logOf(volume, 0.0), "debug: Time to allocate Si structure N"), builds);
        ASSERT_NE(volume->siLattice(), nullptr);
        EXPECT_EQ(volume->siLattice() != before, builds);
        EXPECT_FALSE(records().isLatticeStale(volume->id()));
        EXPECT_EQ(records().lastOperation(volume->id()), m_facts.id);
    }

    void nameAndId()
    {
        const Process operation(&workspace());
        EXPECT_EQ(operation.id(), m_facts.id);
        EXPECT_EQ("message " + operation.name() + ": Operation finished.", m_facts.finished);
        EXPECT_FALSE(Base::isUndoable);
    }

    void classTellsTheObserverThatWasSetLast()
    {
        ASSERT_TRUE(Base::isObserverClassWide);
        const Shared first = Base::observedBy("first");
        const Shared second = Base::observedBy("second");
        for (const Shared &operation : {first, second}) {
            select({m_volume});
            log().clear();
            operation->next();
            // Neither has a depth.
            EXPECT_EQ(log(),
                      joined({"view updated", m_facts.selected, "second"}, Base::cancelLog()));
        }
    }

    void selectedVolumeAndARejectedDialogCancel()
    {
        Base::activateOn(m_volume);
        EXPECT_EQ(log(), rejectedLog());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
        EXPECT_EQ(records().lastOperation(m_volume->id()), 0U);
        EXPECT_TRUE(records().isLatticeStale(m_volume->id()));
        EXPECT_EQ(m_volume->siLattice(), nullptr);
        expectMaterials(*m_volume, m_facts.before);
        // It has left: nothing more is said of it.
        log().clear();
        Base::activate();
        EXPECT_EQ(log(), promptLog());
    }

    void selectedVolumeWithoutAnObserverCancels()
    {
        this->m_observed = false;
        Base::activateOn(m_volume);
        EXPECT_EQ(log(), joined({"view updated", m_facts.selected}, Base::cancelLog()));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }

    void selectionIsClearAndItsModeOffBeforeViewsAreUpdated()
    {
        workspace().selection().setSelectionMode(true);
        log().clear();
        Base::watch([](const std::string &entry) {
            if (entry != "view updated")
                return;
            EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
            EXPECT_FALSE(workspace().selection().isSelectionMode());
        });
        Base::activateOn(m_volume, m_accepted);
        EXPECT_EQ(log(), joined({"selection mode changed"}, joined(selectedLog(), Base::endLog())));
    }

    void enterAfterThePickRunsOrCancels()
    {
        for (const bool accepts : {false, true}) {
            const Volume volume = Base::addSample();
            Base::activate();
            this->m_answer = accepts ? m_accepted : nullptr;
            select({volume});
            log().clear();
            type("");
            EXPECT_EQ(log(),
                      joined({"selection mode changed"},
                             joined(selectedLog(), accepts ? Base::endLog() : Base::cancelLog())));
            EXPECT_FALSE(workspace().selection().isSelectionMode());
            EXPECT_EQ(workspace().currentOperation(), nullptr);
            expectMaterials(*volume, accepts ? m_facts.after : m_facts.before);
            // Nothing waits for Enter any more.
            select({m_other});
            log().clear();
            type("");
            EXPECT_EQ(log(), Fakes::Log{});
            select({});
        }
    }

    void depthGivenAtThePromptCounts()
    {
        Base::activate();
        Base::current()->setDepth(m_depth);
        select({m_volume});
        log().clear();
        type("");
        // The dialog did nothing.
        EXPECT_EQ(log(), joined({"selection mode changed"}, joined(selectedLog(), Base::endLog())));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        expectMaterials(*m_volume, m_facts.after);
        Base::activate();
        Base::current()->setDepth(m_depth);
        Base::expectEnd(m_other, false);
    }

    void onlyVolumeAndARejectedDialogLeaveItCurrent()
    {
        const Volume volume = activateOnOnlyObject();
        EXPECT_EQ(log(), selectedLog());
        const boost::weak_ptr<Process> waiting = Base::current();
        ASSERT_FALSE(waiting.expired());
        // It waits for nothing, and has its volume.
        log().clear();
        type("");
        EXPECT_EQ(log(), Fakes::Log{});
        select({m_other});
        Base::current()->next();
        EXPECT_EQ(log(), Fakes::Log{});
        select({});
        expectMaterials(*volume, m_facts.before);
        // Until the next operation.
        Base::activate();
        EXPECT_EQ(log(), joined(Base::cancelLog(), selectedLog()));
        EXPECT_TRUE(waiting.expired());
        EXPECT_NE(Base::current(), nullptr);
        workspace().activate(Base::unknownId);
        EXPECT_EQ(Base::countOf(m_facts.canceled), 2);
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }

    void onlyVolumeWithoutAnObserverWaits()
    {
        this->m_observed = false;
        const Volume volume = activateOnOnlyObject();
        EXPECT_EQ(log(), (Fakes::Log{"view updated", m_facts.selected}));
        ASSERT_NE(Base::current(), nullptr);
        m_accepted(*Shared(Base::current()));
        expectMaterials(*volume, m_facts.after);
    }

    void escapeAfterTheDialogOfTheOnlyVolumeCancels()
    {
        activateOnOnlyObject();
        log().clear();
        workspace().cancelCurrent();
        EXPECT_EQ(log(), Base::cancelLog());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }

    void endNeedsTheVolumeAndTheDepth()
    {
        for (int count = 0; count <= 2; ++count) {
            const Volume volume = activateOnOnlyObject();
            ASSERT_NE(Base::current(), nullptr);
            for (int i = 0; i < count; ++i)
                Base::current()->setDepth(m_depth);
            Base::expectEnd(volume, count > 0);
        }
    }

    void onlyVolumeNeedsNoSelection()
    {
        setDocument({m_volume});
        workspace().selection().setSelectionMode(true);
        log().clear();
        this->m_answer = m_accepted;
        Base::activate();
        EXPECT_EQ(log(), joined({"selection mode changed"}, joined(selectedLog(), Base::endLog())));
        EXPECT_FALSE(workspace().selection().isSelectionMode());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
        expectMaterials(*m_volume, m_facts.after);
    }

    void onlyVolumeIsTheTargetWhereOtherObjectsAreSelected()
    {
        setDocument({m_volume});
        select({otherObject()});
        Base::activate();
        // No end follows.
        EXPECT_EQ(log(), selectedLog());
        EXPECT_TRUE(workspace().pointer().selectedObjects().empty());
        ASSERT_NE(Base::current(), nullptr);
        m_accepted(*Shared(Base::current()));
        expectMaterials(*m_volume, m_facts.after);
    }

    void selectedVolumeGoesBeforeTheOnlyOne()
    {
        setDocument({m_other});
        Base::run(m_volume);
        expectMaterials(*m_volume, m_facts.after);
        EXPECT_EQ(records().lastOperation(m_volume->id()), m_facts.id);
        EXPECT_EQ(records().lastOperation(m_other->id()), 0U);
        expectMaterials(*m_other, m_facts.before);
        // Also if it is the only one: end follows then.
        log().clear();
        Base::activateOn(m_other);
        EXPECT_EQ(log(), rejectedLog());
    }

    void onlyObjectThatIsNoVolumeIsNoTarget()
    {
        setDocument({otherObject()});
        Base::activate();
        EXPECT_EQ(log(), promptLog());
        log().clear();
        type("");
        EXPECT_EQ(log(), Fakes::Log{m_facts.prompted});
    }

    void noneOfTwoObjectsIsATargetByItself()
    {
        const std::vector<ObjectList> documents = {
            {m_volume, m_other}, {m_volume, otherObject()}, {otherObject(), m_volume}, {}};
        for (const ObjectList &objects : documents) {
            setDocument(objects);
            log().clear();
            Base::activate();
            EXPECT_EQ(log(), promptLog());
            workspace().cancelCurrent();
            workspace().selection().setSelectionMode(false);
        }
    }

    void enterAtThePromptLooksForTheOnlyVolumeAgain()
    {
        setDocument({});
        Base::activate();
        workspace().document().addObject(m_volume);
        log().clear();
        type("");
        EXPECT_EQ(log(), joined({"selection mode changed"}, selectedLog()));
        ASSERT_NE(Base::current(), nullptr);
        m_accepted(*Shared(Base::current()));
        expectMaterials(*m_volume, m_facts.after);
    }

    void endAndCancelOfOneThatHasEndedDoNothing()
    {
        const Shared finished = Base::run(m_volume);
        this->m_answer = nullptr;
        select({m_other});
        Base::activate();
        setDocument({m_other});
        Base::activate();
        const Shared canceled = Base::current();
        ASSERT_NE(canceled, nullptr);
        workspace().cancelCurrent();
        canceled->setDepth(m_depth);
        // Also while another one is in progress, which they would drop.
        Base::activate();
        const Shared another = Base::current();
        log().clear();
        finished->end();
        canceled->end();
        finished->cancel();
        canceled->cancel();
        EXPECT_EQ(log(), Fakes::Log{});
        EXPECT_EQ(Base::current(), another);
        expectMaterials(*m_other, m_facts.before);
    }

    /// The dialog holds nothing of it either; with nobody else, next() has to.
    void operationThatTheWorkspaceLetGoOfLivesUntilNextReturns(bool atThePrompt)
    {
        boost::weak_ptr<Process> operation;
        bool isAlive = false;
        Process::setObserver(nullptr);
        this->m_observed = false;
        if (atThePrompt)
            Base::activate();
        const auto dialog = observing([&] {
            Process *const running = Base::current().get();
            operation = Base::current();
            running->setDepth(m_depth);
            running->end();
            EXPECT_EQ(workspace().currentOperation(), nullptr);
            isAlive = !operation.expired();
        });
        if (atThePrompt) {
            Process::setObserver(dialog);
            select({m_volume});
            type("");
        } else {
            workspace().setOperationFactory(boost::make_shared<OperationFactory>(
                [&](std::uint32_t) { return boost::make_shared<Process>(&workspace()); }));
            Process::setObserver(dialog);
            select({m_volume});
            Base::activate();
        }
        EXPECT_TRUE(isAlive);
        EXPECT_TRUE(operation.expired());
        EXPECT_EQ(Base::countOf(m_facts.finished), 1);
        EXPECT_EQ(Base::countOf(m_facts.canceled), 0);
        expectMaterials(*m_volume, m_facts.after);
    }

    void laterDepthWins()
    {
        Base::expectResult(
            [=](Process &operation) {
                operation.setDepth(0.0);
                operation.setDepth(m_depth);
                operation.end();
            },
            m_facts.after);
        const Volume volume = Base::addSample();
        const Fakes::Log lines = logOf(volume, 0.0);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), surfaceLine), 1);
    }

    void depthZeroBuildsTheLatticeAndThePictureAndChangesNoCell()
    {
        EXPECT_EQ(faceCount(*m_volume), 0U);
        Base::run(m_volume, accept(0.0));
        EXPECT_EQ(Base::countOf(m_facts.finished), 1);
        EXPECT_NE(m_volume->siLattice(), nullptr);
        EXPECT_GT(faceCount(*m_volume), 0U);
        expectMaterials(*m_volume, m_facts.before);
    }

    void depthIsTakenInQuartersRoundedToTheNearest()
    {
        const std::vector<std::pair<double, int>> steps = {{0.0, 0},  {0.1249, 0}, {0.125, 1},
                                                           {0.25, 1}, {0.3749, 1}, {0.375, 2},
                                                           {1.0, 4},  {10.0, 40}};
        for (const auto &[depth, count] : steps) {
            const Fakes::Log lines = logOf(Base::addSample(), depth);
            // One before the first step.
            EXPECT_EQ(std::count(lines.begin(), lines.end(), surfaceLine), count + 1) << depth;
        }
    }

    void runIsLoggedWithItsTimes()
    {
        const Fakes::Log rest = {"debug: Running etching",
                                 surfaceLine,
                                 "debug: Total time to allocate and run N",
                                 "debug: Building unit cells",
                                 "debug: Building atoms",
                                 "debug: Time to build rendered structrure N"};
        // The volume tells of its lattice itself, before the operation does.
        EXPECT_EQ(
            logOf(m_volume, 0.0),
            joined({"debug: Done initializing", "debug: Time to allocate Si structure N"}, rest));
        EXPECT_EQ(logOf(m_volume, 0.0), rest);
    }

    void unknownVolumeGetsItsLattice() { expectBuild(m_volume, true); }

    void secondRunGoesOnWithTheSameLattice()
    {
        expectBuild(m_volume, true);
        const std::size_t cells = m_volume->siLattice()->cells().size();
        const auto counts = atomCounts(*m_volume, false);
        const std::int32_t middle = counts[grid().index(3, 3, 3)];
        EXPECT_GT(middle, 0);
        EXPECT_EQ(atomCounts(*m_volume, true), counts);
        for (int round = 0; round < 2; ++round) {
            expectBuild(m_volume, false);
            EXPECT_EQ(m_volume->siLattice()->cells().size(), cells);
            EXPECT_EQ(atomCounts(*m_volume, false), counts);
            EXPECT_EQ(atomCounts(*m_volume, true), counts);
        }
        // That of another volume is its own.
        expectBuild(m_other, true);
        EXPECT_NE(m_other->siLattice(), m_volume->siLattice());
        expectBuild(m_volume, false);
    }

    void processInBetweenMakesItBuildTheLatticeAgain()
    {
        expectBuild(m_volume, true);
        const auto counts = atomCounts(*m_volume, false);
        records().setLatticeStale(m_volume->id(), true);
        expectBuild(m_volume, true);
        // A new lattice counts its atoms on top.
        const auto again = atomCounts(*m_volume, false);
        const std::size_t middle = grid().index(3, 3, 3);
        EXPECT_EQ(again[middle], 2 * counts[middle]);
        expectBuild(m_volume, false);
    }

    void forgottenRecordsMakeItBuildTheLatticeAgain()
    {
        expectBuild(m_volume, true);
        records().clear();
        expectBuild(m_volume, true);
    }

    /// Whatever the records say of it.
    void volumeWithoutALatticeGetsOne()
    {
        records().setLatticeStale(m_volume->id(), false);
        expectBuild(m_volume, true);
    }

    void recordsAreWrittenBeforeTheViewsAreUpdated()
    {
        records().setLastOperation(m_volume->id(), 99);
        records().setLatticeStale(m_other->id(), true);
        int looks = 0;
        Base::watch([&](const std::string &entry) {
            if (entry != "view updated" || faceCount(*m_volume) == 0)
                return;
            ++looks;
            EXPECT_FALSE(records().isLatticeStale(m_volume->id()));
            EXPECT_EQ(records().lastOperation(m_volume->id()), m_facts.id);
        });
        Base::run(m_volume);
        EXPECT_EQ(looks, 2);
        EXPECT_TRUE(records().isLatticeStale(m_other->id()));
    }

    void cancelLeavesTheLatticeAndItsRecord()
    {
        for (const bool stale : {false, true}) {
            expectBuild(m_volume, m_volume->siLattice() == nullptr);
            records().setLatticeStale(m_volume->id(), stale);
            records().setLastOperation(m_volume->id(), 99);
            const Lattice lattice = m_volume->siLattice();
            Base::activateOn(m_volume);
            Base::activateOn(m_volume, [](Process &operation) { operation.cancel(); });
            Base::activateOn(m_volume, [](Process &operation) { operation.end(); });
            EXPECT_EQ(m_volume->siLattice(), lattice);
            EXPECT_EQ(records().isLatticeStale(m_volume->id()), stale);
            EXPECT_EQ(records().lastOperation(m_volume->id()), 99U);
        }
    }

    void endInTheDialogWithoutADepthCancelsOnce()
    {
        Base::activateOn(m_volume, [](Process &operation) { operation.end(); });
        EXPECT_EQ(log(), rejectedLog());
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }

    /// Finishes and leaves the volume as it was.
    void expectUnchanged(const Support::Grid &cells, const Materials &materials, double depth)
    {
        const Volume volume = Support::makeVolume(cells, materials);
        log().clear();
        Base::run(volume, accept(depth));
        EXPECT_EQ(Base::countOf(m_facts.finished), 1);
        expectMaterials(*volume, materials);
    }

    void volumesWithoutSiliconAndDepthsThatAreNoneChangeNothing()
    {
        expectUnchanged(grid(), block(2, 2), 3.0);
        expectUnchanged({1, 1, 1}, {0}, 3.0);
        // Held by the sides on all sides.
        expectUnchanged({1, 1, 1}, {1}, 3.0);
        for (const double depth : {-1.0, std::numeric_limits<double>::quiet_NaN()})
            expectUnchanged(grid(), block(), depth);
    }

    using Base::log;
    using Base::m_accepted;
    using Base::m_facts;
    using Base::m_other;
    using Base::m_volume;
    using Base::select;
    using Base::type;
    using Base::workspace;

    double m_depth;
    static constexpr const char *surfaceLine = "debug: Surface list size for thread N: N";
};

} // namespace Fakes

#define SI_WET_ETCH_TEST(Suite, Name, body)                                                        \
    TEST_F(Suite, Name)                                                                            \
    {                                                                                              \
        body;                                                                                      \
    }

/// The tests that both wet etchings share.
#define SI_WET_ETCH_TESTS(Suite)                                                                   \
    PLAIN_PROCESS_TESTS(Suite)                                                                     \
    SI_WET_ETCH_TEST(Suite, HasTheNameAndIdOfItsMenuEntry, nameAndId())                            \
    SI_WET_ETCH_TEST(Suite, AllOfTheClassTellTheObserverThatWasSetLast,                            \
                     classTellsTheObserverThatWasSetLast())                                        \
    SI_WET_ETCH_TEST(Suite, ObserverStaysWithTheClassUntilItIsReplaced,                            \
                     replacedObserverIsReleased())                                                 \
    SI_WET_ETCH_TEST(Suite, SelectedVolumeAndARejectedDialogCancel,                                \
                     selectedVolumeAndARejectedDialogCancel())                                     \
    SI_WET_ETCH_TEST(Suite, SelectedVolumeWithoutAnObserverCancels,                                \
                     selectedVolumeWithoutAnObserverCancels())                                     \
    SI_WET_ETCH_TEST(Suite, SelectionIsClearAndItsModeOffBeforeTheViewsAreUpdated,                 \
                     selectionIsClearAndItsModeOffBeforeViewsAreUpdated())                         \
    SI_WET_ETCH_TEST(Suite, FirstVolumeOfTheSelectionIsTheTarget,                                  \
                     firstVolumeOfTheSelectionIsTheTarget())                                       \
    SI_WET_ETCH_TEST(Suite, WithNothingSelectedItPromptsAndTurnsTheSelectionModeOn,                \
                     withNothingSelectedItPromptsAndTurnsTheSelectionModeOn())                     \
    SI_WET_ETCH_TEST(Suite, SelectionOfOtherObjectsAlonePromptsToo,                                \
                     selectionOfOtherObjectsAlonePromptsToo())                                     \
    SI_WET_ETCH_TEST(Suite, EnterWithNothingPickedRepeatsThePrompt,                                \
                     enterWithNothingPickedRepeatsThePrompt())                                     \
    SI_WET_ETCH_TEST(Suite, EnterAfterThePickRunsOrCancels, enterAfterThePickRunsOrCancels())      \
    SI_WET_ETCH_TEST(Suite, DepthGivenAtThePromptCounts, depthGivenAtThePromptCounts())            \
    SI_WET_ETCH_TEST(Suite, AcceptedDialogRunsIt, acceptedDialogChangesTheCells())                 \
    SI_WET_ETCH_TEST(Suite, PictureAndRecordsAreReadyWhenTheViewsAreUpdated,                       \
                     pictureAndRecordsAreReadyWhenTheViewsAreUpdated())                            \
    SI_WET_ETCH_TEST(Suite, LastOperationOfTheVolumeIsRecorded,                                    \
                     lastOperationOfTheVolumeIsRecorded())                                         \
    SI_WET_ETCH_TEST(Suite, EndAtThePromptCancels, endAtThePromptCancels())                        \
    SI_WET_ETCH_TEST(Suite, EndInTheDialogWithoutADepthCancelsOnce,                                \
                     endInTheDialogWithoutADepthCancelsOnce())                                     \
    SI_WET_ETCH_TEST(Suite, CancelAtThePromptLeavesAndDropsTheWait,                                \
                     cancelAtThePromptLeavesAndDropsTheWait())                                     \
    SI_WET_ETCH_TEST(Suite, CancelInTheDialogLeavesAtOnceAndChangesNothing,                        \
                     cancelInTheDialogLeavesAtOnceAndChangesNothing())                             \
    SI_WET_ETCH_TEST(Suite, OnlyVolumeAndARejectedDialogLeaveItCurrent,                            \
                     onlyVolumeAndARejectedDialogLeaveItCurrent())                                 \
    SI_WET_ETCH_TEST(Suite, OnlyVolumeWithoutAnObserverWaits, onlyVolumeWithoutAnObserverWaits())  \
    SI_WET_ETCH_TEST(Suite, EscapeAfterTheDialogOfTheOnlyVolumeCancels,                            \
                     escapeAfterTheDialogOfTheOnlyVolumeCancels())                                 \
    SI_WET_ETCH_TEST(Suite, EndNeedsTheVolumeAndTheDepth, endNeedsTheVolumeAndTheDepth())          \
    SI_WET_ETCH_TEST(Suite, OnlyVolumeOfTheDocumentNeedsNoSelection, onlyVolumeNeedsNoSelection()) \
    SI_WET_ETCH_TEST(Suite, OnlyVolumeIsTheTargetWhereOtherObjectsAreSelected,                     \
                     onlyVolumeIsTheTargetWhereOtherObjectsAreSelected())                          \
    SI_WET_ETCH_TEST(Suite, SelectedVolumeGoesBeforeTheOnlyOne,                                    \
                     selectedVolumeGoesBeforeTheOnlyOne())                                         \
    SI_WET_ETCH_TEST(Suite, OnlyObjectThatIsNoVolumeIsNoTarget,                                    \
                     onlyObjectThatIsNoVolumeIsNoTarget())                                         \
    SI_WET_ETCH_TEST(Suite, NoneOfTwoObjectsIsATargetByItself,                                     \
                     noneOfTwoObjectsIsATargetByItself())                                          \
    SI_WET_ETCH_TEST(Suite, EnterAtThePromptLooksForTheOnlyVolumeAgain,                            \
                     enterAtThePromptLooksForTheOnlyVolumeAgain())                                 \
    SI_WET_ETCH_TEST(Suite, EndAndCancelOfOneThatHasEndedDoNothing,                                \
                     endAndCancelOfOneThatHasEndedDoNothing())                                     \
    SI_WET_ETCH_TEST(Suite, OperationThatTheWorkspaceLetGoOfLivesUntilItsNextReturns,              \
                     operationThatTheWorkspaceLetGoOfLivesUntilNextReturns(false))                 \
    SI_WET_ETCH_TEST(Suite, OperationThatTheWorkspaceLetGoOfLivesUntilEnterReturns,                \
                     operationThatTheWorkspaceLetGoOfLivesUntilNextReturns(true))                  \
    SI_WET_ETCH_TEST(Suite, LaterDepthWins, laterDepthWins())                                      \
    SI_WET_ETCH_TEST(Suite, DepthZeroBuildsTheLatticeAndThePictureAndChangesNoCell,                \
                     depthZeroBuildsTheLatticeAndThePictureAndChangesNoCell())                     \
    SI_WET_ETCH_TEST(Suite, DepthIsTakenInQuartersRoundedToTheNearest,                             \
                     depthIsTakenInQuartersRoundedToTheNearest())                                  \
    SI_WET_ETCH_TEST(Suite, RunIsLoggedWithItsTimes, runIsLoggedWithItsTimes())                    \
    SI_WET_ETCH_TEST(Suite, UnknownVolumeGetsItsLattice, unknownVolumeGetsItsLattice())            \
    SI_WET_ETCH_TEST(Suite, SecondRunGoesOnWithTheSameLattice,                                     \
                     secondRunGoesOnWithTheSameLattice())                                          \
    SI_WET_ETCH_TEST(Suite, ProcessInBetweenMakesItBuildTheLatticeAgain,                           \
                     processInBetweenMakesItBuildTheLatticeAgain())                                \
    SI_WET_ETCH_TEST(Suite, ForgottenRecordsMakeItBuildTheLatticeAgain,                            \
                     forgottenRecordsMakeItBuildTheLatticeAgain())                                 \
    SI_WET_ETCH_TEST(Suite, VolumeWithoutALatticeGetsOne, volumeWithoutALatticeGetsOne())          \
    SI_WET_ETCH_TEST(Suite, RecordsAreWrittenBeforeTheViewsAreUpdated,                             \
                     recordsAreWrittenBeforeTheViewsAreUpdated())                                  \
    SI_WET_ETCH_TEST(Suite, CancelLeavesTheLatticeAndItsRecord,                                    \
                     cancelLeavesTheLatticeAndItsRecord())                                         \
    SI_WET_ETCH_TEST(Suite, VolumesWithoutSiliconAndDepthsThatAreNoneChangeNothing,                \
                     volumesWithoutSiliconAndDepthsThatAreNoneChangeNothing())
