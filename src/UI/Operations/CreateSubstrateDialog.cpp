#include "UI/Operations/CreateSubstrateDialog.h"

#include "UI/Operations/CellField.h"
#include "UI/Operations/MaterialChooser.h"
#include "ui_CreateSubstrateDialogForm.h"

#include <QCheckBox>
#include <QSpinBox>

#include <algorithm>

namespace Ui::Operations {

namespace {

/// Limits a displacement so that a body of `size` cells fits into `total` cells. A spin box whose
/// maximum falls below its minimum would take the minimum along, and a body larger than the volume
/// is cut off by it, so there the displacement is left with 0.
void limitDisplacement(QSpinBox &displacement, int total, int size)
{
    displacement.setMaximum(std::max(0, total - size));
}

/// For X and Y.
void fillTotal(QSpinBox &size, QSpinBox &displacement, QSpinBox &center, int total)
{
    size.setMaximum(total);
    size.setValue(total);
    // After the size, whose change limits the displacement as well.
    displacement.setMaximum(0);
    center.setMaximum(total - 1);
}

} // namespace

CreateSubstrateDialog::CreateSubstrateDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<CreateSubstrateDialogForm>())
{
    m_form->setupUi(this);

    const auto valueChanged = qOverload<int>(&QSpinBox::valueChanged);
    connect(m_form->sbxTotalWidth, valueChanged, this, &CreateSubstrateDialog::updateLimitX);
    connect(m_form->sbxTotalLength, valueChanged, this, &CreateSubstrateDialog::updateLimitY);
    connect(m_form->sbxTotalHeight, valueChanged, this, &CreateSubstrateDialog::updateLimitZ);
    connect(m_form->sbxSubsWidth, valueChanged, this, &CreateSubstrateDialog::updateSubstrateDispX);
    connect(m_form->sbxSubsLength, valueChanged, this,
            &CreateSubstrateDialog::updateSubstrateDispY);
    connect(m_form->sbxSubsHeight, valueChanged, this,
            &CreateSubstrateDialog::updateSubstrateDispZ);
    connect(m_form->cbxSpherical, &QCheckBox::toggled, this,
            &CreateSubstrateDialog::toggleSubsShape);
}

CreateSubstrateDialog::~CreateSubstrateDialog() = default;

void CreateSubstrateDialog::setMaterials(const std::vector<Model::Materials::Material> &materials)
{
    fillMaterialChooser(*m_form->cbxMaterial, materials);
}

bool CreateSubstrateDialog::isSpherical() const
{
    return m_form->cbxSpherical->isChecked();
}

std::uint32_t CreateSubstrateDialog::material() const
{
    return chosenMaterial(*m_form->cbxMaterial);
}

std::uint32_t CreateSubstrateDialog::totalX() const
{
    return cellsOf(*m_form->sbxTotalWidth);
}

std::uint32_t CreateSubstrateDialog::totalY() const
{
    return cellsOf(*m_form->sbxTotalLength);
}

std::uint32_t CreateSubstrateDialog::totalZ() const
{
    return cellsOf(*m_form->sbxTotalHeight);
}

Util::Vector3D CreateSubstrateDialog::position() const
{
    return {m_form->dblPositionX->value(), m_form->dblPositionY->value(),
            m_form->dblPositionZ->value()};
}

std::uint32_t CreateSubstrateDialog::sizeX() const
{
    return cellsOf(*m_form->sbxSubsWidth);
}

std::uint32_t CreateSubstrateDialog::sizeY() const
{
    return cellsOf(*m_form->sbxSubsLength);
}

std::uint32_t CreateSubstrateDialog::sizeZ() const
{
    return cellsOf(*m_form->sbxSubsHeight);
}

void CreateSubstrateDialog::displacement(std::uint32_t &x, std::uint32_t &y, std::uint32_t &z) const
{
    x = cellsOf(*m_form->sbxSubsX);
    y = cellsOf(*m_form->sbxSubsY);
    z = cellsOf(*m_form->sbxSubsZ);
}

std::uint32_t CreateSubstrateDialog::radius() const
{
    return cellsOf(*m_form->sbxSubsRadius);
}

void CreateSubstrateDialog::center(std::uint32_t &x, std::uint32_t &y, std::uint32_t &z) const
{
    x = cellsOf(*m_form->sbxSubsCenterX);
    y = cellsOf(*m_form->sbxSubsCenterY);
    z = cellsOf(*m_form->sbxSubsCenterZ);
}

void CreateSubstrateDialog::updateLimitX(int total)
{
    fillTotal(*m_form->sbxSubsWidth, *m_form->sbxSubsX, *m_form->sbxSubsCenterX, total);
}

void CreateSubstrateDialog::updateLimitY(int total)
{
    fillTotal(*m_form->sbxSubsLength, *m_form->sbxSubsY, *m_form->sbxSubsCenterY, total);
}

// Unlike X and Y on purpose: a wafer usually fills the volume across, but leaves room for films
// above it, so a new total height does not pull the substrate's height along.
void CreateSubstrateDialog::updateLimitZ(int total)
{
    m_form->sbxSubsHeight->setMaximum(total);
    limitDisplacement(*m_form->sbxSubsZ, total, m_form->sbxSubsHeight->value());
    m_form->sbxSubsCenterZ->setMaximum(total - 1);
}

void CreateSubstrateDialog::updateSubstrateDispX(int size)
{
    limitDisplacement(*m_form->sbxSubsX, m_form->sbxTotalWidth->value(), size);
}

void CreateSubstrateDialog::updateSubstrateDispY(int size)
{
    limitDisplacement(*m_form->sbxSubsY, m_form->sbxTotalLength->value(), size);
}

void CreateSubstrateDialog::updateSubstrateDispZ(int size)
{
    limitDisplacement(*m_form->sbxSubsZ, m_form->sbxTotalHeight->value(), size);
}

void CreateSubstrateDialog::toggleSubsShape(bool spherical)
{
    QWidget *const boxWidgets[] = {
        m_form->lblSubsSize,   m_form->lblSubsWidth,  m_form->sbxSubsWidth,  m_form->lblSubsLength,
        m_form->sbxSubsLength, m_form->lblSubsHeight, m_form->sbxSubsHeight, m_form->lblSubsCorner,
        m_form->lblSubsX,      m_form->sbxSubsX,      m_form->lblSubsY,      m_form->sbxSubsY,
        m_form->lblSubsZ,      m_form->sbxSubsZ};
    QWidget *const sphereWidgets[] = {m_form->lblSubsRadius,  m_form->sbxSubsRadius,
                                      m_form->lblSubsCenterX, m_form->sbxSubsCenterX,
                                      m_form->lblSubsCenterY, m_form->sbxSubsCenterY,
                                      m_form->lblSubsCenterZ, m_form->sbxSubsCenterZ};
    for (QWidget *widget : boxWidgets)
        widget->setEnabled(!spherical);
    for (QWidget *widget : sphereWidgets)
        widget->setEnabled(spherical);
}

} // namespace Ui::Operations
