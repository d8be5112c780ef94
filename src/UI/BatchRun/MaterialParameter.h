#pragma once

#include <QString>

#include <cstdint>

namespace Ui {

class ProcessData;

/// Enters a material into a step: the id for the run, the name and the colour for the tree. Both of
/// these stay as they are now, whatever becomes of the material.
void setMaterialParameter(ProcessData &step, const QString &idName, const QString &name,
                          std::uint32_t id, bool idVisible = false);

} // namespace Ui
