#pragma once

#include "Model/Geometry/QuadFace.h"
#include "Model/Materials/Material.h"

#include <array>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Model::Automaton {

/// What the pictures need to know of each material, ready for loops over cells. Ids that no
/// registry entry matches look like the empty material, so that a volume with foreign ids can be
/// drawn.
class MaterialPalette final
{
public:
    using Color = std::array<float, 4>;

    /// How a cell of the material behaves in the picture. Void has none of these.
    enum Trait : std::uint8_t
    {
        Filled = 1,
        /// Drawn as opaque: alpha at least 0.997.
        Opaque = 2,
        /// Hides the opaque faces behind it: alpha above 0.999. The gap between the two limits is
        /// deliberate.
        Hides = 4,
        /// Shows no faces inside a body of its own material: alpha above 0.1.
        MergesWithItself = 8
    };

    /// Takes the materials of the registry. Before the first call every id looks like void.
    void reload(const std::vector<Materials::Material> &materials);

    const Color &color(std::uint32_t material) const { return entry(material).color; }
    std::uint8_t traits(std::uint32_t material) const { return entry(material).traits; }

    /// What selection does to a colour: each of red, green and blue falls by 0.7 if it is at least
    /// 0.7, and rises by 0.3 otherwise. Alpha stays.
    static void highlight(float (&color)[4]);
    /// Gives both colours of a face the present one of its material, or highlights the colours that
    /// it has.
    void recolor(Geometry::QuadFace &face, std::uint32_t material, bool isSelected) const;

private:
    struct Entry
    {
        Color color;
        std::uint8_t traits;
    };

    /// Ids from here on are rare (only a document can bring them) and live in a map.
    static constexpr std::uint32_t DenseIds = 65536;

    const Entry &entry(std::uint32_t material) const
    {
        return material < m_dense.size() ? m_dense[material] : sparseEntry(material);
    }
    const Entry &sparseEntry(std::uint32_t material) const;
    static Entry entryOf(const Materials::Material &material);

    std::vector<Entry> m_dense;
    std::unordered_map<std::uint32_t, Entry> m_sparse;
    Entry m_unknown{};
};

} // namespace Model::Automaton
