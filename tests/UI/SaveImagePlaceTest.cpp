#include "Support/WindowDriver.h"

#include "UI/GLWidget.h"

#include <QDir>
#include <QFileDialog>
#include <QImage>

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;

/// The place is remembered for the whole process, so that this suite has one test.
TEST(SaveImagePlaceTest, TheQuestionStartsAtHomeAndThenWhereTheLastImageWent)
{
    Support::WindowDriver driver;
    QString title;
    QString place;
    QStringList filters;
    const DialogAnswer look = DialogAnswer().look([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        title = files.windowTitle();
        place = files.directory().path();
        filters = files.nameFilters();
    });

    driver.trigger("actionSave_Image", {DialogAnswer(look).reject()});
    EXPECT_EQ(title, "Save Screen Image");
    EXPECT_EQ(filters, QStringList("Images (*.png *.xpm *.jpg)"));
    EXPECT_EQ(place, QDir::homePath());
    EXPECT_TRUE(QDir::home().entryList({"*.png", "*.jpg", "*.xpm"}).isEmpty());

    const QString first = QDir::current().filePath("first.png");
    driver.trigger("actionSave_Image", {DialogAnswer().fileName(first).accept()});
    EXPECT_EQ(QImage(first).size(), driver.view().size());

    driver.trigger("actionSave_Image", {DialogAnswer(look).reject()});
    EXPECT_EQ(place, QDir::currentPath());
}

} // namespace
