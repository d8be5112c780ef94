#include "DeviceStops.h"
#include "ListStops.h"
#include "ProcessStops.h"
#include "Stage.h"
#include "ViewStops.h"

#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTextStream>
#include <QWidget>

#include <boost/pointer_cast.hpp>

#include <cstdint>
#include <exception>

namespace {

using LitharaTour::Stage;
using Support::DialogAnswer;
using Support::WindowDriver;

constexpr std::uint32_t Gold = 9;

/// Plays the window as a user would, and saves a picture at each stop. It fails when a stop does
/// not show what it should, so that what it leaves behind can be trusted.
class Tour
{
public:
    explicit Tour(const QDir &folder) : m_stage(folder) {}

    void play()
    {
        emptyWindow();
        createSubstrate();
        sixViews();
        isotropicFilms();
        editing();
        savingAndOpening();
        LitharaTour::surfaceMicromachinedBridge(m_stage);
        LitharaTour::dopedOpening(m_stage);
        LitharaTour::wetEtchedPits(m_stage);
        LitharaTour::atomsOfAPit(m_stage);
        LitharaTour::exampleDevices(m_stage);
        LitharaTour::bondedWafers(m_stage);
        LitharaTour::liftedFilm(m_stage);
        LitharaTour::netlistOfACantilever(m_stage);
        LitharaTour::materialOfOnesOwn(m_stage);
    }

private:
    void emptyWindow() { save("window", m_driver.screen()); }

    void createSubstrate()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .look([this](QWidget &dialog) {
                                                            save("create-substrate",
                                                                 dialog.grab().toImage());
                                                        })
                                                        .accept()});
        expect(
            m_driver.consoleLines().contains("Create Substrate: substrate created successfully."),
            "the substrate is announced");
        expect(m_driver.volumes().size() == 1, "there is one volume");
        // The middle of the wafer belongs in the middle of the window.
        m_stage.lookAt(50, 50, 15);
        m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "500").accept()});
        m_driver.trigger(
            "actionManual_View",
            {DialogAnswer().type("dblAngleX", "-60").type("dblAngleZ", "30").accept()});
        save("substrate", m_driver.screen());
    }

    void sixViews()
    {
        for (const char *view : {"actionFront_View", "actionBack_view", "actionLeft_View",
                                 "actionRight_View", "actionTop_View", "actionBottom_View"}) {
            m_driver.trigger(view);
            const QString name = QString(view).mid(6).section('_', 0, 0).toLower();
            save("view-" + name, m_driver.picture());
        }
    }

    void isotropicFilms()
    {
        // The built-in table has no metal for this process; a user adds it in processes.xml.
        const auto processes = Model::Process::ProcessFactory::instance();
        Model::Process::Process cvd = processes->processByName("CVD");
        cvd.addCompatibleMaterial(Gold);
        processes->updateProcess(cvd);

        m_driver.trigger("actionNew", {DialogAnswer().accept()});
        expect(m_driver.volumes().empty(), "the document is empty again");
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxSubsWidth", "50")
                                                        .type("sbxSubsX", "25")
                                                        .type("sbxSubsLength", "50")
                                                        .type("sbxSubsY", "25")
                                                        .accept()});
        m_driver.trigger("actionManual_View", {DialogAnswer().accept()});
        save("mesa", m_driver.picture());

        selectVolume();
        m_driver.trigger("actionCVD", {DialogAnswer()
                                           .choose("cbxMaterial", "Au (bulk)")
                                           .type("dblThickness", "10")
                                           .look([this](QWidget &dialog) {
                                               save("isotropic-deposition",
                                                    dialog.grab().toImage());
                                           })
                                           .accept()});
        const std::size_t deposited = cellsOf(Gold);
        expect(deposited > 50 * 50 * 10, "the mesa is covered with gold");
        save("film", m_driver.picture());

        selectVolume();
        m_driver.trigger(
            "actionIsotropic_Film_Etching",
            {DialogAnswer().choose("cbxMaterial", "Au (bulk)").type("dblThickness", "5").accept()});
        expect(cellsOf(Gold) < deposited, "some of the gold is gone");
        expect(cellsOf(Gold) > 50 * 50 * 5, "half of the film is left");
        save("etched-back", m_driver.picture());

        m_driver.trigger("actionUndo");
        expect(m_driver.action("actionRedo").text() == "Redo Isotropic Etching",
               "the etching can be done again");
        m_driver.trigger("actionRedo");
    }

    void editing()
    {
        selectVolume();
        m_driver.trigger("actionCopy");
        m_driver.typeIntoConsole("120,0,0");
        expect(m_driver.volumes().size() == 2, "there are two volumes");
        expect(m_driver.materials(0) == m_driver.materials(1), "the copy has the same cells");
        m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "300").accept()});
        save("copy", m_driver.screen());
    }

    void savingAndOpening()
    {
        const QString file = m_stage.filePath("tour.lth");
        m_driver.trigger("actionSave_as", {DialogAnswer().fileName(file).accept()});
        expect(m_driver.window().windowTitle() == "Lithara  " + file, "the title names the file");
        m_driver.trigger("actionOpen", {DialogAnswer().fileName(file).accept()});
        Ui::MainWindow *second = nullptr;
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *window = qobject_cast<Ui::MainWindow *>(widget))
                if (window != &m_driver.window())
                    second = window;
        expect(second != nullptr, "the file has a window of its own");
        const auto objects = second->presenter().document().objects();
        const auto volumes = m_driver.volumes();
        expect(objects.size() == volumes.size(), "both windows hold as many volumes");
        std::size_t i = 0;
        for (const auto &object : objects) {
            const auto opened = boost::dynamic_pointer_cast<Model::Automaton::TotalVolume>(object);
            expect(opened && Support::materialsOf(*opened) == m_driver.materials(i++),
                   "the opened cells are the saved ones");
        }
        m_driver.settle();
        save("opened", second->view()->image());
        second->close();
        QFile::remove(file);
    }

    void selectVolume() { m_stage.selectVolume(); }
    std::size_t cellsOf(std::uint32_t material) { return m_stage.cellsOf(material); }
    void save(const QString &name, const QImage &picture) { m_stage.save(name, picture); }
    static void expect(bool holds, const char *what) { Stage::expect(holds, what); }

    Stage m_stage;
    WindowDriver &m_driver = m_stage.driver();
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "Usage: lithara_tour FOLDER\n";
        return 2;
    }
    const QDir folder(QDir(argv[1]).absolutePath());
    if (!folder.mkpath(QStringLiteral("."))) {
        QTextStream(stderr) << "Cannot make the folder " << folder.path() << '\n';
        return 1;
    }
    try {
        Tour(folder).play();
    } catch (const std::exception &error) {
        QTextStream(stderr) << "The tour stopped: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
