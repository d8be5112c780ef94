#pragma once

#include "Util/Vector3D.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <vector>

// Vectors of bool, which hold masks, travel in parameters too. Qt declares them by itself; both are
// registered before main(), under the names "std::vector" and "Util::Vector3D".
Q_DECLARE_METATYPE(Util::Vector3D)

namespace Ui {

/// One step of a batch list: the type of its process and its parameters by name. Copied by value; a
/// copy has the id of its original.
class ProcessData final
{
public:
    /// The numbers stand in users' files. A file may also hold numbers that are not listed here;
    /// its steps keep them.
    enum ProcessType : std::int32_t
    {
        Photolithography = 0,
        SiWetEtching = 1,
        MooreDeposition = 2,
        MooreEtching = 3,
        Cvd = 4,
        IsotropicEtching = 5,
        Planarization = 6,
        Electroplating = 7,
        Doping = 8,
        SpinCoating = 9,
        SaveImage = 10,
        CreateSubstrate = 11,
        Pvd = 12,
        SimpleRie = 13,
        IonImplantation = 14,
        SiOxidation = 15,
        /// A step that could not be read; only the reader of lists makes it.
        Unreadable = 16
    };

    /// A step without parameters. May be called from any thread.
    explicit ProcessData(std::int32_t processType);

    /// Unique while the program runs, counted from 0 in the order of construction. Not saved.
    std::uint32_t id() const;
    std::int32_t processType() const;

    /// Enters or replaces a parameter. `visible` tells whether trees show it.
    void setParameter(const QString &name, const QVariant &value, bool visible);

    /// Ordered by name.
    QMap<QString, QVariant> parameters() const;
    /// An invalid value for an unknown name.
    QVariant parameter(const QString &name) const;
    /// An unknown name is not visible, and is entered as such; the parameters stay as they are.
    bool isVisible(const QString &name);

private:
    std::uint32_t m_id;
    std::int32_t m_processType;
    QMap<QString, QVariant> m_parameters;
    QMap<QString, bool> m_visibility;
};

/// What the user reads for a process type; "Unknown process" outside 0 to 15.
QString processTypeName(std::int32_t type);

} // namespace Ui
