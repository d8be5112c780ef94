#include "Model/Automaton/MaterialPalette.h"

#include <algorithm>

namespace Model::Automaton {

void MaterialPalette::reload(const std::vector<Materials::Material> &materials)
{
    m_unknown = entryOf(Materials::Material());
    std::uint32_t highest = 0;
    for (const Materials::Material &material : materials)
        if (material.id() < DenseIds)
            highest = std::max(highest, material.id());
    m_dense.assign(highest + 1, m_unknown);
    m_sparse.clear();
    for (const Materials::Material &material : materials) {
        if (material.id() < DenseIds)
            m_dense[material.id()] = entryOf(material);
        else
            m_sparse[material.id()] = entryOf(material);
    }
    m_dense[0].traits = 0;
}

void MaterialPalette::highlight(float (&color)[4])
{
    for (unsigned i = 0; i < 3; ++i) {
        const double channel = static_cast<double>(color[i]);
        color[i] = static_cast<float>(channel >= 0.7 ? channel - 0.7 : channel + 0.3);
    }
}

void MaterialPalette::recolor(Geometry::QuadFace &face, std::uint32_t material,
                              bool isSelected) const
{
    for (float(*target)[4] : {&face.color, &face.edgeColor}) {
        if (isSelected)
            highlight(*target);
        else
            std::copy_n(color(material).begin(), 4, *target);
    }
}

const MaterialPalette::Entry &MaterialPalette::sparseEntry(std::uint32_t material) const
{
    const auto found = m_sparse.find(material);
    return found == m_sparse.end() ? m_unknown : found->second;
}

MaterialPalette::Entry MaterialPalette::entryOf(const Materials::Material &material)
{
    const float *color = material.color();
    const float alpha = color[3];
    std::uint8_t traits = Filled;
    // Written so that an alpha that is not a number counts as opaque, like "not below 0.997".
    if (!(alpha < 0.997f))
        traits |= Opaque;
    if (alpha > 0.999f)
        traits |= Hides;
    if (alpha > 0.1f)
        traits |= MergesWithItself;
    return {{color[0], color[1], color[2], alpha}, traits};
}

} // namespace Model::Automaton
