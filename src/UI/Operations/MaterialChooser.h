#pragma once

#include <cstdint>
#include <vector>

class QComboBox;

namespace Model::Materials {
class Material;
}

namespace Ui::Operations {

/// Replaces the items of the chooser by one a material, in list order: a swatch of the material's
/// colour as icon, its name as text, its id as user data. The first item becomes the current one.
void fillMaterialChooser(QComboBox &chooser,
                         const std::vector<Model::Materials::Material> &materials);

/// The id of the chosen material; 0 with no selection.
std::uint32_t chosenMaterial(const QComboBox &chooser);

} // namespace Ui::Operations
