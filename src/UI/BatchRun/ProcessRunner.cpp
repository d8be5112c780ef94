#include "UI/BatchRun/ProcessRunner.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/Electrodeposition/Electrodeposition.h"
#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"
#include "Core/Operations/Photolithography/Photolithography.h"
#include "Core/Operations/Planarization/Planarization.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"
#include "Core/Operations/SpinCoating/SpinCoating.h"
#include "Core/Operations/SubstrateBuilder.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/BatchRun/ProcessData.h"
#include "UI/BatchRun/RunProcessesDialog.h"
#include "UI/BatchRun/StepParameters.h"

#include <QMetaObject>
#include <QThread>

#include <algorithm>
#include <limits>
#include <type_traits>
#include <vector>

namespace Ui {

namespace {

constexpr int Done = 0;
constexpr int Missing = 1;
constexpr int NotConvertible = 2;

/// Fetches and converts parameters of a step. Those that are missing or do not convert come out as
/// zero, and the result tells; missing ones win.
class ParameterReader final
{
public:
    explicit ParameterReader(const ProcessData &step) : m_step(step) {}

    int result() const { return m_missing ? Missing : m_failed ? NotConvertible : Done; }

    std::uint32_t toUnsigned(const QString &name)
    {
        return read(name, [](const QVariant &value, bool &ok) { return value.toUInt(&ok); });
    }
    int toInteger(const QString &name)
    {
        return read(name, [](const QVariant &value, bool &ok) { return value.toInt(&ok); });
    }
    float toFloat(const QString &name)
    {
        return read(name, [](const QVariant &value, bool &ok) { return value.toFloat(&ok); });
    }
    double toDouble(const QString &name)
    {
        return read(name, [](const QVariant &value, bool &ok) { return value.toDouble(&ok); });
    }
    /// A number of layers, which lists hold as any number: truncated, and at most `most`.
    std::int32_t toLayers(const QString &name, std::int32_t most)
    {
        const float value = toFloat(name);
        if (!(value > 0.0f))
            return 0;
        return value < static_cast<float>(most) ? static_cast<std::int32_t>(value) : most;
    }
    bool toBool(const QString &name) { return toValue<bool>(name); }
    /// For types whose conversion is a matter of the type alone.
    template <typename Value>
    Value toValue(const QString &name)
    {
        return read(name, [](const QVariant &value, bool &ok) {
            ok = value.canConvert<Value>();
            return value.value<Value>();
        });
    }

private:
    template <typename Convert>
    std::invoke_result_t<Convert, const QVariant &, bool &> read(const QString &name,
                                                                 const Convert &convert)
    {
        const QVariant value = m_step.parameter(name);
        if (!value.isValid()) {
            m_missing = true;
            return {};
        }
        bool ok = true;
        auto converted = convert(value, ok);
        if (!ok)
            m_failed = true;
        return converted;
    }

    const ProcessData &m_step;
    bool m_missing = false;
    bool m_failed = false;
};

/// Whether a volume has no more cells than its indices can count.
bool isCountable(std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ)
{
    constexpr std::uint64_t Most = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t layer = std::uint64_t{sizeX} * sizeY;
    return sizeZ == 0 || layer <= Most / sizeZ;
}

/// A front by layers takes a cell or more a step, so it stands still after as many steps as there are
/// cells, however many a list asks for.
std::int32_t mostLayers(const Model::Automaton::TotalVolume &volume)
{
    const std::uint64_t cells =
        std::uint64_t{volume.sizeX()} * volume.sizeY() * std::uint64_t{volume.sizeZ()};
    constexpr std::uint64_t Most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(cells, Most));
}

} // namespace

ProcessRunner::ProcessRunner(const ProcessData *step,
                             const boost::shared_ptr<Model::Automaton::TotalVolume> &volume,
                             RunProcessesDialog *dialog, Core::Workspace *workspace)
    : m_step(step),
      m_volume(volume),
      m_dialog(dialog),
      m_workspace(workspace)
{}

int ProcessRunner::run()
{
    const std::int32_t type = m_step->processType();
    if (type < ProcessData::Photolithography || type > ProcessData::SiOxidation)
        return Done;
    if (!m_volume && type != ProcessData::CreateSubstrate)
        return Missing;
    switch (type) {
    case ProcessData::Photolithography:
        return runPhotolithography();
    case ProcessData::SiWetEtching:
        return runSiWetEtching();
    case ProcessData::MooreDeposition:
        return runMooreDeposition();
    case ProcessData::MooreEtching:
        return runMooreEtching();
    case ProcessData::Cvd:
        return runCvd();
    case ProcessData::IsotropicEtching:
        return runIsotropicEtching();
    case ProcessData::Planarization:
        return runPlanarization();
    case ProcessData::Electroplating:
        return runElectroplating();
    case ProcessData::Doping:
        return runDoping();
    case ProcessData::SpinCoating:
        return runSpinCoating();
    case ProcessData::SaveImage:
        return runSaveImage();
    case ProcessData::CreateSubstrate:
        return runCreateSubstrate();
    case ProcessData::Pvd:
        return runPvd();
    case ProcessData::SimpleRie:
        return runSimpleRie();
    case ProcessData::IonImplantation:
        return runIonImplantation();
    default:
        return runSiOxidation();
    }
}

int ProcessRunner::runPhotolithography()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const auto top = read.toValue<std::vector<bool>>(StepParameters::TopMask);
    const std::uint32_t topHeight = read.toUnsigned(StepParameters::TopMaskHeight);
    const std::uint32_t topWidth = read.toUnsigned(StepParameters::TopMaskWidth);
    const auto bottom = read.toValue<std::vector<bool>>(StepParameters::BottomMask);
    const std::uint32_t bottomHeight = read.toUnsigned(StepParameters::BottomMaskHeight);
    const std::uint32_t bottomWidth = read.toUnsigned(StepParameters::BottomMaskWidth);
    if (read.result() != Done)
        return read.result();
    Core::Operations::Photolithography(m_volume.get(), material, bottom, bottomWidth, bottomHeight,
                                       top, topWidth, topHeight)
        .runDevelopment();
    record(20, Lattice::Stale);
    return Done;
}

int ProcessRunner::runSiWetEtching()
{
    ParameterReader read(*m_step);
    const float depth = read.toFloat(StepParameters::Depth);
    if (read.result() != Done)
        return read.result();
    if (m_workspace->objectRecords().isLatticeStale(m_volume->id()))
        m_volume->rebuildSiLattice();
    Core::Operations::AtomicStructureSimpleSiWetEtch(m_volume.get(), static_cast<double>(depth))
        .runEtching();
    record(28, Lattice::Fresh);
    return Done;
}

int ProcessRunner::runMooreDeposition()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const std::int32_t steps = read.toLayers(StepParameters::Thickness, mostLayers(*m_volume));
    if (read.result() != Done)
        return read.result();
    Core::Operations::MooreNeighborhoodDeposition(m_volume.get(), material, steps).runDeposition();
    record(18, Lattice::Stale);
    return Done;
}

int ProcessRunner::runMooreEtching()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const std::int32_t steps = read.toLayers(StepParameters::Depth, mostLayers(*m_volume));
    if (read.result() != Done)
        return read.result();
    Core::Operations::MooreNeighborhoodEtching(m_volume.get(), material, steps).runEtching();
    record(19, Lattice::Stale);
    return Done;
}

int ProcessRunner::runCvd()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const float thickness = read.toFloat(StepParameters::Thickness);
    if (read.result() != Done)
        return read.result();
    Core::Operations::IsotropicFilmDeposition(m_volume.get(), material, thickness).runDeposition();
    record(13, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runIsotropicEtching()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const float depth = read.toFloat(StepParameters::Depth);
    if (read.result() != Done)
        return read.result();
    Core::Operations::IsotropicFilmEtching(m_volume.get(), material, depth).runEtching();
    record(14, Lattice::Stale);
    return Done;
}

int ProcessRunner::runPlanarization()
{
    ParameterReader read(*m_step);
    const std::uint32_t maximum = read.toUnsigned(StepParameters::MaximumHeight);
    const std::uint32_t minimum = read.toUnsigned(StepParameters::MinimumHeight);
    if (read.result() != Done)
        return read.result();
    Core::Operations::Planarization(m_volume.get(), maximum, minimum).runPlanarization();
    record(22, Lattice::Stale);
    return Done;
}

int ProcessRunner::runElectroplating()
{
    ParameterReader read(*m_step);
    const std::uint32_t deposited = read.toUnsigned(StepParameters::DepositedMaterialId);
    const std::uint32_t conducting = read.toUnsigned(StepParameters::ConductingMaterialId);
    const float thickness = read.toFloat(StepParameters::FilmThickness);
    if (read.result() != Done)
        return read.result();
    Core::Operations::Electrodeposition(m_volume.get(), deposited, conducting, thickness)
        .runDeposition();
    record(15, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runDoping()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::DopedMaterialId);
    const float depth = read.toFloat(StepParameters::DopingDepth);
    if (read.result() != Done)
        return read.result();
    Core::Operations::SimpleDoping(m_volume.get(), material, depth).runDoping();
    record(17, Lattice::Stale);
    return Done;
}

int ProcessRunner::runSpinCoating()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const std::uint32_t height = read.toUnsigned(StepParameters::MaximumHeight);
    if (read.result() != Done)
        return read.result();
    Core::Operations::SpinCoating(m_volume.get(), material, height).runDeposition();
    record(23, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runSaveImage()
{
    ParameterReader read(*m_step);
    const auto fileName = read.toValue<QString>(StepParameters::Filename);
    if (read.result() != Done)
        return read.result();
    // The view belongs to the dialog's thread. Waiting for it makes the picture that of this moment
    // of the list.
    const bool own = QThread::currentThread() == m_dialog->thread();
    QMetaObject::invokeMethod(m_dialog, "updateGeometry",
                              own ? Qt::DirectConnection : Qt::BlockingQueuedConnection,
                              Q_ARG(QString, fileName));
    return Done;
}

int ProcessRunner::runCreateSubstrate()
{
    ParameterReader read(*m_step);
    const bool spherical = read.toBool(StepParameters::SphericalSubstrate);
    const bool shapeKnown = read.result() == Done;
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const auto position = read.toValue<Util::Vector3D>(StepParameters::LowerLeftFrontCorner);
    const std::uint32_t totalX = read.toUnsigned(StepParameters::VolumeSizeX);
    const std::uint32_t totalY = read.toUnsigned(StepParameters::VolumeSizeY);
    const std::uint32_t totalZ = read.toUnsigned(StepParameters::VolumeSizeZ);
    if (!shapeKnown)
        return read.result();
    const auto build = [&]() -> Core::Operations::SubstrateBuilder {
        if (spherical) {
            const std::uint32_t centerX = read.toUnsigned(StepParameters::SubstrateCenterX);
            const std::uint32_t centerY = read.toUnsigned(StepParameters::SubstrateCenterY);
            const std::uint32_t centerZ = read.toUnsigned(StepParameters::SubstrateCenterZ);
            const std::uint32_t radius = read.toUnsigned(StepParameters::SubstrateRadius);
            return {material, totalX, totalY, totalZ, position, centerX, centerY, centerZ, radius};
        }
        const std::uint32_t sizeX = read.toUnsigned(StepParameters::SubstrateSizeX);
        const std::uint32_t sizeY = read.toUnsigned(StepParameters::SubstrateSizeY);
        const std::uint32_t sizeZ = read.toUnsigned(StepParameters::SubstrateSizeZ);
        const std::uint32_t deltaX = read.toUnsigned(StepParameters::SubstrateDeltaX);
        const std::uint32_t deltaY = read.toUnsigned(StepParameters::SubstrateDeltaY);
        const std::uint32_t deltaZ = read.toUnsigned(StepParameters::SubstrateDeltaZ);
        return {material, totalX, totalY, totalZ, position, deltaX,
                deltaY,   deltaZ, sizeX,  sizeY,  sizeZ};
    };
    Core::Operations::SubstrateBuilder builder = build();
    if (read.result() != Done)
        return read.result();
    // The dialog takes up to 10000 cells along each axis, a file any number: together more than a
    // volume can count, or than there is memory for.
    if (!isCountable(totalX, totalY, totalZ))
        return NotConvertible;
    // Here rather than where the view waits for it.
    builder.fill();
    return m_dialog->createVolume(builder) ? Done : NotConvertible;
}

int ProcessRunner::runPvd()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const float thickness = read.toFloat(StepParameters::Thickness);
    const float ratio = read.toFloat(StepParameters::HorizontalRatio);
    const int mode = read.toInteger(StepParameters::DepositOnValue);
    if (read.result() != Done)
        return read.result();
    Core::Operations::AnisotropicFilmDeposition(m_volume.get(), material, thickness, ratio,
                                                static_cast<std::uint32_t>(mode))
        .runDeposition();
    record(27, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runSimpleRie()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::MaterialId);
    const std::uint32_t depth = read.toUnsigned(StepParameters::EtchDepth);
    const int directions = read.toInteger(StepParameters::EtchDirectionValue);
    if (read.result() != Done)
        return read.result();
    // A file may hold any number. Only these bits mean something, and they fit in what the engine
    // takes.
    constexpr int Directions = Core::Operations::SimpleReactiveIonEtching::FromTop |
                               Core::Operations::SimpleReactiveIonEtching::FromBelow;
    Core::Operations::SimpleReactiveIonEtching(m_volume.get(), material, depth,
                                               static_cast<std::uint8_t>(directions & Directions))
        .runEtching();
    record(30, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runIonImplantation()
{
    ParameterReader read(*m_step);
    const std::uint32_t material = read.toUnsigned(StepParameters::DopedMaterialId);
    const float depth = read.toFloat(StepParameters::ImplantationDepth);
    const float annealing = read.toFloat(StepParameters::AnnealingDistance);
    if (read.result() != Done)
        return read.result();
    Core::Operations::IonImplantation(m_volume.get(), material, depth, annealing).runImplantation();
    record(3, Lattice::Untouched);
    return Done;
}

int ProcessRunner::runSiOxidation()
{
    ParameterReader read(*m_step);
    const bool timeSet = read.toBool(StepParameters::OxidationTimeSet);
    const bool formKnown = read.result() == Done;
    const double conversion = read.toDouble(StepParameters::MicronConversion);
    if (!formKnown)
        return read.result();
    if (timeSet) {
        const double pressure = read.toDouble(StepParameters::OxidationPressure);
        const double temperature = read.toDouble(StepParameters::OxidationTemperature);
        const double time = read.toDouble(StepParameters::OxidationTime);
        if (read.result() != Done)
            return read.result();
        Core::Operations::SimpleSiOxidation(m_volume.get(), conversion)
            .oxidateFor(time, temperature, pressure);
    } else {
        const double thickness = read.toDouble(StepParameters::OxidationThickness);
        if (read.result() != Done)
            return read.result();
        Core::Operations::SimpleSiOxidation(m_volume.get(), conversion).oxidateTo(thickness);
    }
    record(26, Lattice::Untouched);
    return Done;
}

void ProcessRunner::record(std::uint32_t operationId, Lattice lattice)
{
    Core::ObjectRecords &records = m_workspace->objectRecords();
    records.setLastOperation(m_volume->id(), operationId);
    if (lattice != Lattice::Untouched)
        records.setLatticeStale(m_volume->id(), lattice == Lattice::Stale);
}

} // namespace Ui
