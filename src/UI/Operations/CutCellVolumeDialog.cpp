#include "UI/Operations/CutCellVolumeDialog.h"

#include "UI/Operations/CellField.h"
#include "ui_CutCellVolumeBaseDialog.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Ui::Operations {

namespace {

/// What stands for one limit, a slider and a field that follow each other.
struct Control
{
    QSlider *slider;
    QSpinBox *field;

    void setRange(int minimum, int maximum) const
    {
        slider->setRange(minimum, maximum);
        field->setRange(minimum, maximum);
    }
};

/// As much of the number as a field holds.
int fieldNumber(std::uint32_t number)
{
    constexpr std::uint32_t Most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(number, Most));
}

/// The upper limit goes first: the lower one, which it may push, has its place then.
void setAxis(const Control &lower, const Control &upper, std::uint32_t lowerLimit,
             std::uint32_t upperLimit, std::uint32_t size)
{
    const int cells = fieldNumber(size);
    lower.setRange(0, std::max(0, cells - 1));
    upper.setRange(std::min(1, cells), cells);
    upper.field->setValue(fieldNumber(upperLimit));
    lower.field->setValue(fieldNumber(lowerLimit));
}

} // namespace

CutCellVolumeDialog::CutCellVolumeDialog(QWidget *parent)
    : QDialog(parent),
      m_form(std::make_unique<CutCellVolumeBaseDialog>())
{
    m_form->setupUi(this);
}

CutCellVolumeDialog::~CutCellVolumeDialog() = default;

void CutCellVolumeDialog::setLimits(const CellTriple &lower, const CellTriple &upper,
                                    const CellTriple &sizes)
{
    setAxis({m_form->sldXLowerLimit, m_form->sbxXLowerLimit},
            {m_form->sldXUpperLimit, m_form->sbxXUpperLimit}, lower[0], upper[0], sizes[0]);
    setAxis({m_form->sldYLowerLimit, m_form->sbxYLowerLimit},
            {m_form->sldYUpperLimit, m_form->sbxYUpperLimit}, lower[1], upper[1], sizes[1]);
    setAxis({m_form->sldZLowerLimit, m_form->sbxZLowerLimit},
            {m_form->sldZUpperLimit, m_form->sbxZUpperLimit}, lower[2], upper[2], sizes[2]);
}

void CutCellVolumeDialog::setPreview(Preview preview)
{
    m_preview = std::move(preview);
}

CutCellVolumeDialog::CellTriple CutCellVolumeDialog::lowerLimits() const
{
    return {cellsOf(*m_form->sbxXLowerLimit), cellsOf(*m_form->sbxYLowerLimit),
            cellsOf(*m_form->sbxZLowerLimit)};
}

CutCellVolumeDialog::CellTriple CutCellVolumeDialog::upperLimits() const
{
    return {cellsOf(*m_form->sbxXUpperLimit), cellsOf(*m_form->sbxYUpperLimit),
            cellsOf(*m_form->sbxZUpperLimit)};
}

void CutCellVolumeDialog::on_sbxXLowerLimit_valueChanged(int limit)
{
    lowerChanged(limit, *m_form->sbxXUpperLimit);
}

void CutCellVolumeDialog::on_sbxXUpperLimit_valueChanged(int limit)
{
    upperChanged(limit, *m_form->sbxXLowerLimit);
}

void CutCellVolumeDialog::on_sbxYLowerLimit_valueChanged(int limit)
{
    lowerChanged(limit, *m_form->sbxYUpperLimit);
}

void CutCellVolumeDialog::on_sbxYUpperLimit_valueChanged(int limit)
{
    upperChanged(limit, *m_form->sbxYLowerLimit);
}

void CutCellVolumeDialog::on_sbxZLowerLimit_valueChanged(int limit)
{
    lowerChanged(limit, *m_form->sbxZUpperLimit);
}

void CutCellVolumeDialog::on_sbxZUpperLimit_valueChanged(int limit)
{
    upperChanged(limit, *m_form->sbxZLowerLimit);
}

void CutCellVolumeDialog::on_btnReset_clicked()
{
    for (QSpinBox *upper : {m_form->sbxXUpperLimit, m_form->sbxYUpperLimit, m_form->sbxZUpperLimit})
        upper->setValue(upper->maximum());
    for (QSpinBox *lower : {m_form->sbxXLowerLimit, m_form->sbxYLowerLimit, m_form->sbxZLowerLimit})
        lower->setValue(0);
}

void CutCellVolumeDialog::lowerChanged(int limit, QSpinBox &upper)
{
    if (upper.value() <= limit)
        upper.setValue(limit + 1);
    showPreview();
}

void CutCellVolumeDialog::upperChanged(int limit, QSpinBox &lower)
{
    if (lower.value() >= limit)
        lower.setValue(limit - 1);
    showPreview();
}

void CutCellVolumeDialog::showPreview() const
{
    if (m_preview && m_form->cbxPreview->isChecked())
        m_preview(lowerLimits(), upperLimits());
}

} // namespace Ui::Operations
