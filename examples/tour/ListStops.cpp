#include "ListStops.h"

#include "Stage.h"

#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace LitharaTour {

using Support::DialogAnswer;

namespace {

struct Device
{
    const char *name;
    /// Degrees, as in the dialog of the manual view.
    const char *aboutX;
    const char *aboutZ;
};

/// The membrane lies over a pit from below.
constexpr Device Devices[] = {{"membrane", "-140", "30"},
                              {"cantilever", "-60", "30"},
                              {"coil", "-50", "20"},
                              {"channel", "-60", "60"}};

void click(QWidget &dialog, const char *button)
{
    QTest::mouseClick(dialog.findChild<QPushButton *>(QLatin1String(button)), Qt::LeftButton);
}

/// Runs the list that is loaded, and leaves when it is through.
void run(Stage &stage, const Device &device, QWidget &dialog)
{
    auto *bar = dialog.findChild<QProgressBar *>("progressBar");
    auto *tree = dialog.findChild<QTreeWidget *>("trwProcesses");
    Stage::expect(bar && tree && tree->topLevelItemCount() > 0, "the list is loaded");
    stage.save(QLatin1String(device.name) + QStringLiteral("-list"), dialog.grab().toImage());
    click(dialog, "btnRun");
    const int steps = tree->topLevelItemCount();
    Stage::expect(QTest::qWaitFor([&] { return bar->value() == steps; }, 120000),
                  "all steps of the list are done");
    // It stays as long as the run does.
    Stage::expect(QTest::qWaitFor(
                      [&] {
                          click(dialog, "btnClose");
                          return !dialog.isVisible();
                      },
                      30000),
                  "the dialog closes");
}

} // namespace

void exampleDevices(Stage &stage)
{
    for (const Device &device : Devices) {
        const QString file =
            QStringLiteral(LITHARA_EXAMPLE_LISTS "/%1.plst").arg(QLatin1String(device.name));
        Support::WindowDriver &driver = stage.driver();
        driver.trigger("actionNew", {DialogAnswer().accept()});
        driver.trigger("actionBatch_Run");
        driver.answering({DialogAnswer().click("btnLoadList").look([&](QWidget &dialog) {
                              run(stage, device, dialog);
                          }),
                          DialogAnswer().fileName(file).accept()},
                         [&driver] { driver.typeIntoConsole("N"); });
        Stage::expect(driver.volumes().size() == 1, "the list has made a device");
        stage.lookAt(30, 30, 15);
        driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "850").accept()});
        driver.trigger("actionManual_View", {DialogAnswer()
                                                 .type("dblAngleX", device.aboutX)
                                                 .type("dblAngleZ", device.aboutZ)
                                                 .accept()});
        stage.save(QLatin1String(device.name), driver.picture());
    }
}

} // namespace LitharaTour
