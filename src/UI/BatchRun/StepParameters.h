#pragma once

#include <QString>

/// The names of the parameters of batch steps, as they stand in users' files. Whoever composes a step
/// and whoever runs it take them from here.
namespace Ui::StepParameters {

// The film of most processes.
inline const QString MaterialId = QStringLiteral("MaterialId");
inline const QString Material = QStringLiteral("Material");
inline const QString Thickness = QStringLiteral("Thickness");
inline const QString Depth = QStringLiteral("Depth");
inline const QString MaximumHeight = QStringLiteral("Maximum Height");
inline const QString MinimumHeight = QStringLiteral("Minimum Height");

/// Behind the name of a parameter: the colour that it is shown with.
inline const QString ColorSuffix = QStringLiteral("_Color");

// Photolithography
inline const QString TopMask = QStringLiteral("Top Mask");
inline const QString TopMaskFile = QStringLiteral("Top Mask File");
inline const QString TopMaskHeight = QStringLiteral("Top Mask Height");
inline const QString TopMaskWidth = QStringLiteral("Top Mask Width");
inline const QString BottomMask = QStringLiteral("Bottom Mask");
inline const QString BottomMaskFile = QStringLiteral("Bottom Mask File");
inline const QString BottomMaskHeight = QStringLiteral("Bottom Mask Height");
inline const QString BottomMaskWidth = QStringLiteral("Bottom Mask Width");

// Electroplating
inline const QString FilmThickness = QStringLiteral("Film Thickness");
inline const QString ConductingMaterialId = QStringLiteral("ConductingMaterialId");
inline const QString ConductingMaterial = QStringLiteral("Conducting Material");
inline const QString DepositedMaterialId = QStringLiteral("DepositedMaterialId");
inline const QString DepositedMaterial = QStringLiteral("Deposited Material");

// Doping and ion implantation
inline const QString DopedMaterialId = QStringLiteral("DopedMaterialId");
inline const QString DopedMaterial = QStringLiteral("Doped Material");
inline const QString DopingDepth = QStringLiteral("Doping Depth");
inline const QString AnnealingDistance = QStringLiteral("Annealing Distance");
inline const QString ImplantationDepth = QStringLiteral("Implantation Depth");

// Save Image
inline const QString Filename = QStringLiteral("Filename");

// Create Substrate
inline const QString LowerLeftFrontCorner = QStringLiteral("Lower Left Front Corner");
inline const QString VolumeSizeX = QStringLiteral("Volume Size X");
inline const QString VolumeSizeY = QStringLiteral("Volume Size Y");
inline const QString VolumeSizeZ = QStringLiteral("Volume Size Z");
inline const QString SphericalSubstrate = QStringLiteral("SphericalSubstrate");
inline const QString SubstrateSizeX = QStringLiteral("Substrate Size X");
inline const QString SubstrateSizeY = QStringLiteral("Substrate Size Y");
inline const QString SubstrateSizeZ = QStringLiteral("Substrate Size Z");
inline const QString SubstrateDeltaX = QStringLiteral("Substrate Delta X");
inline const QString SubstrateDeltaY = QStringLiteral("Substrate Delta Y");
inline const QString SubstrateDeltaZ = QStringLiteral("Substrate Delta Z");
inline const QString SubstrateCenterX = QStringLiteral("Substrate Center X");
inline const QString SubstrateCenterY = QStringLiteral("Substrate Center Y");
inline const QString SubstrateCenterZ = QStringLiteral("Substrate Center Z");
inline const QString SubstrateRadius = QStringLiteral("Substrate Radius");

// PVD
inline const QString DepositOnValue = QStringLiteral("DepositOn");
inline const QString DepositOn = QStringLiteral("Deposit On");
inline const QString HorizontalRatio = QStringLiteral("Horizontal to Vertical Ratio");

// Simple RIE
inline const QString EtchDepth = QStringLiteral("Etch Depth");
inline const QString EtchDirectionValue = QStringLiteral("EtchDirectionValue");
inline const QString EtchDirection = QStringLiteral("Etch Direction");

// Si oxidation
inline const QString MicronConversion = QStringLiteral("Micron Conversion");
inline const QString OxidationPressure = QStringLiteral("Oxidation Pressure");
inline const QString OxidationTemperature = QStringLiteral("Oxidation Temperature");
inline const QString OxidationTime = QStringLiteral("Oxidation Time");
inline const QString OxidationTimeSet = QStringLiteral("OxidationTimeSet");
inline const QString OxidationThickness = QStringLiteral("Oxidation Thickness");
inline const QString OxidationThicknessSet = QStringLiteral("OxidationThicknessSet");

} // namespace Ui::StepParameters
