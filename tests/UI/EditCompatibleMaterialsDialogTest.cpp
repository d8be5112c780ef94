#include "UI/EditCompatibleMaterialsDialog.h"

#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/OptionsDialogs.h"

#include <QListWidget>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

using Ids = std::vector<std::uint32_t>;
using Model::Materials::MaterialFactory;
using Model::Process::Process;
using Model::Process::ProcessFactory;

class EditCompatibleMaterialsDialogTest : public testing::Test
{
protected:
    EditCompatibleMaterialsDialogTest() { makeDialog(); }
    void TearDown() override { ProcessFactory::instance()->loadDefaultProcesses(); }

    /// One that shows what is in the registry now.
    void makeDialog() { m_dialog = std::make_unique<Ui::EditCompatibleMaterialsDialog>(); }

    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(*m_dialog, name);
    }
    void choose(const char *process)
    {
        auto *chooser = find<QComboBox>("cbxProcess");
        const int wanted = chooser->findText(process);
        ASSERT_GE(wanted, 0);
        while (chooser->currentIndex() != wanted)
            QTest::keyClick(chooser, chooser->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    }
    QStringList namesIn(const char *list)
    {
        QStringList names;
        for (int row = 0; row < find<QListWidget>(list)->count(); ++row)
            names << find<QListWidget>(list)->item(row)->text();
        return names;
    }
    Ids idsIn(const char *list)
    {
        Ids ids;
        for (int row = 0; row < find<QListWidget>(list)->count(); ++row)
            ids.push_back(find<QListWidget>(list)->item(row)->data(Qt::UserRole).toUInt());
        return ids;
    }
    /// Clicks the items, all but the first with Control.
    void pick(const char *list, const QStringList &names)
    {
        auto *widget = find<QListWidget>(list);
        Qt::KeyboardModifiers modifiers = Qt::NoModifier;
        for (const QString &name : names) {
            const QList<QListWidgetItem *> items = widget->findItems(name, Qt::MatchExactly);
            ASSERT_FALSE(items.isEmpty()) << name.toStdString();
            widget->scrollToItem(items.front());
            QTest::mouseClick(widget->viewport(), Qt::LeftButton, modifiers,
                              widget->visualItemRect(items.front()).center());
            modifiers = Qt::ControlModifier;
        }
        EXPECT_EQ(widget->selectedItems().size(), names.size());
    }
    void insert(const QStringList &names)
    {
        pick("lstAvailable", names);
        QTest::mouseClick(find<QPushButton>("btnInsert"), Qt::LeftButton);
    }
    void remove(const QStringList &names)
    {
        pick("lstCompatible", names);
        QTest::mouseClick(find<QPushButton>("btnRemove"), Qt::LeftButton);
    }
    Ids compatible(std::uint32_t process)
    {
        for (const Process &candidate : m_dialog->processes())
            if (candidate.id() == process)
                return candidate.compatibleMaterialIds();
        ADD_FAILURE() << "no process " << process;
        return {};
    }

    std::unique_ptr<Ui::EditCompatibleMaterialsDialog> m_dialog;
};

TEST_F(EditCompatibleMaterialsDialogTest, TextsStandWordForWord)
{
    EXPECT_EQ(m_dialog->windowTitle(), "Edit Compatible Materials");
    EXPECT_EQ(OptionsDialogs::labelsOf(*m_dialog),
              (QStringList{"Process: cbxProcess", "Available Materials: lstAvailable",
                           "Compatible Materials: lstCompatible"}));
    EXPECT_EQ(find<QPushButton>("btnInsert")->text(), ">>");
    EXPECT_EQ(find<QPushButton>("btnRemove")->text(), "<<");
}

TEST_F(EditCompatibleMaterialsDialogTest, BothListsAreSortedAndTakeSelectionsOfMany)
{
    for (const char *name : {"lstAvailable", "lstCompatible"}) {
        const auto *list = find<QListWidget>(name);
        EXPECT_EQ(list->selectionMode(), QAbstractItemView::ExtendedSelection);
        EXPECT_TRUE(list->isSelectionRectVisible());
        EXPECT_TRUE(list->isSortingEnabled());
    }
}

TEST_F(EditCompatibleMaterialsDialogTest, ProcessesStandInTheOrderOfTheirIds)
{
    const auto *chooser = find<QComboBox>("cbxProcess");
    ASSERT_EQ(chooser->count(), 14);
    for (int i = 0; i < 14; ++i)
        EXPECT_EQ(chooser->itemData(i).toInt(), i + 1);
    EXPECT_EQ(chooser->itemText(0), "Si Wet Etching");
    EXPECT_EQ(chooser->itemText(13), "Ion Implantation");
}

TEST_F(EditCompatibleMaterialsDialogTest, TheFirstProcessShowsAtOnce)
{
    EXPECT_EQ(find<QComboBox>("cbxProcess")->currentIndex(), 0);
    EXPECT_EQ(namesIn("lstCompatible"), QStringList("Si"));
    EXPECT_EQ(idsIn("lstCompatible"), Ids{1});
    EXPECT_EQ(namesIn("lstAvailable"),
              (QStringList{"Al (bulk)", "Au (bulk)", "Cr (bulk)", "Cu (bulk)", "N-doped Si (100)",
                           "Ni (bulk)", "P-doped Si (100)", "PDMS", "Photoresist +",
                           "Photoresist -", "Poly-Si", "Pt (bulk)", "Thermal Si02", "Ti (bulk)"}));
    EXPECT_EQ(idsIn("lstAvailable"), (Ids{4, 9, 6, 5, 14, 7, 15, 13, 11, 12, 16, 8, 3, 10}));
}

TEST_F(EditCompatibleMaterialsDialogTest, AnotherProcessShowsItsOwnMaterials)
{
    choose("CVD");
    EXPECT_EQ(namesIn("lstCompatible"), (QStringList{"Poly-Si", "Thermal Si02"}));
    EXPECT_EQ(namesIn("lstAvailable").size(), 13);
    choose("Planarization");
    EXPECT_EQ(namesIn("lstCompatible"), QStringList());
    EXPECT_EQ(namesIn("lstAvailable").size(), 15);
}

TEST_F(EditCompatibleMaterialsDialogTest, InsertAddsTheSelectionFromTopToBottom)
{
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    insert({"PDMS", "Al (bulk)", "Cu (bulk)"});
    EXPECT_EQ(compatible(3), (Ids{3, 16, 4, 5, 13}));
    EXPECT_EQ(namesIn("lstCompatible"),
              (QStringList{"Al (bulk)", "Cu (bulk)", "PDMS", "Poly-Si", "Thermal Si02"}));
    EXPECT_EQ(namesIn("lstAvailable").size(), 10);
    EXPECT_FALSE(namesIn("lstAvailable").contains("PDMS"));
    EXPECT_TRUE(find<QListWidget>("lstAvailable")->selectedItems().isEmpty());
    EXPECT_TRUE(find<QListWidget>("lstCompatible")->selectedItems().isEmpty());
}

TEST_F(EditCompatibleMaterialsDialogTest, RemoveTakesTheSelectionOut)
{
    OptionsDialogs::open(*m_dialog);
    choose("PVD");
    remove({"Ti (bulk)", "Al (bulk)"});
    EXPECT_EQ(compatible(4), (Ids{5, 6, 7, 8, 9}));
    EXPECT_EQ(idsIn("lstCompatible"), (Ids{9, 6, 5, 7, 8}));
    EXPECT_TRUE(namesIn("lstAvailable").contains("Ti (bulk)"));
    // Down to nothing.
    remove({"Au (bulk)", "Cr (bulk)", "Cu (bulk)", "Ni (bulk)", "Pt (bulk)"});
    EXPECT_EQ(compatible(4), Ids{});
}

TEST_F(EditCompatibleMaterialsDialogTest, WithNothingSelectedTheButtonsChangeNothing)
{
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    QTest::mouseClick(find<QPushButton>("btnInsert"), Qt::LeftButton);
    QTest::mouseClick(find<QPushButton>("btnRemove"), Qt::LeftButton);
    EXPECT_EQ(compatible(3), (Ids{3, 16}));
}

TEST_F(EditCompatibleMaterialsDialogTest, AButtonTakesTheSelectionOfItsOwnListOnly)
{
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    pick("lstCompatible", {"Poly-Si"});
    insert({"PDMS"});
    EXPECT_EQ(compatible(3), (Ids{3, 16, 13}));
}

TEST_F(EditCompatibleMaterialsDialogTest, EditsStayWhileTheChooserGoesToAndFro)
{
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    insert({"PDMS"});
    choose("PVD");
    remove({"Ti (bulk)"});
    choose("CVD");
    EXPECT_TRUE(namesIn("lstCompatible").contains("PDMS"));
    choose("PVD");
    EXPECT_FALSE(namesIn("lstCompatible").contains("Ti (bulk)"));
    EXPECT_EQ(compatible(3), (Ids{3, 16, 13}));
    EXPECT_EQ(compatible(4), (Ids{4, 5, 6, 7, 8, 9}));
    // The registry is as it was.
    EXPECT_EQ(ProcessFactory::instance()->process(3).compatibleMaterialIds(), (Ids{3, 16}));
}

TEST_F(EditCompatibleMaterialsDialogTest, AnUnknownMaterialIsInNeitherListAndStaysInTheRecord)
{
    ProcessFactory::instance()->updateProcess(Process("CVD", 3, {3, 999, 16}));
    makeDialog();
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    EXPECT_EQ(idsIn("lstCompatible"), (Ids{16, 3}));
    EXPECT_EQ(idsIn("lstAvailable").size(), 13U);
    remove({"Poly-Si"});
    insert({"PDMS"});
    EXPECT_EQ(compatible(3), (Ids{3, 999, 13}));
}

TEST_F(EditCompatibleMaterialsDialogTest, RemoveTakesEveryEntryOfAMaterialThatIsListedTwice)
{
    ProcessFactory::instance()->updateProcess(Process("CVD", 3, {16, 3, 16, 4}));
    makeDialog();
    OptionsDialogs::open(*m_dialog);
    choose("CVD");
    EXPECT_EQ(namesIn("lstCompatible"),
              (QStringList{"Al (bulk)", "Poly-Si", "Poly-Si", "Thermal Si02"}));
    remove({"Poly-Si"});
    EXPECT_EQ(compatible(3), (Ids{3, 4}));
}

TEST_F(EditCompatibleMaterialsDialogTest, ProcessesOfAUsersFileAreFoundByTheirIds)
{
    ProcessFactory::instance()->updateProcess(Process("CVD", 4000000000U, {9}));
    makeDialog();
    OptionsDialogs::open(*m_dialog);
    find<QComboBox>("cbxProcess")->setCurrentIndex(14);
    EXPECT_EQ(idsIn("lstCompatible"), Ids{9});
    insert({"PDMS"});
    EXPECT_EQ(compatible(4000000000U), (Ids{9, 13}));
    EXPECT_EQ(compatible(3), (Ids{3, 16}));
}

TEST_F(EditCompatibleMaterialsDialogTest, WithoutAProcessTheButtonsChangeNothing)
{
    OptionsDialogs::open(*m_dialog);
    find<QComboBox>("cbxProcess")->setCurrentIndex(-1);
    QTest::mouseClick(find<QPushButton>("btnInsert"), Qt::LeftButton);
    QTest::mouseClick(find<QPushButton>("btnRemove"), Qt::LeftButton);
    EXPECT_EQ(m_dialog->processes().size(), 14U);
    EXPECT_EQ(compatible(1), Ids{1});
}

TEST_F(EditCompatibleMaterialsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(*m_dialog, "cbxProcess");
}

TEST_F(EditCompatibleMaterialsDialogTest, EverythingHasRoom)
{
    OptionsDialogs::open(*m_dialog);
    OptionsDialogs::expectRoom(*m_dialog);
}

} // namespace
