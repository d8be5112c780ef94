#pragma once

#include "Model/Materials/Material.h"

#include <QMutex>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <vector>

class QIODevice;
class QXmlStreamReader;

namespace Model::Materials {

/// The registry of all known materials, one for the whole program, built before main() runs. It
/// starts with the user's file `materials.xml`; where that is missing, unreadable or malformed,
/// with the built-in table, which it then writes there. Later edits stay in memory.
///
/// All functions may be called from any thread. Each holds one non-recursive lock for its whole
/// length and hands out copies, so none may call another one that locks.
class MaterialFactory final
{
public:
    MaterialFactory(const MaterialFactory &) = delete;
    MaterialFactory &operator=(const MaterialFactory &) = delete;

    /// The one registry.
    static boost::shared_ptr<MaterialFactory> instance();

    /// All materials in ascending id order.
    std::vector<Material> materials() const;
    /// The material with this id; the empty material (id 0) if there is none.
    Material material(std::uint32_t id) const;
    /// Inserts the material or replaces the one with its id. False, with nothing changed, for id 0.
    bool updateMaterial(const Material &material);
    /// Never returns: it waits for the lock that it holds itself.
    std::uint32_t newMaterialId();

    /// Enters the materials of the user's `materials.xml`. False if the file is missing, cannot be
    /// opened, has another root element or is malformed; what stood before the error is entered.
    bool loadMaterials();
    /// As `loadMaterials`, from a device that is open for reading.
    bool readMaterials(QIODevice &device);
    /// Replaces everything by the built-in table.
    void loadDefaultMaterials();
    /// Writes all materials to the user's `materials.xml`; does nothing if that cannot be opened.
    void saveMaterials();

private:
    MaterialFactory();

    /// Enters the material of the reader's element, if it is one. Called under the lock.
    static void enterElement(QXmlStreamReader &reader);

    static std::map<std::uint32_t, Material> s_materials;
    static QMutex s_mutex;
    static boost::shared_ptr<MaterialFactory> s_instance;
};

} // namespace Model::Materials
