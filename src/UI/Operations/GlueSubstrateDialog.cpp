#include "UI/Operations/GlueSubstrateDialog.h"

#include "UI/Operations/CellField.h"
#include "ui_GlueSubstrateForm.h"

#include <QSpinBox>

#include <algorithm>

namespace Ui::Operations {

namespace {

void setSmallest(QSpinBox &size, std::uint32_t smallest)
{
    constexpr std::uint32_t Largest = 999999999;
    size.setRange(static_cast<int>(std::min(smallest, Largest)), static_cast<int>(Largest));
    size.setValue(size.minimum());
}

} // namespace

GlueSubstrateDialog::GlueSubstrateDialog(std::uint32_t minimumX, std::uint32_t minimumY,
                                         std::uint32_t minimumZ, std::uint32_t maximumDisplacementX,
                                         std::uint32_t maximumDisplacementY, QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<GlueSubstrateForm>())
{
    m_form->setupUi(this);
    setSmallest(*m_form->sbxSizeX, minimumX);
    setSmallest(*m_form->sbxSizeY, minimumY);
    setSmallest(*m_form->sbxSizeZ, minimumZ);
    limitCells(*m_form->sbxDisplacementX, maximumDisplacementX);
    limitCells(*m_form->sbxDisplacementY, maximumDisplacementY);
}

GlueSubstrateDialog::~GlueSubstrateDialog() = default;

std::uint32_t GlueSubstrateDialog::finalX() const
{
    return cellsOf(*m_form->sbxSizeX);
}

std::uint32_t GlueSubstrateDialog::finalY() const
{
    return cellsOf(*m_form->sbxSizeY);
}

std::uint32_t GlueSubstrateDialog::finalZ() const
{
    return cellsOf(*m_form->sbxSizeZ);
}

std::uint32_t GlueSubstrateDialog::displacementX() const
{
    return cellsOf(*m_form->sbxDisplacementX);
}

std::uint32_t GlueSubstrateDialog::displacementY() const
{
    return cellsOf(*m_form->sbxDisplacementY);
}

bool GlueSubstrateDialog::invertsTop() const
{
    return m_form->chkInvertTopSubstrate->isChecked();
}

} // namespace Ui::Operations
