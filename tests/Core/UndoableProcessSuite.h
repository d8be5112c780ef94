#pragma once

#include "CommonProcessSuite.h"
#include "Fakes.h"

#include "Model/Automaton/TotalVolume.h"

#include <QFile>
#include <QString>

#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>

namespace Fakes {

/// The processes that reach the undo stack and have states of a tag.
template <typename Process>
class UndoableProcessSuite : public CommonProcessSuite<Process>
{
protected:
    using Base = CommonProcessSuite<Process>;
    using Base::log;
    using Base::m_accepted;
    using Base::m_facts;
    using Base::m_other;
    using Base::m_volume;
    using Base::redoFile;
    using Base::run;
    using Base::undoFile;
    using Base::workspace;
    using Base::write;
    using typename Base::Answer;
    using typename Base::Shared;
    using typename Base::Volume;

    UndoableProcessSuite(ProcessFacts facts, std::string tag, Answer accepted)
        : Base(std::move(facts), std::move(accepted)),
          m_tag(std::move(tag))
    {}

    std::uint32_t nextNumber() { return Base::nextNumber(m_tag, m_accepted); }
    static Core::Operations::OperationHistory &history() { return workspace().history(); }

    void undoLeavesTheCellsAndThePictureAndOffersRedo()
    {
        run(m_volume);
        const std::size_t faces = faceCount(*m_volume);
        EXPECT_GT(faces, 0U);
        for (int round = 0; round < 2; ++round) {
            EXPECT_TRUE(history().undo());
            expectMaterials(*m_volume, m_facts.after);
            EXPECT_EQ(faceCount(*m_volume), faces);
            EXPECT_EQ(history().undoName(), "");
            EXPECT_EQ(history().redoName(), m_facts.name);
            EXPECT_TRUE(history().redo());
            expectMaterials(*m_volume, m_facts.after);
            EXPECT_EQ(faceCount(*m_volume), faces);
            EXPECT_EQ(history().undoName(), m_facts.name);
            EXPECT_EQ(history().redoName(), "");
        }
        EXPECT_EQ(Base::countOf(m_facts.finished), 1);
        EXPECT_EQ(Base::countOf("dialog"), 1);
    }

    void newRunAfterAnUndoEmptiesTheRedoStack()
    {
        run(m_volume);
        history().undo();
        run(m_volume);
        EXPECT_EQ(history().redoName(), "");
        EXPECT_TRUE(history().undo());
        EXPECT_FALSE(history().undo());
    }

    void cancelledOneLeavesBothStacks()
    {
        run(m_other);
        run(m_other);
        history().undo();
        Base::activateOn(m_volume, [](Process &operation) { operation.cancel(); });
        Base::activateOn(m_volume);
        workspace().cancelCurrent();
        EXPECT_EQ(history().undoName(), m_facts.name);
        EXPECT_EQ(history().redoName(), m_facts.name);
    }

    void undoWhileAnotherOneAsksCancelsThatFirst()
    {
        run(m_volume);
        Base::activateOn(m_volume);
        log().clear();
        EXPECT_TRUE(history().undo());
        EXPECT_EQ(log(), (Log{m_facts.canceled, "view updated", "redo changed", "undo changed"}));
        EXPECT_EQ(workspace().currentOperation(), nullptr);
    }

    void runStoresNoState()
    {
        run(m_volume);
        EXPECT_EQ(Base::contentOf(undoFile()), "");
        EXPECT_EQ(Base::contentOf(redoFile()), "");
    }

    void undoAndRedoLoadTheStatesOfTheirFiles()
    {
        const auto full = Support::materialsBy(
            m_facts.grid, [](auto, auto, auto z) { return z == 0 ? 4U : z % 2 * 11U; });
        const Shared operation = run(m_volume);
        write(undoFile(), Base::recordsOfAllNumbers(m_tag, m_facts.before));
        write(redoFile(), Base::recordsOfAllNumbers(m_tag, full));
        EXPECT_EQ(operation->undo(), 1);
        expectMaterials(*m_volume, m_facts.before);
        expectPictureIsFresh();
        operation->redo();
        expectMaterials(*m_volume, full);
        expectPictureIsFresh();
        expectMaterials(*m_other, m_facts.before);
    }

    void undoAndRedoPassTheStatesOfOtherTagsOver()
    {
        const Shared operation = run(m_volume);
        std::string others;
        for (const char *const other : {"IsotropicDeposition", "IsotropicEtching", "Electroplating",
                                        "Doping", "MooreFilmDep"})
            if (m_tag != other)
                others += Base::recordsOfAllNumbers(other, m_facts.before);
        write(undoFile(), others);
        write(redoFile(), others);
        EXPECT_EQ(operation->undo(), 1);
        expectMaterials(*m_volume, m_facts.after);
        operation->redo();
        expectMaterials(*m_volume, m_facts.after);
    }

    void eachOneHasANumberOfItsOwnCountedFromItsConstruction()
    {
        const std::uint32_t first = nextNumber();
        EXPECT_EQ(nextNumber(), first + 1);
        {
            const Process unused(&workspace());
        }
        Base::activateOn(m_volume);
        workspace().cancelCurrent();
        EXPECT_EQ(nextNumber(), first + 4);
    }

    void undoAndRedoTakeTheRecordOfTheirOwnNumber()
    {
        const std::uint32_t number = nextNumber() + 1;
        const Shared operation = run(m_volume);
        const Shared later = run(m_other);
        const auto mixed = [&](std::uint32_t of) {
            return Support::materialsBy(m_facts.grid, [=](auto, auto, auto) { return of; });
        };
        write(redoFile(),
              Base::record(m_tag, number + 1, mixed(8)) + Base::record(m_tag, number, mixed(9)));
        later->redo();
        expectMaterials(*m_other, mixed(8));
        expectMaterials(*m_volume, m_facts.after);
        operation->redo();
        expectMaterials(*m_volume, mixed(9));
    }

    void firstOneOfTheProgramHasTheNumberZero()
    {
        // Other tests make some too, so that a process with this test alone has to tell.
        ::testing::FLAGS_gtest_death_test_style = "threadsafe";
        EXPECT_EXIT(
            {
                const std::uint32_t number = nextNumber();
                for (const std::string &file : {undoFile(), redoFile()})
                    QFile::remove(QString::fromStdString(file));
                std::_Exit(static_cast<int>(number % 100));
            },
            ::testing::ExitedWithCode(0), "");
    }

    void undoWorksOnAVolumeThatTheDocumentNoLongerHolds()
    {
        Volume volume = Base::addSample();
        const boost::weak_ptr<Model::Automaton::TotalVolume> watched = volume;
        run(volume);
        volume.reset();
        workspace().document().reset();
        ASSERT_FALSE(watched.expired());
        EXPECT_TRUE(history().undo());
        EXPECT_TRUE(history().redo());
        history().clear();
        EXPECT_TRUE(watched.expired());
    }

    const std::string m_tag;

private:
    /// The picture is that of the cells.
    void expectPictureIsFresh()
    {
        const std::size_t faces = faceCount(*m_volume);
        EXPECT_GT(faces, 0U);
        m_volume->painter().rebuild();
        EXPECT_EQ(faceCount(*m_volume), faces);
    }
};

} // namespace Fakes

/// The tests that undoable process operations share, on top of PROCESS_OPERATION_TESTS.
#define UNDOABLE_PROCESS_TESTS(Suite)                                                              \
    TEST_F(Suite, EachOneTellsItsOwnObserver)                                                      \
    {                                                                                              \
        observerTold();                                                                            \
    }                                                                                              \
    TEST_F(Suite, UndoLeavesTheCellsAndThePictureAndOffersRedo)                                    \
    {                                                                                              \
        undoLeavesTheCellsAndThePictureAndOffersRedo();                                            \
    }                                                                                              \
    TEST_F(Suite, NewRunAfterAnUndoEmptiesTheRedoStack)                                            \
    {                                                                                              \
        newRunAfterAnUndoEmptiesTheRedoStack();                                                    \
    }                                                                                              \
    TEST_F(Suite, CancelledOneLeavesBothStacks)                                                    \
    {                                                                                              \
        cancelledOneLeavesBothStacks();                                                            \
    }                                                                                              \
    TEST_F(Suite, UndoWhileAnotherOneAsksCancelsThatFirst)                                         \
    {                                                                                              \
        undoWhileAnotherOneAsksCancelsThatFirst();                                                 \
    }                                                                                              \
    TEST_F(Suite, RunStoresNoState)                                                                \
    {                                                                                              \
        runStoresNoState();                                                                        \
    }                                                                                              \
    TEST_F(Suite, UndoAndRedoLoadTheStatesOfTheirFiles)                                            \
    {                                                                                              \
        undoAndRedoLoadTheStatesOfTheirFiles();                                                    \
    }                                                                                              \
    TEST_F(Suite, UndoAndRedoPassTheStatesOfOtherTagsOver)                                         \
    {                                                                                              \
        undoAndRedoPassTheStatesOfOtherTagsOver();                                                 \
    }                                                                                              \
    TEST_F(Suite, UndoAndRedoTakeTheRecordOfTheirOwnNumber)                                        \
    {                                                                                              \
        undoAndRedoTakeTheRecordOfTheirOwnNumber();                                                \
    }                                                                                              \
    TEST_F(Suite, EachOneHasANumberOfItsOwnCountedFromItsConstruction)                             \
    {                                                                                              \
        eachOneHasANumberOfItsOwnCountedFromItsConstruction();                                     \
    }                                                                                              \
    TEST_F(Suite, FirstOneOfTheProgramHasTheNumberZero)                                            \
    {                                                                                              \
        firstOneOfTheProgramHasTheNumberZero();                                                    \
    }                                                                                              \
    TEST_F(Suite, UndoWorksOnAVolumeThatTheDocumentNoLongerHolds)                                  \
    {                                                                                              \
        undoWorksOnAVolumeThatTheDocumentNoLongerHolds();                                          \
    }
