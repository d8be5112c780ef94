#include "FuzzSupport.h"

#include "Core/Operations/Document/DocumentFile.h"
#include "Core/Operations/Document/OpenDocumentOperation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Model/Materials/MaterialFactory.h"
#include "Model/Persistence/MaterialArchiver.h"
#include "Model/Persistence/StartElement.h"

#include <QLatin1String>
#include <QXmlStreamReader>

#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

using Core::Operations::OpenDocumentOperation;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Model::Persistence::MaterialArchiver;
using Model::Persistence::moveToNextStartElement;

namespace {

constexpr std::uint64_t MostCells = std::uint64_t{1} << 20;

/// A volume as far as a document keeps it: numbers that are no integers have six digits.
struct SavedVolume
{
    std::uint32_t sizes[3];
    QString numbers[6];
    std::vector<std::uint32_t> ids;
};

Core::Workspace &workspace()
{
    // One for the whole run, as each makes two files.
    static Core::Workspace s_workspace;
    return s_workspace;
}

/// The cells that a volume of these attributes has; more than `MostCells` in place of numbers that
/// 64 bits do not hold.
std::uint64_t declaredCells(const QXmlStreamAttributes &attributes)
{
    const std::uint64_t x = attributes.value(QLatin1String("size-x")).toUInt(nullptr, 10);
    const std::uint64_t y = attributes.value(QLatin1String("size-y")).toUInt(nullptr, 10);
    const std::uint64_t z = attributes.value(QLatin1String("size-z")).toUInt(nullptr, 10);
    // Two sizes of 32 bits never exceed 64.
    const std::uint64_t layer = x * y;
    return z != 0 && layer > MostCells / z ? MostCells + 1 : layer * z;
}

/// Keeps declared sizes within 2^20 cells, all volumes together: the reader takes the memory that a
/// document asks for, however short it is, and that limit is the machine's and no error. Whatever
/// element has the sizes counts; the reader finds objects at any depth.
class CellCount final
{
public:
    bool stillFits(const QXmlStreamAttributes &attributes)
    {
        m_cells += declaredCells(attributes);
        return m_cells <= MostCells;
    }

private:
    std::uint64_t m_cells = 0;
};

/// Finds a material that differs from the local one of its id, or from another one in the document,
/// which would be the local one by then. Reading it waits forever in
/// MaterialFactory::newMaterialId, which is settled behaviour and would only be found again and
/// again.
///
/// All that had the id so far are kept, also those that the reader would pass over because an
/// object takes their element: colours are compared with a tolerance, so two materials that are the
/// same as a third need not be the same.
class Collisions final
{
public:
    bool isFree(const Material &material)
    {
        std::vector<Material> &known = m_known[material.id()];
        if (known.empty()) {
            const Material local = MaterialFactory::instance()->material(material.id());
            if (local.id() != 0)
                known.push_back(local);
        }
        const bool free = std::all_of(known.begin(), known.end(),
                                      [&](const Material &other) { return other == material; });
        known.push_back(material);
        return free;
    }

private:
    std::map<std::uint32_t, std::vector<Material>> m_known;
};

/// False for a document that is passed over. Looks at every start element that reading it could
/// come to, through the same kind of reader, so that entities and default attributes count too.
bool isToBeRead(Fuzz::Input &input)
{
    QXmlStreamReader reader(&input);
    CellCount cells;
    Collisions collisions;
    while (moveToNextStartElement(reader)) {
        if (!cells.stillFits(reader.attributes()))
            return false;
        if (reader.name() != QLatin1String("Material"))
            continue;
        bool ok = false;
        const Material material = MaterialArchiver::loadMaterial(&reader, &ok);
        if (ok && !collisions.isFree(material))
            return false;
    }
    return true;
}

/// What outlives a document is put back, so that a run depends on its input only; a material of the
/// document before could collide.
void startAnew()
{
    workspace().document().reset();
    MaterialFactory::instance()->loadDefaultMaterials();
    OpenDocumentOperation::materialMap().clear();
}

QString numberText(double value)
{
    return QString::number(value, 'g', 6);
}

std::vector<SavedVolume> savedVolumes()
{
    std::vector<SavedVolume> saved;
    for (const auto &object : workspace().document().objects()) {
        const auto volume = boost::dynamic_pointer_cast<TotalVolume>(object);
        Fuzz::require(volume != nullptr, "a document holds volumes only");
        const Util::Vector3D place = volume->position();
        SavedVolume copy{{volume->sizeX(), volume->sizeY(), volume->sizeZ()},
                         {numberText(static_cast<double>(volume->cellSizeX())),
                          numberText(static_cast<double>(volume->cellSizeY())),
                          numberText(static_cast<double>(volume->cellSizeZ())),
                          numberText(place[0]), numberText(place[1]), numberText(place[2])},
                         {}};
        const std::size_t count = std::size_t{copy.sizes[0]} * copy.sizes[1] * copy.sizes[2];
        const Voxel *cells = volume->voxels();
        std::transform(cells, cells + count, std::back_inserter(copy.ids),
                       [](const Voxel &cell) { return cell.material(); });
        volume->releaseVoxels();
        saved.push_back(std::move(copy));
    }
    return saved;
}

void requireSameVolumes(const std::vector<SavedVolume> &before,
                        const std::vector<SavedVolume> &after)
{
    Fuzz::require(before.size() == after.size(), "as many volumes come back as were written");
    for (std::size_t i = 0; i < before.size(); ++i) {
        Fuzz::require(std::equal(before[i].sizes, before[i].sizes + 3, after[i].sizes),
                      "a volume keeps its sizes");
        Fuzz::require(std::equal(before[i].numbers, before[i].numbers + 6, after[i].numbers),
                      "a volume keeps its cell sizes and its place");
        Fuzz::require(before[i].ids == after[i].ids, "a volume keeps its cells");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    startAnew();
    Fuzz::Input input(data, size);
    if (!isToBeRead(input))
        return 0;
    input.seek(0);
    if (!Core::Operations::readDocument(input, workspace())) {
        Fuzz::require(workspace().document().objects().empty(), "what is no document adds nothing");
        return 0;
    }

    const std::vector<Material> materials = MaterialFactory::instance()->materials();
    const std::vector<SavedVolume> volumes = savedVolumes();
    QBuffer written;
    written.open(QIODevice::WriteOnly);
    Fuzz::require(Core::Operations::writeDocument(written, workspace()), "a document is written");

    startAnew();
    Fuzz::Input again(written.data());
    Fuzz::require(Core::Operations::readDocument(again, workspace()),
                  "a document that was written can be read");
    requireSameVolumes(volumes, savedVolumes());
    if (std::all_of(materials.begin(), materials.end(),
                    [](const Material &material) { return Fuzz::canBeWritten(material.name()); }))
        Fuzz::requireSameMaterials(materials, MaterialFactory::instance()->materials());
    // Volumes are not kept until the next input: it may come after a search for leaks.
    startAnew();
    return 0;
}
