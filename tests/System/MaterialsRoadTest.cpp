#include "Support/TableCells.h"
#include "System/WaferRoad.h"

#include "Model/Materials/MaterialFactory.h"
#include "Model/Process/ProcessFactory.h"

#include <QComboBox>
#include <QListWidget>
#include <QTableView>
#include <QTest>

#include <stdexcept>

namespace {

using Model::Materials::MaterialFactory;
using Model::Process::ProcessFactory;
using Support::DialogAnswer;

class MaterialsRoadTest : public WaferRoad
{
protected:
    void TearDown() override
    {
        MaterialFactory::instance()->loadDefaultMaterials();
        ProcessFactory::instance()->loadDefaultProcesses();
        ProcessFactory::instance()->saveProcesses();
    }

    static QTableView &table(QWidget &dialog)
    {
        return *dialog.findChild<QTableView *>("tblMaterials");
    }
    /// Types a value into the cell of the last row.
    static void typeIntoLastRow(QWidget &dialog, int column, const char *text)
    {
        Support::typeIntoCell(table(dialog), table(dialog).model()->rowCount() - 1, column,
                              QLatin1String(text));
    }
    static void pickColor(QWidget &dialog, int row, const QColor &color)
    {
        Support::pickCellColor(dialog, table(dialog), row, 2, color);
    }
    static DialogAnswer addGlass()
    {
        return DialogAnswer().click("btnAddMaterial").look([](QWidget &dialog) {
            typeIntoLastRow(dialog, 1, "Glass");
            typeIntoLastRow(dialog, 3, "2500");
        });
    }
    static QStringList itemsOf(QWidget &dialog, const char *chooser)
    {
        QStringList names;
        auto *box = dialog.findChild<QComboBox *>(chooser);
        for (int i = 0; i < box->count(); ++i)
            names << box->itemText(i);
        return names;
    }
};

TEST_F(MaterialsRoadTest, AMaterialOfOnesOwnIsPouredOntoTheWafer)
{
    m_driver.trigger("actionManage_Materials", {addGlass().accept()});
    EXPECT_EQ(MaterialFactory::instance()->material(17).name(), "Glass");
    EXPECT_EQ(MaterialFactory::instance()->material(17).density(), 2500.0F);
    run("actionSpin_Coating",
        DialogAnswer().choose("cbxMaterial", "Glass").type("sbxHeight", "20").accept());
    expectLayers(12, 8, 17);
}

TEST_F(MaterialsRoadTest, AMaterialThatWasCancelledIsOfferedNowhere)
{
    m_driver.trigger("actionManage_Materials", {addGlass().reject()});
    EXPECT_EQ(MaterialFactory::instance()->material(17).id(), 0U);
    QStringList offered;
    run("actionSpin_Coating",
        DialogAnswer()
            .look([&](QWidget &dialog) { offered = itemsOf(dialog, "cbxMaterial"); })
            .reject());
    EXPECT_EQ(offered.size(), 15);
    EXPECT_FALSE(offered.contains("Glass"));
}

TEST_F(MaterialsRoadTest, ANewColourShowsAtOnce)
{
    m_driver.trigger("actionLighting");
    m_driver.trigger("actionManage_Materials",
                     {DialogAnswer()
                          .look([](QWidget &dialog) { pickColor(dialog, 0, QColor(200, 40, 60)); })
                          .accept()});
    EXPECT_EQ(m_driver.picture().pixelColor(m_driver.viewCenter() + QPoint(20, -15)),
              QColor(200, 40, 60));
    expectLayers(12);
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(MaterialsRoadTest, AMaterialThatAProcessAcceptsIsOfferedByItsDialog)
{
    m_driver.trigger("actionManage_Materials", {addGlass().accept()});
    m_driver.trigger("actionManage_Compatible_Materials",
                     {DialogAnswer()
                          .choose("cbxProcess", "CVD")
                          .look([](QWidget &dialog) {
                              auto *list = dialog.findChild<QListWidget *>("lstAvailable");
                              QListWidgetItem *glass =
                                  list->findItems("Glass", Qt::MatchExactly).value(0);
                              if (!glass)
                                  throw std::runtime_error("no glass");
                              list->scrollToItem(glass);
                              QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                                                list->visualItemRect(glass).center());
                          })
                          .click("btnInsert")
                          .accept()});
    EXPECT_EQ(ProcessFactory::instance()->process(3).compatibleMaterialIds(),
              (std::vector<std::uint32_t>{3, 16, 17}));
    QStringList offered;
    run("actionCVD", DialogAnswer()
                         .look([&](QWidget &dialog) { offered = itemsOf(dialog, "cbxMaterial"); })
                         .reject());
    EXPECT_EQ(offered, (QStringList{"Thermal Si02", "Poly-Si", "Glass"}));
}

} // namespace
