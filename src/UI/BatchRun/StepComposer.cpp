#include "UI/BatchRun/StepComposer.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "UI/BatchRun/MaterialParameter.h"
#include "UI/BatchRun/StepParameters.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/AnisotropicDepositionDialog.h"
#include "UI/Operations/BCAEtchingDialog.h"
#include "UI/Operations/CreateSubstrateDialog.h"
#include "UI/Operations/DopingOptionsDialog.h"
#include "UI/Operations/ElectrodepositionDialog.h"
#include "UI/Operations/IonImplantationOptionsDialog.h"
#include "UI/Operations/IsotropicDepositionDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"
#include "UI/Operations/MooreOptionsDialog.h"
#include "UI/Operations/PhotolithographyDialog.h"
#include "UI/Operations/PlanarizationOptionsDialog.h"
#include "UI/Operations/ProcessDialogs.h"
#include "UI/Operations/SimpleOxidationOptionsDialog.h"
#include "UI/Operations/SimpleRIEDialog.h"
#include "UI/Operations/SpinCoatingOptionsDialog.h"

#include <QDir>
#include <QFileDialog>
#include <QStringList>

namespace Ui {

using Core::Operations::AnisotropicFilmDeposition;
using Core::Operations::SimpleReactiveIonEtching;

namespace {

constexpr bool Visible = true;
constexpr bool Hidden = false;

void setUnsigned(ProcessData &step, const QString &name, std::uint32_t value,
                 bool visible = Visible)
{
    step.setParameter(name, QVariant::fromValue(value), visible);
}

void setFilm(ProcessData &step, std::uint32_t id)
{
    setMaterialParameter(step, StepParameters::MaterialId, StepParameters::Material, id);
}

} // namespace

StepComposer::StepComposer(QWidget *dialogParent, Operations::MaskReceiver *masks,
                           std::uint32_t volumeHeight)
    : m_dialogParent(dialogParent),
      m_masks(masks),
      m_volumeHeight(volumeHeight)
{}

std::optional<ProcessData> StepComposer::compose(std::int32_t type) const
{
    switch (type) {
    case ProcessData::Photolithography:
        return composePhotolithography();
    case ProcessData::SiWetEtching:
        return composeSiWetEtching();
    case ProcessData::MooreDeposition:
        return composeMooreDeposition();
    case ProcessData::MooreEtching:
        return composeMooreEtching();
    case ProcessData::Cvd:
        return composeCvd();
    case ProcessData::IsotropicEtching:
        return composeIsotropicEtching();
    case ProcessData::Planarization:
        return composePlanarization();
    case ProcessData::Electroplating:
        return composeElectroplating();
    case ProcessData::Doping:
        return composeDoping();
    case ProcessData::SpinCoating:
        return composeSpinCoating();
    case ProcessData::SaveImage:
        return composeSaveImage();
    case ProcessData::CreateSubstrate:
        return composeCreateSubstrate();
    case ProcessData::Pvd:
        return composePvd();
    case ProcessData::SimpleRie:
        return composeSimpleRie();
    case ProcessData::IonImplantation:
        return composeIonImplantation();
    case ProcessData::SiOxidation:
        return composeSiOxidation();
    default:
        return std::nullopt;
    }
}

std::optional<ProcessData> StepComposer::composePhotolithography() const
{
    const auto dialog = Operations::photolithographyDialog(m_masks, m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::Photolithography);
    setFilm(step, dialog->material());
    const Operations::PhotolithographyDialog::Mask &top = dialog->topMask();
    step.setParameter(StepParameters::TopMask, QVariant::fromValue(top.bits), Hidden);
    step.setParameter(StepParameters::TopMaskFile, top.fileName, Visible);
    setUnsigned(step, StepParameters::TopMaskHeight, top.height);
    setUnsigned(step, StepParameters::TopMaskWidth, top.width);
    const Operations::PhotolithographyDialog::Mask &bottom = dialog->bottomMask();
    step.setParameter(StepParameters::BottomMask, QVariant::fromValue(bottom.bits), Hidden);
    step.setParameter(StepParameters::BottomMaskFile, bottom.fileName, Visible);
    setUnsigned(step, StepParameters::BottomMaskHeight, bottom.height);
    setUnsigned(step, StepParameters::BottomMaskWidth, bottom.width);
    return step;
}

std::optional<ProcessData> StepComposer::composeSiWetEtching() const
{
    Operations::BCAEtchingDialog dialog(m_dialogParent);
    if (!runModally(dialog))
        return std::nullopt;
    ProcessData step(ProcessData::SiWetEtching);
    step.setParameter(StepParameters::Depth, dialog.depth(), Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeMooreDeposition() const
{
    const auto dialog = Operations::mooreDepositionDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::MooreDeposition);
    setUnsigned(step, StepParameters::Thickness, static_cast<std::uint32_t>(dialog->steps()));
    setFilm(step, dialog->material());
    return step;
}

std::optional<ProcessData> StepComposer::composeMooreEtching() const
{
    const auto dialog = Operations::mooreEtchingDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::MooreEtching);
    setUnsigned(step, StepParameters::Depth, static_cast<std::uint32_t>(dialog->steps()));
    setFilm(step, dialog->material());
    return step;
}

std::optional<ProcessData> StepComposer::composeCvd() const
{
    const auto dialog = Operations::cvdDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::Cvd);
    step.setParameter(StepParameters::Thickness, dialog->thickness(), Visible);
    setFilm(step, dialog->material());
    return step;
}

std::optional<ProcessData> StepComposer::composeIsotropicEtching() const
{
    const auto dialog = Operations::isotropicEtchingDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::IsotropicEtching);
    step.setParameter(StepParameters::Depth, dialog->thickness(), Visible);
    setFilm(step, dialog->material());
    return step;
}

std::optional<ProcessData> StepComposer::composePlanarization() const
{
    Operations::PlanarizationOptionsDialog dialog(m_volumeHeight, m_dialogParent);
    if (!runModally(dialog))
        return std::nullopt;
    ProcessData step(ProcessData::Planarization);
    setUnsigned(step, StepParameters::MaximumHeight, dialog.maximumHeight());
    setUnsigned(step, StepParameters::MinimumHeight, dialog.minimumHeight());
    return step;
}

std::optional<ProcessData> StepComposer::composeElectroplating() const
{
    const auto dialog = Operations::electroplatingDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::Electroplating);
    step.setParameter(StepParameters::FilmThickness, dialog->thickness(), Visible);
    setMaterialParameter(step, StepParameters::ConductingMaterialId,
                         StepParameters::ConductingMaterial, dialog->conductingMaterial());
    setMaterialParameter(step, StepParameters::DepositedMaterialId,
                         StepParameters::DepositedMaterial, dialog->material());
    return step;
}

std::optional<ProcessData> StepComposer::composeDoping() const
{
    const auto dialog = Operations::dopingDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::Doping);
    step.setParameter(StepParameters::DopingDepth, static_cast<float>(dialog->depth()), Visible);
    setMaterialParameter(step, StepParameters::DopedMaterialId, StepParameters::DopedMaterial,
                         dialog->material(), Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeSpinCoating() const
{
    const auto dialog = Operations::spinCoatingDialog(m_volumeHeight, m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::SpinCoating);
    setFilm(step, dialog->material());
    setUnsigned(step, StepParameters::MaximumHeight, dialog->height());
    return step;
}

std::optional<ProcessData> StepComposer::composeSaveImage() const
{
    static const QDir s_place = QDir::home();
    const QString name = QFileDialog::getSaveFileName(
        m_dialogParent, QStringLiteral("Save Image"), s_place.absolutePath(),
        QStringLiteral("Image Files (*.png *.jpg *.bmp)"));
    if (name.isNull())
        return std::nullopt;
    ProcessData step(ProcessData::SaveImage);
    step.setParameter(StepParameters::Filename, name, Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeCreateSubstrate() const
{
    const auto dialog = Operations::createSubstrateDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    const bool spherical = dialog->isSpherical();
    std::uint32_t deltaX = 0;
    std::uint32_t deltaY = 0;
    std::uint32_t deltaZ = 0;
    std::uint32_t centerX = 0;
    std::uint32_t centerY = 0;
    std::uint32_t centerZ = 0;
    dialog->displacement(deltaX, deltaY, deltaZ);
    dialog->center(centerX, centerY, centerZ);

    ProcessData step(ProcessData::CreateSubstrate);
    setFilm(step, dialog->material());
    step.setParameter(StepParameters::LowerLeftFrontCorner, QVariant::fromValue(dialog->position()),
                      Visible);
    setUnsigned(step, StepParameters::VolumeSizeX, dialog->totalX());
    setUnsigned(step, StepParameters::VolumeSizeY, dialog->totalY());
    setUnsigned(step, StepParameters::VolumeSizeZ, dialog->totalZ());
    step.setParameter(StepParameters::SphericalSubstrate, spherical, Hidden);
    // What belongs to the shape that was not chosen is kept, too.
    setUnsigned(step, StepParameters::SubstrateSizeX, dialog->sizeX(), !spherical);
    setUnsigned(step, StepParameters::SubstrateSizeY, dialog->sizeY(), !spherical);
    setUnsigned(step, StepParameters::SubstrateSizeZ, dialog->sizeZ(), !spherical);
    setUnsigned(step, StepParameters::SubstrateDeltaX, deltaX, !spherical);
    setUnsigned(step, StepParameters::SubstrateDeltaY, deltaY, !spherical);
    setUnsigned(step, StepParameters::SubstrateDeltaZ, deltaZ, !spherical);
    setUnsigned(step, StepParameters::SubstrateCenterX, centerX, spherical);
    setUnsigned(step, StepParameters::SubstrateCenterY, centerY, spherical);
    setUnsigned(step, StepParameters::SubstrateCenterZ, centerZ, spherical);
    setUnsigned(step, StepParameters::SubstrateRadius, dialog->radius(), spherical);
    return step;
}

std::optional<ProcessData> StepComposer::composePvd() const
{
    const auto dialog = Operations::pvdDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    const std::uint32_t mode = dialog->depositionMode();
    ProcessData step(ProcessData::Pvd);
    step.setParameter(StepParameters::Thickness, dialog->thickness(), Visible);
    setFilm(step, dialog->material());
    step.setParameter(StepParameters::DepositOnValue, static_cast<int>(mode), Hidden);
    step.setParameter(StepParameters::DepositOn,
                      AnisotropicFilmDeposition::depositionModeText(mode), Visible);
    step.setParameter(StepParameters::HorizontalRatio, dialog->horizontalRatio(), Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeSimpleRie() const
{
    const auto dialog = Operations::simpleRieDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    int directions = 0;
    QStringList names;
    if (dialog->etchFromBelow()) {
        directions |= SimpleReactiveIonEtching::FromBelow;
        names << QStringLiteral("Bottom");
    }
    if (dialog->etchFromTop()) {
        directions |= SimpleReactiveIonEtching::FromTop;
        names << QStringLiteral("Top");
    }
    ProcessData step(ProcessData::SimpleRie);
    setFilm(step, dialog->material());
    setUnsigned(step, StepParameters::EtchDepth, static_cast<std::uint32_t>(dialog->depth()));
    step.setParameter(StepParameters::EtchDirectionValue, directions, Hidden);
    step.setParameter(StepParameters::EtchDirection, names.join(QStringLiteral(" and ")), Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeIonImplantation() const
{
    const auto dialog = Operations::ionImplantationDialog(m_dialogParent);
    if (!runModally(*dialog))
        return std::nullopt;
    ProcessData step(ProcessData::IonImplantation);
    step.setParameter(StepParameters::AnnealingDistance,
                      static_cast<float>(dialog->annealingDistance()), Visible);
    step.setParameter(StepParameters::ImplantationDepth,
                      static_cast<float>(dialog->implantationDepth()), Visible);
    setMaterialParameter(step, StepParameters::DopedMaterialId, StepParameters::DopedMaterial,
                         dialog->material(), Visible);
    return step;
}

std::optional<ProcessData> StepComposer::composeSiOxidation() const
{
    Operations::SimpleOxidationOptionsDialog dialog(m_dialogParent);
    if (!runModally(dialog))
        return std::nullopt;
    const bool time = dialog.isTimeChosen();
    ProcessData step(ProcessData::SiOxidation);
    step.setParameter(StepParameters::MicronConversion, dialog.cellUnitsPerMicron(), Visible);
    step.setParameter(StepParameters::OxidationPressure, dialog.pressure(), time);
    step.setParameter(StepParameters::OxidationTemperature, dialog.temperature(), time);
    step.setParameter(StepParameters::OxidationTime, dialog.time(), time);
    step.setParameter(StepParameters::OxidationTimeSet, time, Hidden);
    step.setParameter(StepParameters::OxidationThickness, dialog.thickness(), !time);
    step.setParameter(StepParameters::OxidationThicknessSet, !time, Hidden);
    return step;
}

} // namespace Ui
