#include "UI/BatchRun/RunProcessesDialog.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"
#include "Support/WindowDriver.h"
#include "UI/BatchDialogs.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"
#include "UI/MaskFiles.h"
#include "UI/OptionsDialogs.h"

#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QImage>
#include <QMessageBox>
#include <QMetaType>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

/// Of Qt: the events that wait for the calling thread.
Q_CORE_EXPORT uint qGlobalPostedEventsCount();

namespace {

using namespace BatchDialogs;
using Model::Automaton::TotalVolume;
using OptionsDialogs::find;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t Resist = 11;

class RunProcessesDialogTest : public testing::Test
{
protected:
    RunProcessesDialogTest() { reopen({}); }

    static boost::shared_ptr<TotalVolume> wafer()
    {
        return Support::makeVolume(
            Support::Grid{20, 16, 12},
            [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z < 3 ? Silicon : 0u; });
    }
    /// Beside the event loop of the test, which plays the dialogs that it opens.
    void reopen(const boost::shared_ptr<TotalVolume> &volume)
    {
        m_dialog = std::make_unique<Ui::RunProcessesDialog>(&m_driver.window(), volume,
                                                            &m_driver.workspace());
        m_dialog->setModal(false);
        OptionsDialogs::open(*m_dialog);
    }
    void reopenWithWafer()
    {
        m_volume = wafer();
        m_driver.workspace().document().addObject(m_volume);
        reopen(m_volume);
    }
    void clickButton(const char *name, const std::vector<DialogAnswer> &answers = {})
    {
        m_driver.answering(answers, [&] { click(*m_dialog, name); });
    }
    void choose(const char *text)
    {
        auto *chooser = find<QComboBox>(*m_dialog, "cbxProcess");
        chooser->setCurrentIndex(chooser->findText(text));
    }
    void add(const char *text, const DialogAnswer &answer)
    {
        choose(text);
        clickButton("btnAddProcess", {answer});
    }
    /// What the list holds, by the way of a file.
    std::vector<Ui::ProcessData> list()
    {
        // The file dialog would ask whether to replace it.
        QFile::remove(listFile("held.plst"));
        clickButton("btnSaveList", {DialogAnswer().fileName(listFile("held.plst")).accept()});
        return BatchDialogs::load("held.plst");
    }
    void put(const std::vector<Ui::ProcessData> &steps)
    {
        BatchDialogs::save(steps, "put.plst");
        clickButton("btnLoadList", {DialogAnswer().fileName(listFile("put.plst")).accept()});
    }
    /// The parameters of the step that is added through its dialog.
    QStringList added(const char *text, const DialogAnswer &answer)
    {
        put({});
        add(text, answer);
        auto steps = list();
        if (steps.size() != 1)
            throw std::runtime_error("not one step");
        m_type = steps.front().processType();
        return parametersOf(steps.front());
    }
    void select(const std::vector<int> &rows)
    {
        tree().clearSelection();
        for (const int row : rows)
            tree().topLevelItem(row)->setSelected(true);
    }
    QTreeWidget &tree() { return BatchDialogs::tree(*m_dialog); }
    QProgressBar &bar() { return BatchDialogs::bar(*m_dialog); }
    QStringList names() { return BatchDialogs::steps(*m_dialog); }
    /// Runs the list to the end of its bar.
    void run(int count)
    {
        clickButton("btnRun");
        EXPECT_TRUE(waitForBar(*m_dialog, count));
        waitForEnd();
    }
    /// The dialog can be closed when nothing runs.
    void waitForEnd()
    {
        ASSERT_TRUE(QTest::qWaitFor(
            [this] {
                click(*m_dialog, "btnClose");
                return !m_dialog->isVisible();
            },
            60000));
        m_dialog->show();
    }
    /// They are built at the tick of the timer that finds the run over.
    void waitForFaces()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_volume->painter().opaqueFaces().size() > 0; },
                                    60000));
    }
    static DialogAnswer note(QString &title, QString &text)
    {
        return DialogAnswer()
            .look([&](QWidget &box) {
                title = box.windowTitle();
                text = dynamic_cast<QMessageBox &>(box).text();
                EXPECT_EQ(dynamic_cast<QMessageBox &>(box).standardButtons(), QMessageBox::Ok);
                EXPECT_EQ(dynamic_cast<QMessageBox &>(box).icon(), QMessageBox::Critical);
            })
            .accept();
    }
    /// Runs the list, which ends with the message.
    void runInVain()
    {
        QString title;
        QString text;
        m_driver.answering({note(title, text)}, [&] {
            click(*m_dialog, "btnRun");
            EXPECT_TRUE(QTest::qWaitFor([&] { return !text.isEmpty(); }, 20000));
            waitForEnd();
        });
        EXPECT_EQ(title, "Missing Cell Volume");
        EXPECT_EQ(text, "No cell volume was selected and a cell volume was not created. The cell "
                        "volume must be created before any other process.");
        EXPECT_EQ(bar().value(), 0);
    }

    Support::WindowDriver m_driver;
    boost::shared_ptr<TotalVolume> m_volume;
    std::unique_ptr<Ui::RunProcessesDialog> m_dialog;
    std::int32_t m_type = -1;
};

TEST_F(RunProcessesDialogTest, TheFormHasItsTexts)
{
    Ui::RunProcessesDialog dialog(&m_driver.window(), {}, &m_driver.workspace());
    EXPECT_TRUE(dialog.isModal());
    EXPECT_EQ(dialog.windowTitle(), "Batch Run");
    EXPECT_EQ(dialog.objectName(), "RunProcessesBaseDialog");
    const QTreeWidget &list = BatchDialogs::tree(dialog);
    EXPECT_EQ(list.columnCount(), 4);
    EXPECT_EQ(list.headerItem()->text(2), "Parameter");
    EXPECT_EQ(list.headerItem()->text(3), "Value");
    QStringList texts;
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        texts << button->text();
    texts.sort();
    EXPECT_EQ(texts, (QStringList{"Add Process", "Close", "Load List", "Move Down", "Move Up",
                                  "Remove Process", "Run", "Save List"}));
    EXPECT_FALSE(BatchDialogs::bar(dialog).isEnabled());
    EXPECT_EQ(BatchDialogs::bar(dialog).value(), 0);
    // Return in the chooser must not start what cannot be undone, nor close the list.
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        EXPECT_FALSE(button->isDefault() || button->autoDefault()) << button->text().toStdString();
}

TEST_F(RunProcessesDialogTest, TheChooserListsTheProcessesWithTheirTypes)
{
    QStringList entries;
    const auto *chooser = find<QComboBox>(*m_dialog, "cbxProcess");
    for (int i = 0; i < chooser->count(); ++i)
        entries << chooser->itemText(i) + " " + chooser->itemData(i).toString();
    EXPECT_EQ(entries,
              (QStringList{"CVD 4", "PVD 12", "Isotropic Etching 5", "Moore Deposition 2",
                           "Moore Etching 3", "Photolithography 0", "Planarization 6",
                           "Si Wet Etching 1", "Electroplating 7", "Doping 8",
                           "Ion Implantation 14", "Spin Coating 9", "Simple RIE 13",
                           "Thermal Oxidation 15", "Create Substrate 11", "Save Image 10"}));
}

TEST_F(RunProcessesDialogTest, EverythingHasRoomAndTabGoesThroughIt)
{
    OptionsDialogs::expectRoom(*m_dialog);
    m_dialog->resize(m_dialog->minimumSize());
    QTest::qWait(0);
    OptionsDialogs::expectRoom(*m_dialog);
    QStringList order;
    tree().setFocus();
    while (order.size() < 10) {
        order << m_dialog->focusWidget()->objectName();
        QTest::keyClick(m_dialog->focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order, (QStringList{"trwProcesses", "cbxProcess", "btnAddProcess", "btnRemoveProcess",
                                  "btnMoveUp", "btnMoveDown", "btnLoadList", "btnSaveList",
                                  "btnRun", "btnClose"}));
}

TEST_F(RunProcessesDialogTest, ACvdStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(
        added("CVD",
              DialogAnswer().choose("cbxMaterial", "Poly-Si").type("dblThickness", "2.5").accept()),
        (QStringList{"Material: QString, Poly-Si, visible", "MaterialId: uint, 16, hidden",
                     "Material_Color: QColor, #4c7f66, hidden",
                     "Thickness: double, 2.5, visible"}));
    EXPECT_EQ(m_type, 4);
}

TEST_F(RunProcessesDialogTest, APvdStepTakesItsParametersFromItsDialog)
{
    const auto parameters = [](const char *mode, const char *text) {
        return QStringList{QString("Deposit On: QString, %1, visible").arg(text),
                           QString("DepositOn: int, %1, hidden").arg(mode),
                           "Horizontal to Vertical Ratio: double, 0.25, visible",
                           "Material: QString, Au (bulk), visible",
                           "MaterialId: uint, 9, hidden",
                           "Material_Color: QColor, #7fff7f, hidden",
                           "Thickness: double, 3, visible"};
    };
    const DialogAnswer values = DialogAnswer()
                                    .choose("cbxMaterial", "Au (bulk)")
                                    .type("dblThickness", "3")
                                    .type("dblHorizontalRatio", "0.25");
    EXPECT_EQ(added("PVD", DialogAnswer(values).accept()), parameters("1", "On Top"));
    EXPECT_EQ(m_type, 12);
    EXPECT_EQ(added("PVD", DialogAnswer(values).check("rbtBottom").accept()),
              parameters("2", "On Bottom"));
    EXPECT_EQ(added("PVD", DialogAnswer(values).check("rbtBothSides").accept()),
              parameters("3", "On Top and Bottom"));
}

TEST_F(RunProcessesDialogTest, AnIsotropicEtchingStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(
        added("Isotropic Etching",
              DialogAnswer().choose("cbxMaterial", "PDMS").type("dblThickness", "1.25").accept()),
        (QStringList{"Depth: double, 1.25, visible", "Material: QString, PDMS, visible",
                     "MaterialId: uint, 13, hidden", "Material_Color: QColor, #ffffff, hidden"}));
    EXPECT_EQ(m_type, 5);
}

TEST_F(RunProcessesDialogTest, MooreStepsTakeTheirParametersFromTheirDialog)
{
    EXPECT_EQ(
        added("Moore Deposition", DialogAnswer()
                                      .look([](QWidget &dialog) {
                                          EXPECT_EQ(dialog.findChild<QLabel *>("lblValue")->text(),
                                                    "Film Thickness");
                                      })
                                      .choose("cbxMaterial", "PDMS")
                                      .type("sbxValue", "4")
                                      .accept()),
        (QStringList{"Material: QString, PDMS, visible", "MaterialId: uint, 13, hidden",
                     "Material_Color: QColor, #ffffff, hidden", "Thickness: uint, 4, visible"}));
    EXPECT_EQ(m_type, 2);
    EXPECT_EQ(
        added("Moore Etching", DialogAnswer()
                                   .look([](QWidget &dialog) {
                                       EXPECT_EQ(dialog.findChild<QLabel *>("lblValue")->text(),
                                                 "Etch Depth");
                                   })
                                   .choose("cbxMaterial", "PDMS")
                                   .type("sbxValue", "5")
                                   .accept()),
        (QStringList{"Depth: uint, 5, visible", "Material: QString, PDMS, visible",
                     "MaterialId: uint, 13, hidden", "Material_Color: QColor, #ffffff, hidden"}));
    EXPECT_EQ(m_type, 3);
}

TEST_F(RunProcessesDialogTest, APhotolithographyStepHoldsItsWholeMasks)
{
    MaskFiles::imageOf({"#..", "r#."}).save(MaskFiles::path("top.png"));
    MaskFiles::imageOf({"#"}).save(MaskFiles::path("bottom.png"));
    EXPECT_EQ(
        added("Photolithography", DialogAnswer()
                                      .choose("cbxMaterial", "Photoresist +")
                                      .type("ledTopMask", MaskFiles::path("top.png"))
                                      .click("btnApplyTopMask")
                                      .type("ledBottomMask", MaskFiles::path("bottom.png"))
                                      .click("btnApplyBottomMask")
                                      .accept()),
        (QStringList{"Bottom Mask: mask, 1, hidden",
                     "Bottom Mask File: QString, " + MaskFiles::path("bottom.png") + ", visible",
                     "Bottom Mask Height: uint, 1, visible", "Bottom Mask Width: uint, 1, visible",
                     "Material: QString, Photoresist +, visible", "MaterialId: uint, 11, hidden",
                     "Material_Color: QColor, #ff7f7f, hidden",
                     // Column by column, from the lowest row of the image.
                     "Top Mask: mask, 111000, hidden",
                     "Top Mask File: QString, " + MaskFiles::path("top.png") + ", visible",
                     "Top Mask Height: uint, 2, visible", "Top Mask Width: uint, 3, visible"}));
    EXPECT_EQ(m_type, 0);
}

TEST_F(RunProcessesDialogTest, APhotolithographyStepMayHaveNoMasks)
{
    EXPECT_EQ(
        added("Photolithography", DialogAnswer().accept()),
        (QStringList{"Bottom Mask: mask, , hidden", "Bottom Mask File: QString, , visible",
                     "Bottom Mask Height: uint, 0, visible", "Bottom Mask Width: uint, 0, visible",
                     "Material: QString, Si, visible", "MaterialId: uint, 1, hidden",
                     "Material_Color: QColor, #7f7f7f, hidden", "Top Mask: mask, , hidden",
                     "Top Mask File: QString, , visible", "Top Mask Height: uint, 0, visible",
                     "Top Mask Width: uint, 0, visible"}));
}

TEST_F(RunProcessesDialogTest, APlanarizationStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(
        added("Planarization",
              DialogAnswer().type("sbxMaximumHeight", "30").type("sbxMinimumHeight", "4").accept()),
        (QStringList{"Maximum Height: uint, 30, visible", "Minimum Height: uint, 4, visible"}));
    EXPECT_EQ(m_type, 6);
}

TEST_F(RunProcessesDialogTest, AWetEtchingStepTakesItsParameterFromItsDialog)
{
    EXPECT_EQ(added("Si Wet Etching", DialogAnswer().type("dblDepth", "2.25").accept()),
              QStringList("Depth: double, 2.25, visible"));
    EXPECT_EQ(m_type, 1);
}

TEST_F(RunProcessesDialogTest, AnElectroplatingStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(added("Electroplating", DialogAnswer()
                                          .choose("cbxMaterial", "Ni (bulk)")
                                          .choose("cbxConductingMaterial", "Au (bulk)")
                                          .type("dblThickness", "6.5")
                                          .accept()),
              (QStringList{"Conducting Material: QString, Au (bulk), visible",
                           "Conducting Material_Color: QColor, #7fff7f, hidden",
                           "ConductingMaterialId: uint, 9, hidden",
                           "Deposited Material: QString, Ni (bulk), visible",
                           "Deposited Material_Color: QColor, #cce5cc, hidden",
                           "DepositedMaterialId: uint, 7, hidden",
                           "Film Thickness: double, 6.5, visible"}));
    EXPECT_EQ(m_type, 7);
}

TEST_F(RunProcessesDialogTest, ADopingStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(
        added("Doping", DialogAnswer()
                            .choose("cbxMaterial", "P-doped Si (100)")
                            .type("dblDepth", "2.5")
                            .accept()),
        (QStringList{"Doped Material: QString, P-doped Si (100), visible",
                     "Doped Material_Color: QColor, #aaaaff, hidden",
                     "DopedMaterialId: uint, 15, visible", "Doping Depth: float, 2.5, visible"}));
    EXPECT_EQ(m_type, 8);
}

TEST_F(RunProcessesDialogTest, ASpinCoatingStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(
        added(
            "Spin Coating",
            DialogAnswer().choose("cbxMaterial", "Photoresist -").type("sbxHeight", "17").accept()),
        (QStringList{"Material: QString, Photoresist -, visible", "MaterialId: uint, 12, hidden",
                     "Material_Color: QColor, #ff4cff, hidden",
                     "Maximum Height: uint, 17, visible"}));
    EXPECT_EQ(m_type, 9);
}

TEST_F(RunProcessesDialogTest, ASaveImageStepTakesItsNameFromAFileDialog)
{
    QString title;
    QString place;
    QStringList filters;
    EXPECT_EQ(added("Save Image", DialogAnswer()
                                      .look([&](QWidget &dialog) {
                                          auto &files = dynamic_cast<QFileDialog &>(dialog);
                                          title = files.windowTitle();
                                          place = files.directory().path();
                                          filters = files.nameFilters();
                                      })
                                      .fileName(listFile("later.png"))
                                      .accept()),
              QStringList("Filename: QString, " + listFile("later.png") + ", visible"));
    EXPECT_EQ(m_type, 10);
    EXPECT_EQ(title, "Save Image");
    EXPECT_EQ(place, QDir::homePath());
    EXPECT_EQ(filters, QStringList("Image Files (*.png *.jpg *.bmp)"));
}

TEST_F(RunProcessesDialogTest, ASubstrateStepShowsTheParametersOfItsShape)
{
    const auto parameters = [](const char *box, const char *sphere, const char *spherical) {
        const QString ofBox = QLatin1String(box);
        const QString ofSphere = QLatin1String(sphere);
        return QStringList{"Lower Left Front Corner: Util::Vector3D, (1.5 0 -2), visible",
                           "Material: QString, Si, visible",
                           "MaterialId: uint, 1, hidden",
                           "Material_Color: QColor, #7f7f7f, hidden",
                           QString("SphericalSubstrate: bool, %1, hidden").arg(spherical),
                           "Substrate Center X: uint, 0, " + ofSphere,
                           "Substrate Center Y: uint, 0, " + ofSphere,
                           "Substrate Center Z: uint, 0, " + ofSphere,
                           "Substrate Delta X: uint, 0, " + ofBox,
                           "Substrate Delta Y: uint, 0, " + ofBox,
                           "Substrate Delta Z: uint, 6, " + ofBox,
                           "Substrate Radius: uint, 50, " + ofSphere,
                           "Substrate Size X: uint, 40, " + ofBox,
                           "Substrate Size Y: uint, 30, " + ofBox,
                           "Substrate Size Z: uint, 12, " + ofBox,
                           "Volume Size X: uint, 40, visible",
                           "Volume Size Y: uint, 30, visible",
                           "Volume Size Z: uint, 50, visible"};
    };
    const DialogAnswer values = DialogAnswer()
                                    .type("sbxTotalWidth", "40")
                                    .type("sbxTotalLength", "30")
                                    .type("sbxTotalHeight", "50")
                                    .type("dblPositionX", "1.5")
                                    .type("dblPositionZ", "-2")
                                    .type("sbxSubsHeight", "12")
                                    .type("sbxSubsZ", "6");
    EXPECT_EQ(added("Create Substrate", DialogAnswer(values).accept()),
              parameters("visible", "hidden", "false"));
    EXPECT_EQ(m_type, 11);
    EXPECT_EQ(added("Create Substrate", DialogAnswer(values).check("cbxSpherical").accept()),
              parameters("hidden", "visible", "true"));
}

TEST_F(RunProcessesDialogTest, ASimpleRieStepTakesItsParametersFromItsDialog)
{
    const auto parameters = [](const char *value, const char *text) {
        return QStringList{"Etch Depth: uint, 8, visible",
                           QString("Etch Direction: QString, %1, visible").arg(text),
                           QString("EtchDirectionValue: int, %1, hidden").arg(value),
                           "Material: QString, PDMS, visible",
                           "MaterialId: uint, 13, hidden",
                           "Material_Color: QColor, #ffffff, hidden"};
    };
    const auto answer = [](bool top, bool below) {
        return DialogAnswer()
            .choose("cbxMaterial", "PDMS")
            .type("sbxDepth", "8")
            .check("cbxFromTop", top)
            .check("cbxFromBelow", below)
            .accept();
    };
    EXPECT_EQ(added("Simple RIE", answer(true, false)), parameters("1", "Top"));
    EXPECT_EQ(m_type, 13);
    EXPECT_EQ(added("Simple RIE", answer(false, true)), parameters("2", "Bottom"));
    EXPECT_EQ(added("Simple RIE", answer(true, true)), parameters("3", "Bottom and Top"));
    EXPECT_EQ(added("Simple RIE", answer(false, false)), parameters("0", ""));
}

TEST_F(RunProcessesDialogTest, AnIonImplantationStepTakesItsParametersFromItsDialog)
{
    EXPECT_EQ(added("Ion Implantation", DialogAnswer()
                                            .choose("cbxMaterial", "N-doped Si (100)")
                                            .type("dblImplantationDepth", "4.5")
                                            .type("dblAnnealingDistance", "1.5")
                                            .accept()),
              (QStringList{"Annealing Distance: float, 1.5, visible",
                           "Doped Material: QString, N-doped Si (100), visible",
                           "Doped Material_Color: QColor, #ffffaa, hidden",
                           "DopedMaterialId: uint, 14, visible",
                           "Implantation Depth: float, 4.5, visible"}));
    EXPECT_EQ(m_type, 14);
}

TEST_F(RunProcessesDialogTest, AnOxidationStepShowsWhatIsSet)
{
    const auto parameters = [](const char *time, const char *thickness, const char *timeSet,
                               const char *thicknessSet) {
        return QStringList{"Micron Conversion: double, 20, visible",
                           QString("Oxidation Pressure: double, 1, %1").arg(time),
                           QString("Oxidation Temperature: double, 1273, %1").arg(time),
                           QString("Oxidation Thickness: double, 10, %1").arg(thickness),
                           QString("OxidationThicknessSet: bool, %1, hidden").arg(thicknessSet),
                           QString("Oxidation Time: double, 2, %1").arg(time),
                           QString("OxidationTimeSet: bool, %1, hidden").arg(timeSet)};
    };
    auto wanted = parameters("hidden", "visible", "false", "true");
    wanted.sort();
    auto found =
        added("Thermal Oxidation", DialogAnswer().type("dblCellUnitsPerMicron", "20").accept());
    found.sort();
    EXPECT_EQ(found, wanted);
    EXPECT_EQ(m_type, 15);
    wanted = parameters("visible", "hidden", "true", "false");
    wanted.sort();
    found = added("Thermal Oxidation",
                  DialogAnswer().type("dblCellUnitsPerMicron", "20").check("rbtTime").accept());
    found.sort();
    EXPECT_EQ(found, wanted);
}

TEST_F(RunProcessesDialogTest, ARejectedDialogAddsNothing)
{
    const auto *chooser = find<QComboBox>(*m_dialog, "cbxProcess");
    for (int i = 0; i < chooser->count(); ++i) {
        add(chooser->itemText(i).toLatin1().constData(), DialogAnswer().reject());
        EXPECT_EQ(tree().topLevelItemCount(), 0) << i;
    }
}

TEST_F(RunProcessesDialogTest, TheColourOfAMaterialStaysWhateverBecomesOfIt)
{
    const auto materials = Model::Materials::MaterialFactory::instance();
    const auto before = materials->material(13);
    const float glassy[] = {0.25f, 0.5f, 0.999f, 0.4f};
    materials->updateMaterial(Model::Materials::Material(13, "Glass", 1, 1, 0.1f, glassy));
    add("Moore Deposition", DialogAnswer().choose("cbxMaterial", "Glass").accept());
    materials->updateMaterial(before);
    auto steps = list();
    EXPECT_EQ(steps.front().parameter("Material_Color").value<QColor>(), QColor(63, 127, 254));
    EXPECT_EQ(steps.front().parameter("Material").toString(), "Glass");
    const QTreeWidgetItem *row = tree().topLevelItem(0)->child(0);
    EXPECT_EQ(row->text(3), "Glass");
    EXPECT_EQ(row->icon(3).pixmap(25).toImage().pixelColor(12, 12), QColor(63, 127, 254));
}

TEST_F(RunProcessesDialogTest, HeightsAreLimitedByTheVolumeThatTheStepWillMeet)
{
    const auto highest = [this](const char *process, const char *field) {
        int found = -1;
        add(process, DialogAnswer()
                         .look([&](QWidget &dialog) {
                             found =
                                 dialog.findChild<QWidget *>(field)->property("maximum").toInt();
                         })
                         .reject());
        return found;
    };
    EXPECT_EQ(highest("Planarization", "sbxMaximumHeight"), 10000);
    EXPECT_EQ(highest("Spin Coating", "sbxHeight"), 10000);
    put({substrate(10, 10, 20, 4), pour(11, 3), substrate(10, 10, 30, 4), pour(11, 3)});
    EXPECT_EQ(highest("Planarization", "sbxMaximumHeight"), 30);
    reopenWithWafer();
    EXPECT_EQ(highest("Planarization", "sbxMaximumHeight"), 12);
    EXPECT_EQ(highest("Spin Coating", "sbxHeight"), 12);
    put({substrate(10, 10, 20, 4)});
    EXPECT_EQ(highest("Spin Coating", "sbxHeight"), 20);
    // A step that cannot be read does not count.
    put({step(11, {{"Volume Size Z", "high"}})});
    EXPECT_EQ(highest("Spin Coating", "sbxHeight"), 12);
}

TEST_F(RunProcessesDialogTest, TheTreeShowsEachStepWithItsVisibleParameters)
{
    Ui::ProcessData first(4);
    first.setParameter("Thickness", 2.5, true);
    first.setParameter("Material", "Gold", true);
    first.setParameter("Material_Color", QColor(10, 200, 30), false);
    first.setParameter("MaterialId", 9u, false);
    Ui::ProcessData second(99);
    second.setParameter("Flag", true, true);
    put({first, second, Ui::ProcessData(15)});
    ASSERT_EQ(tree().topLevelItemCount(), 3);
    EXPECT_EQ(names(), (QStringList{"CVD", "Unknown process", "Si Oxidation"}));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(tree().topLevelItem(i)->text(0), QString::number(i + 1));
        EXPECT_TRUE(tree().topLevelItem(i)->text(2).isEmpty());
        EXPECT_TRUE(tree().topLevelItem(i)->data(1, Qt::UserRole).isValid());
    }
    EXPECT_NE(tree().topLevelItem(0)->data(1, Qt::UserRole),
              tree().topLevelItem(1)->data(1, Qt::UserRole));
    const QTreeWidgetItem *row = tree().topLevelItem(0);
    ASSERT_EQ(row->childCount(), 2);
    EXPECT_EQ(row->child(0)->text(2), "Material");
    EXPECT_EQ(row->child(0)->text(3), "Gold");
    EXPECT_EQ(row->child(0)->icon(3).availableSizes(), QList<QSize>{QSize(25, 25)});
    EXPECT_EQ(row->child(0)->icon(3).pixmap(25).toImage().pixelColor(3, 20), QColor(10, 200, 30));
    EXPECT_EQ(row->child(1)->text(2), "Thickness");
    EXPECT_EQ(row->child(1)->text(3), "2.5");
    EXPECT_TRUE(row->child(1)->icon(3).isNull());
    ASSERT_EQ(tree().topLevelItem(1)->childCount(), 1);
    EXPECT_EQ(tree().topLevelItem(1)->child(0)->text(3), "true");
    EXPECT_EQ(tree().topLevelItem(2)->childCount(), 0);
    // The first two columns are as wide as what they hold.
    EXPECT_GE(tree().columnWidth(1), tree().fontMetrics().horizontalAdvance("Unknown process"));
}

TEST_F(RunProcessesDialogTest, OnlyStepsCanBeSelected)
{
    Ui::ProcessData first(4);
    first.setParameter("Thickness", 2.5, true);
    put({first, first});
    tree().expandAll();
    const auto clickRow = [this](QTreeWidgetItem *row) {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier,
                          tree().visualItemRect(row).center());
    };
    clickRow(tree().topLevelItem(1));
    EXPECT_EQ(tree().selectedItems(), QList<QTreeWidgetItem *>{tree().topLevelItem(1)});
    clickRow(tree().topLevelItem(0)->child(0));
    EXPECT_TRUE(tree().selectedItems().isEmpty());
}

TEST_F(RunProcessesDialogTest, RemovingTakesTheSelectedSteps)
{
    put({Ui::ProcessData(4), Ui::ProcessData(5), Ui::ProcessData(4), Ui::ProcessData(9)});
    clickButton("btnRemoveProcess");
    EXPECT_EQ(names().size(), 4);
    select({2});
    clickButton("btnRemoveProcess");
    EXPECT_EQ(names(), (QStringList{"CVD", "Isotropic etching", "Spin Coating"}));
    EXPECT_EQ(tree().topLevelItem(2)->text(0), "3");
    select({0, 2});
    clickButton("btnRemoveProcess");
    EXPECT_EQ(names(), QStringList("Isotropic etching"));
    select({0});
    clickButton("btnRemoveProcess");
    EXPECT_TRUE(names().isEmpty());
    clickButton("btnRemoveProcess");
}

TEST_F(RunProcessesDialogTest, StepsMoveUpAndDownAndStayCurrent)
{
    put({Ui::ProcessData(4), Ui::ProcessData(5), Ui::ProcessData(9)});
    clickButton("btnMoveUp");
    clickButton("btnMoveDown");
    EXPECT_EQ(names(), (QStringList{"CVD", "Isotropic etching", "Spin Coating"}));
    select({2});
    clickButton("btnMoveUp");
    EXPECT_EQ(names(), (QStringList{"CVD", "Spin Coating", "Isotropic etching"}));
    EXPECT_EQ(tree().currentItem(), tree().topLevelItem(1));
    EXPECT_TRUE(tree().topLevelItem(1)->isSelected());
    clickButton("btnMoveUp");
    EXPECT_EQ(names(), (QStringList{"Spin Coating", "CVD", "Isotropic etching"}));
    clickButton("btnMoveDown");
    clickButton("btnMoveDown");
    EXPECT_EQ(names(), (QStringList{"CVD", "Isotropic etching", "Spin Coating"}));
    EXPECT_EQ(tree().currentItem(), tree().topLevelItem(2));
    EXPECT_EQ(list()[2].processType(), 9);
}

TEST_F(RunProcessesDialogTest, MovingTheFirstStepUpOrTheLastDownChangesNothing)
{
    put({Ui::ProcessData(4), Ui::ProcessData(5)});
    select({0});
    clickButton("btnMoveUp");
    EXPECT_EQ(names(), (QStringList{"CVD", "Isotropic etching"}));
    EXPECT_EQ(tree().currentItem(), tree().topLevelItem(0));
    select({1});
    clickButton("btnMoveDown");
    EXPECT_EQ(names(), (QStringList{"CVD", "Isotropic etching"}));
    EXPECT_EQ(tree().currentItem(), tree().topLevelItem(1));
}

TEST_F(RunProcessesDialogTest, OfSeveralSelectedStepsTheFirstMoves)
{
    put({Ui::ProcessData(4), Ui::ProcessData(5), Ui::ProcessData(9)});
    // Selected from below.
    select({2, 1});
    clickButton("btnMoveUp");
    EXPECT_EQ(names(), (QStringList{"Isotropic etching", "CVD", "Spin Coating"}));
}

TEST_F(RunProcessesDialogTest, WhatIsUnfoldedStaysSo)
{
    Ui::ProcessData first(4);
    first.setParameter("Thickness", 2.5, true);
    put({first, first});
    // Loaded steps have ids of their own.
    tree().topLevelItem(1)->setExpanded(true);
    select({1});
    clickButton("btnMoveUp");
    EXPECT_TRUE(tree().topLevelItem(0)->isExpanded());
    EXPECT_FALSE(tree().topLevelItem(1)->isExpanded());
}

TEST_F(RunProcessesDialogTest, AListIsSavedAndLoaded)
{
    QStringList titles;
    QStringList places;
    QStringList filters;
    const auto look = DialogAnswer().look([&](QWidget &dialog) {
        auto &files = dynamic_cast<QFileDialog &>(dialog);
        titles << files.windowTitle();
        places << files.directory().path();
        filters << files.nameFilters();
    });
    add("CVD", DialogAnswer().accept());
    clickButton("btnSaveList", {DialogAnswer(look).fileName(listFile("mine.plst")).accept()});
    add("PVD", DialogAnswer().accept());
    clickButton("btnLoadList", {DialogAnswer(look).fileName(listFile("mine.plst")).accept()});
    EXPECT_EQ(names(), QStringList("CVD"));
    EXPECT_EQ(titles, (QStringList{"Process List File", "Process List File"}));
    EXPECT_EQ(places, (QStringList{QDir::homePath(), QDir::homePath()}));
    EXPECT_EQ(filters, (QStringList{"Process List (*.plst)", "Process List (*.plst)"}));
}

TEST_F(RunProcessesDialogTest, AListThatIsSavedWithoutASuffixGetsIt)
{
    put({Ui::ProcessData(4)});
    clickButton("btnSaveList", {DialogAnswer().fileName(listFile("plain")).accept()});
    EXPECT_FALSE(QFile::exists(listFile("plain")));
    EXPECT_EQ(BatchDialogs::load("plain.plst").size(), 1u);
    clickButton("btnSaveList", {DialogAnswer().fileName(listFile("own.txt")).accept()});
    EXPECT_EQ(BatchDialogs::load("own.txt").size(), 1u);
    EXPECT_FALSE(QFile::exists(listFile("own.txt.plst")));
}

TEST_F(RunProcessesDialogTest, ASuffixDoesNotReplaceAnotherListUnasked)
{
    put({Ui::ProcessData(4)});
    BatchDialogs::save({Ui::ProcessData(5), Ui::ProcessData(6)}, "kept.plst");
    const auto saveOver = [this](QMessageBox::StandardButton answer) {
        QString title;
        QString text;
        clickButton("btnSaveList", {DialogAnswer().fileName(listFile("kept")).accept(),
                                    DialogAnswer().look([&](QWidget &box) {
                                        auto &question = dynamic_cast<QMessageBox &>(box);
                                        title = question.windowTitle();
                                        text = question.text();
                                        EXPECT_EQ(question.defaultButton(),
                                                  question.button(QMessageBox::No));
                                        QTest::mouseClick(question.button(answer), Qt::LeftButton);
                                    })});
        EXPECT_EQ(title, "Process List File");
        EXPECT_EQ(text, "kept.plst already exists.\nDo you want to replace it?");
        return BatchDialogs::load("kept.plst").size();
    };
    EXPECT_EQ(saveOver(QMessageBox::No), 2u);
    EXPECT_EQ(saveOver(QMessageBox::Yes), 1u);
}

// The file dialog has asked for exactly that name.
TEST_F(RunProcessesDialogTest, AFileWithoutASuffixThatTheUserReplacesKeepsItsName)
{
    put({Ui::ProcessData(4)});
    MaskFiles::write("bare", "old");
    clickButton(
        "btnSaveList",
        {DialogAnswer().fileName(listFile("bare")).accept(), DialogAnswer().look([](QWidget &box) {
             QTest::mouseClick(dynamic_cast<QMessageBox &>(box).button(QMessageBox::Yes),
                               Qt::LeftButton);
         })});
    EXPECT_EQ(BatchDialogs::load("bare").size(), 1u);
    EXPECT_FALSE(QFile::exists(listFile("bare.plst")));
}

TEST_F(RunProcessesDialogTest, AListThatIsNotLoadedLeavesTheOldOne)
{
    put({Ui::ProcessData(4)});
    clickButton("btnLoadList", {DialogAnswer().reject()});
    EXPECT_EQ(names(), QStringList("CVD"));
    MaskFiles::write("none.plst", "<Materials/>");
    clickButton("btnLoadList", {DialogAnswer().fileName(listFile("none.plst")).accept()});
    EXPECT_EQ(names(), QStringList("CVD"));
    clickButton("btnSaveList", {DialogAnswer().reject()});
    put({});
    EXPECT_TRUE(names().isEmpty());
}

TEST_F(RunProcessesDialogTest, AListThatCannotBeSavedIsToldNobody)
{
    put({Ui::ProcessData(4)});
    // A name that the file dialog takes, and that vanishes before the list is written.
    const QString gone = QDir::current().filePath("gone");
    ASSERT_TRUE(QDir().mkdir(gone));
    clickButton("btnSaveList", {DialogAnswer()
                                    .fileName(gone + "/list.plst")
                                    .look([&](QWidget &) { QDir(gone).removeRecursively(); })
                                    .accept()});
    EXPECT_EQ(names(), QStringList("CVD"));
}

TEST_F(RunProcessesDialogTest, MasksAreShownOverTheVolumeWhileAStepIsComposed)
{
    reopenWithWafer();
    MaskFiles::imageOf({"#..", "r#."}).save(MaskFiles::path("top.png"));
    const auto extents = [this] {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        m_volume->topMaskExtent(width, height);
        QString text = QString("%1 x %2").arg(width).arg(height);
        m_volume->bottomMaskExtent(width, height);
        return text + QString(", %1 x %2").arg(width).arg(height);
    };
    add("Photolithography", DialogAnswer()
                                .type("ledTopMask", MaskFiles::path("top.png"))
                                .click("btnApplyTopMask")
                                .look([&](QWidget &) { EXPECT_EQ(extents(), "3 x 2, 0 x 0"); })
                                .type("ledBottomMask", MaskFiles::path("top.png"))
                                .click("btnApplyBottomMask")
                                .look([&](QWidget &) { EXPECT_EQ(extents(), "3 x 2, 3 x 2"); })
                                .click("btnRemoveTopMask")
                                .look([&](QWidget &) { EXPECT_EQ(extents(), "0 x 0, 3 x 2"); })
                                .accept());
    EXPECT_EQ(m_volume->bottomMask(), (std::vector<bool>{true, true, true, false, false, false}));
}

TEST_F(RunProcessesDialogTest, AMaskRepaintsTheViewAtOnce)
{
    reopenWithWafer();
    m_driver.window().makeViewCurrent();
    m_volume->painter().rebuild();
    const QImage before = m_driver.view().grabFrameBuffer();
    m_dialog->showTopMask(std::vector<bool>(20 * 16, true), 20, 16);
    const QImage after = m_driver.view().grabFrameBuffer();
    EXPECT_NE(before, after);
}

TEST_F(RunProcessesDialogTest, MasksWithoutAVolumeAreShownNowhere)
{
    MaskFiles::imageOf({"#"}).save(MaskFiles::path("dot.png"));
    add("Photolithography", DialogAnswer()
                                .type("ledTopMask", MaskFiles::path("dot.png"))
                                .click("btnApplyTopMask")
                                .type("ledBottomMask", MaskFiles::path("dot.png"))
                                .click("btnApplyBottomMask")
                                .accept());
    EXPECT_EQ(names(), QStringList("Photolithography"));
}

TEST_F(RunProcessesDialogTest, AnEmptyListWithAVolumeRedrawsIt)
{
    reopenWithWafer();
    EXPECT_EQ(m_volume->painter().opaqueFaces().size(), 0u);
    clickButton("btnRun");
    // A bar without a range would be a busy one.
    EXPECT_GT(bar().maximum(), bar().minimum());
    waitForFaces();
    waitForEnd();
    EXPECT_GT(bar().maximum(), bar().minimum());
}

TEST_F(RunProcessesDialogTest, AnEmptyListWithoutAVolumeShowsTheMessage)
{
    runInVain();
}

TEST_F(RunProcessesDialogTest, AListWithoutASubstrateStopsBeforeItsFirstStep)
{
    put({pour(Resist, 3), pour(Resist, 4)});
    runInVain();
}

TEST_F(RunProcessesDialogTest, ASubstrateInSecondPlaceComesTooLate)
{
    put({pour(Resist, 3), substrate(10, 10, 10, 4)});
    runInVain();
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(RunProcessesDialogTest, ASubstrateThatCannotBeReadLeavesTheRestWithoutAVolume)
{
    put({step(11, {{"MaterialId", 1u}}), pour(Resist, 3)});
    runInVain();
}

TEST_F(RunProcessesDialogTest, AListRunsOnTheVolumeAndTheBarReachesTheEnd)
{
    reopenWithWafer();
    put({pour(Resist, 5), deposit(Gold, 2.0)});
    clickButton("btnRun");
    EXPECT_TRUE(bar().isEnabled());
    EXPECT_EQ(bar().minimum(), 0);
    EXPECT_EQ(bar().maximum(), 2);
    EXPECT_TRUE(waitForBar(*m_dialog, 2));
    waitForFaces();
    waitForEnd();
    const auto wanted = Support::materialsBy(
        Support::Grid{20, 16, 12}, [](std::uint32_t, std::uint32_t, std::uint32_t z) {
            return z < 3 ? Silicon : z < 5 ? Resist : z < 7 ? Gold : 0u;
        });
    EXPECT_TRUE(Support::materialsOf(*m_volume) == wanted);
    EXPECT_EQ(bar().value(), 2);
}

TEST_F(RunProcessesDialogTest, StepsThatFailArePassedOverAndCountAsDone)
{
    reopenWithWafer();
    put({step(4, {{"MaterialId", Gold}}), step(4, {{"MaterialId", "x"}, {"Thickness", 1.0}}),
         Ui::ProcessData(99), Ui::ProcessData(16), pour(Resist, 5)});
    run(5);
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Resist), 20 * 16 * 2);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Gold), 0);
}

/// Makes a step throw that holds a vector as its mask, as one does that finds no memory.
class Throwing
{
public:
    Throwing() { QMetaType::registerConverter<Util::Vector3D, std::vector<bool>>(&convert); }
    /// A functor that goes takes the conversion between its types along.
    ~Throwing()
    {
        const QtPrivate::ConverterFunctor<Util::Vector3D, std::vector<bool>, decltype(&convert)>
            gone(&convert);
    }
    Throwing(const Throwing &) = delete;
    Throwing &operator=(const Throwing &) = delete;

    static Ui::ProcessData step()
    {
        return BatchDialogs::step(0, {{"MaterialId", Resist},
                                      {"Top Mask", QVariant::fromValue(Util::Vector3D())},
                                      {"Top Mask Height", 1u},
                                      {"Top Mask Width", 1u},
                                      {"Bottom Mask", QVariant::fromValue(std::vector<bool>())},
                                      {"Bottom Mask Height", 0u},
                                      {"Bottom Mask Width", 0u}});
    }

private:
    static std::vector<bool> convert(const Util::Vector3D &) { throw std::bad_alloc(); }
};

TEST_F(RunProcessesDialogTest, AStepThatThrowsIsPassedOverAndCountsAsDone)
{
    reopenWithWafer();
    put({Throwing::step(), pour(Resist, 5), Throwing::step()});
    {
        const Throwing throwing;
        run(3);
    }
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Resist), 20 * 16 * 2);
    // Nothing is left held: it runs again.
    put({pour(Gold, 7)});
    run(1);
    m_dialog->endRun();
}

/// Leaves the process that many bytes beyond what it has.
class ScarceMemory
{
public:
    explicit ScarceMemory(std::uint64_t bytes)
    {
        QFile file("/proc/self/statm");
        if (!file.open(QIODevice::ReadOnly) || getrlimit(RLIMIT_AS, &m_before) != 0)
            throw std::runtime_error("the memory of the process is not known");
        const rlim_t pages = file.readAll().split(' ').front().toULongLong();
        rlimit limit = m_before;
        limit.rlim_cur = pages * rlim_t(sysconf(_SC_PAGESIZE)) + bytes;
        if (setrlimit(RLIMIT_AS, &limit) != 0)
            throw std::runtime_error("the memory of the process cannot be limited");
    }
    ~ScarceMemory() { setrlimit(RLIMIT_AS, &m_before); }
    ScarceMemory(const ScarceMemory &) = delete;
    ScarceMemory &operator=(const ScarceMemory &) = delete;

    /// Under the sanitizers an allocation that fails ends the program.
    static bool isPossible()
    {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        return false;
#else
        return true;
#endif
    }

private:
    rlimit m_before{};
};

TEST_F(RunProcessesDialogTest, AVolumeTooLargeForTheMemoryIsPassedOver)
{
    if (!ScarceMemory::isPossible())
        GTEST_SKIP() << "memory cannot be made scarce here";
    reopenWithWafer();
    // In one the materials alone are too many, in the other the cells of the volume.
    put({substrate(1000, 1000, 400, 4), substrate(1000, 1000, 40, 4), pour(Resist, 5)});
    {
        const ScarceMemory scarce(512u << 20);
        run(3);
    }
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Resist), 20 * 16 * 2);
}

TEST_F(RunProcessesDialogTest, AVolumeTooLargeForTheMemoryLeavesTheRestWithoutAVolume)
{
    if (!ScarceMemory::isPossible())
        GTEST_SKIP() << "memory cannot be made scarce here";
    put({substrate(1000, 1000, 40, 4), pour(Resist, 5)});
    const ScarceMemory scarce(512u << 20);
    runInVain();
}

TEST_F(RunProcessesDialogTest, ALaterSubstrateMovesTheRunToItsVolume)
{
    reopenWithWafer();
    const auto before = Support::materialsOf(*m_volume);
    put({substrate(10, 8, 6, 2), pour(Resist, 3), substrate(4, 4, 4, 1), pour(Gold, 2)});
    run(4);
    ASSERT_EQ(m_driver.volumes().size(), 3u);
    EXPECT_TRUE(m_driver.materials(0) == before);
    const auto second = m_driver.materials(1);
    EXPECT_EQ(std::count(second.begin(), second.end(), Resist), 80);
    EXPECT_EQ(std::count(second.begin(), second.end(), Gold), 0);
    const auto third = m_driver.materials(2);
    EXPECT_EQ(std::count(third.begin(), third.end(), Gold), 16);
    // The dialog keeps the last one.
    run(4);
    EXPECT_EQ(m_driver.volumes().size(), 5u);
}

TEST_F(RunProcessesDialogTest, PicturesShowTheirMoments)
{
    put({substrate(30, 30, 30, 4), picture(listFile("first.png")), pour(Gold, 20),
         picture(listFile("second.png"))});
    run(4);
    const QImage first(listFile("first.png"));
    const QImage second(listFile("second.png"));
    EXPECT_EQ(first.size(), m_driver.view().size());
    EXPECT_NE(first, second);
    EXPECT_EQ(second, m_driver.picture().convertToFormat(second.format()));
    // There is gold in the second alone.
    const auto gold = [](const QImage &image) {
        int pixels = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                pixels += image.pixelColor(x, y).green() > image.pixelColor(x, y).red() + 20;
        return pixels;
    };
    EXPECT_EQ(gold(first), 0);
    EXPECT_GT(gold(second), 100);
}

/// A worker that waits for the cells of the volume, which the test holds.
class HeldRun
{
public:
    explicit HeldRun(TotalVolume &volume) : m_volume(volume) { m_volume.voxels(); }
    ~HeldRun() { release(); }
    void release()
    {
        if (m_held)
            m_volume.releaseVoxels();
        m_held = false;
    }

private:
    TotalVolume &m_volume;
    bool m_held = true;
};

TEST_F(RunProcessesDialogTest, CloseAndEscapeAreIgnoredDuringARun)
{
    reopenWithWafer();
    put({pour(Resist, 5)});
    HeldRun held(*m_volume);
    clickButton("btnRun");
    clickButton("btnClose");
    EXPECT_TRUE(m_dialog->isVisible());
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    EXPECT_TRUE(m_dialog->isVisible());
    m_dialog->close();
    EXPECT_TRUE(m_dialog->isVisible());
    held.release();
    waitForEnd();
    QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(m_dialog->isVisible());
}

TEST_F(RunProcessesDialogTest, RunTwiceStartsOneRun)
{
    reopenWithWafer();
    put({step(2, {{"MaterialId", Gold}, {"Thickness", 1u}})});
    HeldRun held(*m_volume);
    clickButton("btnRun");
    clickButton("btnRun");
    clickButton("btnRun");
    held.release();
    EXPECT_TRUE(waitForBar(*m_dialog, 1));
    waitForEnd();
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Gold), 20 * 16);
    // When it is over, it can run again.
    run(1);
    const auto again = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(again.begin(), again.end(), Gold), 2 * 20 * 16);
}

TEST_F(RunProcessesDialogTest, TheListMayChangeDuringARun)
{
    reopenWithWafer();
    put({pour(Resist, 5), pour(Resist, 6), pour(Gold, 7)});
    HeldRun held(*m_volume);
    clickButton("btnRun");
    select({0, 1});
    clickButton("btnRemoveProcess");
    put({pour(Gold, 9)});
    add("CVD", DialogAnswer().accept());
    select({0});
    clickButton("btnMoveDown");
    // A click in vain on the changed list does not shorten the bar of the one that runs.
    clickButton("btnRun");
    held.release();
    EXPECT_TRUE(waitForBar(*m_dialog, 3));
    EXPECT_EQ(bar().maximum(), 3);
    waitForEnd();
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Resist), 20 * 16 * 3);
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Gold), 20 * 16);
    EXPECT_EQ(names(), (QStringList{"CVD", "Spin Coating"}));
}

TEST_F(RunProcessesDialogTest, TheBarMovesWhileTheListRuns)
{
    reopenWithWafer();
    put({Ui::ProcessData(99), Ui::ProcessData(99), pour(Resist, 6), pour(Resist, 7)});
    HeldRun held(*m_volume);
    clickButton("btnRun");
    EXPECT_EQ(bar().value(), 0);
    EXPECT_TRUE(waitForBar(*m_dialog, 2));
    held.release();
    EXPECT_TRUE(waitForBar(*m_dialog, 4));
    waitForEnd();
}

TEST_F(RunProcessesDialogTest, TheBarIsLookedAfterTwiceASecondDuringARun)
{
    reopenWithWafer();
    put({pour(Resist, 6)});
    const auto *timer = find<QTimer>(*m_dialog, "progressTimer");
    EXPECT_EQ(timer->interval(), 500);
    EXPECT_FALSE(timer->isSingleShot());
    EXPECT_FALSE(timer->isActive());
    HeldRun held(*m_volume);
    clickButton("btnRun");
    EXPECT_TRUE(timer->isActive());
    m_dialog->updateProgress();
    EXPECT_TRUE(timer->isActive());
    held.release();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !timer->isActive(); }, 60000));
    EXPECT_EQ(timer->interval(), 500);
    EXPECT_EQ(bar().value(), 1);
}

TEST_F(RunProcessesDialogTest, TheViewLivesDuringARun)
{
    reopenWithWafer();
    m_driver.window().makeViewCurrent();
    m_volume->painter().rebuild();
    put({pour(Resist, 5)});
    HeldRun held(*m_volume);
    clickButton("btnRun");
    const QImage before = m_driver.picture();
    m_driver.view().setView(-90, 0, 0);
    EXPECT_NE(m_driver.picture(), before);
    held.release();
    waitForEnd();
}

TEST_F(RunProcessesDialogTest, ADialogThatIsDestroyedWaitsForTheStepInProgress)
{
    reopenWithWafer();
    put({Ui::ProcessData(99), pour(Resist, 5), pour(Gold, 6)});
    m_volume->voxels();
    clickButton("btnRun");
    EXPECT_TRUE(waitForBar(*m_dialog, 1));
    // Given back by another thread while this one waits.
    std::thread release([this] {
        QThread::msleep(200);
        m_volume->releaseVoxels();
    });
    m_dialog.reset();
    release.join();
    const auto cells = Support::materialsOf(*m_volume);
    // Whole, or not begun: the worker may have been between two steps.
    const auto resist = std::count(cells.begin(), cells.end(), Resist);
    EXPECT_TRUE(resist == 20 * 16 * 2 || resist == 0) << resist;
    EXPECT_EQ(std::count(cells.begin(), cells.end(), Gold), 0);
    // No lock is left held.
    m_volume->voxels();
    m_volume->nextVoxels();
    m_volume->releaseNextVoxels();
    m_volume->releaseVoxels();
}

TEST_F(RunProcessesDialogTest, ADialogThatIsDestroyedDoesNotKeepTheWorkerWaiting)
{
    for (const auto &waiting : {picture(listFile("late.png")), substrate(10, 10, 10, 2)}) {
        reopenWithWafer();
        put({pour(Resist, 5), waiting, pour(Gold, 6)});
        HeldRun held(*m_volume);
        clickButton("btnRun");
        // This thread serves no events any more, and gets none until the worker asks for it.
        QCoreApplication::sendPostedEvents();
        const uint events = qGlobalPostedEventsCount();
        held.release();
        QElapsedTimer patience;
        patience.start();
        while (qGlobalPostedEventsCount() == events && patience.elapsed() < 60000)
            QThread::msleep(1);
        EXPECT_GT(qGlobalPostedEventsCount(), events);
        m_dialog.reset();
        const auto cells = Support::materialsOf(*m_volume);
        EXPECT_EQ(std::count(cells.begin(), cells.end(), Gold), 0);
    }
    // What was asked for is there.
    EXPECT_FALSE(QImage(listFile("late.png")).isNull());
    EXPECT_EQ(m_driver.volumes().back()->sizeX(), 10u);
}

TEST_F(RunProcessesDialogTest, AfterTheEndOfARunAnotherOneMayBegin)
{
    reopenWithWafer();
    put({pour(Resist, 5)});
    clickButton("btnRun");
    m_dialog->endRun();
    m_dialog->endRun();
    put({pour(Gold, 6)});
    run(1);
    const auto cells = Support::materialsOf(*m_volume);
    EXPECT_GT(std::count(cells.begin(), cells.end(), Gold), 0);
}

TEST_F(RunProcessesDialogTest, TheConsoleIsToldNothing)
{
    const QStringList before = m_driver.consoleLines();
    put({substrate(10, 10, 10, 4), pour(Resist, 5), step(1, {{"Depth", 0.5}})});
    run(3);
    EXPECT_EQ(m_driver.consoleLines(), before);
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
}

} // namespace
