#include "Core/Operations/CellularProcess/StripRun.h"

#include "Model/Automaton/TotalVolume.h"
#include "Util/FutureGroup.h"

#include <QThreadPool>
#include <QtConcurrentRun>

#include <boost/bind/bind.hpp>

#include <algorithm>

namespace Core::Operations {

std::uint32_t StripRun::layersOf(const Model::Automaton::TotalVolume &volume)
{
    return volume.sizeY() == 0 || volume.sizeZ() == 0 ? 0 : volume.sizeX();
}

StripRun::StripRun(std::uint32_t sizeX, std::uint32_t narrowest)
    : m_sizeX(sizeX),
      m_threads(
          static_cast<std::uint32_t>(std::max(1, QThreadPool::globalInstance()->maxThreadCount()))),
      m_stripWidth(m_sizeX / m_threads),
      m_narrowest(narrowest)
{}

std::int32_t StripRun::start(std::uint32_t strip) const
{
    return static_cast<std::int32_t>(isSingle() ? 0 : strip * m_stripWidth);
}

std::int32_t StripRun::end(std::uint32_t strip) const
{
    const bool last = strip + 1 == strips();
    return static_cast<std::int32_t>(last ? m_sizeX : (strip + 1) * m_stripWidth);
}

void StripRun::runPhase(const StripFunction &function) const
{
    if (isSingle()) {
        function(start(0), end(0), 0);
        return;
    }
    Util::FutureGroup runs;
    for (std::uint32_t strip = 0; strip < strips(); ++strip)
        runs.add(QtConcurrent::run(boost::bind<void>(function, start(strip), end(strip), strip)));
    runs.wait();
}

} // namespace Core::Operations
