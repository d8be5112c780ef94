#include "Core/Archives.h"

#include "Model/Object.h"
#include "Model/Persistence/TotalVolumeArchiver.h"

#include <QFile>
#include <QString>

#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>

using Core::Archives;
using Model::Persistence::TotalVolumeArchiver;

TEST(ArchivesTest, ArchiverIsThereForCellVolumesOnly)
{
    const Archives archives;
    EXPECT_TRUE(boost::dynamic_pointer_cast<TotalVolumeArchiver>(
        archives.archiver(Model::Object::TotalVolumeType)));
    EXPECT_EQ(Model::Object::TotalVolumeType, 1u);
    for (const std::uint32_t type : {0u, 2u, 3u, 4294967295u})
        EXPECT_FALSE(archives.archiver(type)) << type;
}

TEST(ArchivesTest, OneArchiverServesAllFilesOfAWorkspace)
{
    const Archives archives;
    const Archives others;
    EXPECT_EQ(archives.archiver(1), archives.archiver(1));
    EXPECT_NE(archives.archiver(1), others.archiver(1));
}

TEST(ArchivesTest, StateFilesAreThereAsLongAsTheArchives)
{
    auto archives = std::make_unique<Archives>();
    const QString undo = QString::fromStdString(archives->undoFileName());
    const QString redo = QString::fromStdString(archives->redoFileName());
    EXPECT_NE(undo, redo);
    EXPECT_TRUE(QFile::exists(undo));
    EXPECT_TRUE(QFile::exists(redo));
    archives.reset();
    EXPECT_FALSE(QFile::exists(undo));
    EXPECT_FALSE(QFile::exists(redo));
}
