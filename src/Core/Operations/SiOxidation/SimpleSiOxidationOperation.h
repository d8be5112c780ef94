#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

/// Oxidizes a cell volume, to a thickness or under furnace conditions. The only object of a
/// document needs not be selected.
class SimpleSiOxidationOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 26;

    /// The workspace is not owned.
    explicit SimpleSiOxidationOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// For furnace conditions alone; 1 unless it is set.
    void setCellUnitsPerMicron(double units);
    /// Taken in cell units as it is, though the dialog says microns: that is known and stays.
    void setThickness(double thickness);
    /// Hours.
    void setTime(double time);
    /// Kelvin.
    void setTemperature(double temperature);
    /// Atmospheres.
    void setPressure(double pressure);

    void next() override;
    void cancel() override;
    /// Oxidizes to the thickness, if there is one, else for the time. Without a volume, or with
    /// neither of the two, does nothing and says nothing.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    ProcessSequence m_sequence;
    double m_thickness = 0.0;
    double m_time = 0.0;
    double m_temperature = 0.0;
    double m_pressure = 0.0;
    double m_cellUnitsPerMicron = 0.0;
    bool m_thicknessSet = false;
    bool m_timeSet = false;
    bool m_conversionSet = false;
};

} // namespace Core::Operations
