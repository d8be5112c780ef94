#include "UI/Operations/ChangeVolumeVisualizationDialog.h"

#include "UI/MaterialColor.h"
#include "UI/Operations/MaterialChooser.h"
#include "ui_ChangeVolumeVisualizationDialogForm.h"

#include <QColorDialog>
#include <QComboBox>
#include <QIcon>
#include <QPixmap>
#include <QPushButton>

#include <algorithm>

namespace Ui::Operations {

using Core::Operations::VisualizationOptions;

ChangeVolumeVisualizationDialog::ChangeVolumeVisualizationDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ChangeVolumeVisualizationDialogForm>())
{
    m_form->setupUi(this);

    connect(m_form->btnChangeColor, &QPushButton::clicked, this,
            &ChangeVolumeVisualizationDialog::changeColor);
    connect(m_form->cbxMaterial, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &ChangeVolumeVisualizationDialog::materialChanged);
}

ChangeVolumeVisualizationDialog::~ChangeVolumeVisualizationDialog() = default;

void ChangeVolumeVisualizationDialog::setMaterials(
    const std::vector<Model::Materials::Material> &materials)
{
    m_colors.clear();
    for (const Model::Materials::Material &material : materials)
        std::copy_n(material.color(), 4, m_colors[material.id()].begin());
    fillMaterialChooser(*m_form->cbxMaterial, materials);
    m_form->btnChangeColor->setEnabled(!materials.empty());
}

void ChangeVolumeVisualizationDialog::setOptions(const VisualizationOptions &options)
{
    m_form->cbxRenderAtoms->setChecked(options.renderAtoms);
    m_form->cbxSurfaceAtomsOnly->setChecked(options.surfaceAtomsOnly);
    m_form->cbxRenderLinks->setChecked(options.renderLinks);
    m_form->cbxRenderOutlines->setChecked(options.renderOutlines);
    m_form->cbxRenderUnitCells->setChecked(options.renderUnitCells);
    m_form->cbxRenderEmptyVoxels->setChecked(options.showEmptyVoxels);
    const auto surfaces = static_cast<std::uint32_t>(m_form->cbxSurfaceAlgorithm->count());
    m_form->cbxSurfaceAlgorithm->setCurrentIndex(
        options.surfaceAlgorithm < surfaces ? static_cast<int>(options.surfaceAlgorithm) : 0);
}

VisualizationOptions ChangeVolumeVisualizationDialog::options() const
{
    VisualizationOptions options;
    options.renderAtoms = m_form->cbxRenderAtoms->isChecked();
    options.surfaceAtomsOnly = m_form->cbxSurfaceAtomsOnly->isChecked();
    options.renderLinks = m_form->cbxRenderLinks->isChecked();
    options.renderOutlines = m_form->cbxRenderOutlines->isChecked();
    options.renderUnitCells = m_form->cbxRenderUnitCells->isChecked();
    options.showEmptyVoxels = m_form->cbxRenderEmptyVoxels->isChecked();
    options.surfaceAlgorithm =
        static_cast<std::uint32_t>(m_form->cbxSurfaceAlgorithm->currentIndex());
    return options;
}

void ChangeVolumeVisualizationDialog::changeColor()
{
    const auto entry = m_colors.find(chosenMaterial(*m_form->cbxMaterial));
    if (entry == m_colors.end())
        return;
    const QColor chosen = QColorDialog::getColor(colorOf(entry->second.data()), this,
                                                 QStringLiteral("Select new film color"),
                                                 QColorDialog::ShowAlphaChannel);
    if (!chosen.isValid())
        return;
    entry->second = componentsOf(chosen);
    m_form->cbxMaterial->setItemIcon(m_form->cbxMaterial->currentIndex(), QIcon(swatchOf(chosen)));
    materialChanged();
}

void ChangeVolumeVisualizationDialog::materialChanged()
{
    const auto entry = m_colors.find(chosenMaterial(*m_form->cbxMaterial));
    if (entry == m_colors.end())
        return;
    const QColor color = colorOf(entry->second.data());
    m_form->frmColor->setStyleSheet(QStringLiteral("background-color : #%1%2%3")
                                        .arg(color.red(), 2, 16, QLatin1Char('0'))
                                        .arg(color.green(), 2, 16, QLatin1Char('0'))
                                        .arg(color.blue(), 2, 16, QLatin1Char('0')));
}

} // namespace Ui::Operations
