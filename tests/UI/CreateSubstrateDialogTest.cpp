#include "UI/Operations/CreateSubstrateDialog.h"

#include "UI/Operations/MaterialChooser.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QIcon>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

using Model::Materials::Material;
using Ui::Operations::CreateSubstrateDialog;

namespace {

struct Cells
{
    std::uint32_t x = 77;
    std::uint32_t y = 77;
    std::uint32_t z = 77;

    bool operator==(const Cells &other) const
    {
        return x == other.x && y == other.y && z == other.z;
    }
};

std::vector<Material> someMaterials()
{
    const float silicon[] = {0.5F, 0.5F, 0.5F, 1.0F};
    const float copper[] = {1.0F, 0.8F, 0.3F, 1.0F};
    const float oxide[] = {0.0F, 0.999F, 0.7F, 1.0F};
    return {Material(1, QStringLiteral("Si"), 2329, 188e9F, 0.28F, silicon),
            Material(5, QStringLiteral("Cu (bulk)"), 8960, 128e9F, 0.36F, copper),
            Material(4000000000U, QStringLiteral("Thermal Si02"), 2200, 70e9F, 0.17F, oxide)};
}

QColor swatch(const QComboBox &chooser, int index)
{
    return chooser.itemIcon(index).pixmap(100, 100).toImage().pixelColor(50, 50);
}

class CreateSubstrateDialogTest : public ::testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = m_dialog.findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            throw std::runtime_error(std::string("no widget ") + name);
        return widget;
    }

    QSpinBox *spin(const std::string &name) const { return find<QSpinBox>(name.c_str()); }

    void open()
    {
        m_dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_dialog));
        QApplication::setActiveWindow(&m_dialog);
    }

    /// Replaces the box's text as a user does who types it and goes on with Tab.
    void type(const char *name, const char *text)
    {
        auto *box = find<QAbstractSpinBox>(name);
        box->setFocus();
        box->selectAll();
        QTest::keyClicks(box, QLatin1String(text));
        QTest::keyClick(box, Qt::Key_Tab);
    }

    void click(QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(find<QDialogButtonBox>("buttonBox")->button(which), Qt::LeftButton);
    }

    Cells displacement() const
    {
        Cells cells;
        m_dialog.displacement(cells.x, cells.y, cells.z);
        return cells;
    }

    Cells center() const
    {
        Cells cells;
        m_dialog.center(cells.x, cells.y, cells.z);
        return cells;
    }

    CreateSubstrateDialog m_dialog;
};

/// X and Y, which behave alike.
struct Axis
{
    const char *total;
    const char *size;
    const char *displacement;
    const char *center;
};

const std::vector<Axis> acrossAxes = {
    {"sbxTotalWidth", "sbxSubsWidth", "sbxSubsX", "sbxSubsCenterX"},
    {"sbxTotalLength", "sbxSubsLength", "sbxSubsY", "sbxSubsCenterY"}};

} // namespace

TEST_F(CreateSubstrateDialogTest, CellCountsStartWithTheirRangesAndDefaults)
{
    struct Row
    {
        const char *name;
        int minimum;
        int maximum;
        int value;
        bool enabled;
    };
    for (const Row &row :
         {Row{"sbxTotalWidth", 1, 10000, 100, true}, Row{"sbxTotalLength", 1, 10000, 100, true},
          Row{"sbxTotalHeight", 1, 10000, 80, true}, Row{"sbxSubsWidth", 1, 999999999, 100, true},
          Row{"sbxSubsLength", 1, 999999999, 100, true},
          Row{"sbxSubsHeight", 1, 999999999, 30, true}, Row{"sbxSubsX", 0, 999999999, 0, true},
          Row{"sbxSubsY", 0, 999999999, 0, true}, Row{"sbxSubsZ", 0, 999999999, 0, true},
          Row{"sbxSubsRadius", 1, 999999999, 50, false},
          Row{"sbxSubsCenterX", 0, 999999999, 0, false},
          Row{"sbxSubsCenterY", 0, 999999999, 0, false},
          Row{"sbxSubsCenterZ", 0, 999999999, 0, false}}) {
        SCOPED_TRACE(row.name);
        const QSpinBox *box = spin(row.name);
        EXPECT_EQ(box->minimum(), row.minimum);
        EXPECT_EQ(box->maximum(), row.maximum);
        EXPECT_EQ(box->value(), row.value);
        EXPECT_EQ(box->isEnabled(), row.enabled);
        EXPECT_EQ(box->suffix(), QStringLiteral(" cells"));
    }
}

TEST_F(CreateSubstrateDialogTest, PositionShapeAndMaterialStartWithTheirDefaults)
{
    for (const char *name : {"dblPositionX", "dblPositionY", "dblPositionZ"}) {
        SCOPED_TRACE(name);
        const auto *box = find<QDoubleSpinBox>(name);
        EXPECT_DOUBLE_EQ(box->minimum(), -1e9);
        EXPECT_DOUBLE_EQ(box->maximum(), 1e9);
        EXPECT_DOUBLE_EQ(box->value(), 0.0);
        EXPECT_TRUE(box->isEnabled());
    }
    EXPECT_FALSE(find<QCheckBox>("cbxSpherical")->isChecked());
    EXPECT_TRUE(find<QCheckBox>("cbxSpherical")->isEnabled());
    EXPECT_TRUE(find<QComboBox>("cbxMaterial")->isEnabled());
}

TEST_F(CreateSubstrateDialogTest, GroupsAndLabelsCarryTheirTexts)
{
    const auto labelsIn = [](const QGroupBox *group) {
        std::multiset<std::string> texts;
        for (const QLabel *label : group->findChildren<QLabel *>())
            texts.insert(label->text().toStdString());
        return texts;
    };
    const auto *total = find<QGroupBox>("grpTotalVolume");
    EXPECT_EQ(total->title(), QStringLiteral("Total Volume Dimensions and Position"));
    EXPECT_EQ(labelsIn(total),
              (std::multiset<std::string>{"Width", "Length", "Height",
                                          "Volume Lower Left Front Corner", "X", "Y", "Z"}));
    EXPECT_TRUE(total->isAncestorOf(spin("sbxTotalWidth")));
    EXPECT_TRUE(total->isAncestorOf(find<QDoubleSpinBox>("dblPositionX")));

    const auto *substrate = find<QGroupBox>("grpSubstrate");
    EXPECT_EQ(substrate->title(), QStringLiteral("Substrate Dimensions and position"));
    EXPECT_EQ(labelsIn(substrate),
              (std::multiset<std::string>{"Size", "Width", "Length", "Height",
                                          "Lower Left Front Corner", "X", "Y", "Z"}));
    EXPECT_TRUE(substrate->isAncestorOf(spin("sbxSubsWidth")));
    EXPECT_TRUE(substrate->isAncestorOf(spin("sbxSubsX")));

    EXPECT_EQ(labelsIn(find<QGroupBox>("grpSphere")),
              (std::multiset<std::string>{"Radius", "Center X", "Center Y", "Center Z"}));
    EXPECT_EQ(find<QCheckBox>("cbxSpherical")->text(), QStringLiteral("Spherical Substrate"));
    EXPECT_EQ(find<QLabel>("lblMaterial")->text(), QStringLiteral("Substrate Material"));
    EXPECT_EQ(find<QLabel>("lblMaterial")->buddy(), find<QComboBox>("cbxMaterial"));
}

TEST_F(CreateSubstrateDialogTest, EveryControlBelongsToTheLabelOnItsLeft)
{
    struct Row
    {
        const char *control;
        const char *label;
    };
    open();
    for (const Row &row :
         {Row{"sbxTotalWidth", "Width"}, Row{"sbxTotalLength", "Length"},
          Row{"sbxTotalHeight", "Height"}, Row{"dblPositionX", "X"}, Row{"dblPositionY", "Y"},
          Row{"dblPositionZ", "Z"}, Row{"sbxSubsWidth", "Width"}, Row{"sbxSubsLength", "Length"},
          Row{"sbxSubsHeight", "Height"}, Row{"sbxSubsX", "X"}, Row{"sbxSubsY", "Y"},
          Row{"sbxSubsZ", "Z"}, Row{"sbxSubsRadius", "Radius"}, Row{"sbxSubsCenterX", "Center X"},
          Row{"sbxSubsCenterY", "Center Y"}, Row{"sbxSubsCenterZ", "Center Z"}}) {
        SCOPED_TRACE(row.control);
        const auto *control = find<QWidget>(row.control);
        const QLabel *own = nullptr;
        for (const QLabel *label : m_dialog.findChildren<QLabel *>()) {
            if (label->buddy() == control)
                own = label;
        }
        ASSERT_NE(own, nullptr);
        EXPECT_EQ(own->text().toStdString(), row.label);
        EXPECT_EQ(own->parentWidget(), control->parentWidget());
        EXPECT_LT(own->geometry().right(), control->geometry().left());
        EXPECT_LE(qAbs(own->geometry().center().y() - control->geometry().center().y()), 1);
    }
}

TEST_F(CreateSubstrateDialogTest, ControlsExplainThemselves)
{
    const char *volumeHelp =
        "The simulation is run on a volume of cells. This is the total size of the volume. "
        "Substrate and aditional deposited films must fit inside this volume.";
    const char *displacementHelp =
        "This allows you to displace the substrate inside the final volume. This might be "
        "desirable to, for example, etch the substrate from both sides. This can be done by "
        "increasing the Z displacement.";
    const char *positionHelp =
        "This allows you to change where the volume will be placed. This is to avoid creating "
        "superimposed volumes. The coordinates indicate where the lower left front corner of the "
        "volume will be located.";
    struct Group
    {
        std::vector<const char *> controls;
        const char *toolTip;
        const char *help;
    };
    const std::vector<Group> groups = {
        {{"sbxTotalWidth", "sbxTotalLength", "sbxTotalHeight"},
         "Define the size of the total volume.",
         volumeHelp},
        {{"sbxSubsWidth", "sbxSubsLength", "sbxSubsHeight"}, "Size of the substrate in cells.", ""},
        {{"sbxSubsX", "sbxSubsY", "sbxSubsZ"},
         "Location of the substrate relative to the total volume in cells.",
         displacementHelp},
        {{"dblPositionX", "dblPositionY", "dblPositionZ"},
         "Define the position of the volume in the viewing space.",
         positionHelp},
        {{"cbxMaterial"}, "Material the substrate will be composed of.", ""},
        {{"sbxSubsCenterX", "sbxSubsCenterY", "sbxSubsCenterZ"},
         "Define the center position of the substrate relative to the total volume in cells.",
         ""},
        {{"sbxSubsRadius"}, "Define the radius of the substrate.", ""},
        {{"cbxSpherical"}, "Create a spherical substrate.", ""}};
    for (const Group &group : groups) {
        for (const char *name : group.controls) {
            SCOPED_TRACE(name);
            EXPECT_EQ(find<QWidget>(name)->toolTip().toStdString(), group.toolTip);
            EXPECT_EQ(find<QWidget>(name)->whatsThis().toStdString(), group.help);
        }
    }
}

TEST_F(CreateSubstrateDialogTest, ChangedTotalWidthAndLengthPullTheSubstrateAlong)
{
    for (const Axis &axis : acrossAxes) {
        SCOPED_TRACE(axis.total);
        spin(axis.total)->setValue(50);
        EXPECT_EQ(spin(axis.size)->value(), 50);
        EXPECT_EQ(spin(axis.size)->maximum(), 50);
        EXPECT_EQ(spin(axis.displacement)->value(), 0);
        EXPECT_EQ(spin(axis.displacement)->maximum(), 0);
        EXPECT_EQ(spin(axis.center)->maximum(), 49);

        // Upward as well.
        spin(axis.total)->setValue(200);
        EXPECT_EQ(spin(axis.size)->value(), 200);
        EXPECT_EQ(spin(axis.size)->maximum(), 200);
        EXPECT_EQ(spin(axis.displacement)->maximum(), 0);
        EXPECT_EQ(spin(axis.center)->maximum(), 199);
    }
    EXPECT_EQ(spin("sbxTotalHeight")->value(), 80);
    EXPECT_EQ(spin("sbxSubsHeight")->value(), 30);
}

TEST_F(CreateSubstrateDialogTest, DisplacementStaysShutAfterANewTotalUntilTheSizeChanges)
{
    for (const Axis &axis : acrossAxes) {
        SCOPED_TRACE(axis.total);
        // The size is already the new total, so only the total changes.
        spin(axis.size)->setValue(60);
        ASSERT_EQ(spin(axis.displacement)->maximum(), 40);
        spin(axis.displacement)->setValue(30);
        spin(axis.total)->setValue(60);
        EXPECT_EQ(spin(axis.size)->value(), 60);
        EXPECT_EQ(spin(axis.displacement)->maximum(), 0);
        EXPECT_EQ(spin(axis.displacement)->value(), 0);

        spin(axis.size)->setValue(45);
        EXPECT_EQ(spin(axis.displacement)->maximum(), 15);
    }
}

TEST_F(CreateSubstrateDialogTest, ChangedTotalHeightOnlyLimitsTheSubstrate)
{
    spin("sbxTotalHeight")->setValue(50);
    EXPECT_EQ(spin("sbxSubsHeight")->value(), 30);
    EXPECT_EQ(spin("sbxSubsHeight")->maximum(), 50);
    EXPECT_EQ(spin("sbxSubsZ")->maximum(), 20);
    EXPECT_EQ(spin("sbxSubsCenterZ")->maximum(), 49);

    spin("sbxTotalHeight")->setValue(120);
    EXPECT_EQ(spin("sbxSubsHeight")->value(), 30);
    EXPECT_EQ(spin("sbxSubsHeight")->maximum(), 120);
    EXPECT_EQ(spin("sbxSubsZ")->maximum(), 90);
    EXPECT_EQ(spin("sbxSubsCenterZ")->maximum(), 119);
}

TEST_F(CreateSubstrateDialogTest, TotalHeightBelowTheSubstrateCutsItDown)
{
    spin("sbxTotalHeight")->setValue(20);
    EXPECT_EQ(spin("sbxSubsHeight")->value(), 20);
    EXPECT_EQ(spin("sbxSubsZ")->maximum(), 0);
    spin("sbxSubsHeight")->setValue(21);
    EXPECT_EQ(spin("sbxSubsHeight")->value(), 20);
}

TEST_F(CreateSubstrateDialogTest, TypingATotalHeightDigitByDigitKeepsTheSubstrate)
{
    open();
    type("sbxTotalHeight", "50");
    EXPECT_EQ(m_dialog.totalZ(), 50U);
    EXPECT_EQ(m_dialog.sizeZ(), 30U);
    EXPECT_EQ(spin("sbxSubsZ")->maximum(), 20);

    type("sbxSubsZ", "15");
    type("sbxSubsHeight", "35");
    EXPECT_EQ(m_dialog.sizeZ(), 35U);
    EXPECT_EQ(displacement().z, 15U);
}

TEST_F(CreateSubstrateDialogTest, ChangedSizesLimitTheDisplacement)
{
    spin("sbxSubsWidth")->setValue(80);
    EXPECT_EQ(spin("sbxSubsX")->maximum(), 20);
    spin("sbxSubsLength")->setValue(70);
    EXPECT_EQ(spin("sbxSubsY")->maximum(), 30);
    spin("sbxSubsHeight")->setValue(60);
    EXPECT_EQ(spin("sbxSubsZ")->maximum(), 20);
    EXPECT_EQ(spin("sbxSubsX")->maximum(), 20);
}

TEST_F(CreateSubstrateDialogTest, SizesBeyondTheTotalLeaveADisplacementOfNothing)
{
    spin("sbxSubsWidth")->setValue(150);
    spin("sbxSubsLength")->setValue(999999999);
    spin("sbxSubsHeight")->setValue(81);
    EXPECT_EQ(m_dialog.sizeX(), 150U);
    EXPECT_EQ(m_dialog.sizeY(), 999999999U);
    EXPECT_EQ(m_dialog.sizeZ(), 81U);
    for (const char *name : {"sbxSubsX", "sbxSubsY", "sbxSubsZ"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(spin(name)->minimum(), 0);
        EXPECT_EQ(spin(name)->maximum(), 0);
        EXPECT_EQ(spin(name)->value(), 0);
    }
    spin("sbxSubsWidth")->setValue(90);
    EXPECT_EQ(spin("sbxSubsX")->minimum(), 0);
    EXPECT_EQ(spin("sbxSubsX")->maximum(), 10);
}

TEST_F(CreateSubstrateDialogTest, ShapeDecidesWhichControlsAndLabelsAreEnabled)
{
    std::vector<QWidget *> box;
    for (const char *name :
         {"sbxSubsWidth", "sbxSubsLength", "sbxSubsHeight", "sbxSubsX", "sbxSubsY", "sbxSubsZ"})
        box.push_back(spin(name));
    for (QLabel *label : find<QGroupBox>("grpSubstrate")->findChildren<QLabel *>())
        box.push_back(label);
    ASSERT_EQ(box.size(), 14U);

    std::vector<QWidget *> sphere;
    for (const char *name : {"sbxSubsRadius", "sbxSubsCenterX", "sbxSubsCenterY", "sbxSubsCenterZ"})
        sphere.push_back(spin(name));
    for (QLabel *label : find<QGroupBox>("grpSphere")->findChildren<QLabel *>())
        sphere.push_back(label);
    ASSERT_EQ(sphere.size(), 8U);

    std::vector<QWidget *> always;
    for (const char *name :
         {"sbxTotalWidth", "sbxTotalLength", "sbxTotalHeight", "dblPositionX", "dblPositionY",
          "dblPositionZ", "cbxMaterial", "lblMaterial", "cbxSpherical"})
        always.push_back(find<QWidget>(name));
    for (QLabel *label : find<QGroupBox>("grpTotalVolume")->findChildren<QLabel *>())
        always.push_back(label);

    open();
    const auto expectShape = [&](bool spherical) {
        for (const QWidget *widget : box)
            EXPECT_EQ(widget->isEnabled(), !spherical) << widget->objectName().toStdString();
        for (const QWidget *widget : sphere)
            EXPECT_EQ(widget->isEnabled(), spherical) << widget->objectName().toStdString();
        for (const QWidget *widget : always)
            EXPECT_TRUE(widget->isEnabled()) << widget->objectName().toStdString();
        EXPECT_EQ(m_dialog.isSpherical(), spherical);
    };
    auto *check = find<QCheckBox>("cbxSpherical");
    expectShape(false);
    QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
    expectShape(true);
    QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
    expectShape(false);
}

TEST_F(CreateSubstrateDialogTest, UntouchedDialogReadsAsItsDefaults)
{
    EXPECT_FALSE(m_dialog.isSpherical());
    EXPECT_EQ(m_dialog.totalX(), 100U);
    EXPECT_EQ(m_dialog.totalY(), 100U);
    EXPECT_EQ(m_dialog.totalZ(), 80U);
    EXPECT_EQ(m_dialog.sizeX(), 100U);
    EXPECT_EQ(m_dialog.sizeY(), 100U);
    EXPECT_EQ(m_dialog.sizeZ(), 30U);
    EXPECT_TRUE(displacement() == (Cells{0, 0, 0}));
    EXPECT_EQ(m_dialog.radius(), 50U);
    EXPECT_TRUE(center() == (Cells{0, 0, 0}));
    for (unsigned component = 0; component < 3; ++component)
        EXPECT_DOUBLE_EQ(m_dialog.position()[component], 0.0);
}

TEST_F(CreateSubstrateDialogTest, TypedValuesAreRead)
{
    m_dialog.setMaterials(someMaterials());
    open();
    type("sbxTotalWidth", "120");
    type("sbxTotalLength", "130");
    type("sbxTotalHeight", "140");
    type("dblPositionX", "-1.5");
    type("dblPositionY", "22.25");
    type("dblPositionZ", "1000");
    type("sbxSubsWidth", "61");
    type("sbxSubsLength", "62");
    type("sbxSubsHeight", "63");
    type("sbxSubsX", "4");
    type("sbxSubsY", "5");
    type("sbxSubsZ", "6");
    QTest::keyClick(find<QComboBox>("cbxMaterial"), Qt::Key_Down);
    find<QCheckBox>("cbxSpherical")->setChecked(true);
    type("sbxSubsRadius", "17");
    type("sbxSubsCenterX", "7");
    type("sbxSubsCenterY", "8");
    type("sbxSubsCenterZ", "9");
    click(QDialogButtonBox::Ok);

    EXPECT_EQ(m_dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(m_dialog.isSpherical());
    EXPECT_EQ(m_dialog.material(), 5U);
    EXPECT_EQ(m_dialog.totalX(), 120U);
    EXPECT_EQ(m_dialog.totalY(), 130U);
    EXPECT_EQ(m_dialog.totalZ(), 140U);
    EXPECT_DOUBLE_EQ(m_dialog.position()[0], -1.5);
    EXPECT_DOUBLE_EQ(m_dialog.position()[1], 22.25);
    EXPECT_DOUBLE_EQ(m_dialog.position()[2], 1000.0);
    EXPECT_EQ(m_dialog.sizeX(), 61U);
    EXPECT_EQ(m_dialog.sizeY(), 62U);
    EXPECT_EQ(m_dialog.sizeZ(), 63U);
    EXPECT_TRUE(displacement() == (Cells{4, 5, 6}));
    EXPECT_EQ(m_dialog.radius(), 17U);
    EXPECT_TRUE(center() == (Cells{7, 8, 9}));
}

TEST_F(CreateSubstrateDialogTest, MaterialsAreOfferedInOrderWithSwatchNameAndId)
{
    m_dialog.setMaterials(someMaterials());
    const auto *chooser = find<QComboBox>("cbxMaterial");
    ASSERT_EQ(chooser->count(), 3);
    EXPECT_EQ(chooser->currentIndex(), 0);
    EXPECT_EQ(m_dialog.material(), 1U);

    EXPECT_EQ(chooser->itemText(0), QStringLiteral("Si"));
    EXPECT_EQ(chooser->itemText(1), QStringLiteral("Cu (bulk)"));
    EXPECT_EQ(chooser->itemText(2), QStringLiteral("Thermal Si02"));
    EXPECT_EQ(chooser->itemData(0).toUInt(), 1U);
    EXPECT_EQ(chooser->itemData(1).toUInt(), 5U);
    EXPECT_EQ(chooser->itemData(2).toUInt(), 4000000000U);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(chooser->itemIcon(i).availableSizes(), QList<QSize>{QSize(100, 100)});
    // Channels times 255, truncated: 127.5, then 255, 204 and 76.5, then 0, 254.7 and 178.5.
    EXPECT_EQ(swatch(*chooser, 0), QColor(127, 127, 127));
    EXPECT_EQ(swatch(*chooser, 1), QColor(255, 204, 76));
    EXPECT_EQ(swatch(*chooser, 2), QColor(0, 254, 178));
}

TEST_F(CreateSubstrateDialogTest, MaterialsOfferedAgainReplaceTheFirstOnes)
{
    m_dialog.setMaterials(someMaterials());
    find<QComboBox>("cbxMaterial")->setCurrentIndex(2);
    EXPECT_EQ(m_dialog.material(), 4000000000U);
    m_dialog.setMaterials({someMaterials()[1]});
    EXPECT_EQ(find<QComboBox>("cbxMaterial")->count(), 1);
    EXPECT_EQ(m_dialog.material(), 5U);
}

TEST_F(CreateSubstrateDialogTest, NoMaterialIsChosenFromAnEmptyList)
{
    EXPECT_EQ(m_dialog.material(), 0U);
    m_dialog.setMaterials(someMaterials());
    m_dialog.setMaterials({});
    EXPECT_EQ(m_dialog.material(), 0U);
}

TEST_F(CreateSubstrateDialogTest, ChoosersKeepTransparencyAndSurviveColorsOutOfRange)
{
    const float glass[] = {1.0F, 1.0F, 1.0F, 0.5F};
    const float broken[] = {2.0F, -1.0F, std::numeric_limits<float>::quiet_NaN(), 1.0F};
    QComboBox chooser;
    chooser.addItem(QStringLiteral("left over"));
    Ui::Operations::fillMaterialChooser(chooser,
                                        {Material(2, QStringLiteral("Glass"), 0, 0, 0, glass),
                                         Material(3, QStringLiteral("Broken"), 0, 0, 0, broken)});
    ASSERT_EQ(chooser.count(), 2);
    EXPECT_EQ(swatch(chooser, 0).alpha(), 127);
    EXPECT_EQ(swatch(chooser, 1), QColor(255, 0, 0));

    EXPECT_EQ(Ui::Operations::chosenMaterial(chooser), 2U);
    chooser.setCurrentIndex(-1);
    EXPECT_EQ(Ui::Operations::chosenMaterial(chooser), 0U);
}

TEST_F(CreateSubstrateDialogTest, OkIsTheDefaultAndEnterInAFieldAcceptsIt)
{
    open();
    EXPECT_TRUE(find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->isDefault());
    auto *box = spin("sbxTotalHeight");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QStringLiteral("64"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(m_dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(m_dialog.isVisible());
    EXPECT_EQ(m_dialog.totalZ(), 64U);
    EXPECT_EQ(m_dialog.sizeZ(), 30U);
}

TEST_F(CreateSubstrateDialogTest, CancelAndEscapeReject)
{
    open();
    m_dialog.setResult(QDialog::Accepted);
    click(QDialogButtonBox::Cancel);
    EXPECT_EQ(m_dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(m_dialog.isVisible());

    open();
    m_dialog.setResult(QDialog::Accepted);
    QTest::keyClick(&m_dialog, Qt::Key_Escape);
    EXPECT_EQ(m_dialog.result(), QDialog::Rejected);
    EXPECT_FALSE(m_dialog.isVisible());
}

TEST_F(CreateSubstrateDialogTest, TabWalksTheEnabledFieldsFromTopToBottom)
{
    open();
    for (const char *name :
         {"sbxTotalWidth", "sbxTotalLength", "sbxTotalHeight", "dblPositionX", "dblPositionY",
          "dblPositionZ", "cbxMaterial", "sbxSubsWidth", "sbxSubsLength", "sbxSubsHeight",
          "sbxSubsX", "sbxSubsY", "sbxSubsZ", "cbxSpherical"}) {
        ASSERT_EQ(m_dialog.focusWidget(), find<QWidget>(name)) << name;
        QTest::keyClick(m_dialog.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_NE(qobject_cast<QPushButton *>(m_dialog.focusWidget()), nullptr);
}

TEST_F(CreateSubstrateDialogTest, DialogCannotShrinkBelowItsContents)
{
    open();
    EXPECT_EQ(m_dialog.windowTitle(), QStringLiteral("Create Substrate"));
    EXPECT_TRUE(m_dialog.isModal());
    const QSize hint = m_dialog.sizeHint();
    m_dialog.resize(1, 1);
    EXPECT_GE(m_dialog.width(), hint.width());
    EXPECT_GE(m_dialog.height(), hint.height());
}
