#include "UI/Operations/CellField.h"

#include <QSpinBox>

#include <algorithm>
#include <limits>

namespace Ui::Operations {

void limitCells(QSpinBox &field, std::uint32_t cells)
{
    constexpr std::uint32_t Most = std::numeric_limits<int>::max();
    field.setRange(0, static_cast<int>(std::min(cells, Most)));
}

std::uint32_t cellsOf(const QSpinBox &field)
{
    return static_cast<std::uint32_t>(field.value());
}

} // namespace Ui::Operations
