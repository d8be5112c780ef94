#include "Core/Operations/Document/SaveDocumentOperation.h"

#include "DocumentSuite.h"

#include <QDir>
#include <QFileDialog>

namespace {

using namespace Documents;
using Core::Operations::SaveDocumentOperation;

class SaveDocumentOperationTest : public DocumentSuite
{};

TEST_F(SaveDocumentOperationTest, SavingWithAFileNameAlreadySetAsksNothing)
{
    workspace().document().setFileName(path("a.lth"));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    QApplication::processEvents();
    EXPECT_EQ(answerer.count(), 0);
    EXPECT_EQ(content("a.lth"), Start + materialElements() + End);
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(workspace().history().undoName(), "");
}

TEST_F(SaveDocumentOperationTest, FirstSaveAsksForAPlaceFromTheHomeOn)
{
    QString title;
    QString folder;
    QStringList filters;
    Answerer answerer([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        title = files.windowTitle();
        folder = files.directory().path();
        filters = files.nameFilters();
        choose(dialog, path("new.lth"));
    });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(title, "Choose location");
    EXPECT_EQ(folder, QDir::homePath());
    EXPECT_EQ(filters, QStringList("Lithara file (*.lth)"));
    EXPECT_EQ(content("new.lth"), Start + materialElements() + End);
    EXPECT_EQ(workspace().document().fileName(), path("new.lth"));
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
}

TEST_F(SaveDocumentOperationTest, CancelledFirstSaveDropsTheOperationAndWritesNoFile)
{
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
}

TEST_F(SaveDocumentOperationTest, SavingToWhereNothingCanBeWrittenFinishesAndKeepsTheName)
{
    put("file", "x");
    for (const QString &name : {path("missing/a.lth"), m_folder.path(), path("file/a.lth")}) {
        SCOPED_TRACE(name.toStdString());
        log().clear();
        workspace().document().setFileName(name);
        Answerer answerer([](QWidget &dialog) { dialog.close(); });
        started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
        QApplication::processEvents();
        EXPECT_EQ(answerer.count(), 0);
        EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
        EXPECT_FALSE(workspace().currentOperation());
        EXPECT_EQ(workspace().document().fileName(), name);
    }
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList("file"));
}

TEST_F(SaveDocumentOperationTest, FirstSaveToWhereNothingCanBeWrittenLeavesTheDocumentWithoutAName)
{
    Answerer answerer([this](QWidget &dialog) { choose(dialog, path("missing/a.lth")); });
    started<SaveDocumentOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
}

TEST_F(SaveDocumentOperationTest, SavesWithoutAnObserverToo)
{
    workspace().document().setFileName(path("a.lth"));
    started<SaveDocumentOperation>(nullptr);
    EXPECT_EQ(content("a.lth"), Start + materialElements() + End);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
}

TEST_F(SaveDocumentOperationTest, HasItsNameAndNumberAndCancelsInSilence)
{
    SaveDocumentOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Save document");
    EXPECT_EQ(operation.id(), 9u);
    operation.cancel();
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
}

} // namespace
