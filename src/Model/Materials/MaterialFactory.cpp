#include "Model/Materials/MaterialFactory.h"

#include "Model/Persistence/MaterialArchiver.h"
#include "Model/Persistence/RegistryFile.h"
#include "Util/QtRandom.h"

#include <QLatin1String>
#include <QMutexLocker>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace Model::Materials {

namespace {

struct BuiltInMaterial
{
    std::uint32_t id;
    const char *name;
    float density;      // kg/m^3
    float youngModulus; // Pa
    float poissonRatio;
    float color[4];
};

// There is no id 2 on purpose, and "Thermal Si02" is spelt with the digit zero: users' files and
// documents have it so.
constexpr BuiltInMaterial builtInMaterials[] = {
    {1, "Si", 2329, 188e9F, 0.28F, {0.5F, 0.5F, 0.5F, 1}},
    {3, "Thermal Si02", 2200, 70e9F, 0.17F, {0.5F, 0.5F, 1, 1}},
    {4, "Al (bulk)", 2700, 70e9F, 0.14F, {0.7F, 0.7F, 0.7F, 1}},
    {5, "Cu (bulk)", 8960, 128e9F, 0.36F, {1, 0.8F, 0.3F, 1}},
    {6, "Cr (bulk)", 7190, 279e9F, 0.21F, {0.8F, 0.8F, 0.8F, 1}},
    {7, "Ni (bulk)", 8908, 200e9F, 0.31F, {0.8F, 0.9F, 0.8F, 1}},
    {8, "Pt (bulk)", 21450, 168e9F, 0.38F, {0.9F, 0.9F, 0.8F, 1}},
    {9, "Au (bulk)", 19300, 79e9F, 0.44F, {0.5F, 1, 0.5F, 1}},
    {10, "Ti (bulk)", 4506, 116e9F, 0.32F, {0.3F, 0.3F, 0.3F, 1}},
    {11, "Photoresist +", 1000, 1e9F, 0.4F, {1, 0.5F, 0.5F, 1}},
    {12, "Photoresist -", 1000, 1e9F, 0.4F, {1, 0.3F, 1, 1}},
    {13, "PDMS", 1000, 1e9F, 0.4F, {1, 1, 1, 1}},
    {14, "N-doped Si (100)", 2329, 188e9F, 0.28F, {1, 1, 0.67F, 1}},
    {15, "P-doped Si (100)", 2329, 188e9F, 0.28F, {0.67F, 0.67F, 1, 1}},
    {16, "Poly-Si", 2329, 188e9F, 0.28F, {0.3F, 0.5F, 0.4F, 1}},
};

constexpr std::uint32_t firstNewId = 2000;

Persistence::RegistryFile registryFile()
{
    return Persistence::RegistryFile(QLatin1String("materials.xml"), QLatin1String("Materials"));
}

} // namespace

// The order matters: making the instance fills the map under the mutex.
std::map<std::uint32_t, Material> MaterialFactory::s_materials;
QMutex MaterialFactory::s_mutex;
boost::shared_ptr<MaterialFactory> MaterialFactory::s_instance(new MaterialFactory);

MaterialFactory::MaterialFactory()
{
    if (!loadMaterials()) {
        loadDefaultMaterials();
        saveMaterials();
    }
}

boost::shared_ptr<MaterialFactory> MaterialFactory::instance()
{
    return s_instance;
}

std::vector<Material> MaterialFactory::materials() const
{
    const QMutexLocker locker(&s_mutex);
    std::vector<Material> result;
    result.reserve(s_materials.size());
    for (const auto &entry : s_materials) {
        result.push_back(entry.second);
    }
    return result;
}

Material MaterialFactory::material(std::uint32_t id) const
{
    const QMutexLocker locker(&s_mutex);
    const auto found = s_materials.find(id);
    return found == s_materials.end() ? Material() : found->second;
}

bool MaterialFactory::updateMaterial(const Material &material)
{
    const QMutexLocker locker(&s_mutex);
    if (material.id() == 0) {
        return false;
    }
    s_materials[material.id()] = material;
    return true;
}

std::uint32_t MaterialFactory::newMaterialId()
{
    const QMutexLocker locker(&s_mutex);
    std::uint32_t id = 0;
    // The lookup locks again and so blocks this thread for good, and its test accepts only ids that
    // are taken. Both stay on purpose: this is the settled behaviour for documents with a material
    // that collides with a local one.
    do {
        id = firstNewId + static_cast<std::uint32_t>(Util::nextRandom() * 30767.0 / 32768.0);
    } while (material(id).id() == 0 && id >= firstNewId);
    return id;
}

bool MaterialFactory::loadMaterials()
{
    const QMutexLocker locker(&s_mutex);
    return registryFile().load(enterElement);
}

bool MaterialFactory::readMaterials(QIODevice &device)
{
    const QMutexLocker locker(&s_mutex);
    return registryFile().read(device, enterElement);
}

void MaterialFactory::loadDefaultMaterials()
{
    const QMutexLocker locker(&s_mutex);
    s_materials.clear();
    for (const BuiltInMaterial &row : builtInMaterials) {
        s_materials[row.id] = Material(row.id, QString::fromLatin1(row.name), row.density,
                                       row.youngModulus, row.poissonRatio, row.color);
    }
}

void MaterialFactory::saveMaterials()
{
    const QMutexLocker locker(&s_mutex);
    registryFile().save([](QXmlStreamWriter &writer) {
        for (const auto &entry : s_materials) {
            Persistence::MaterialArchiver::saveMaterial(&writer, entry.second);
        }
    });
}

void MaterialFactory::enterElement(QXmlStreamReader &reader)
{
    bool ok = false;
    const Material material = Persistence::MaterialArchiver::loadMaterial(&reader, &ok);
    if (ok) {
        s_materials[material.id()] = material;
    }
}

} // namespace Model::Materials
