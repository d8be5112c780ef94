#pragma once

#include <boost/function.hpp>

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Cuts a volume into strips, ranges [start, end) of x, one a thread of the global pool, and runs
/// phases over them. A strip is one contiguous stretch of the cell arrays. Strips are cut once: the
/// thread count is read at construction.
class StripRun final
{
public:
    /// Gets start, end and the number of the strip.
    using StripFunction = boost::function<void(std::int32_t, std::int32_t, std::uint32_t)>;

    /// The layers of x that a process cuts into strips: none if the volume has no cells, however
    /// large it is along x.
    static std::uint32_t layersOf(const Model::Automaton::TotalVolume &volume);

    /// Below `narrowest` layers a thread, the whole volume is one strip.
    explicit StripRun(std::uint32_t sizeX, std::uint32_t narrowest = 2);

    /// At least 1.
    std::uint32_t threads() const { return m_threads; }
    /// Layers of x in every strip but the last, were there several.
    std::uint32_t stripWidth() const { return m_stripWidth; }
    /// The whole volume is strip 0, on the calling thread.
    bool isSingle() const { return m_stripWidth < m_narrowest; }
    std::uint32_t strips() const { return isSingle() ? 1 : m_threads; }
    std::int32_t start(std::uint32_t strip) const;
    /// The last strip takes the remainder.
    std::int32_t end(std::uint32_t strip) const;

    /// Runs the function once for each strip, on pool threads unless there is a single one, and
    /// waits for all: the only barrier that phases have.
    void runPhase(const StripFunction &function) const;

private:
    std::uint32_t m_sizeX;
    std::uint32_t m_threads;
    std::uint32_t m_stripWidth;
    std::uint32_t m_narrowest;
};

} // namespace Core::Operations
