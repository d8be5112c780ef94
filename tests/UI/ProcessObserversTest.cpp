#include "Support/WindowDriver.h"

#include "Core/Operations/Planarization/PlanarizationOperation.h"
#include "Core/Workspace.h"
#include "UI/MainWindow.h"
#include "UI/Observers/AtomicSiBCAEtchObserver.h"
#include "UI/Observers/CCAWetEtchingObserver.h"
#include "UI/Observers/CVDObserver.h"
#include "UI/Observers/ChangeTotalVolumeViewOptionsObserver.h"
#include "UI/Observers/CutCellVolumeObserver.h"
#include "UI/Observers/DopingOptionsObserver.h"
#include "UI/Observers/ElectrodepositionObserver.h"
#include "UI/Observers/ExtractFilmObserver.h"
#include "UI/Observers/GlueSubstrateObserver.h"
#include "UI/Observers/IonImplantationOptionsObserver.h"
#include "UI/Observers/MooreDepositionObserver.h"
#include "UI/Observers/MooreEtchingObserver.h"
#include "UI/Observers/PhotolithographyObserver.h"
#include "UI/Observers/PlanarizationObserver.h"
#include "UI/Observers/SiOxidationObserver.h"
#include "UI/Observers/SimpleRIEObserver.h"
#include "UI/Observers/SpinCoatingObserver.h"

#include <QApplication>
#include <QWidget>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using Support::DialogAnswer;

/// The menu entry of an operation and the observer that serves it.
struct Served
{
    const char *action;
    boost::shared_ptr<Util::IObserver> observer;
    const char *title;
};

template <typename Observer>
Served serve(const char *action, Support::WindowDriver &driver, const char *title)
{
    return {action, boost::make_shared<Observer>(&driver.workspace(), &driver.window()), title};
}

std::vector<Served> allServed(Support::WindowDriver &driver)
{
    using namespace Ui::Observers;
    return {
        serve<CVDObserver>("actionPVD", driver, "PVD Options"),
        serve<ElectrodepositionObserver>("actionElectrodeposition", driver,
                                         "Electroplating Options"),
        serve<MooreDepositionObserver>("actionMoore_Deposition", driver, "Operation Options"),
        serve<MooreEtchingObserver>("actionMoore_Etching", driver, "Operation Options"),
        serve<SpinCoatingObserver>("actionSpin_Coating", driver, "Pour Material Options"),
        serve<SimpleRIEObserver>("actionSimple_RIE", driver, "Simple RIE Options"),
        serve<PlanarizationObserver>("actionPlanarization", driver, "Planarization Options"),
        serve<PhotolithographyObserver>("actionPhotolithography", driver,
                                        "Photolithography Options"),
        serve<DopingOptionsObserver>("actionDoping", driver, "Doping Options"),
        serve<IonImplantationOptionsObserver>("actionIon_Implantation", driver,
                                              "Ion Implantation Options"),
        serve<SiOxidationObserver>("actionSi_Oxidation", driver, "Si Oxidation Options"),
        serve<AtomicSiBCAEtchObserver>("actionBCA_Wet_Etching", driver, "Wet Etching Options"),
        serve<CCAWetEtchingObserver>("actionContinuous_Wet_Etching", driver, "Wet Etching Options"),
        serve<CutCellVolumeObserver>("actionCut_Cell_Volume", driver, "Cut Cell Volume"),
        serve<ChangeTotalVolumeViewOptionsObserver>("actionChange_Viewing_Options", driver,
                                                    "Change Volume Visualization Options"),
        serve<ExtractFilmObserver>("actionExtract_Film", driver, "Extract Film"),
        serve<GlueSubstrateObserver>("actionGlue_Substrate", driver, "Glue Substrate")};
}

/// Those that ask for their values also while their operation waits for a volume. There is nothing
/// to cut without one.
std::vector<Served> allThatAskWithoutAVolume(Support::WindowDriver &driver)
{
    std::vector<Served> all = allServed(driver);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [](const Served &served) {
                                 return served.action == std::string("actionCut_Cell_Volume");
                             }),
              all.end());
    return all;
}

TEST(ProcessObserversTest, AnIdleWorkspaceIsAskedNothing)
{
    Support::WindowDriver driver;
    // A dialog would not be answered, and fail.
    for (const Served &served : allServed(driver))
        driver.answering({}, [&] { served.observer->update(); });
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(ProcessObserversTest, EachServesItsOwnOperationAndNoOther)
{
    Support::WindowDriver driver;
    const std::vector<Served> all = allServed(driver);
    for (const Served &current : all) {
        // Nothing is selected, so the operation waits.
        driver.trigger(current.action);
        for (const Served &other : all) {
            if (&other == &current)
                continue;
            driver.answering({}, [&] { other.observer->update(); });
            EXPECT_TRUE(driver.workspace().currentOperation()) << current.action << other.action;
        }
        if (current.action == std::string("actionCut_Cell_Volume")) {
            driver.answering({}, [&] { current.observer->update(); });
            EXPECT_TRUE(driver.workspace().currentOperation());
            continue;
        }
        QString title;
        driver.answering(
            {DialogAnswer().look([&](QWidget &dialog) { title = dialog.windowTitle(); }).reject()},
            [&] { current.observer->update(); });
        EXPECT_EQ(title, current.title);
    }
}

TEST(ProcessObserversTest, TheMainWindowIsTheParentOfTheDialogs)
{
    Support::WindowDriver driver;
    for (const Served &served : allThatAskWithoutAVolume(driver)) {
        driver.trigger(served.action);
        const QWidget *parent = nullptr;
        driver.answering({DialogAnswer()
                              .look([&](QWidget &dialog) { parent = dialog.parentWidget(); })
                              .reject()},
                         [&] { served.observer->update(); });
        EXPECT_EQ(parent, &driver.window()) << served.action;
    }
}

TEST(ProcessObserversTest, ARejectedDialogLeavesTheOperationCurrentOrCancelsIt)
{
    Support::WindowDriver driver;
    for (const Served &served : allThatAskWithoutAVolume(driver)) {
        driver.trigger(served.action);
        driver.answering({DialogAnswer().reject()}, [&] { served.observer->update(); });
        const QStringList staying{"actionPVD",
                                  "actionElectrodeposition",
                                  "actionDoping",
                                  "actionIon_Implantation",
                                  "actionSi_Oxidation",
                                  "actionChange_Viewing_Options",
                                  "actionBCA_Wet_Etching",
                                  "actionContinuous_Wet_Etching",
                                  "actionGlue_Substrate"};
        EXPECT_EQ(driver.workspace().currentOperation() != nullptr, staying.contains(served.action))
            << served.action;
    }
}

TEST(ProcessObserversTest, ValuesForAnOperationWithoutVolumeCancelIt)
{
    Support::WindowDriver driver;
    for (const Served &served : allThatAskWithoutAVolume(driver)) {
        driver.trigger(served.action);
        const QStringList before = driver.consoleLines();
        driver.answering({DialogAnswer().accept()}, [&] { served.observer->update(); });
        // Some go on waiting for a volume. Oxidation and extraction of them, and gluing, say nothing.
        const bool asksAgain = served.title == std::string("Change Volume Visualization Options");
        const bool waits =
            asksAgain || QStringList{"Si Oxidation Options", "Extract Film"}.contains(served.title);
        EXPECT_EQ(driver.workspace().currentOperation() != nullptr, waits) << served.action;
        if (asksAgain) {
            EXPECT_EQ(driver.consoleLines(), before + QStringList(before.last()));
            continue;
        }
        if (waits || served.title == std::string("Glue Substrate")) {
            EXPECT_EQ(driver.consoleLines(), before);
            continue;
        }
        EXPECT_TRUE(
            driver.consoleLines().last().contains(": Operation canceled", Qt::CaseInsensitive))
            << driver.consoleLines().last().toStdString();
    }
}

TEST(ProcessObserversTest, HeightsAreLimitedToNothingWithoutAVolume)
{
    Support::WindowDriver driver;
    const std::vector<Served> all = allServed(driver);
    for (const auto &[served, field] :
         {std::make_pair(all[4], "sbxHeight"), std::make_pair(all[6], "sbxMaximumHeight")}) {
        driver.trigger(served.action);
        int highest = -1;
        const char *name = field;
        driver.answering(
            {DialogAnswer()
                 .look([&](QWidget &dialog) {
                     highest = dialog.findChild<QWidget *>(name)->property("maximum").toInt();
                 })
                 .reject()},
            [&, observer = served.observer] { observer->update(); });
        EXPECT_EQ(highest, 0) << name;
    }
}

// The slot of a class may hold the observer of a window that was closed meanwhile. With the window
// its workspace is gone; here the workspace lives on, to show that nothing is asked.
TEST(ProcessObserversTest, AnObserverWhoseWindowIsGoneDoesNothing)
{
    Support::WindowDriver driver;
    auto window = std::make_unique<QWidget>();
    Ui::Observers::PlanarizationObserver observer(&driver.workspace(), window.get());
    driver.trigger("actionPlanarization");
    driver.answering({DialogAnswer().reject()}, [&] { observer.update(); });
    driver.trigger("actionPlanarization");
    window.reset();
    driver.answering({}, [&] { observer.update(); });
    EXPECT_TRUE(driver.workspace().currentOperation());
}

} // namespace
