#include "UI/Operations/PhotolithographyDialog.h"

#include "UI/MaskFiles.h"
#include "UI/Operations/MaskReceiver.h"
#include "UI/OptionsDialogs.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QMetaObject>
#include <QTimer>
#include <QToolButton>

#include <functional>

namespace {

using MaskFiles::imageOf;
using MaskFiles::path;
using Ui::Operations::PhotolithographyDialog;

const char *const TopNotFound =
    "Top Mask file not found!<br/>Please verify the filename is correct "
    "and you have the correct permissions.";
const char *const BottomNotFound = "Bottom mask not found error!<br/>Please verify if the filename "
                                   "is correct and you have the correct permissions.";

struct Shown
{
    bool top = false;
    std::vector<bool> bits;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

class Receiver final : public Ui::Operations::MaskReceiver
{
public:
    void showBottomMask(const std::vector<bool> &bits, std::uint32_t width,
                        std::uint32_t height) override
    {
        shown.push_back({false, bits, width, height});
    }
    void showTopMask(const std::vector<bool> &bits, std::uint32_t width,
                     std::uint32_t height) override
    {
        shown.push_back({true, bits, width, height});
    }

    std::vector<Shown> shown;
};

/// What a message box showed.
struct Message
{
    QString text;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    bool modal = false;
    QWidget *parent = nullptr;
};

/// Answers the message boxes that come up meanwhile.
std::vector<Message> messagesOf(const std::function<void()> &act)
{
    std::vector<Message> messages;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&messages] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        messages.push_back(
            {box->text(), box->windowTitle(), box->icon(), box->isModal(), box->parentWidget()});
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    });
    timer.start(5);
    act();
    return messages;
}

class PhotolithographyDialogTest : public testing::Test
{
protected:
    PhotolithographyDialogTest()
    {
        imageOf({"#..", "##."}).save(path("mask.png"));
        imageOf({"r"}).save(path("dot.bmp"));
    }

    template <typename Widget>
    Widget *find(const QString &name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name.toLatin1().constData());
    }
    void press(const QString &name)
    {
        QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
    }
    void typeName(const QString &side, const QString &name)
    {
        auto *field = find<QLineEdit>("led" + side + "Mask");
        field->selectAll();
        field->setFocus();
        QTest::keyClicks(field, name);
        if (name.isEmpty())
            QTest::keyClick(field, Qt::Key_Delete);
    }
    void apply(const QString &side, const QString &name)
    {
        typeName(side, name);
        press("btnApply" + side + "Mask");
    }

    Receiver m_receiver;
    PhotolithographyDialog m_dialog{&m_receiver};
};

TEST_F(PhotolithographyDialogTest, TitleAndLabelsAreThoseOfTheProcess)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Photolithography Options");
    EXPECT_EQ(m_dialog.objectName(), "PhotolithographyBaseDialog");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Select Film: cbxMaterial", "Top Mask: ledTopMask",
                           "Bottom Mask: ledBottomMask"}));
}

TEST_F(PhotolithographyDialogTest, TheSizeIsFixedAndThereIsRoomForAll)
{
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    OptionsDialogs::open(m_dialog);
    EXPECT_EQ(m_dialog.size(), QSize(370, 360));
    EXPECT_EQ(m_dialog.minimumSize(), QSize(370, 360));
    EXPECT_EQ(m_dialog.maximumSize(), QSize(370, 360));
    OptionsDialogs::expectRoom(m_dialog);
}

TEST_F(PhotolithographyDialogTest, EachMaskHasARowOfControls)
{
    OptionsDialogs::open(m_dialog);
    int above = 0;
    for (const QString side : {"Top", "Bottom"}) {
        const std::vector<QWidget *> row = {find<QLineEdit>("led" + side + "Mask"),
                                            find<QToolButton>("tbt" + side + "Mask"),
                                            find<QPushButton>("btnApply" + side + "Mask"),
                                            find<QPushButton>("btnRemove" + side + "Mask")};
        EXPECT_EQ(find<QToolButton>("tbt" + side + "Mask")->text(), "...");
        EXPECT_EQ(find<QPushButton>("btnApply" + side + "Mask")->text(), "Apply");
        EXPECT_EQ(find<QPushButton>("btnRemove" + side + "Mask")->text(), "Remove");
        const int middle = row[0]->geometry().center().y();
        EXPECT_GT(middle, above);
        above = middle;
        for (std::size_t i = 1; i < row.size(); ++i) {
            EXPECT_GT(row[i]->geometry().left(), row[i - 1]->geometry().right());
            EXPECT_LE(std::abs(row[i]->geometry().center().y() - middle), 2);
        }
        EXPECT_GE(row[0]->width(), 100);
    }
}

TEST_F(PhotolithographyDialogTest, TheSlotsAreNamedForAutomaticConnection)
{
    for (const char *slot : {"on_tbtTopMask_clicked()", "on_tbtBottomMask_clicked()",
                             "on_btnApplyTopMask_clicked()", "on_btnApplyBottomMask_clicked()",
                             "on_btnRemoveTopMask_clicked()", "on_btnRemoveBottomMask_clicked()"})
        EXPECT_GE(m_dialog.metaObject()->indexOfSlot(slot), 0) << slot;
}

TEST_F(PhotolithographyDialogTest, TheChooserOffersTheMaterialsThatAreSet)
{
    EXPECT_EQ(m_dialog.material(), 0u);
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser), (QStringList{"Copper", "Oxide"}));
    EXPECT_EQ(m_dialog.material(), 5u);
    chooser->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 4000000000u);
}

TEST_F(PhotolithographyDialogTest, ApplyReadsTheMaskAndHandsItOn)
{
    OptionsDialogs::open(m_dialog);
    apply("Top", path("mask.png"));
    ASSERT_EQ(m_receiver.shown.size(), 1u);
    const std::vector<bool> bits{true, true, true, false, false, false};
    EXPECT_TRUE(m_receiver.shown[0].top);
    EXPECT_EQ(m_receiver.shown[0].bits, bits);
    EXPECT_EQ(m_receiver.shown[0].width, 3u);
    EXPECT_EQ(m_receiver.shown[0].height, 2u);
    EXPECT_EQ(m_dialog.topMask().bits, bits);
    EXPECT_EQ(m_dialog.topMask().width, 3u);
    EXPECT_EQ(m_dialog.topMask().height, 2u);
    EXPECT_EQ(m_dialog.topMask().fileName, path("mask.png"));
    EXPECT_TRUE(m_dialog.bottomMask().bits.empty());

    apply("Bottom", path("dot.bmp"));
    ASSERT_EQ(m_receiver.shown.size(), 2u);
    EXPECT_FALSE(m_receiver.shown[1].top);
    EXPECT_EQ(m_receiver.shown[1].bits, std::vector<bool>{true});
    EXPECT_EQ(m_receiver.shown[1].width, 1u);
    EXPECT_EQ(m_receiver.shown[1].height, 1u);
    EXPECT_EQ(m_dialog.bottomMask().bits, std::vector<bool>{true});
    EXPECT_EQ(m_dialog.bottomMask().fileName, path("dot.bmp"));
    EXPECT_EQ(m_dialog.topMask().bits, bits);

    // Another file takes the place of the first.
    apply("Top", path("dot.bmp"));
    EXPECT_EQ(m_dialog.topMask().bits, std::vector<bool>{true});
    EXPECT_EQ(m_dialog.topMask().width, 1u);
    EXPECT_EQ(m_receiver.shown.size(), 3u);
}

TEST_F(PhotolithographyDialogTest, ANameThatIsNotAppliedHasNoEffect)
{
    OptionsDialogs::open(m_dialog);
    typeName("Top", path("mask.png"));
    typeName("Bottom", path("mask.png"));
    QTest::mouseClick(OptionsDialogs::button(m_dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    EXPECT_TRUE(m_receiver.shown.empty());
    for (const auto *mask : {&m_dialog.topMask(), &m_dialog.bottomMask()}) {
        EXPECT_TRUE(mask->fileName.isEmpty());
        EXPECT_TRUE(mask->bits.empty());
        EXPECT_EQ(mask->width, 0u);
        EXPECT_EQ(mask->height, 0u);
    }
}

TEST_F(PhotolithographyDialogTest, RemoveTakesTheMaskAwayAndKeepsItsWidth)
{
    OptionsDialogs::open(m_dialog);
    for (const QString side : {"Top", "Bottom"}) {
        const auto &mask = side == "Top" ? m_dialog.topMask() : m_dialog.bottomMask();
        apply(side, path("mask.png"));
        m_receiver.shown.clear();
        press("btnRemove" + side + "Mask");
        ASSERT_EQ(m_receiver.shown.size(), 1u);
        EXPECT_EQ(m_receiver.shown[0].top, side == "Top");
        EXPECT_TRUE(m_receiver.shown[0].bits.empty());
        EXPECT_EQ(m_receiver.shown[0].width, 0u);
        EXPECT_EQ(m_receiver.shown[0].height, 0u);
        EXPECT_TRUE(mask.bits.empty());
        EXPECT_EQ(mask.height, 0u);
        EXPECT_EQ(mask.width, 3u);
        // The name is still there to be applied again.
        EXPECT_EQ(find<QLineEdit>("led" + side + "Mask")->text(), path("mask.png"));
        press("btnApply" + side + "Mask");
        EXPECT_EQ(mask.height, 2u);
        EXPECT_EQ(mask.bits.size(), 6u);
    }
}

TEST_F(PhotolithographyDialogTest, RemoveWithoutAMaskHandsOnNone)
{
    OptionsDialogs::open(m_dialog);
    press("btnRemoveTopMask");
    press("btnRemoveBottomMask");
    ASSERT_EQ(m_receiver.shown.size(), 2u);
    EXPECT_TRUE(m_receiver.shown[0].top);
    EXPECT_FALSE(m_receiver.shown[1].top);
    EXPECT_EQ(m_dialog.topMask().width, 0u);
    EXPECT_EQ(m_dialog.topMask().height, 0u);
}

TEST_F(PhotolithographyDialogTest, AMaskThatCannotBeReadIsToldAndTheEarlierOneStays)
{
    MaskFiles::write("text.png", "no image");
    MaskFiles::write("cut.png", MaskFiles::bytesOf("mask.png").left(33));
    MaskFiles::write("flat.png", MaskFiles::pngOfNoPixels());
    MaskFiles::write("flat.bmp", MaskFiles::bmpHeader(0, 0));
    OptionsDialogs::open(m_dialog);
    apply("Top", path("mask.png"));
    apply("Bottom", path("mask.png"));
    m_receiver.shown.clear();
    for (const char *name : {"missing.png", "text.png", "cut.png", "flat.png", "flat.bmp", ""}) {
        const QString file = *name ? path(name) : QString();
        for (const QString side : {"Top", "Bottom"}) {
            const auto messages = messagesOf([&] { apply(side, file); });
            ASSERT_EQ(messages.size(), 1u) << name;
            EXPECT_EQ(messages[0].text, side == "Top" ? TopNotFound : BottomNotFound);
            EXPECT_TRUE(messages[0].title.isEmpty());
            EXPECT_EQ(messages[0].icon, QMessageBox::Warning);
            EXPECT_TRUE(messages[0].modal);
            EXPECT_EQ(messages[0].parent, &m_dialog);
            EXPECT_TRUE(m_dialog.isVisible());
            const auto &mask = side == "Top" ? m_dialog.topMask() : m_dialog.bottomMask();
            EXPECT_EQ(mask.fileName, file);
            EXPECT_EQ(mask.bits, (std::vector<bool>{true, true, true, false, false, false}));
            EXPECT_EQ(mask.width, 3u);
            EXPECT_EQ(mask.height, 2u);
        }
    }
    EXPECT_TRUE(m_receiver.shown.empty());
}

TEST_F(PhotolithographyDialogTest, AMaskIsReadAnewAtEachApply)
{
    OptionsDialogs::open(m_dialog);
    imageOf({"#"}).save(path("changing.png"));
    apply("Top", path("changing.png"));
    EXPECT_EQ(m_dialog.topMask().bits, std::vector<bool>{true});
    imageOf({".."}).save(path("changing.png"));
    EXPECT_EQ(m_dialog.topMask().bits, std::vector<bool>{true});
    press("btnApplyTopMask");
    EXPECT_EQ(m_dialog.topMask().bits, (std::vector<bool>{false, false}));
}

TEST_F(PhotolithographyDialogTest, TabGoesAlongTheRowsFromTopToBottom)
{
    OptionsDialogs::open(m_dialog);
    QStringList names;
    for (int i = 0; i < 9; ++i) {
        names << m_dialog.focusWidget()->objectName();
        QTest::keyClick(m_dialog.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(names, (QStringList{"cbxMaterial", "ledTopMask", "tbtTopMask", "btnApplyTopMask",
                                  "btnRemoveTopMask", "ledBottomMask", "tbtBottomMask",
                                  "btnApplyBottomMask", "btnRemoveBottomMask"}));
}

TEST_F(PhotolithographyDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "ledTopMask");
}

} // namespace
