#include "Core/Operations/ExtractFilm/FilmExtraction.h"

#include "Core/Operations/CellularProcess/CellRuns.h"
#include "Core/Operations/CellularProcess/FrontList.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/CellCount.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

using Model::Automaton::TakenCells;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

std::uint32_t highestBit(FrontWord word)
{
    return FrontWordBits - 1 - static_cast<std::uint32_t>(__builtin_clzll(word));
}

/// The runs of `mask` along z that hold one of `cells`, all of which are in the mask. The reach of
/// each cell doubles at every step.
FrontWord runsAround(FrontWord cells, FrontWord mask)
{
    FrontWord up = cells;
    FrontWord down = cells;
    FrontWord upward = mask;
    FrontWord downward = mask;
    for (std::uint32_t reach = 1; reach < FrontWordBits; reach *= 2) {
        up |= upward & (up << reach);
        down |= downward & (down >> reach);
        upward &= upward << reach;
        downward &= downward >> reach;
    }
    return up | down;
}

/// Finds a body word by word instead of cell by cell. A word whose cells were met waits once,
/// however many neighbours met it, so that the list never outgrows the volume.
class FilmBody final
{
public:
    /// Marks all cells of the film.
    FilmBody(const TotalVolume &volume, const Voxel *cells, std::uint32_t film,
             const StripRun &strips)
        : m_sizeX(volume.sizeX()),
          m_sizeY(volume.sizeY()),
          m_words((volume.sizeZ() + FrontWordBits - 1) / FrontWordBits),
          m_film(index(m_sizeX, 0, 0), 0)
    {
        strips.runPhase([&](std::int32_t start, std::int32_t end, std::uint32_t) {
            const std::size_t endColumn = std::size_t(end) * m_sizeY;
            for (std::size_t column = std::size_t(start) * m_sizeY; column < endColumn; ++column)
                for (std::uint32_t word = 0; word < m_words; ++word)
                    m_film[column * m_words + word] =
                        cellsOf(cells + column * volume.sizeZ(), volume.sizeZ(), word,
                                [film](std::uint32_t material) { return material == film; });
        });
    }

    /// Collects the body of the first cell of the film; false if there is none.
    bool collect()
    {
        const auto first =
            std::find_if(m_film.begin(), m_film.end(), [](FrontWord word) { return word != 0; });
        if (first == m_film.end())
            return false;
        m_body.assign(m_film.size(), 0);
        m_met.assign(m_film.size(), 0);
        m_layers.assign(m_words, 0);
        const auto i = static_cast<std::size_t>(first - m_film.begin());
        const std::size_t column = i / m_words;
        meet(static_cast<std::uint32_t>(column / m_sizeY),
             static_cast<std::uint32_t>(column % m_sizeY), static_cast<std::uint32_t>(i % m_words),
             *first & (~*first + 1));
        while (!m_waiting.empty()) {
            const Place place = m_waiting.back();
            m_waiting.pop_back();
            visit(place.x, place.y, place.word);
        }
        return true;
    }

    std::uint32_t words() const { return m_words; }
    /// The cells of the body in a word.
    FrontWord at(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        return m_body[index(x, y, word)];
    }
    /// Of the body, which has a cell.
    std::uint32_t lowest() const
    {
        std::uint32_t word = 0;
        while (m_layers[word] == 0)
            ++word;
        return word * FrontWordBits + lowestBit(m_layers[word]);
    }
    std::uint32_t highest() const
    {
        std::uint32_t word = m_words - 1;
        while (m_layers[word] == 0)
            --word;
        return word * FrontWordBits + highestBit(m_layers[word]);
    }

private:
    struct Place
    {
        std::uint32_t x;
        std::uint32_t y;
        std::uint32_t word;
    };

    std::size_t index(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        return (std::size_t{x} * m_sizeY + y) * m_words + word;
    }

    /// Cells beside those of the body, whatever they are made of.
    void meet(std::uint32_t x, std::uint32_t y, std::uint32_t word, FrontWord cells)
    {
        const std::size_t i = index(x, y, word);
        cells &= m_film[i] & ~m_body[i];
        if (cells == 0)
            return;
        if (m_met[i] == 0)
            m_waiting.push_back({x, y, word});
        m_met[i] |= cells;
    }

    void visit(std::uint32_t x, std::uint32_t y, std::uint32_t word)
    {
        const std::size_t i = index(x, y, word);
        const FrontWord cells = runsAround(m_met[i], m_film[i]);
        m_met[i] = 0;
        m_body[i] |= cells;
        m_layers[word] |= cells;
        if (word > 0)
            meet(x, y, word - 1, cells << (FrontWordBits - 1));
        if (word + 1 < m_words)
            meet(x, y, word + 1, cells >> (FrontWordBits - 1));
        if (y > 0)
            meet(x, y - 1, word, cells);
        if (y + 1 < m_sizeY)
            meet(x, y + 1, word, cells);
        if (x > 0)
            meet(x - 1, y, word, cells);
        if (x + 1 < m_sizeX)
            meet(x + 1, y, word, cells);
    }

    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_words;
    std::vector<FrontWord> m_film;
    std::vector<FrontWord> m_body;
    /// Cells that wait to be visited; the words that have some are in the list.
    std::vector<FrontWord> m_met;
    std::vector<Place> m_waiting;
    /// The words of all columns together: which layers the body has cells in.
    std::vector<FrontWord> m_layers;
};

/// Calls visit(first, end) for each run of set bits, upward.
template <typename Visitor>
void forEachRunOfBits(FrontWord bits, Visitor &&visit)
{
    while (bits != 0) {
        const std::uint32_t first = lowestBit(bits);
        const FrontWord beyond = ~bits & ~(wordRange(first, first + 1) - 1);
        const std::uint32_t end = beyond == 0 ? FrontWordBits : lowestBit(beyond);
        visit(first, end);
        bits &= ~wordRange(first, end);
    }
}

} // namespace

FilmExtraction::FilmExtraction(TotalVolume *volume, std::uint32_t film, bool invert)
    : m_volume(volume),
      m_film(film),
      m_invert(invert)
{}

bool FilmExtraction::fits() const
{
    const auto cells =
        Model::Automaton::countCells(m_volume->sizeX(), m_volume->sizeY(), m_volume->sizeZ());
    return cells && Model::Automaton::fitIntoMemory(std::uint64_t{*cells} * 2);
}

std::vector<std::uint32_t> FilmExtraction::extract()
{
    const std::uint32_t sizeY = m_volume->sizeY();
    const std::uint32_t sizeZ = m_volume->sizeZ();
    std::vector<std::uint32_t> ids(std::size_t{m_volume->sizeX()} * sizeY * sizeZ, 0);
    if (m_film == 0 || ids.empty())
        return ids;
    const TakenCells voxels(*m_volume);
    const StripRun strips(StripRun::layersOf(*m_volume));
    FilmBody body(*m_volume, voxels.cells(), m_film, strips);
    m_found = body.collect();
    if (!m_found)
        return ids;
    const std::uint32_t lowest = body.lowest();
    const std::uint32_t highest = body.highest();
    strips.runPhase([&](std::int32_t start, std::int32_t end, std::uint32_t) {
        for (auto x = static_cast<std::uint32_t>(start); x < static_cast<std::uint32_t>(end); ++x) {
            for (std::uint32_t y = 0; y < sizeY; ++y) {
                const std::uint32_t row = m_invert ? sizeY - 1 - y : y;
                std::uint32_t *column = ids.data() + (std::size_t{x} * sizeY + row) * sizeZ;
                for (std::uint32_t word = 0; word < body.words(); ++word) {
                    forEachRunOfBits(body.at(x, y, word), [&](std::uint32_t first,
                                                              std::uint32_t past) {
                        // Down to layer 0 in the same move: inverted, the highest cell comes there.
                        const std::uint32_t z = word * FrontWordBits + first;
                        const std::uint32_t length = past - first;
                        const std::uint32_t to = m_invert ? highest - (z + length - 1) : z - lowest;
                        std::fill(column + to, column + to + length, m_film);
                    });
                }
            }
        }
    });
    return ids;
}

} // namespace Core::Operations
