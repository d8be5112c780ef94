#include "Model/ModelExtraction/CantileverStructure.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Model::ModelExtraction {

namespace {

constexpr double cellVolume = 2.00129819772e-17;
/// In 3 E I / L^3.
constexpr double StiffnessFactor = 3.0;
/// In I = w t^3 / 12.
constexpr double SectionFactor = 12.0;

constexpr std::uint32_t TableSize = 16;
constexpr double Densities[TableSize] = {0,    2329, 2700, 8940, 8908, 2648, 2810, 1000,
                                         1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000};
constexpr double Modulus = 70000000000.0;

std::uint32_t materialOf(const RectangularCuboidEnvelope &beam)
{
    return static_cast<std::uint32_t>(beam.material());
}

double densityOf(const RectangularCuboidEnvelope &beam)
{
    return materialOf(beam) < TableSize ? Densities[materialOf(beam)] : 0.0;
}

double modulusOf(const RectangularCuboidEnvelope &beam)
{
    return materialOf(beam) > 0 && materialOf(beam) < TableSize ? Modulus : 0.0;
}

/// A product of numbers of cells in 32 bits.
template <typename... Lengths>
double product(Lengths... lengths)
{
    return static_cast<std::int32_t>((static_cast<std::uint32_t>(lengths) * ...));
}

double capacitanceOf(const RectangularCuboidEnvelope &beam)
{
    // 33 / 140 of a cantilever's mass moves with its tip.
    return product(beam.height(), beam.depth(), beam.width()) * cellVolume * densityOf(beam) *
           33.0 / 140.0;
}

double inductanceOf(const RectangularCuboidEnvelope &beam)
{
    const auto [width, length] = std::minmax({beam.width(), beam.depth()});
    const std::int32_t thickness = beam.height();
    const double section = product(thickness, thickness, thickness, width) / SectionFactor;
    const double stiffness =
        modulusOf(beam) * StiffnessFactor * section / product(length, length, length);
    return 1.0 / stiffness;
}

QString lineOf(char element, std::size_t node, double value)
{
    return QStringLiteral("%1%2 %2 0 %3 \n")
        .arg(QLatin1Char(element))
        .arg(node)
        .arg(QString::number(value, 'g', 6));
}

} // namespace

CantileverStructure::CantileverStructure(EnvelopeList envelopes) : m_envelopes(std::move(envelopes))
{}

QString CantileverStructure::netlist() const
{
    QString text = QStringLiteral("Model extracted by Lithara\n");
    std::size_t node = 0;
    for (const auto &beam : m_envelopes) {
        ++node;
        text += lineOf('c', node, capacitanceOf(*beam));
        text += lineOf('l', node, inductanceOf(*beam));
    }
    return text + QStringLiteral(".end \n");
}

std::vector<std::uint32_t> CantileverStructure::unknownMaterials() const
{
    std::set<std::uint32_t> unknown;
    for (const auto &beam : m_envelopes)
        if (materialOf(*beam) >= TableSize)
            unknown.insert(materialOf(*beam));
    return {unknown.begin(), unknown.end()};
}

} // namespace Model::ModelExtraction
