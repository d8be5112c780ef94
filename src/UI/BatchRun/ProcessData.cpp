#include "UI/BatchRun/ProcessData.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace Ui {

namespace {

[[maybe_unused]] const int maskMetaType = qRegisterMetaType<std::vector<bool>>("std::vector");
[[maybe_unused]] const int vectorMetaType = qRegisterMetaType<Util::Vector3D>("Util::Vector3D");

std::uint32_t takeId()
{
    static std::atomic<std::uint32_t> s_nextId{0};
    return s_nextId++;
}

} // namespace

ProcessData::ProcessData(std::int32_t processType) : m_id(takeId()), m_processType(processType) {}

std::uint32_t ProcessData::id() const
{
    return m_id;
}

std::int32_t ProcessData::processType() const
{
    return m_processType;
}

void ProcessData::setParameter(const QString &name, const QVariant &value, bool visible)
{
    m_parameters.insert(name, value);
    m_visibility.insert(name, visible);
}

QMap<QString, QVariant> ProcessData::parameters() const
{
    return m_parameters;
}

QVariant ProcessData::parameter(const QString &name) const
{
    return m_parameters.value(name);
}

bool ProcessData::isVisible(const QString &name)
{
    return m_visibility[name];
}

QString processTypeName(std::int32_t type)
{
    static const std::array<QString, 16> s_names = {QStringLiteral("Photolithography"),
                                                    QStringLiteral("Si wet etching"),
                                                    QStringLiteral("Moore deposition"),
                                                    QStringLiteral("Moore etching"),
                                                    QStringLiteral("CVD"),
                                                    QStringLiteral("Isotropic etching"),
                                                    QStringLiteral("Planarization"),
                                                    QStringLiteral("Electroplating"),
                                                    QStringLiteral("Doping"),
                                                    QStringLiteral("Spin Coating"),
                                                    QStringLiteral("Save Image"),
                                                    QStringLiteral("Create Substrate"),
                                                    QStringLiteral("PVD"),
                                                    QStringLiteral("Simple RIE"),
                                                    QStringLiteral("Ion Implantation"),
                                                    QStringLiteral("Si Oxidation")};
    if (type < 0 || std::size_t(type) >= s_names.size()) {
        return QStringLiteral("Unknown process");
    }
    return s_names[std::size_t(type)];
}

} // namespace Ui
