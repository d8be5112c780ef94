#include "FuzzSupport.h"

#include "Model/Materials/MaterialFactory.h"
#include "Model/Persistence/MaterialArchiver.h"

#include <QXmlStreamWriter>

using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Model::Persistence::MaterialArchiver;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // The registry outlives an input, and what one input enters must not change the next one's run.
    const auto registry = MaterialFactory::instance();
    registry->loadDefaultMaterials();
    Fuzz::Input input(data, size);
    registry->readMaterials(input);
    const std::vector<Material> materials = registry->materials();

    // The registry itself writes to its user's file only, so its format is repeated here.
    QByteArray written;
    QXmlStreamWriter writer(&written);
    writer.setAutoFormatting(true);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("Materials"));
    for (const Material &material : materials) {
        Fuzz::require(material.id() != 0 && !material.name().isEmpty(),
                      "a registered material has an id and a name");
        // False for a name with characters that XML does not have; those are left out and so cannot
        // come back.
        if (!MaterialArchiver::saveMaterial(&writer, material))
            return 0;
    }
    writer.writeEndElement();
    writer.writeEndDocument();

    registry->loadDefaultMaterials();
    Fuzz::Input again(written);
    Fuzz::require(registry->readMaterials(again), "materials that were written can be read");
    Fuzz::requireSameMaterials(materials, registry->materials());
    return 0;
}
