#include "Core/Operations/Document/OpenDocumentOperation.h"

#include "DocumentSuite.h"

#include <QFileDialog>

namespace {

using namespace Documents;

class OpenDocumentOperationTest : public DocumentSuite
{};

TEST_F(OpenDocumentOperationTest, OpenAsksFromTheLastFileOnAndTellsItsObserver)
{
    put("a.lth", QByteArray(Start) + End);
    OpenDocumentOperation::lastPath().setPath(path("b.lth"));
    QString folder;
    Answerer answerer([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        EXPECT_EQ(files.windowTitle(), "Choose file");
        EXPECT_EQ(files.nameFilters(), QStringList("Lithara file (*.lth)"));
        folder = files.directory().path();
        choose(dialog, path("a.lth"));
    });
    started<OpenDocumentOperation>(Fakes::logging(log(), "opened"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(folder, m_folder.path());
    EXPECT_EQ(OpenDocumentOperation::fileName(), path("a.lth"));
    EXPECT_EQ(OpenDocumentOperation::lastPath().path(), path("a.lth"));
    EXPECT_EQ(log(), (Fakes::Log{"opened", "view updated"}));
    // The document of the window that asked is another one.
    EXPECT_TRUE(workspace().document().fileName().isEmpty());
}

TEST_F(OpenDocumentOperationTest, CancelledOpenDropsTheOperationKeepsTheLastPlaceAndForgetsTheName)
{
    OpenDocumentOperation::lastPath().setPath(path("b.lth"));
    OpenDocumentOperation::setFileName(path("b.lth"));
    Answerer answerer([](QWidget &dialog) { dialog.close(); });
    started<OpenDocumentOperation>(Fakes::logging(log(), "opened"));
    EXPECT_EQ(answerer.count(), 1);
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
    EXPECT_FALSE(workspace().currentOperation());
    EXPECT_TRUE(OpenDocumentOperation::fileName().isEmpty());
    EXPECT_EQ(OpenDocumentOperation::lastPath().path(), path("b.lth"));
}

TEST_F(OpenDocumentOperationTest, HasItsNameAndNumberAndCancelsInSilence)
{
    OpenDocumentOperation operation(&workspace());
    EXPECT_EQ(operation.name(), "Open document");
    EXPECT_EQ(operation.id(), 11u);
    operation.cancel();
    EXPECT_EQ(log(), (Fakes::Log{"view updated"}));
}

} // namespace
