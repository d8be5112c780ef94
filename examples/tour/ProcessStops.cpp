#include "ProcessStops.h"

#include "Stage.h"
#include "ViewStops.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QPoint>
#include <QPolygon>
#include <QRect>

namespace LitharaTour {

using Support::DialogAnswer;

namespace {

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Copper = 5;
constexpr std::uint32_t Resist = 11;
constexpr std::uint32_t NDoped = 14;
constexpr std::uint32_t PDoped = 15;
constexpr std::uint32_t PolySilicon = 16;

/// A mask for the wafer of 100 by 100 columns: one colour, and a rectangle of another.
QString saveMask(Stage &stage, const QString &name, QColor around, const QRect &area, QColor inside)
{
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(around);
    QPainter(&image).fillRect(area, inside);
    const QString file = stage.filePath(name);
    Stage::expect(image.save(file), "a mask can be saved");
    return file;
}

DialogAnswer film(const char *material, const char *thickness)
{
    return DialogAnswer().choose("cbxMaterial", material).type("dblThickness", thickness).accept();
}

/// Pours resist, exposes it through the mask and develops it.
void pattern(Stage &stage, const char *height, const QString &mask)
{
    stage.process(
        "actionSpin_Coating",
        DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxHeight", height).accept());
    stage.process("actionPhotolithography", DialogAnswer()
                                                .choose("cbxMaterial", "Photoresist +")
                                                .type("ledTopMask", mask)
                                                .click("btnApplyTopMask")
                                                .look([&stage](QWidget & /*dialog*/) {
                                                    stage.save("mask-over-the-wafer",
                                                               stage.driver().picture());
                                                })
                                                .accept());
    QFile::remove(mask);
}

void etchFromTop(Stage &stage, const char *material, const char *depth)
{
    stage.process("actionSimple_RIE",
                  DialogAnswer().choose("cbxMaterial", material).type("sbxDepth", depth).accept());
}

void stripResist(Stage &stage)
{
    stage.process(
        "actionMoore_Etching",
        DialogAnswer().choose("cbxMaterial", "Photoresist +").type("sbxValue", "60").accept());
    Stage::expect(stage.cellsOf(Resist) == 0, "the resist is stripped");
}

} // namespace

void surfaceMicromachinedBridge(Stage &stage)
{
    stage.startWithWafer();
    stage.process("actionCVD", film("Thermal Si02", "8"));
    const std::size_t sacrificial = stage.cellsOf(Oxide);
    pattern(stage, "46", saveMask(stage, "oxide.png", Qt::white, QRect(35, 0, 30, 100), Qt::black));
    etchFromTop(stage, "Thermal Si02", "10");
    stripResist(stage);
    Stage::expect(stage.cellsOf(Oxide) == sacrificial * 3 / 10, "a strip of oxide is left");
    stage.save("sacrificial-oxide", stage.driver().picture());

    stage.process("actionCVD", film("Poly-Si", "8"));
    stage.process("actionPlanarization", DialogAnswer().type("sbxMaximumHeight", "44").accept());
    Stage::expect(stage.materialAt(50, 50, 43) == PolySilicon, "the ridge is cut flat");
    Stage::expect(stage.materialAt(50, 50, 44) == 0, "nothing is left above the ridge");
    pattern(stage, "52", saveMask(stage, "beam.png", Qt::white, QRect(0, 40, 100, 20), Qt::red));
    etchFromTop(stage, "Poly-Si", "20");
    stripResist(stage);
    stage.save("beam-over-oxide", stage.driver().picture());

    stage.process("actionElectrodeposition", DialogAnswer()
                                                 .choose("cbxMaterial", "Cu (bulk)")
                                                 .choose("cbxConductingMaterial", "Poly-Si")
                                                 .type("dblThickness", "2")
                                                 .accept());
    Stage::expect(stage.materialAt(50, 50, 45) == Copper, "the beam is plated");
    stage.save("plated", stage.driver().picture());

    stage.process("actionIsotropic_Film_Etching", film("Thermal Si02", "40"));
    Stage::expect(stage.cellsOf(Oxide) == 0, "the oxide is gone");
    Stage::expect(stage.materialAt(50, 50, 34) == 0, "there is a gap under the bridge");
    Stage::expect(stage.materialAt(50, 50, 40) == PolySilicon, "the bridge spans it");
    stage.save("bridge", stage.driver().screen());
    smoothSkin(stage);
}

void dopedOpening(Stage &stage)
{
    stage.startWithWafer();
    stage.process("actionCVD", film("Thermal Si02", "4"));
    const QRect opening(40, 40, 20, 20);
    pattern(stage, "60", saveMask(stage, "opening.png", Qt::black, opening, Qt::white));
    Stage::expect(stage.materialAt(50, 50, 50) == 0, "the resist is open in the middle");
    Stage::expect(stage.materialAt(30, 50, 50) == Resist, "and stays around it");
    etchFromTop(stage, "Thermal Si02", "4");
    Stage::expect(stage.materialAt(50, 50, 30) == 0, "the oxide is open, too");

    stage.process(
        "actionDoping",
        DialogAnswer().choose("cbxMaterial", "P-doped Si (100)").type("dblDepth", "6").accept());
    Stage::expect(stage.materialAt(50, 50, 29) == PDoped, "the opening is doped");
    Stage::expect(stage.materialAt(20, 20, 29) == Silicon, "the oxide masks the rest");
    stage.save("doped-opening", stage.driver().picture());

    stage.process("actionSi_Oxidation", DialogAnswer()
                                            .check("rbtTime")
                                            .type("dblTime", "2")
                                            .type("dblCellUnitsPerMicron", "100")
                                            .accept());
    // 0.1055 microns: five cells up and four down.
    Stage::expect(stage.materialAt(50, 50, 34) == Oxide, "oxide grows out of the silicon");
    Stage::expect(stage.materialAt(50, 50, 28) == Oxide, "and into it");

    const std::size_t implanted = stage.cellsOf(NDoped);
    stage.process("actionIon_Implantation", DialogAnswer()
                                                .choose("cbxMaterial", "N-doped Si (100)")
                                                .type("dblImplantationDepth", "14")
                                                .type("dblAnnealingDistance", "2")
                                                .accept());
    Stage::expect(implanted == 0 && stage.cellsOf(NDoped) > 0, "ions reach the silicon");
    Stage::expect(stage.materialAt(20, 20, 22) == Silicon, "the resist stops them elsewhere");
    stage.save("implanted", stage.driver().picture());
    stripResist(stage);
    stage.save("furnace-oxide", stage.driver().screen());
}

void wetEtchedPits(Stage &stage)
{
    stage.startWithWafer();
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        painter.fillRect(QRect(15, 35, 30, 30), Qt::white);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawPolygon(
            QPolygon({QPoint(60, 30), QPoint(66, 30), QPoint(86, 70), QPoint(80, 70)}));
    }
    const QString mask = stage.filePath("pits.png");
    Stage::expect(image.save(mask), "a mask can be saved");
    pattern(stage, "34", mask);

    stage.process("actionBCA_Wet_Etching", DialogAnswer().type("dblDepth", "12").accept());
    Stage::expect(stage.materialAt(30, 50, 19) == 0, "the pit is twelve units deep");
    Stage::expect(stage.materialAt(30, 50, 16) == Silicon, "and has a floor");
    // The walls rise at 54.7 degrees: ten units down they are seven from the edge of the mask.
    Stage::expect(stage.materialAt(20, 50, 19) == Silicon, "its wall leans outward");
    Stage::expect(stage.materialAt(12, 50, 29) == Silicon, "the mask is hardly undercut");
    Stage::expect(stage.materialAt(81, 40, 29) == 0, "a slot across the crystal is");
    stage.save("etched-under-the-mask", stage.driver().picture());
    stripResist(stage);
    // Straight from above all steps of a pit are as light as the rest.
    stage.driver().trigger(
        "actionManual_View",
        {DialogAnswer().type("dblAngleX", "-35").type("dblAngleZ", "20").accept()});
    stage.save("pits-from-above", stage.driver().picture());

    cutOpen(stage);
    stage.driver().trigger(
        "actionManual_View",
        {DialogAnswer().type("dblAngleX", "-60").type("dblAngleZ", "30").accept()});
    stage.save("pits-cut-open", stage.driver().screen());
}

} // namespace LitharaTour
