#include "UI/BatchRun/MaterialParameter.h"

#include "Model/Materials/MaterialFactory.h"
#include "UI/BatchRun/ProcessData.h"
#include "UI/BatchRun/StepParameters.h"
#include "UI/MaterialColor.h"

#include <QColor>
#include <QVariant>

namespace Ui {

void setMaterialParameter(ProcessData &step, const QString &idName, const QString &name,
                          std::uint32_t id, bool idVisible)
{
    const Model::Materials::Material material =
        Model::Materials::MaterialFactory::instance()->material(id);
    QColor color = colorOf(material.color());
    color.setAlpha(255);
    step.setParameter(idName, id, idVisible);
    step.setParameter(name, material.name(), true);
    step.setParameter(name + StepParameters::ColorSuffix, color, false);
}

} // namespace Ui
