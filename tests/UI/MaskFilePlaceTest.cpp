#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/MaskFiles.h"

#include <QDir>
#include <QFileDialog>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;

/// The place is remembered for the whole process, so that this suite has one test.
TEST(MaskFilePlaceTest, TheQuestionStartsAtHomeAndThenAtTheLastFileWhicheverMaskItWasFor)
{
    const QString mask = MaskFiles::path("mask.png");
    ASSERT_TRUE(MaskFiles::imageOf({"#"}).save(mask));
    Support::WindowDriver driver;
    driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                  .type("sbxTotalWidth", "20")
                                                  .type("sbxTotalLength", "20")
                                                  .type("sbxTotalHeight", "20")
                                                  .type("sbxSubsHeight", "6")
                                                  .accept()});
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
    QString top;
    QString bottom;
    const auto read = [&](QWidget &dialog) {
        top = dialog.findChild<QLineEdit *>("ledTopMask")->text();
        bottom = dialog.findChild<QLineEdit *>("ledBottomMask")->text();
    };
    // Clicks the button and rejects the process afterwards; the answer is for the file dialog.
    const auto ask = [&](const char *button, const DialogAnswer &answer) {
        driver.trigger("actionSelect");
        driver.click(driver.viewCenter() + QPoint(20, -15));
        driver.trigger(
            "actionPhotolithography",
            {DialogAnswer().type("ledTopMask", "typed").click(button).look(read).reject(), answer});
    };

    ask("tbtTopMask", DialogAnswer(look).reject());
    EXPECT_EQ(title, "Choose Mask File");
    EXPECT_EQ(filters, QStringList("Image Files (*.png *.jpg *.bmp)"));
    EXPECT_EQ(place, QDir::homePath());
    EXPECT_EQ(top, "typed");

    ask("tbtTopMask", DialogAnswer(look).fileName(mask).accept());
    EXPECT_EQ(place, QDir::homePath());
    EXPECT_EQ(top, mask);
    EXPECT_EQ(bottom, "");
    // It is chosen, not applied.
    EXPECT_TRUE(driver.volumes().front()->topMask().empty());

    ask("tbtBottomMask", DialogAnswer(look).accept());
    EXPECT_EQ(place, QDir::currentPath());
    EXPECT_EQ(name, "mask.png");
    EXPECT_EQ(top, "typed");
    EXPECT_EQ(bottom, mask);
}

} // namespace
