#pragma once

#include <cstdint>

class QSpinBox;

namespace Ui::Operations {

/// Limits a field of whole cells, which starts at 0. Counts beyond what a spin box holds are taken
/// as its highest.
void limitCells(QSpinBox &field, std::uint32_t cells);

/// What a field that does not go below 0 holds.
std::uint32_t cellsOf(const QSpinBox &field);

} // namespace Ui::Operations
