#pragma once

#include "Core/Operations/CellularProcess/FrontList.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Core::Operations {

/// A bit for each cell of a volume, in words along z. A strip writes the words of its own x range;
/// those of the layers at its border are also read by its neighbours, from either side of a write.
class CellBits final
{
public:
    /// All clear. Sizes in cells.
    CellBits(std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ)
        : m_sizeX(sizeX),
          m_sizeY(sizeY),
          m_words((sizeZ + FrontWordBits - 1) / FrontWordBits),
          m_bits(index(sizeX, 0, 0), 0)
    {}

    FrontWord at(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        return __atomic_load_n(&m_bits[index(x, y, word)], __ATOMIC_RELAXED);
    }
    void set(std::uint32_t x, std::uint32_t y, std::uint32_t word, FrontWord bits)
    {
        __atomic_store_n(&m_bits[index(x, y, word)], bits, __ATOMIC_RELAXED);
    }

    /// The cells of the word that have a neighbour across a face whose bit is set.
    FrontWord touched(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        const FrontWord own = at(x, y, word);
        FrontWord result = own << 1 | own >> 1;
        if (word > 0)
            result |= at(x, y, word - 1) >> (FrontWordBits - 1);
        if (word + 1 < m_words)
            result |= at(x, y, word + 1) << (FrontWordBits - 1);
        if (y > 0)
            result |= at(x, y - 1, word);
        if (y + 1 < m_sizeY)
            result |= at(x, y + 1, word);
        if (x > 0)
            result |= at(x - 1, y, word);
        if (x + 1 < m_sizeX)
            result |= at(x + 1, y, word);
        return result;
    }

private:
    std::size_t index(std::uint32_t x, std::uint32_t y, std::uint32_t word) const
    {
        return (std::size_t{x} * m_sizeY + y) * m_words + word;
    }

    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_words;
    std::vector<FrontWord> m_bits;
};

} // namespace Core::Operations
