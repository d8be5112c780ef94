#include "DistanceTransform.h"

#include <algorithm>
#include <cstddef>

namespace Benchmarks {

namespace {

constexpr float Far = 1e12f;

/// One line of samples, `stride` apart, replaced by its transform.
class LineTransform
{
public:
    explicit LineTransform(std::uint32_t longest)
        : m_samples(longest),
          m_vertices(longest),
          m_borders(longest + 1)
    {}

    void run(float *line, std::uint32_t count, std::size_t stride)
    {
        for (std::uint32_t i = 0; i < count; ++i)
            m_samples[i] = line[i * stride];
        std::uint32_t last = 0;
        m_vertices[0] = 0;
        m_borders[0] = -Far;
        m_borders[1] = Far;
        for (std::uint32_t q = 1; q < count; ++q) {
            float border = crossing(q, m_vertices[last]);
            while (border <= m_borders[last]) {
                --last;
                border = crossing(q, m_vertices[last]);
            }
            ++last;
            m_vertices[last] = q;
            m_borders[last] = border;
            m_borders[last + 1] = Far;
        }
        std::uint32_t k = 0;
        for (std::uint32_t q = 0; q < count; ++q) {
            const float at = static_cast<float>(q);
            while (m_borders[k + 1] < at)
                ++k;
            const float d = at - static_cast<float>(m_vertices[k]);
            line[q * stride] = d * d + m_samples[m_vertices[k]];
        }
    }

private:
    float crossing(std::uint32_t q, std::uint32_t v) const
    {
        const float fq = static_cast<float>(q);
        const float fv = static_cast<float>(v);
        return ((m_samples[q] + fq * fq) - (m_samples[v] + fv * fv)) / (2.0f * (fq - fv));
    }

    std::vector<float> m_samples;
    std::vector<std::uint32_t> m_vertices;
    std::vector<float> m_borders;
};

} // namespace

std::vector<float> squaredDistances(const std::vector<std::uint8_t> &sources, std::uint32_t sizeX,
                                    std::uint32_t sizeY, std::uint32_t sizeZ)
{
    std::vector<float> distances(sources.size());
    for (std::size_t i = 0; i < sources.size(); ++i)
        distances[i] = sources[i] ? 0.0f : Far;
    LineTransform line(std::max({sizeX, sizeY, sizeZ}));
    const std::size_t strideY = sizeZ;
    const std::size_t strideX = strideY * sizeY;
    for (std::uint32_t x = 0; x < sizeX; ++x)
        for (std::uint32_t y = 0; y < sizeY; ++y)
            line.run(&distances[x * strideX + y * strideY], sizeZ, 1);
    for (std::uint32_t x = 0; x < sizeX; ++x)
        for (std::uint32_t z = 0; z < sizeZ; ++z)
            line.run(&distances[x * strideX + z], sizeY, strideY);
    for (std::uint32_t y = 0; y < sizeY; ++y)
        for (std::uint32_t z = 0; z < sizeZ; ++z)
            line.run(&distances[y * strideY + z], sizeX, strideX);
    return distances;
}

} // namespace Benchmarks
