#pragma once

#include "Support/WindowDriver.h"

#include <QDir>
#include <QImage>
#include <QPoint>
#include <QString>

#include <cstdint>
#include <vector>

namespace LitharaTour {

/// The window that the stops of the tour play on, and the folder that their pictures go to.
class Stage final
{
public:
    explicit Stage(const QDir &folder);

    Support::WindowDriver &driver() { return m_driver; }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /// Empties the document and puts the default wafer into it, seen from above the front.
    void startWithWafer();
    /// Moves that place of the world into the middle of the view.
    void lookAt(int x, int y, int z);
    /// Picks the volume that lies in the middle of the view.
    void selectVolume();
    /// Picks what lies at that pixel of the view.
    void selectObjectAt(const QPoint &place);
    /// Selects the volume, starts the process and answers its dialog; the console must say that it
    /// has finished.
    void process(const char *action, const Support::DialogAnswer &answer);

    /// Of the first volume.
    std::size_t cellsOf(std::uint32_t material);
    std::uint32_t materialAt(std::uint32_t x, std::uint32_t y, std::uint32_t z);

    /// Saves a picture under the next number, and writes its path to the standard output.
    void save(const QString &name, const QImage &picture);
    /// Throws std::runtime_error if it does not hold.
    static void expect(bool holds, const char *what);

private:
    QDir m_folder;
    Support::WindowDriver m_driver;
    int m_pictures = 0;
};

} // namespace LitharaTour
