#include "UI/Operations/MaterialChooser.h"

#include "Model/Materials/Material.h"
#include "UI/MaterialColor.h"

#include <QComboBox>
#include <QIcon>
#include <QPixmap>
#include <QVariant>

namespace Ui::Operations {

void fillMaterialChooser(QComboBox &chooser,
                         const std::vector<Model::Materials::Material> &materials)
{
    chooser.clear();
    for (const Model::Materials::Material &material : materials)
        chooser.addItem(QIcon(swatchOf(colorOf(material.color()))), material.name(), material.id());
}

std::uint32_t chosenMaterial(const QComboBox &chooser)
{
    return chooser.currentData(Qt::UserRole).toUInt();
}

} // namespace Ui::Operations
