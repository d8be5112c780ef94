#pragma once

#include <QThreadPool>

#include <cstdint>
#include <vector>

namespace Benchmarks {

/// The sizes that every subject is measured at: the default volume, one of six million cells and
/// one of 26 million.
struct Size
{
    std::uint32_t x;
    std::uint32_t y;
    std::uint32_t z;

    std::size_t cells() const { return std::size_t{x} * y * z; }
};

constexpr Size Small{100, 100, 80};
constexpr Size Medium{200, 200, 160};
constexpr Size Large{400, 400, 160};

/// The size whose x count is the argument of a benchmark.
inline Size sizeOf(std::int64_t x)
{
    return x == Small.x ? Small : x == Medium.x ? Medium : Large;
}

/// Silicon in the lowest 3/8 of the volume, as in the default substrate, and void above.
inline std::vector<std::uint32_t> waferMaterials(const Size &size)
{
    std::vector<std::uint32_t> ids(size.cells(), 0);
    const std::uint32_t filled = size.z * 3 / 8;
    for (std::size_t i = 0; i < ids.size(); ++i)
        if (i % size.z < filled)
            ids[i] = 1;
    return ids;
}

/// The same with a trench along y cut into the middle of the silicon, down to half its height and a
/// fifth of the volume wide.
inline std::vector<std::uint32_t> trenchMaterials(const Size &size)
{
    std::vector<std::uint32_t> ids = waferMaterials(size);
    const std::uint32_t filled = size.z * 3 / 8;
    for (std::uint32_t x = size.x * 2 / 5; x < size.x * 3 / 5; ++x)
        for (std::uint32_t y = 0; y < size.y; ++y)
            for (std::uint32_t z = filled / 2; z < filled; ++z)
                ids[(std::size_t{x} * size.y + y) * size.z + z] = 0;
    return ids;
}

/// Sets the thread count of the global pool for one benchmark, and puts it back.
class PoolThreads final
{
public:
    explicit PoolThreads(int threads) : m_before(QThreadPool::globalInstance()->maxThreadCount())
    {
        QThreadPool::globalInstance()->setMaxThreadCount(threads);
    }
    ~PoolThreads() { QThreadPool::globalInstance()->setMaxThreadCount(m_before); }
    PoolThreads(const PoolThreads &) = delete;
    PoolThreads &operator=(const PoolThreads &) = delete;

private:
    int m_before;
};

} // namespace Benchmarks
