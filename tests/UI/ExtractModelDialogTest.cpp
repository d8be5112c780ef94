#include "UI/Operations/ExtractModelDialog.h"

#include "UI/ExtractionWindow.h"
#include "UI/OptionsDialogs.h"

#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QMetaMethod>
#include <QPushButton>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

namespace {

using Core::Operations::RunModelExtraction;
using Support::DialogAnswer;
using Ui::Operations::ExtractModelDialog;

class ExtractModelDialogTest : public ExtractionWindow
{
protected:
    /// Text, and whether it can be clicked.
    QStringList buttons()
    {
        QStringList found;
        for (const auto *button : m_dialog->findChildren<QPushButton *>())
            found << button->text() + (button->isEnabled() ? " on" : " off");
        return found;
    }
    QString path(const char *name) { return m_folder.filePath(QLatin1String(name)); }
    QByteArray content(const char *name)
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
    }
    /// Reads a message box, then leaves it.
    DialogAnswer message(QString &read)
    {
        return DialogAnswer()
            .look([&read](QWidget &dialog) {
                const auto &box = dynamic_cast<QMessageBox &>(dialog);
                read = QStringLiteral("%1|%2|%3|%4|%5")
                           .arg(box.windowTitle(), box.text())
                           .arg(box.icon())
                           .arg(box.standardButtons())
                           .arg(box.parentWidget() ? "parent" : "no parent");
            })
            .accept();
    }

    QTemporaryDir m_folder;
};

TEST_F(ExtractModelDialogTest, ToolWindowHasThreeStepsOfWhichTheFirstCanBeRun)
{
    start();
    EXPECT_EQ(m_dialog->windowTitle(), "Extract Model");
    EXPECT_EQ(m_dialog->windowType(), Qt::Tool);
    EXPECT_FALSE(m_dialog->isModal());
    EXPECT_TRUE(m_dialog->testAttribute(Qt::WA_DeleteOnClose));
    EXPECT_EQ(m_dialog->parentWidget(), &m_driver.window());
    EXPECT_EQ(OptionsDialogs::labelsOf(*m_dialog),
              (QStringList{"Preprocessing: nothing", "Feature Detection: nothing",
                           "Model Extraction: nothing"}));
    EXPECT_EQ(buttons(), (QStringList{"Run Step 1 on", "Run Step 2 off", "Run Step 3 off"}));
    OptionsDialogs::expectRoom(*m_dialog);
}

TEST_F(ExtractModelDialogTest, OwnSlotsAreTheThreeStepsInOrder)
{
    const QMetaObject &meta = ExtractModelDialog::staticMetaObject;
    QStringList own;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        own << meta.method(i).methodSignature();
    EXPECT_EQ(own,
              (QStringList{"runStepOneClicked()", "runStepTwoClicked()", "runStepThreeClicked()"}));
}

TEST_F(ExtractModelDialogTest, EachStepMakesRoomForTheNext)
{
    start();
    step(1);
    EXPECT_EQ(buttons(), (QStringList{"Run Step 1 off", "Run Step 2 on", "Run Step 3 off"}));
    EXPECT_EQ(objectCount(), 2U);
    step(2);
    EXPECT_EQ(buttons(), (QStringList{"Run Step 1 off", "Run Step 2 off", "Run Step 3 on"}));
    EXPECT_EQ(objectCount(), 3U);
    step(3, {DialogAnswer().reject()});
    EXPECT_EQ(buttons(), (QStringList{"Run Step 1 off", "Run Step 2 off", "Run Step 3 on"}));
}

TEST_F(ExtractModelDialogTest, VolumeWithoutABeamHasNoModelDataAndTheDialogStaysOpen)
{
    use([](auto, auto, auto) { return 1U; });
    start();
    step(1);
    step(2);
    EXPECT_EQ(objectCount(), 2U);
    for (int round = 0; round < 2; ++round) {
        QString read;
        step(3, {message(read)});
        EXPECT_EQ(read, QStringLiteral("No model data|No model data was extracted.|%1|%2|parent")
                            .arg(QMessageBox::Information)
                            .arg(QMessageBox::Ok));
        EXPECT_TRUE(m_dialog->isVisible());
    }
}

TEST_F(ExtractModelDialogTest, NetlistIsWrittenToTheFileThatWasChosenAsOftenAsWanted)
{
    start();
    step(1);
    step(2);
    step(3, {DialogAnswer().fileName(path("a.cir")).accept()});
    EXPECT_EQ(content("a.cir"), cantileverNetlist().toUtf8());
    EXPECT_EQ(m_driver.consoleLines().last(), Selected);
    step(3, {DialogAnswer().fileName(path("b.cir")).accept()});
    EXPECT_EQ(content("b.cir"), cantileverNetlist().toUtf8());
    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_NE(current(), nullptr);
}

TEST_F(ExtractModelDialogTest, ExistingFileIsOverwrittenAfterTheFileDialogsOwnQuestion)
{
    QFile file(path("a.cir"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(1000, 'x'));
    file.close();
    start();
    step(1);
    step(2);
    QString asked;
    step(3, {DialogAnswer().fileName(path("a.cir")).accept(),
             DialogAnswer().look([&asked](QWidget &dialog) {
                 auto &box = dynamic_cast<QMessageBox &>(dialog);
                 asked = box.text();
                 QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
             })});
    EXPECT_TRUE(asked.contains("a.cir"));
    EXPECT_EQ(content("a.cir"), cantileverNetlist().toUtf8());
}

TEST_F(ExtractModelDialogTest, CancelledFileDialogWritesNothing)
{
    start();
    step(1);
    step(2);
    step(3, {DialogAnswer().fileName(path("a.cir")).reject()});
    EXPECT_FALSE(QFileInfo::exists(path("a.cir")));
    EXPECT_TRUE(m_dialog->isVisible());
}

TEST_F(ExtractModelDialogTest, FileThatCannotBeWrittenIsToldAndAnotherCanBeChosen)
{
    start();
    step(1);
    step(2);
    const QString expected =
        QStringLiteral("File Error|Unable to save to selected file!|%1|%2|no parent")
            .arg(QMessageBox::Warning)
            .arg(QMessageBox::Ok);
    QString read;
    step(3, {DialogAnswer().fileName(path("missing/a.cir")).accept(), message(read)});
    EXPECT_EQ(read, expected);
    EXPECT_TRUE(m_dialog->isVisible());
    step(3, {DialogAnswer().fileName(path("a.cir")).accept()});
    EXPECT_EQ(content("a.cir"), cantileverNetlist().toUtf8());
}

TEST_F(ExtractModelDialogTest, FileThatTakesNothingIsTold)
{
    // A device that is always full.
    ASSERT_TRUE(QFile::link("/dev/full", path("full.cir")));
    start();
    step(1);
    step(2);
    QString read;
    step(3, {DialogAnswer().fileName(path("full.cir")).accept(),
             DialogAnswer().look([](QWidget &dialog) {
                 QTest::mouseClick(dynamic_cast<QMessageBox &>(dialog).button(QMessageBox::Yes),
                                   Qt::LeftButton);
             }),
             message(read)});
    EXPECT_TRUE(read.startsWith("File Error|Unable to save to selected file!|"));
}

TEST_F(ExtractModelDialogTest, MaterialsWithoutValuesAreToldOnTheConsole)
{
    use([](auto x, auto y, auto z) {
        return cantilever(x, y, z) == 2 ? 17U : cantilever(x, y, z);
    });
    start();
    step(1);
    step(2);
    step(3, {DialogAnswer().fileName(path("a.cir")).accept()});
    EXPECT_EQ(m_driver.consoleLines().last(),
              "Model Extraction: Material 17 has no density and no Young modulus in the netlist.");
    EXPECT_EQ(content("a.cir"), "Model extracted by Lithara\nc1 1 0 0 \nl1 1 0 inf \n.end \n");
}

TEST_F(ExtractModelDialogTest, ClosingItsWindowEndsTheOperationAndDeletesTheDialog)
{
    start();
    step(1);
    step(2);
    m_dialog->close();
    settle();
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_EQ(lastLines(2), (QStringList{Selected, Extracted}));
    EXPECT_EQ(objectCount(), 1U);
    EXPECT_EQ(current(), nullptr);
}

TEST_F(ExtractModelDialogTest, EscapeInItClosesItAndSaysNothingOfAModel)
{
    start();
    step(1);
    step(2);
    QApplication::setActiveWindow(m_dialog);
    QTest::keyClick(m_dialog, Qt::Key_Escape);
    settle();
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_EQ(m_driver.consoleLines().last(), Selected);
    EXPECT_EQ(objectCount(), 1U);
    EXPECT_EQ(current(), nullptr);
}

TEST_F(ExtractModelDialogTest, RejectCancelsTheOperation)
{
    start();
    m_dialog->reject();
    settle();
    EXPECT_TRUE(m_dialog.isNull());
    EXPECT_EQ(m_driver.consoleLines().last(), Selected);
    EXPECT_EQ(current(), nullptr);
}

TEST_F(ExtractModelDialogTest, OutlivesItsOperation)
{
    for (const bool rejected : {false, true}) {
        auto operation = boost::make_shared<RunModelExtraction>(&m_driver.workspace());
        m_dialog = new ExtractModelDialog(operation, &m_driver.window());
        m_dialog->show();
        operation.reset();
        step(1);
        step(2);
        QString read;
        step(3, {message(read)});
        EXPECT_TRUE(read.startsWith("No model data|"));
        if (rejected)
            m_dialog->reject();
        else
            m_dialog->close();
        settle();
        EXPECT_TRUE(m_dialog.isNull());
        EXPECT_EQ(objectCount(), 1U);
    }
}

TEST_F(ExtractModelDialogTest, StepsFollowEachOtherOnTheKeyboard)
{
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        start();
        OptionsDialogs::open(*m_dialog);
        for (const char *name : {"btnStepOne", "btnStepTwo"}) {
            ASSERT_NE(m_dialog->focusWidget(), nullptr);
            EXPECT_EQ(m_dialog->focusWidget()->objectName(), name);
            QTest::keyClick(m_dialog->focusWidget(), key);
        }
        EXPECT_EQ(m_dialog->focusWidget()->objectName(), "btnStepThree");
        EXPECT_EQ(objectCount(), 3U);
        m_dialog->close();
        settle();
    }
}

} // namespace
