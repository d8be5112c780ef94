#include "UI/Operations/CutCellVolumeDialog.h"

#include "UI/OptionsDialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QSlider>
#include <QSpinBox>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using Model::Automaton::CellTriple;
using Limits = std::pair<CellTriple, CellTriple>;

constexpr CellTriple Sizes{40, 30, 50};

class CutCellVolumeDialogTest : public testing::Test
{
protected:
    CutCellVolumeDialogTest() { m_dialog.setLimits({0, 0, 0}, Sizes, Sizes); }

    template <typename Widget>
    Widget *find(const std::string &name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name.c_str());
    }
    QSpinBox *field(const std::string &axisAndSide)
    {
        return find<QSpinBox>("sbx" + axisAndSide + "Limit");
    }
    QSlider *slider(const std::string &axisAndSide)
    {
        return find<QSlider>("sld" + axisAndSide + "Limit");
    }
    Limits limits() { return {m_dialog.lowerLimits(), m_dialog.upperLimits()}; }
    void expectAxis(const std::string &axis, int lower, int upper)
    {
        SCOPED_TRACE(axis);
        EXPECT_EQ(field(axis + "Lower")->value(), lower);
        EXPECT_EQ(slider(axis + "Lower")->value(), lower);
        EXPECT_EQ(field(axis + "Upper")->value(), upper);
        EXPECT_EQ(slider(axis + "Upper")->value(), upper);
    }
    void expectRange(const std::string &axisAndSide, int minimum, int maximum)
    {
        SCOPED_TRACE(axisAndSide);
        EXPECT_EQ(field(axisAndSide)->minimum(), minimum);
        EXPECT_EQ(field(axisAndSide)->maximum(), maximum);
        EXPECT_EQ(slider(axisAndSide)->minimum(), minimum);
        EXPECT_EQ(slider(axisAndSide)->maximum(), maximum);
    }
    /// Types over what stands in the field and leaves it.
    void type(const std::string &axisAndSide, const char *text)
    {
        OptionsDialogs::typeInto(*field(axisAndSide), text);
        QTest::keyClick(field(axisAndSide), Qt::Key_Tab);
    }
    void record()
    {
        m_dialog.setPreview([this](const CellTriple &lower, const CellTriple &upper) {
            m_shown.emplace_back(lower, upper);
        });
    }

    Ui::Operations::CutCellVolumeDialog m_dialog;
    std::vector<Limits> m_shown;
};

TEST_F(CutCellVolumeDialogTest, EachAxisHasAGroupWithItsTwoLimits)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Cut Cell Volume");
    QStringList groups;
    for (const QGroupBox *group : m_dialog.findChildren<QGroupBox *>()) {
        groups << group->title();
        for (const char *side : {"Lower", "Upper"}) {
            const std::string name = group->title().left(1).toStdString() + side;
            EXPECT_EQ(field(name)->parentWidget(), group);
            EXPECT_EQ(slider(name)->parentWidget(), group);
        }
    }
    EXPECT_EQ(groups, (QStringList{"X Axis Limits", "Y Axis Limits", "Z Axis Limits"}));
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Lower Limit: sbxXLowerLimit", "Upper Limit: sbxXUpperLimit",
                           "Lower Limit: sbxYLowerLimit", "Upper Limit: sbxYUpperLimit",
                           "Lower Limit: sbxZLowerLimit", "Upper Limit: sbxZUpperLimit"}));
    EXPECT_EQ(find<QPushButton>("btnReset")->text(), "Reset");
    EXPECT_EQ(find<QCheckBox>("cbxPreview")->text(), "Preview");
    EXPECT_FALSE(find<QCheckBox>("cbxPreview")->isChecked());
}

TEST_F(CutCellVolumeDialogTest, TipsStandWordForWord)
{
    const std::pair<const char *, const char *> tips[] = {
        {"XLower", "Lower X cutoff limit."}, {"XUpper", "Upper X cutoff limit."},
        {"YLower", "Lower Y cutoff limit."}, {"YUpper", "Upper Y cutoff limit."},
        {"ZLower", "Lower Z cuttoff limit"}, {"ZUpper", "Upper Z cutoff limit."}};
    for (const auto &[name, tip] : tips) {
        EXPECT_EQ(field(name)->toolTip(), tip);
        EXPECT_EQ(slider(name)->toolTip(), tip);
    }
    EXPECT_EQ(find<QPushButton>("btnReset")->toolTip(), "Reset to original values.");
    EXPECT_EQ(find<QCheckBox>("cbxPreview")->toolTip(), "Check to preview changes.");
}

TEST_F(CutCellVolumeDialogTest, RangesFollowTheSizesAndValuesTheLimits)
{
    m_dialog.setLimits({3, 4, 5}, {10, 20, 50}, Sizes);
    expectRange("XLower", 0, 39);
    expectRange("XUpper", 1, 40);
    expectRange("YLower", 0, 29);
    expectRange("YUpper", 1, 30);
    expectRange("ZLower", 0, 49);
    expectRange("ZUpper", 1, 50);
    expectAxis("X", 3, 10);
    expectAxis("Y", 4, 20);
    expectAxis("Z", 5, 50);
    EXPECT_EQ(limits(), (Limits{{3, 4, 5}, {10, 20, 50}}));
    // Below and above what stands there.
    m_dialog.setLimits({30, 0, 49}, {40, 1, 50}, Sizes);
    EXPECT_EQ(limits(), (Limits{{30, 0, 49}, {40, 1, 50}}));
    m_dialog.setLimits({0, 28, 0}, {1, 29, 2}, Sizes);
    EXPECT_EQ(limits(), (Limits{{0, 28, 0}, {1, 29, 2}}));
}

TEST_F(CutCellVolumeDialogTest, SlidersAndFieldsFollowEachOther)
{
    OptionsDialogs::open(m_dialog);
    for (const std::string axis : {"X", "Y", "Z"}) {
        type(axis + "Lower", "7");
        type(axis + "Upper", "21");
        expectAxis(axis, 7, 21);
        QTest::keyClick(slider(axis + "Lower"), Qt::Key_Right);
        QTest::keyClick(slider(axis + "Upper"), Qt::Key_Left);
        QTest::keyClick(slider(axis + "Upper"), Qt::Key_Left);
        expectAxis(axis, 8, 19);
    }
    EXPECT_EQ(limits(), (Limits{{8, 8, 8}, {19, 19, 19}}));
}

TEST_F(CutCellVolumeDialogTest, ALowerLimitDraggedToItsMaximumPushesTheUpperOneToTheSize)
{
    m_dialog.setLimits({0, 0, 0}, {5, 5, 5}, Sizes);
    OptionsDialogs::open(m_dialog);
    QTest::keyClick(slider("YLower"), Qt::Key_End);
    expectAxis("Y", 29, 30);
    expectAxis("X", 0, 5);
    expectAxis("Z", 0, 5);
}

TEST_F(CutCellVolumeDialogTest, AnUpperLimitDraggedToOnePullsTheLowerOneToZero)
{
    m_dialog.setLimits({20, 20, 20}, {25, 25, 25}, Sizes);
    OptionsDialogs::open(m_dialog);
    QTest::keyClick(slider("ZUpper"), Qt::Key_Home);
    expectAxis("Z", 0, 1);
    expectAxis("X", 20, 25);
    expectAxis("Y", 20, 25);
}

TEST_F(CutCellVolumeDialogTest, AnUpperLimitMovesOnlyWhenTheLowerOneReachesIt)
{
    for (const std::string axis : {"X", "Y", "Z"}) {
        m_dialog.setLimits({0, 0, 0}, {10, 10, 10}, Sizes);
        field(axis + "Lower")->setValue(9);
        expectAxis(axis, 9, 10);
        field(axis + "Lower")->setValue(10);
        expectAxis(axis, 10, 11);
        field(axis + "Lower")->setValue(20);
        expectAxis(axis, 20, 21);
        // It does not come back.
        field(axis + "Lower")->setValue(2);
        expectAxis(axis, 2, 21);
    }
}

TEST_F(CutCellVolumeDialogTest, ALowerLimitMovesOnlyWhenTheUpperOneReachesIt)
{
    for (const std::string axis : {"X", "Y", "Z"}) {
        m_dialog.setLimits({10, 10, 10}, {20, 20, 20}, Sizes);
        field(axis + "Upper")->setValue(11);
        expectAxis(axis, 10, 11);
        field(axis + "Upper")->setValue(10);
        expectAxis(axis, 9, 10);
        field(axis + "Upper")->setValue(4);
        expectAxis(axis, 3, 4);
        field(axis + "Upper")->setValue(20);
        expectAxis(axis, 3, 20);
    }
}

// While "25" is typed over an upper limit, the 2 must not pull a lower limit of 10 down.
TEST_F(CutCellVolumeDialogTest, ANumberCountsOnceItIsTypedWhole)
{
    m_dialog.setLimits({10, 10, 10}, {20, 20, 20}, Sizes);
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*field("XUpper"), "25");
    expectAxis("X", 10, 20);
    QTest::keyClick(field("XUpper"), Qt::Key_Tab);
    expectAxis("X", 10, 25);
    // Return takes it too, and the dialog with it.
    OptionsDialogs::typeInto(*field("XLower"), "12");
    QTest::keyClick(field("XLower"), Qt::Key_Return);
    EXPECT_EQ(m_dialog.result(), QDialog::Accepted);
    expectAxis("X", 12, 25);
}

TEST_F(CutCellVolumeDialogTest, WithThePreviewOffNothingIsShown)
{
    record();
    field("XLower")->setValue(5);
    field("ZUpper")->setValue(5);
    EXPECT_TRUE(m_shown.empty());
}

TEST_F(CutCellVolumeDialogTest, ThePreviewShowsEachChangeOfEachLimit)
{
    record();
    OptionsDialogs::open(m_dialog);
    QTest::mouseClick(find<QCheckBox>("cbxPreview"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    ASSERT_TRUE(find<QCheckBox>("cbxPreview")->isChecked());
    // The box alone changes no limit.
    EXPECT_TRUE(m_shown.empty());
    for (const char *name : {"XLower", "YLower", "ZLower"})
        QTest::keyClick(slider(name), Qt::Key_Right);
    for (const char *name : {"XUpper", "YUpper", "ZUpper"})
        QTest::keyClick(slider(name), Qt::Key_Left);
    EXPECT_EQ(m_shown, (std::vector<Limits>{{{1, 0, 0}, {40, 30, 50}},
                                            {{1, 1, 0}, {40, 30, 50}},
                                            {{1, 1, 1}, {40, 30, 50}},
                                            {{1, 1, 1}, {39, 30, 50}},
                                            {{1, 1, 1}, {39, 29, 50}},
                                            {{1, 1, 1}, {39, 29, 49}}}));
}

TEST_F(CutCellVolumeDialogTest, APushedLimitIsShownNeverAheadOfTheOther)
{
    m_dialog.setLimits({0, 0, 0}, {5, 5, 5}, Sizes);
    record();
    find<QCheckBox>("cbxPreview")->setChecked(true);
    field("XLower")->setValue(20);
    field("YUpper")->setValue(1);
    field("XUpper")->setValue(2);
    ASSERT_FALSE(m_shown.empty());
    for (const Limits &shown : m_shown)
        for (unsigned axis = 0; axis < 3; ++axis)
            EXPECT_LT(shown.first[axis], shown.second[axis]);
    EXPECT_EQ(m_shown.back(), limits());
    EXPECT_EQ(limits(), (Limits{{1, 0, 0}, {2, 1, 5}}));
}

TEST_F(CutCellVolumeDialogTest, ResetShowsTheWholeVolume)
{
    m_dialog.setLimits({20, 29, 3}, {25, 30, 4}, Sizes);
    record();
    find<QCheckBox>("cbxPreview")->setChecked(true);
    OptionsDialogs::open(m_dialog);
    QTest::mouseClick(find<QPushButton>("btnReset"), Qt::LeftButton);
    EXPECT_EQ(limits(), (Limits{{0, 0, 0}, Sizes}));
    ASSERT_FALSE(m_shown.empty());
    EXPECT_EQ(m_shown.back(), limits());
    EXPECT_TRUE(m_dialog.isVisible());
}

TEST_F(CutCellVolumeDialogTest, AChangeWithoutAnyoneToShowItToIsNoHarm)
{
    find<QCheckBox>("cbxPreview")->setChecked(true);
    field("XLower")->setValue(5);
    expectAxis("X", 5, 40);
}

TEST_F(CutCellVolumeDialogTest, AVolumeOneCellThickHasNothingToChoose)
{
    m_dialog.setLimits({0, 0, 0}, {1, 1, 1}, {1, 1, 1});
    for (const std::string axis : {"X", "Y", "Z"}) {
        expectRange(axis + "Lower", 0, 0);
        expectRange(axis + "Upper", 1, 1);
        expectAxis(axis, 0, 1);
    }
}

TEST_F(CutCellVolumeDialogTest, AVolumeWithoutCellsHasNoLimits)
{
    m_dialog.setLimits({0, 0, 0}, {0, 0, 0}, {0, 0, 0});
    EXPECT_EQ(limits(), (Limits{{0, 0, 0}, {0, 0, 0}}));
}

TEST_F(CutCellVolumeDialogTest, LimitsThatDoNotFitAreTakenAsTheNearestThatDo)
{
    m_dialog.setLimits({45, 8, 4294967295U}, {99, 8, 4294967295U}, Sizes);
    expectAxis("X", 39, 40);
    expectAxis("Y", 8, 9);
    expectAxis("Z", 49, 50);
}

TEST_F(CutCellVolumeDialogTest, SizesThatNoFieldHoldsAreTakenAsItsHighest)
{
    constexpr int Most = std::numeric_limits<int>::max();
    m_dialog.setLimits({0, 0, 0}, {4294967295U, 5, 5}, {4294967295U, 5, 5});
    expectRange("XLower", 0, Most - 1);
    expectRange("XUpper", 1, Most);
    expectAxis("X", 0, Most);
}

TEST_F(CutCellVolumeDialogTest, TabGoesFromTopToBottom)
{
    QStringList names;
    for (const char *axis : {"X", "Y", "Z"})
        for (const char *side : {"Lower", "Upper"})
            for (const char *kind : {"sld", "sbx"})
                names << QLatin1String(kind) + QLatin1String(axis) + side + "Limit";
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), names << "cbxPreview");
}

TEST_F(CutCellVolumeDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxXLowerLimit");
}

TEST_F(CutCellVolumeDialogTest, EverythingHasRoom)
{
    m_dialog.setLimits({0, 0, 0}, {10000, 10000, 10000}, {10000, 10000, 10000});
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::expectRoom(m_dialog);
}

} // namespace
