#include "Stage.h"

#include "Support/Volumes.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QAction>
#include <QTextStream>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace LitharaTour {

using Support::DialogAnswer;

Stage::Stage(const QDir &folder) : m_folder(folder), m_driver(QSize(1280, 1024)) {}

void Stage::startWithWafer()
{
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    expect(m_driver.volumes().empty(), "the document is empty again");
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
    // The middle of the wafer.
    lookAt(50, 50, 15);
    m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "500").accept()});
    m_driver.trigger("actionManual_View",
                     {DialogAnswer().type("dblAngleX", "-60").type("dblAngleZ", "30").accept()});
}

void Stage::lookAt(int x, int y, int z)
{
    m_driver.trigger("actionTranslate", {DialogAnswer()
                                             .type("dblDistanceX", QString::number(-x))
                                             .type("dblDistanceY", QString::number(-y))
                                             .type("dblDistanceZ", QString::number(-z))
                                             .accept()});
}

void Stage::selectVolume()
{
    selectObjectAt(m_driver.viewCenter());
}

void Stage::selectObjectAt(const QPoint &place)
{
    // A batch run that began without a volume leaves the mode on.
    if (!m_driver.action("actionSelect").isChecked())
        m_driver.trigger("actionSelect");
    m_driver.click(place);
    expect(m_driver.workspace().pointer().selectedObjects().size() == 1,
           "a click selects the volume");
}

void Stage::process(const char *action, const DialogAnswer &answer)
{
    selectVolume();
    m_driver.trigger(action, {answer});
    expect(m_driver.consoleLines().last().endsWith(": Operation finished."), action);
}

std::size_t Stage::cellsOf(std::uint32_t material)
{
    const auto materials = m_driver.materials();
    return static_cast<std::size_t>(std::count(materials.begin(), materials.end(), material));
}

std::uint32_t Stage::materialAt(std::uint32_t x, std::uint32_t y, std::uint32_t z)
{
    const auto &volume = *m_driver.volumes().front();
    return m_driver.materials()[(std::size_t{x} * volume.sizeY() + y) * volume.sizeZ() + z];
}

void Stage::save(const QString &name, const QImage &picture)
{
    ++m_pictures;
    const QString file =
        QStringLiteral("%1-%2.png").arg(m_pictures, 2, 10, QLatin1Char('0')).arg(name);
    expect(picture.save(m_folder.filePath(file)), "a picture can be saved");
    QTextStream(stdout) << m_folder.filePath(file) << '\n';
}

void Stage::expect(bool holds, const char *what)
{
    if (!holds)
        throw std::runtime_error(std::string("not so: ") + what);
}

} // namespace LitharaTour
