#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Core::Operations {

/// A word of cells that follow each other along z in one column, a bit a cell.
using FrontWord = std::uint64_t;
constexpr std::uint32_t FrontWordBits = 64;

inline std::uint32_t lowestBit(FrontWord word)
{
    return static_cast<std::uint32_t>(__builtin_ctzll(word));
}

/// A cell of a plane of constant x.
struct PlaneCell
{
    std::uint32_t y;
    std::uint32_t z;
};

/// A list of cells in a range of x, kept as bits along z: always ascending, free of duplicates, and
/// never sorted. Marks for the words and the planes that hold a cell let walking and clearing pass
/// over the rest: what a step costs follows its front.
class FrontList final
{
public:
    FrontList() = default;
    /// An empty list over the planes [firstX, firstX + planes) of a volume.
    FrontList(std::uint32_t firstX, std::uint32_t planes, std::uint32_t sizeY, std::uint32_t sizeZ);

    std::uint32_t firstX() const { return m_firstX; }
    std::uint32_t endX() const { return m_firstX + m_planes; }

    /// Adds the cells whose bits are set to the column (x, y): bit b of word w is z = 64 w + b.
    void add(std::uint32_t x, std::uint32_t y, std::uint32_t word, FrontWord bits)
    {
        if (bits == 0)
            return;
        const std::uint32_t plane = x - m_firstX;
        const std::size_t inPlane = std::size_t{y} * m_words + word;
        m_holdsCells[plane] = 1;
        m_bits[plane * m_wordsInPlane + inPlane] |= bits;
        m_marks[plane * m_marksInPlane + inPlane / FrontWordBits] |= FrontWord{1}
                                                                     << inPlane % FrontWordBits;
    }

    /// Calls visit(y, word, bits) for each word of the plane x that holds a cell, ascending.
    template <typename Visitor>
    void forEachWord(std::uint32_t x, Visitor &&visit) const;
    /// Appends the cells of the plane x to `cells`, y first, then z, each ascending.
    void appendCells(std::uint32_t x, std::vector<PlaneCell> &cells) const;
    /// Moves all cells of `other`, which lie in this list's range, over to this list.
    void take(FrontList &other);
    void clear();

private:
    std::uint32_t m_firstX = 0;
    std::uint32_t m_planes = 0;
    std::uint32_t m_words = 0;
    std::size_t m_wordsInPlane = 0;
    std::size_t m_marksInPlane = 0;
    std::vector<FrontWord> m_bits;
    std::vector<FrontWord> m_marks;
    /// A byte a plane.
    std::vector<std::uint8_t> m_holdsCells;
};

template <typename Visitor>
void FrontList::forEachWord(std::uint32_t x, Visitor &&visit) const
{
    const std::uint32_t plane = x - m_firstX;
    if (!m_holdsCells[plane])
        return;
    const FrontWord *bits = m_bits.data() + plane * m_wordsInPlane;
    const FrontWord *marks = m_marks.data() + plane * m_marksInPlane;
    for (std::size_t i = 0; i < m_marksInPlane; ++i) {
        for (FrontWord mark = marks[i]; mark != 0; mark &= mark - 1) {
            const auto inPlane = static_cast<std::uint32_t>(i * FrontWordBits + lowestBit(mark));
            visit(inPlane / m_words, inPlane % m_words, bits[inPlane]);
        }
    }
}

} // namespace Core::Operations
