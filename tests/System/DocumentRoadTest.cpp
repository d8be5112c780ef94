#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <boost/pointer_cast.hpp>

#include <gtest/gtest.h>

#include <GL/gl.h>

namespace {

using Model::Automaton::TotalVolume;
using Support::DialogAnswer;

/// Saving and opening from the menu, with a block of 60 by 60 at the middle of the view.
class DocumentRoadTest : public testing::Test
{
protected:
    DocumentRoadTest()
    {
        m_driver.trigger(
            "actionCreate_Substrate",
            {DialogAnswer().type("sbxTotalWidth", "60").type("sbxTotalLength", "60").accept()});
    }

    ~DocumentRoadTest() override
    {
        if (Ui::MainWindow *second = otherWindow())
            second->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QString path(const QString &name) const { return m_folder.filePath(name); }
    static DialogAnswer naming(const QString &name)
    {
        return DialogAnswer().fileName(name).accept();
    }

    Ui::MainWindow *otherWindow()
    {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *found = qobject_cast<Ui::MainWindow *>(widget))
                if (found != &m_driver.window() && !found->testAttribute(Qt::WA_WState_Hidden))
                    return found;
        return nullptr;
    }

    QByteArray content(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static int displayLists(Ui::MainWindow &window)
    {
        window.makeViewCurrent();
        int lists = 0;
        for (GLuint list = 1; list < 100; ++list)
            lists += glIsList(list) ? 1 : 0;
        return lists;
    }

    QTemporaryDir m_folder;
    Support::WindowDriver m_driver;
};

TEST_F(DocumentRoadTest, TitleAfterASaveShowsTheFullPathAndTheNextSaveAsksNothing)
{
    m_driver.trigger("actionSave", {naming(path("first.lth"))});
    EXPECT_EQ(m_driver.window().windowTitle(), "Lithara  " + path("first.lth"));
    EXPECT_TRUE(content("first.lth").contains("<State>"));
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");

    ASSERT_TRUE(QFile::remove(path("first.lth")));
    m_driver.trigger("actionSave");
    EXPECT_TRUE(content("first.lth").contains("<State>"));
}

TEST_F(DocumentRoadTest, SaveAsMovesTheDocumentToAnotherFile)
{
    m_driver.trigger("actionSave", {naming(path("first.lth"))});
    m_driver.trigger("actionSave_as", {naming(path("second.lth"))});
    EXPECT_EQ(m_driver.window().windowTitle(), "Lithara  " + path("second.lth"));
    EXPECT_FALSE(content("first.lth").isEmpty());
    EXPECT_EQ(content("second.lth"), content("first.lth"));

    ASSERT_TRUE(QFile::remove(path("first.lth")));
    m_driver.trigger("actionSave");
    EXPECT_FALSE(QFile::exists(path("first.lth")));
}

TEST_F(DocumentRoadTest, CancelledSavesLeaveFilesAndTitleAsTheyWere)
{
    const QString title = m_driver.window().windowTitle();
    m_driver.trigger("actionSave", {DialogAnswer().reject()});
    m_driver.trigger("actionSave_as", {DialogAnswer().reject()});
    EXPECT_EQ(m_driver.window().windowTitle(), title);
    EXPECT_TRUE(QDir(m_folder.path()).isEmpty());
    EXPECT_FALSE(m_driver.workspace().currentOperation());
    m_driver.trigger("actionSave", {naming(path("first.lth"))});
    m_driver.trigger("actionSave_as", {DialogAnswer().reject()});
    EXPECT_EQ(m_driver.window().windowTitle(), "Lithara  " + path("first.lth"));
}

TEST_F(DocumentRoadTest, OpenedDocumentGetsAWindowOfItsOwnWithTheSameCells)
{
    m_driver.volumes().at(0)->translate(Util::Vector3D(20, 10, 0));
    m_driver.trigger("actionSave", {naming(path("first.lth"))});
    m_driver.trigger("actionOpen", {naming(path("first.lth"))});
    Ui::MainWindow *second = otherWindow();
    ASSERT_TRUE(second);
    EXPECT_FALSE(second->parent());
    EXPECT_EQ(second->windowTitle(), "Lithara  " + path("first.lth"));
    EXPECT_TRUE(second->isMaximized());
    const auto objects = second->presenter().document().objects();
    ASSERT_EQ(objects.size(), 1u);
    const auto volume = boost::dynamic_pointer_cast<TotalVolume>(objects.front());
    ASSERT_TRUE(volume);
    EXPECT_EQ(Support::materialsOf(*volume), m_driver.materials());
    EXPECT_EQ(volume->position()[0], 20.0);
    EXPECT_EQ(volume->position()[1], 10.0);
    EXPECT_NE(volume, m_driver.volumes().at(0));
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");

    // The block reaches from 20 to 80 and from 10 to 70, seen from the top, one unit a pixel.
    ASSERT_TRUE(QTest::qWaitForWindowExposed(second));
    m_driver.settle();
    const QImage picture = second->view()->image();
    const QPoint center = second->view()->rect().center();
    EXPECT_NE(picture.pixelColor(center + QPoint(50, -40)), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(center + QPoint(-50, -40)), QColor(Qt::black));
}

TEST_F(DocumentRoadTest, VolumesAreBuiltInTheContextOfTheNewWindow)
{
    m_driver.trigger("actionSave", {naming(path("first.lth"))});
    m_driver.trigger("actionOpen", {naming(path("first.lth"))});
    Ui::MainWindow *second = otherWindow();
    ASSERT_TRUE(second);
    // Each volume takes one display list, in the context that is current then.
    EXPECT_EQ(displayLists(*second), 1);
    EXPECT_EQ(displayLists(m_driver.window()), 1);
}

TEST_F(DocumentRoadTest, EmptyDocumentOpensAsAnEmptyDocumentInANewWindow)
{
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    m_driver.trigger("actionSave", {naming(path("empty.lth"))});
    m_driver.trigger("actionOpen", {naming(path("empty.lth"))});
    Ui::MainWindow *second = otherWindow();
    ASSERT_TRUE(second);
    EXPECT_TRUE(second->presenter().document().objects().empty());
    EXPECT_EQ(second->windowTitle(), "Lithara  " + path("empty.lth"));
}

TEST_F(DocumentRoadTest, FileThatIsNoDocumentGoesAndLeavesAnEmptyWindow)
{
    {
        QFile file(path("other.lth"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("<Other/>");
    }
    const QString title = m_driver.window().windowTitle();
    QString text;
    m_driver.trigger(
        "actionOpen",
        {naming(path("other.lth")),
         DialogAnswer().look([&text](QWidget &box) { text = box.windowTitle(); }).accept()});
    EXPECT_EQ(text, "Error reading from file");
    EXPECT_FALSE(QFile::exists(path("other.lth")));
    Ui::MainWindow *second = otherWindow();
    ASSERT_TRUE(second);
    EXPECT_EQ(second->windowTitle(), "Lithara  ");
    EXPECT_TRUE(second->isMaximized());
    EXPECT_TRUE(second->presenter().document().objects().empty());

    EXPECT_EQ(m_driver.window().windowTitle(), title);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
    EXPECT_TRUE(m_driver.action("actionUndo").isEnabled());
    EXPECT_EQ(m_driver.volumes().size(), 1u);
}

TEST_F(DocumentRoadTest, CancelledOpenLeavesOneWindow)
{
    m_driver.trigger("actionOpen", {DialogAnswer().reject()});
    EXPECT_FALSE(otherWindow());
    EXPECT_FALSE(m_driver.workspace().currentOperation());
}

} // namespace
