#include "ExampleLists.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "UI/BatchRun/MaterialParameter.h"
#include "UI/BatchRun/StepParameters.h"

#include <cstdint>
#include <functional>

namespace {

namespace Names = Ui::StepParameters;
using Ui::ProcessData;
using Steps = std::vector<ProcessData>;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Copper = 5;
constexpr std::uint32_t Gold = 9;
constexpr std::uint32_t PositiveResist = 11;
constexpr std::uint32_t NegativeResist = 12;
constexpr std::uint32_t Pdms = 13;
constexpr std::uint32_t PolySilicon = 16;

/// Cells, and pixels of the masks, along x and along y.
constexpr std::uint32_t Side = 60;

/// Whether the mask is opaque over a column.
using Drawing = std::function<bool(std::uint32_t x, std::uint32_t y)>;

ProcessData withFilm(ProcessData::ProcessType type, std::uint32_t material)
{
    ProcessData step(type);
    Ui::setMaterialParameter(step, Names::MaterialId, Names::Material, material);
    return step;
}

/// A slab of silicon across the volume.
ProcessData substrate(std::uint32_t volumeHeight, std::uint32_t thickness, std::uint32_t floor)
{
    ProcessData step = withFilm(ProcessData::CreateSubstrate, Silicon);
    step.setParameter(Names::LowerLeftFrontCorner, QVariant::fromValue(Util::Vector3D()), true);
    step.setParameter(Names::SphericalSubstrate, false, false);
    const struct
    {
        const QString &name;
        std::uint32_t value;
        bool visible;
    } sizes[] = {{Names::VolumeSizeX, Side, true},         {Names::VolumeSizeY, Side, true},
                 {Names::VolumeSizeZ, volumeHeight, true}, {Names::SubstrateSizeX, Side, true},
                 {Names::SubstrateSizeY, Side, true},      {Names::SubstrateSizeZ, thickness, true},
                 {Names::SubstrateDeltaX, 0, true},        {Names::SubstrateDeltaY, 0, true},
                 {Names::SubstrateDeltaZ, floor, true},    {Names::SubstrateCenterX, 0, false},
                 {Names::SubstrateCenterY, 0, false},      {Names::SubstrateCenterZ, 0, false},
                 {Names::SubstrateRadius, 50, false}};
    for (const auto &size : sizes)
        step.setParameter(size.name, size.value, size.visible);
    return step;
}

ProcessData cvd(std::uint32_t material, double thickness)
{
    ProcessData step = withFilm(ProcessData::Cvd, material);
    step.setParameter(Names::Thickness, thickness, true);
    return step;
}

ProcessData pvd(std::uint32_t material, double thickness)
{
    const std::uint32_t mode = Core::Operations::AnisotropicFilmDeposition::OnTop;
    ProcessData step = withFilm(ProcessData::Pvd, material);
    step.setParameter(Names::Thickness, thickness, true);
    step.setParameter(Names::DepositOnValue, static_cast<int>(mode), false);
    step.setParameter(Names::DepositOn,
                      Core::Operations::AnisotropicFilmDeposition::depositionModeText(mode), true);
    step.setParameter(Names::HorizontalRatio, 0.5, true);
    return step;
}

ProcessData pour(std::uint32_t material, std::uint32_t height)
{
    ProcessData step = withFilm(ProcessData::SpinCoating, material);
    step.setParameter(Names::MaximumHeight, height, true);
    return step;
}

ProcessData etch(std::uint32_t material, double depth)
{
    ProcessData step = withFilm(ProcessData::IsotropicEtching, material);
    step.setParameter(Names::Depth, depth, true);
    return step;
}

ProcessData etchDown(std::uint32_t material, std::uint32_t depth)
{
    ProcessData step = withFilm(ProcessData::SimpleRie, material);
    step.setParameter(Names::EtchDepth, depth, true);
    const int direction = Core::Operations::SimpleReactiveIonEtching::FromTop;
    step.setParameter(Names::EtchDirectionValue, direction, false);
    step.setParameter(Names::EtchDirection, QStringLiteral("Top"), true);
    return step;
}

ProcessData wetEtch(double depth)
{
    ProcessData step(ProcessData::SiWetEtching);
    step.setParameter(Names::Depth, depth, true);
    return step;
}

ProcessData plate(std::uint32_t metal, std::uint32_t conductor, double thickness)
{
    ProcessData step(ProcessData::Electroplating);
    step.setParameter(Names::FilmThickness, thickness, true);
    Ui::setMaterialParameter(step, Names::ConductingMaterialId, Names::ConductingMaterial,
                             conductor);
    Ui::setMaterialParameter(step, Names::DepositedMaterialId, Names::DepositedMaterial, metal);
    return step;
}

ProcessData cutBelow(std::uint32_t height, std::uint32_t volumeHeight)
{
    ProcessData step(ProcessData::Planarization);
    step.setParameter(Names::MaximumHeight, volumeHeight, true);
    step.setParameter(Names::MinimumHeight, height, true);
    return step;
}

std::vector<bool> bitsOf(const Drawing &drawing)
{
    std::vector<bool> bits;
    for (std::uint32_t x = 0; drawing && x < Side; ++x)
        for (std::uint32_t y = 0; y < Side; ++y)
            bits.push_back(drawing(x, y));
    return bits;
}

/// A side without a drawing has no mask.
ProcessData develop(std::uint32_t film, const Drawing &top, const Drawing &bottom = {})
{
    ProcessData step = withFilm(ProcessData::Photolithography, film);
    step.setParameter(Names::TopMask, QVariant::fromValue(bitsOf(top)), false);
    step.setParameter(Names::TopMaskFile, QString(), true);
    step.setParameter(Names::TopMaskHeight, top ? Side : 0, true);
    step.setParameter(Names::TopMaskWidth, top ? Side : 0, true);
    step.setParameter(Names::BottomMask, QVariant::fromValue(bitsOf(bottom)), false);
    step.setParameter(Names::BottomMaskFile, QString(), true);
    step.setParameter(Names::BottomMaskHeight, bottom ? Side : 0, true);
    step.setParameter(Names::BottomMaskWidth, bottom ? Side : 0, true);
    return step;
}

bool isIn(std::uint32_t value, std::uint32_t first, std::uint32_t last)
{
    return value >= first && value <= last;
}

/// An oxide membrane over a pit that is etched through the wafer from below: the walls of the pit
/// lean inward as (111) planes do.
Steps membrane()
{
    const auto all = [](std::uint32_t, std::uint32_t) { return true; };
    const auto besideTheWindow = [](std::uint32_t x, std::uint32_t y) {
        return !isIn(x, 8, 51) || !isIn(y, 8, 51);
    };
    return {substrate(36, 20, 6), cvd(Oxide, 3.0), develop(Oxide, all, besideTheWindow),
            wetEtch(20.5)};
}

/// A beam of polycrystalline silicon that is held at one end, once the oxide beneath it is gone.
Steps cantilever()
{
    const auto besideTheAnchor = [](std::uint32_t x, std::uint32_t y) {
        return !isIn(x, 5, 14) || !isIn(y, 25, 34);
    };
    const auto beam = [](std::uint32_t x, std::uint32_t y) {
        return isIn(x, 3, 50) && isIn(y, 24, 35);
    };
    return {substrate(30, 8, 0),
            cvd(Oxide, 4.0),
            pour(PositiveResist, 16),
            develop(PositiveResist, besideTheAnchor),
            etchDown(Oxide, 4),
            etch(PositiveResist, 20.0),
            cvd(PolySilicon, 3.0),
            pour(PositiveResist, 20),
            develop(PositiveResist, beam),
            etchDown(PolySilicon, 8),
            etch(PositiveResist, 20.0),
            etch(Oxide, 12.0)};
}

/// A coil of copper, grown from a seed of gold in a mould of resist.
Steps coil()
{
    // Two turns of a square spiral, four pixels wide, from the middle of the left side inward.
    const auto track = [](std::uint32_t x, std::uint32_t y) {
        const bool outer = (isIn(x, 8, 51) && (isIn(y, 8, 11) || isIn(y, 48, 51))) ||
                           (isIn(y, 8, 51) && (isIn(x, 8, 11) || isIn(x, 48, 51)));
        const bool inner = (isIn(x, 20, 39) && (isIn(y, 20, 23) || isIn(y, 36, 39))) ||
                           (isIn(y, 20, 39) && (isIn(x, 20, 23) || isIn(x, 36, 39)));
        const bool cut = isIn(x, 8, 23) && isIn(y, 26, 31);
        const bool bridge = isIn(x, 8, 23) && isIn(y, 32, 35);
        return ((outer || inner) && !cut) || bridge;
    };
    return {substrate(30, 6, 0),
            pvd(Gold, 1.0),
            pour(PositiveResist, 18),
            develop(PositiveResist, [=](std::uint32_t x, std::uint32_t y) { return !track(x, y); }),
            plate(Copper, Gold, 6.0),
            etch(PositiveResist, 40.0),
            etchDown(Gold, 1)};
}

/// A channel in silicone, cast over a ridge of resist and opened from below.
Steps channel()
{
    // Two reservoirs and what joins them.
    const auto ridge = [](std::uint32_t x, std::uint32_t y) {
        return (isIn(x, 6, 17) && isIn(y, 24, 35)) || (isIn(x, 42, 53) && isIn(y, 24, 35)) ||
               (isIn(x, 6, 53) && isIn(y, 28, 31));
    };
    // Of negative resist, what is opaque goes.
    return {substrate(30, 6, 0),
            pour(NegativeResist, 14),
            develop(NegativeResist, [=](std::uint32_t x, std::uint32_t y) { return !ridge(x, y); }),
            pour(Pdms, 24),
            cutBelow(6, 30),
            etch(NegativeResist, 12.0)};
}

} // namespace

std::vector<ExampleList> exampleLists()
{
    return {{"membrane.plst", membrane()},
            {"cantilever.plst", cantilever()},
            {"coil.plst", coil()},
            {"channel.plst", channel()}};
}
