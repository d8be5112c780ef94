#include "UI/Input/ChangeColorsDialog.h"

#include "Model/ColorTable.h"
#include "ui_ChangeColorsForm.h"

#include <QColor>
#include <QColorDialog>
#include <QPushButton>

using Model::ColorTable;

namespace Ui::Input {

namespace {

/// A component from 0 to 1 as 0 to 255, truncated.
int channel(double component)
{
    return static_cast<int>(qBound(0.0, component * 255.0, 255.0));
}

void showColor(const Util::Vector4D &color, QPushButton &button)
{
    const QString background = QStringLiteral("background-color : #%1%2%3;\n")
                                   .arg(channel(color[0]), 2, 16, QLatin1Char('0'))
                                   .arg(channel(color[1]), 2, 16, QLatin1Char('0'))
                                   .arg(channel(color[2]), 2, 16, QLatin1Char('0'));
    button.setStyleSheet(QStringLiteral("border: none;") + background);
}

} // namespace

ChangeColorsDialog::ChangeColorsDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<ChangeColorsForm>()),
      m_scheme(ColorTable::currentScheme())
{
    m_form->setupUi(this);
    loadScheme(m_scheme);

    connect(m_form->btnLoadDefaultColors, &QPushButton::clicked, this,
            &ChangeColorsDialog::loadDefaultColor);
    connect(m_form->btnLoadLowColors, &QPushButton::clicked, this,
            &ChangeColorsDialog::loadLowColor);
    connect(m_form->btnBackgroundColor, &QPushButton::clicked, this,
            &ChangeColorsDialog::changeBgColor);
    connect(m_form->btnGridColor, &QPushButton::clicked, this,
            &ChangeColorsDialog::changeGridColor);
    connect(m_form->btnObjectColor, &QPushButton::clicked, this,
            &ChangeColorsDialog::changeObjectColor);
    connect(m_form->btnOutlineColor, &QPushButton::clicked, this,
            &ChangeColorsDialog::changeOutlineColor);
}

ChangeColorsDialog::~ChangeColorsDialog() = default;

void ChangeColorsDialog::loadDefaultColor()
{
    loadScheme(ColorTable::DefaultScheme);
}

void ChangeColorsDialog::loadLowColor()
{
    loadScheme(ColorTable::LowScheme);
}

void ChangeColorsDialog::changeBgColor()
{
    changeColor(m_backgroundColor, *m_form->btnBackgroundColor);
}

void ChangeColorsDialog::changeGridColor()
{
    changeColor(m_gridColor, *m_form->btnGridColor);
}

void ChangeColorsDialog::changeObjectColor()
{
    changeColor(m_objectColor, *m_form->btnObjectColor);
}

void ChangeColorsDialog::changeOutlineColor()
{
    changeColor(m_outlineColor, *m_form->btnOutlineColor);
}

void ChangeColorsDialog::accept()
{
    ColorTable::setCurrentScheme(m_scheme);
    // Also after one of the two load buttons: the custom scheme always holds what was accepted
    // last.
    ColorTable::setCustomColor(ColorTable::BackgroundColor, m_backgroundColor);
    ColorTable::setCustomColor(ColorTable::GridColor, m_gridColor);
    ColorTable::setCustomColor(ColorTable::ObjectColor, m_objectColor);
    ColorTable::setCustomColor(ColorTable::OutlineColor, m_outlineColor);
    QDialog::accept();
}

void ChangeColorsDialog::loadScheme(std::uint32_t scheme)
{
    m_scheme = scheme;
    m_backgroundColor = ColorTable::colorSetting(ColorTable::BackgroundColor, scheme);
    m_gridColor = ColorTable::colorSetting(ColorTable::GridColor, scheme);
    m_objectColor = ColorTable::colorSetting(ColorTable::ObjectColor, scheme);
    m_outlineColor = ColorTable::colorSetting(ColorTable::OutlineColor, scheme);
    showColor(m_backgroundColor, *m_form->btnBackgroundColor);
    showColor(m_gridColor, *m_form->btnGridColor);
    showColor(m_objectColor, *m_form->btnObjectColor);
    showColor(m_outlineColor, *m_form->btnOutlineColor);
}

void ChangeColorsDialog::changeColor(Util::Vector4D &color, QPushButton &button)
{
    const QColor current(channel(color[0]), channel(color[1]), channel(color[2]),
                         channel(color[3]));
    const QColor chosen = QColorDialog::getColor(current, this, QStringLiteral("Select new color"));
    if (!chosen.isValid())
        return;
    color = {chosen.redF(), chosen.greenF(), chosen.blueF(), chosen.alphaF()};
    m_scheme = ColorTable::CustomScheme;
    showColor(color, button);
}

} // namespace Ui::Input
