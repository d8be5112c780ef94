#include "Support/WindowDriver.h"

#include "Model/Process/Process.h"
#include "UI/MainWindow.h"
#include "UI/Observers/IsotropicFilmDepositionObserver.h"
#include "UI/Observers/IsotropicFilmEtchingObserver.h"
#include "UI/Operations/IsotropicDepositionDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"

#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

using Model::Process::Process;
using Ui::Operations::IsotropicDepositionDialog;
using Ui::Operations::IsotropicEtchingDialog;

QStringList labelsOf(const QWidget &dialog)
{
    QStringList texts;
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        texts << label->text();
    return texts;
}

TEST(IsotropicObserversTest, DepositionKeepsTheTitleOfItsForm)
{
    const Process process("Renamed", 3, {});
    const IsotropicDepositionDialog dialog(process);
    EXPECT_EQ(dialog.windowTitle(), "Isotropic Film Deposition");
    EXPECT_EQ(labelsOf(dialog), (QStringList{"Material", "Film thickness"}));
    EXPECT_EQ(dialog.material(), 0u);
}

TEST(IsotropicObserversTest, EtchingShowsTheNameOfTheProcess)
{
    const Process process("Renamed", 10, {});
    const IsotropicEtchingDialog dialog(process);
    EXPECT_EQ(dialog.windowTitle(), "Renamed Options");
    EXPECT_EQ(labelsOf(dialog), (QStringList{"Material", "Etch Depth"}));
    EXPECT_EQ(dialog.material(), 0u);
}

TEST(IsotropicObserversTest, AnObserverWhoseOperationIsNotCurrentShowsNothing)
{
    Support::WindowDriver driver;
    Core::Workspace &workspace = driver.workspace();
    QWidget *window = &driver.window();
    Ui::Observers::IsotropicFilmDepositionObserver deposition(&workspace, window);
    Ui::Observers::IsotropicFilmEtchingObserver etching(&workspace, window);
    // Idle, and with the other one's operation: a dialog would not be answered and would fail.
    driver.answering({}, [&] {
        deposition.update();
        etching.update();
    });
    driver.trigger("actionCVD");
    driver.answering({}, [&] { etching.update(); });
    driver.trigger("actionIsotropic_Film_Etching");
    driver.answering({}, [&] { deposition.update(); });
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace
