#include "ViewStops.h"

#include "Stage.h"

#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"

#include <QColor>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTabWidget>

namespace LitharaTour {

using Support::DialogAnswer;

namespace {

/// Tabs of the visualization options.
enum Tab
{
    Silicon,
    Films,
    Surfaces
};

DialogAnswer onTab(Tab tab)
{
    return DialogAnswer().look([tab](QWidget &dialog) {
        dialog.findChild<QTabWidget *>("tabWidget")->setCurrentIndex(tab);
    });
}

void changeView(Stage &stage, const std::vector<DialogAnswer> &answers)
{
    stage.selectVolume();
    stage.driver().trigger("actionChange_Viewing_Options", answers);
}

void setColorOfSilicon(Stage &stage, const QColor &color)
{
    changeView(stage, {onTab(Films).choose("cbxMaterial", "Si").click("btnChangeColor").accept(),
                       DialogAnswer().color(color).accept()});
}

} // namespace

void smoothSkin(Stage &stage)
{
    changeView(stage, {onTab(Surfaces)
                           .choose("cbxSurfaceAlgorithm", "Marching Cubes")
                           .look([&stage](QWidget &dialog) {
                               stage.save("visualization", dialog.grab().toImage());
                           })
                           .accept()});
    stage.save("smooth-skin", stage.driver().picture());
    changeView(
        stage,
        {onTab(Surfaces).choose("cbxSurfaceAlgorithm", "Octree Surface Generation").accept()});
    stage.save("merged-blocks", stage.driver().picture());
    changeView(stage, {onTab(Surfaces)
                           .choose("cbxSurfaceAlgorithm", "Direct Cubic Surface Generation")
                           .accept()});
}

void cutOpen(Stage &stage)
{
    stage.selectVolume();
    stage.driver().trigger(
        "actionCut_Cell_Volume",
        {DialogAnswer()
             .type("sbxYLowerLimit", "50")
             .look([&stage](QWidget &dialog) { stage.save("cut-planes", dialog.grab().toImage()); })
             .accept()});
    Model::Automaton::CellTriple lower{};
    Model::Automaton::CellTriple upper{};
    stage.driver().volumes().front()->painter().cutLimits(lower, upper);
    Stage::expect(lower[1] == 50, "the volume is cut at half its length");
}

void atomsOfAPit(Stage &stage)
{
    Support::WindowDriver &driver = stage.driver();
    driver.trigger("actionNew", {DialogAnswer().accept()});
    driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                  .type("sbxTotalWidth", "20")
                                                  .type("sbxTotalLength", "20")
                                                  .type("sbxTotalHeight", "12")
                                                  .type("sbxSubsHeight", "8")
                                                  .accept()});
    driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "2600").accept()});
    stage.lookAt(10, 10, 5);
    driver.trigger("actionManual_View",
                   {DialogAnswer().type("dblAngleX", "-45").type("dblAngleZ", "20").accept()});
    stage.process(
        "actionSpin_Coating",
        DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxHeight", "9").accept());
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter(&image).fillRect(QRect(5, 5, 10, 10), Qt::white);
    const QString mask = stage.filePath("pit.png");
    Stage::expect(image.save(mask), "a mask can be saved");
    stage.process("actionPhotolithography", DialogAnswer()
                                                .choose("cbxMaterial", "Photoresist +")
                                                .type("ledTopMask", mask)
                                                .click("btnApplyTopMask")
                                                .accept());
    QFile::remove(mask);
    stage.process("actionBCA_Wet_Etching", DialogAnswer().type("dblDepth", "5").accept());
    stage.process(
        "actionMoore_Etching",
        DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxValue", "20").accept());
    stage.save("small-pit", driver.picture());

    setColorOfSilicon(stage, QColor(127, 127, 127, 40));
    changeView(stage, {onTab(Silicon).check("cbxRenderAtoms").check("cbxRenderLinks").accept()});
    const auto lattice = driver.volumes().front()->siLattice();
    Stage::expect(lattice && !lattice->cells().empty(), "the crystal is there");
    stage.save("atoms-of-a-pit", driver.screen());
    setColorOfSilicon(stage, QColor(127, 127, 127, 255));
}

} // namespace LitharaTour
