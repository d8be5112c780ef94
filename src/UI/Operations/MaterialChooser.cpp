#include "UI/Operations/MaterialChooser.h"

#include "Model/Materials/Material.h"

#include <QColor>
#include <QComboBox>
#include <QIcon>
#include <QPixmap>
#include <QVariant>

namespace Ui::Operations {

namespace {

/// A component from 0 to 1 as 0 to 255, truncated. A registry file may hold any number.
int channel(float component)
{
    return static_cast<int>(qBound(0.0, component * 255.0, 255.0));
}

} // namespace

QColor materialColor(const Model::Materials::Material &material)
{
    const float *components = material.color();
    return QColor(channel(components[0]), channel(components[1]), channel(components[2]),
                  channel(components[3]));
}

void fillMaterialChooser(QComboBox &chooser,
                         const std::vector<Model::Materials::Material> &materials)
{
    chooser.clear();
    for (const Model::Materials::Material &material : materials) {
        QPixmap swatch(100, 100);
        swatch.fill(materialColor(material));
        chooser.addItem(QIcon(swatch), material.name(), material.id());
    }
}

std::uint32_t chosenMaterial(const QComboBox &chooser)
{
    return chooser.currentData(Qt::UserRole).toUInt();
}

} // namespace Ui::Operations
