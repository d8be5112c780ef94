#include "UI/ExtractionWindow.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

namespace {

using Support::DialogAnswer;

class NetlistPlaceTest : public ExtractionWindow
{};

/// The place is remembered for the whole process, so that this suite has one test.
TEST_F(NetlistPlaceTest, TheQuestionStartsInTheWorkingDirectoryAndThenAtTheLastFile)
{
    QString title;
    QString place;
    QString name;
    QStringList filters;
    const DialogAnswer look = DialogAnswer().look([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        title = files.windowTitle();
        place = files.directory().absolutePath();
        name = files.findChild<QLineEdit *>("fileNameEdit")->text();
        filters = files.nameFilters();
    });
    ASSERT_TRUE(QDir().mkpath("saved"));
    start();
    step(1);
    step(2);
    step(3, {DialogAnswer(look).reject()});
    EXPECT_EQ(title, "Save netlist");
    EXPECT_EQ(filters, QStringList("Circuit files *.cir"));
    EXPECT_EQ(place, QDir::currentPath());
    EXPECT_EQ(name, "");
    step(3, {DialogAnswer(look).fileName("saved/a.cir").accept()});
    EXPECT_EQ(place, QDir::currentPath());
    step(3, {DialogAnswer(look).reject()});
    EXPECT_EQ(place, QDir::currentPath() + "/saved");
    EXPECT_EQ(name, "a.cir");
}

} // namespace
