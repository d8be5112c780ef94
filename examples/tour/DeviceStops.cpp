#include "DeviceStops.h"

#include "Stage.h"

#include "Support/TableCells.h"

#include "Model/Automaton/TotalVolume.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"
#include "UI/MainWindowPresenter.h"

#include <QAbstractButton>
#include <QColor>
#include <QDialog>
#include <QFile>
#include <QListWidget>
#include <QTableView>
#include <QTest>
#include <QTextStream>

namespace LitharaTour {

using Support::DialogAnswer;

namespace {

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Aluminium = 2;
constexpr std::uint32_t Glass = 17;

/// What an operation leaves without a picture gets one.
void rebuildPictures(Stage &stage)
{
    stage.driver().window().makeViewCurrent();
    for (const auto &volume : stage.driver().volumes())
        volume->painter().rebuild();
    stage.driver().view().update();
    stage.driver().settle();
}

DialogAnswer film(const char *material, const char *thickness)
{
    return DialogAnswer().choose("cbxMaterial", material).type("dblThickness", thickness).accept();
}

/// A document with nothing but a block of silicon of 20 by 40 by 9 cells, a beam on its side.
void makeCantilever(Stage &stage)
{
    Support::WindowDriver &driver = stage.driver();
    driver.trigger("actionNew", {DialogAnswer().accept()});
    driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                  .type("sbxTotalWidth", "60")
                                                  .type("sbxTotalLength", "40")
                                                  .type("sbxTotalHeight", "16")
                                                  .type("sbxSubsWidth", "20")
                                                  .type("sbxSubsHeight", "9")
                                                  .accept()});
    const auto volume = driver.volumes().front();
    Model::Automaton::Voxel *voxels = volume->voxels();
    Model::Automaton::Voxel *nextVoxels = volume->nextVoxels();
    for (std::uint32_t x = 20; x < 45; ++x)
        for (std::uint32_t y = 17; y < 23; ++y)
            for (std::uint32_t z = 6; z < 9; ++z) {
                const std::size_t cell = (std::size_t{x} * 40 + y) * 16 + z;
                voxels[cell].setMaterial(Aluminium);
                nextVoxels[cell].setMaterial(Aluminium);
            }
    volume->releaseVoxels();
    volume->releaseNextVoxels();
    rebuildPictures(stage);
}

} // namespace

void bondedWafers(Stage &stage)
{
    stage.startWithWafer();
    Support::WindowDriver &driver = stage.driver();
    stage.process("actionCVD", film("Thermal Si02", "4"));
    driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                  .type("sbxTotalWidth", "60")
                                                  .type("sbxTotalLength", "60")
                                                  .type("sbxTotalHeight", "30")
                                                  .type("sbxSubsHeight", "10")
                                                  .type("dblPositionX", "140")
                                                  .accept()});
    driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "300").accept()});
    stage.save("two-wafers", driver.picture());

    const QPoint base = driver.viewCenter();
    driver.trigger("actionGlue_Substrate");
    driver.click(base);
    driver.press(Qt::Key_Return);
    driver.click(base + QPoint(345, -45));
    driver.answering(
        {DialogAnswer()
             .type("sbxDisplacementX", "20")
             .type("sbxDisplacementY", "20")
             .check("chkInvertTopSubstrate")
             .look([&stage](QWidget &dialog) { stage.save("glue", dialog.grab().toImage()); })
             .accept()},
        [&driver] { driver.press(Qt::Key_Return); });
    Stage::expect(driver.volumes().size() == 1, "two wafers have become one");
    Stage::expect(stage.materialAt(50, 50, 34 + 9) == Silicon, "the upper one lies on the lower");
    Stage::expect(stage.materialAt(10, 10, 34) == 0, "where it was to lie");
    rebuildPictures(stage);
    stage.save("bonded", driver.screen());
}

void liftedFilm(Stage &stage)
{
    stage.startWithWafer();
    Support::WindowDriver &driver = stage.driver();
    stage.process("actionCVD", film("Thermal Si02", "6"));
    stage.selectVolume();
    driver.trigger("actionExtract_Film", {DialogAnswer()
                                              .choose("cbxFilm", "Thermal Si02")
                                              .look([&stage](QWidget &dialog) {
                                                  stage.save("extract-film",
                                                             dialog.grab().toImage());
                                              })
                                              .accept()});
    Stage::expect(driver.volumes().size() == 2, "the film is a volume of its own");
    Stage::expect(driver.consoleLines().last() == "Extract Film: film extracted.",
                  "the console says so");
    driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "300").accept()});
    rebuildPictures(stage);
    stage.save("lifted-film", driver.picture());
}

void netlistOfACantilever(Stage &stage)
{
    makeCantilever(stage);
    Support::WindowDriver &driver = stage.driver();
    stage.lookAt(30, 20, 5);
    driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "850").accept()});
    driver.trigger("actionManual_View",
                   {DialogAnswer().type("dblAngleX", "-60").type("dblAngleZ", "30").accept()});
    stage.save("cantilever-cells", driver.picture());

    // It has an id and no entry in a menu; the only way to it is the presenter.
    stage.selectObjectAt(driver.viewCenter() + QPoint(-120, 40));
    driver.window().presenter().operationActivated(QStringLiteral("1000"));
    driver.settle();
    auto *dialog = driver.window().findChild<QDialog *>("ExtractModelForm");
    Stage::expect(dialog != nullptr, "the steps of the extraction are shown");
    const auto step = [&](const char *button, const std::vector<DialogAnswer> &answers = {}) {
        driver.answering(answers, [&] {
            QTest::mouseClick(dialog->findChild<QAbstractButton *>(QLatin1String(button)),
                              Qt::LeftButton);
        });
    };
    step("btnStepOne");
    stage.save("boxes", driver.screen());
    step("btnStepTwo");
    stage.save("beam", driver.picture());
    const QString file = stage.filePath("cantilever.cir");
    step("btnStepThree", {DialogAnswer().fileName(file).accept()});
    QFile netlist(file);
    Stage::expect(netlist.open(QIODevice::ReadOnly), "the netlist is written");
    const QByteArray text = netlist.readAll();
    Stage::expect(text.count('\n') == 4 && text.endsWith(".end \n"), "it has one beam");
    QTextStream(stdout) << text;
    netlist.remove();
    dialog->close();
    driver.settle();
}

void materialOfOnesOwn(Stage &stage)
{
    Support::WindowDriver &driver = stage.driver();
    driver.trigger("actionManage_Materials",
                   {DialogAnswer()
                        .click("btnAddMaterial")
                        .look([&stage](QWidget &dialog) {
                            auto &table = *dialog.findChild<QTableView *>("tblMaterials");
                            const int row = table.model()->rowCount() - 1;
                            Support::typeIntoCell(table, row, 1, QStringLiteral("Glass"));
                            Support::typeIntoCell(table, row, 3, QStringLiteral("2500"));
                            Support::pickCellColor(dialog, table, row, 2, QColor(120, 200, 255));
                            stage.save("materials", dialog.grab().toImage());
                        })
                        .accept()});
    driver.trigger("actionManage_Compatible_Materials",
                   {DialogAnswer()
                        .choose("cbxProcess", "CVD")
                        .look([](QWidget &dialog) {
                            auto *available = dialog.findChild<QListWidget *>("lstAvailable");
                            const auto items = available->findItems("Glass", Qt::MatchExactly);
                            Stage::expect(items.size() == 1, "the material is available");
                            available->scrollToItem(items.front());
                            QTest::mouseClick(available->viewport(), Qt::LeftButton, Qt::NoModifier,
                                              available->visualItemRect(items.front()).center());
                        })
                        .click("btnInsert")
                        .look([&stage](QWidget &dialog) {
                            stage.save("compatible-materials", dialog.grab().toImage());
                        })
                        .accept()});
    stage.startWithWafer();
    stage.process("actionCVD", film("Glass", "5"));
    Stage::expect(stage.cellsOf(Glass) == 100 * 100 * 5, "the wafer is covered with glass");
    stage.save("glass", driver.screen());
}

} // namespace LitharaTour
