#include "Core/Operations/Document/SaveDocumentAsOperation.h"

#include "DocumentSuite.h"

#include <QDir>
#include <QFileDialog>

namespace {

using namespace Documents;
using Core::Operations::SaveDocumentAsOperation;

class SaveDocumentAsOperationTest : public DocumentSuite
{};

TEST_F(SaveDocumentAsOperationTest, SaveAsAlwaysAsksAndACancelledOneKeepsTheName)
{
    workspace().document().setFileName(path("a.lth"));
    bool answering = false;
    Answerer answerer([&](QWidget &dialog) {
        EXPECT_EQ(dialog.windowTitle(), "Choose location");
        if (answering)
            choose(dialog, path("b.lth"));
        else
            dialog.close();
    });
    started<SaveDocumentAsOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());

    answering = true;
    log().clear();
    started<SaveDocumentAsOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_EQ(workspace().document().fileName(), path("b.lth"));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files), QStringList("b.lth"));
    EXPECT_EQ(answerer.count(), 2);
}

TEST_F(SaveDocumentAsOperationTest, AsksFromTheHomeOn)
{
    workspace().document().setFileName(path("a.lth"));
    QString folder;
    QStringList filters;
    Answerer answerer([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        folder = files.directory().path();
        filters = files.nameFilters();
        choose(dialog, path("b.lth"));
    });
    started<SaveDocumentAsOperation>(nullptr);
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(folder, QDir::homePath());
    EXPECT_EQ(filters, QStringList("Lithara file (*.lth)"));
    EXPECT_EQ(content("b.lth"), Start + materialElements() + End);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
}

TEST_F(SaveDocumentAsOperationTest, SavingToWhereNothingCanBeWrittenFinishesAndKeepsTheName)
{
    workspace().document().setFileName(path("a.lth"));
    Answerer answerer([this](QWidget &dialog) { choose(dialog, path("missing/b.lth")); });
    started<SaveDocumentAsOperation>(Fakes::logging(log(), "saved"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"saved", "view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_EQ(workspace().document().fileName(), path("a.lth"));
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
}

TEST_F(SaveDocumentAsOperationTest, HasItsNameAndNumberAndCancelsInSilence)
{
    SaveDocumentAsOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Save Document As");
    EXPECT_EQ(operation.id(), 10u);
    operation.cancel();
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
}

} // namespace
