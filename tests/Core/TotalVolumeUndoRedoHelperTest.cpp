#include "Core/Operations/TotalVolumeUndoRedoHelper.h"

#include "DebugLog.h"
#include "Fakes.h"
#include "ProcessSuite.h"

#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <QFile>
#include <QFileInfo>
#include <QString>

#include <gmock/gmock.h>

#include <cstdint>
#include <string>
#include <vector>

using Core::Operations::TotalVolumeUndoRedoHelper;
using Fakes::DebugLog;

namespace {

using Materials = std::vector<std::uint32_t>;

/// A volume of 2 by 1 by 3 cells, and the helper of operation 3 of the class "Doping".
class TotalVolumeUndoRedoHelperTest : public Fakes::StateSuite
{
protected:
    /// The cells after loadState() of such a file.
    Materials loaded(const std::string &content)
    {
        const auto volume = Support::makeVolume(m_grid, m_before);
        write(undoFile(), content);
        m_helper.loadState(undoFile(), *volume);
        const Materials materials = Support::materialsOf(*volume);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), materials);
        return materials;
    }
    static std::string join(std::initializer_list<const char *> lines)
    {
        std::string content;
        for (const char *const line : lines)
            content += line + std::string("\n");
        return content;
    }

    const Support::Grid m_grid{2, 1, 3};
    const Materials m_before{1, 2, 3, 4, 5, 6};
    const Materials m_stored{0, 9, 8, 0, 70, 1};
    TotalVolumeUndoRedoHelper m_helper{"Doping", 3, &workspace()};
};

} // namespace

TEST_F(TotalVolumeUndoRedoHelperTest, RecordGivesBothArraysTheirMaterialsInIndexOrder)
{
    EXPECT_EQ(loaded("Doping 3 0 9 8 0 70 1\n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, LastLineNeedsNoEnd)
{
    EXPECT_EQ(loaded("Doping 3 0 9 8 0 70 1"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, AnyWhiteSpaceSeparatesTheFields)
{
    EXPECT_EQ(loaded("\n\n  Doping\t3   0 9\t\t8 0 70 1  \n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, NegativeNumberIsStoredAsItsBitPattern)
{
    EXPECT_EQ(loaded("Doping 3 -1 9 8 0 70 -2147483648\n"),
              (Materials{0xFFFFFFFFU, 9, 8, 0, 70, 0x80000000U}));
}

TEST_F(TotalVolumeUndoRedoHelperTest, EmptyFileChangesNothing)
{
    EXPECT_EQ(loaded(""), m_before);
    EXPECT_EQ(loaded("\n \n\t\n"), m_before);
}

TEST_F(TotalVolumeUndoRedoHelperTest, RecordsOfOtherTagsArePassedOver)
{
    const std::string others =
        join({"IsotropicDeposition 3 7 7 7 7 7 7", "doping 3 7 7 7 7 7 7", "Dop 3 7 7 7 7 7 7",
              "Doping3 3 7 7 7 7 7 7", "3 Doping 7 7 7 7 7 7", "Other"});
    EXPECT_EQ(loaded(others), m_before);
    EXPECT_EQ(loaded(others + "Doping 3 0 9 8 0 70 1\n" + others), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, RecordsOfOtherInstancesArePassedOver)
{
    const std::string others = join({"Doping 0 7 7 7 7 7 7", "Doping 33 7 7 7 7 7 7",
                                     "Doping 2 7 7 7 7 7 7", "Doping 4294967295 7 7 7 7 7 7"});
    EXPECT_EQ(loaded(others), m_before);
    EXPECT_EQ(loaded(others + "Doping 3 0 9 8 0 70 1\n" + others), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, TagInsideTheRecordOfAnotherIsNoRecord)
{
    EXPECT_EQ(loaded("Other 1 Doping 3 7 7 7 7 7 7\nDoping 4 Doping 3 7 7 7 7 7 7\n"), m_before);
    EXPECT_EQ(loaded("Doping 4 Doping 3 7 7 7 7 7 7\nDoping 3 0 9 8 0 70 1\n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, FirstOfSeveralRecordsStands)
{
    EXPECT_EQ(loaded("Doping 3 0 9 8 0 70 1\nDoping 3 7 7 7 7 7 7\n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, NumbersBeyondTheCellsAreNotRead)
{
    EXPECT_EQ(loaded("Doping 3 0 9 8 0 70 1 5 5 5 5\nDoping 3 7 7 7 7 7 7\n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, RecordThatEndsEarlyLeavesTheRemainingCells)
{
    const Materials expected{0, 9, 3, 4, 5, 6};
    EXPECT_EQ(loaded("Doping 3 0 9"), expected);
    EXPECT_EQ(loaded("Doping 3 0 9\n"), expected);
    EXPECT_EQ(loaded("Doping 3 0 9 none 7 7 7 7\n"), expected);
    EXPECT_EQ(loaded("Doping 3 0 9\nDoping 4 7 7 7 7 7 7\n"), expected);
    EXPECT_EQ(loaded("Doping 3\n"), m_before);
}

TEST_F(TotalVolumeUndoRedoHelperTest, TagWithoutANumberIsNoRecord)
{
    EXPECT_EQ(loaded("Doping"), m_before);
    EXPECT_EQ(loaded("Doping\n"), m_before);
    EXPECT_EQ(loaded("Doping none 7 7 7 7 7 7\n"), m_before);
}

TEST_F(TotalVolumeUndoRedoHelperTest, TagWithoutANumberDoesNotHideALaterRecord)
{
    EXPECT_EQ(loaded("Doping none 7 7\nDoping 3 0 9 8 0 70 1\n"), m_stored);
    EXPECT_EQ(loaded("Doping\nOther 1 2\nDoping 3 0 9 8 0 70 1\n"), m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, HelpersOfOneClassFindTheirOwnRecords)
{
    const TotalVolumeUndoRedoHelper other("Doping", 12, &workspace());
    const auto volume = Support::makeVolume(m_grid, m_before);
    write(undoFile(), "Doping 3 0 9 8 0 70 1\nDoping 12 6 5 4 3 2 1\n");
    other.loadState(undoFile(), *volume);
    Fakes::expectMaterials(*volume, {6, 5, 4, 3, 2, 1});
    m_helper.loadState(undoFile(), *volume);
    Fakes::expectMaterials(*volume, m_stored);
}

TEST_F(TotalVolumeUndoRedoHelperTest, LoadingLeavesTheFileAsItIs)
{
    for (const char *const content :
         {"", "Doping 3 0 9 8 0 70 1\n", "Other 1 2\nDoping 4 1 1\n", "Doping 3 0 9"}) {
        loaded(content);
        EXPECT_EQ(contentOf(undoFile()), content);
    }
}

TEST_F(TotalVolumeUndoRedoHelperTest, FileThatIsMissingChangesNothing)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    m_helper.loadState("nowhere/undo.temp", *volume);
    m_helper.loadState("missing.temp", *volume);
    m_helper.loadState("", *volume);
    Fakes::expectMaterials(*volume, m_before);
    QFile::remove("missing.temp");
}

TEST_F(TotalVolumeUndoRedoHelperTest, FolderInPlaceOfTheFileChangesNothing)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    m_helper.loadState(".", *volume);
    Fakes::expectMaterials(*volume, m_before);
}

TEST_F(TotalVolumeUndoRedoHelperTest, TimeToLoadGoesToTheDebugLogWhetherOrNotTheFileOpens)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    write(undoFile(), "Doping 3 0 9 8 0 70 1\n");
    for (const std::string &file : {undoFile(), redoFile(), std::string("nowhere/undo.temp")}) {
        SCOPED_TRACE(file);
        const DebugLog log;
        m_helper.loadState(file, *volume);
        EXPECT_THAT(log.lines(), ::testing::ElementsAre(::testing::MatchesRegex(
                                     "debug: Time to load: +[0-9]+ +ms *")));
    }
}

TEST_F(TotalVolumeUndoRedoHelperTest, LoadStateAloneLeavesThePicture)
{
    const auto volume = Support::makeVolume(m_grid, {1, 0, 0, 0, 0, 0});
    volume->painter().rebuild();
    const std::size_t faces = Fakes::faceCount(*volume);
    EXPECT_EQ(faces, 6U);
    write(undoFile(), "Doping 3 1 0 0 0 0 1\n");
    m_helper.loadState(undoFile(), *volume);
    EXPECT_EQ(Fakes::faceCount(*volume), faces);
}

TEST_F(TotalVolumeUndoRedoHelperTest, UndoStateComesFromTheUndoFileWithANewPicture)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    write(undoFile(), "Doping 3 1 0 1 0 0 0\n");
    write(redoFile(), "Doping 3 1 0 1 0 1 0\n");
    m_helper.loadUndoState(*volume);
    Fakes::expectMaterials(*volume, {1, 0, 1, 0, 0, 0});
    EXPECT_EQ(Fakes::faceCount(*volume), 12U);
}

TEST_F(TotalVolumeUndoRedoHelperTest, RedoStateComesFromTheRedoFileWithANewPicture)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    write(undoFile(), "Doping 3 1 0 1 0 0 0\n");
    write(redoFile(), "Doping 3 1 0 1 0 1 0\n");
    m_helper.loadRedoState(*volume);
    Fakes::expectMaterials(*volume, {1, 0, 1, 0, 1, 0});
    EXPECT_EQ(Fakes::faceCount(*volume), 18U);
}

TEST_F(TotalVolumeUndoRedoHelperTest, PictureIsNewThoughThereIsNoRecord)
{
    for (const auto load :
         {&TotalVolumeUndoRedoHelper::loadUndoState, &TotalVolumeUndoRedoHelper::loadRedoState}) {
        const auto volume = Support::makeVolume(m_grid, {1, 0, 0, 0, 0, 0});
        EXPECT_EQ(Fakes::faceCount(*volume), 0U);
        (m_helper.*load)(*volume);
        Fakes::expectMaterials(*volume, {1, 0, 0, 0, 0, 0});
        EXPECT_EQ(Fakes::faceCount(*volume), 6U);
    }
}

TEST_F(TotalVolumeUndoRedoHelperTest, SaveStateStoresNothing)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    m_helper.saveState(*volume);
    for (const std::string &file : {undoFile(), redoFile()}) {
        EXPECT_TRUE(QFileInfo(QString::fromStdString(file)).isFile());
        EXPECT_EQ(contentOf(file), "");
    }
    Fakes::expectMaterials(*volume, m_before);
    EXPECT_EQ(Fakes::faceCount(*volume), 0U);
}

TEST_F(TotalVolumeUndoRedoHelperTest, SaveStateLeavesWhatTheFilesHold)
{
    const auto volume = Support::makeVolume(m_grid, m_before);
    write(undoFile(), "Doping 3 0 9 8 0 70 1\n");
    m_helper.saveState(*volume);
    EXPECT_EQ(contentOf(undoFile()), "Doping 3 0 9 8 0 70 1\n");
    EXPECT_EQ(contentOf(redoFile()), "");
}
