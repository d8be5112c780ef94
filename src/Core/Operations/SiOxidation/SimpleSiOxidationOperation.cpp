#include "Core/Operations/SiOxidation/SimpleSiOxidationOperation.h"

#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Util/IObserver.h"

#include <utility>

namespace Core::Operations {

boost::shared_ptr<Util::IObserver> SimpleSiOxidationOperation::s_observer;

SimpleSiOxidationOperation::SimpleSiOxidationOperation(Workspace *workspace)
    : Operation("Simple Si Oxidation", Id),
      m_sequence(workspace, this)
{}

void SimpleSiOxidationOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void SimpleSiOxidationOperation::setCellUnitsPerMicron(double units)
{
    m_cellUnitsPerMicron = units;
    m_conversionSet = true;
}

void SimpleSiOxidationOperation::setThickness(double thickness)
{
    m_thickness = thickness;
    m_thicknessSet = true;
}

void SimpleSiOxidationOperation::setTime(double time)
{
    m_time = time;
    m_timeSet = true;
}

void SimpleSiOxidationOperation::setTemperature(double temperature)
{
    m_temperature = temperature;
}

void SimpleSiOxidationOperation::setPressure(double pressure)
{
    m_pressure = pressure;
}

void SimpleSiOxidationOperation::next()
{
    m_sequence.selectThenAsk(s_observer, ProcessSequence::Candidates::SelectionOrOnlyObject);
}

void SimpleSiOxidationOperation::cancel()
{
    m_sequence.cancel();
}

void SimpleSiOxidationOperation::end()
{
    if (!m_sequence.volume() || (!m_thicknessSet && !m_timeSet))
        return;
    if (!m_conversionSet)
        m_cellUnitsPerMicron = 1.0;
    SimpleSiOxidation oxidation(m_sequence.volume().get(), m_cellUnitsPerMicron);
    if (m_thicknessSet)
        oxidation.oxidateTo(m_thickness);
    else
        oxidation.oxidateFor(m_time, m_temperature, m_pressure);
    m_sequence.finish(true);
}

} // namespace Core::Operations
