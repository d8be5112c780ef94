#pragma once

#include <QString>

#include <array>
#include <cstdint>

namespace Model::Materials {

/// What a cell of the cell volume is made of; a value, copied everywhere.
class Material final
{
public:
    /// The empty material: id 0, named "Empty", all constants 0, opaque grey.
    Material() = default;

    /// `color` points to red, green, blue and alpha, each 0 to 1 inclusive; null gives opaque grey.
    Material(std::uint32_t id, const QString &name, float density, float youngModulus,
             float poissonRatio, const float *color);

    /// Key in the registry; 0 means no material.
    std::uint32_t id() const { return m_id; }
    const QString &name() const { return m_name; }
    /// Kilograms per cubic metre in the built-in table.
    float density() const { return m_density; }
    /// Pascals in the built-in table.
    float youngModulus() const { return m_youngModulus; }
    /// Dimensionless.
    float poissonRatio() const { return m_poissonRatio; }
    /// Address of four floats, red, green, blue and alpha, each 0 to 1 inclusive. They belong to
    /// this material.
    const float *color() const { return m_color.data(); }

    void setId(std::uint32_t id) { m_id = id; }
    void setName(const QString &name) { m_name = name; }
    void setDensity(float density) { m_density = density; }
    void setPoissonRatio(float poissonRatio) { m_poissonRatio = poissonRatio; }
    void setYoungModulus(float youngModulus) { m_youngModulus = youngModulus; }
    /// Copies four floats in the order of `color`; null gives opaque grey.
    void setColor(const float *color);

    /// True if ids and names are the same and no colour channel differs by more than 1/256.
    /// Density, Young modulus and Poisson ratio are left out on purpose: materials that differ only
    /// in mechanical constants count as the same material.
    bool operator==(const Material &other) const;
    bool operator!=(const Material &other) const { return !(*this == other); }

private:
    static constexpr std::array<float, 4> s_defaultColor{0.5F, 0.5F, 0.5F, 1.0F};

    std::uint32_t m_id = 0;
    QString m_name = QStringLiteral("Empty");
    float m_density = 0.0F;
    float m_youngModulus = 0.0F;
    float m_poissonRatio = 0.0F;
    std::array<float, 4> m_color = s_defaultColor;
};

} // namespace Model::Materials
