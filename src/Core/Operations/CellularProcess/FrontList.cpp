#include "Core/Operations/CellularProcess/FrontList.h"

namespace Core::Operations {

FrontList::FrontList(std::uint32_t firstX, std::uint32_t planes, std::uint32_t sizeY,
                     std::uint32_t sizeZ)
    : m_firstX(firstX),
      m_planes(planes),
      m_words((sizeZ + FrontWordBits - 1) / FrontWordBits),
      m_wordsInPlane(std::size_t{sizeY} * m_words),
      m_marksInPlane((m_wordsInPlane + FrontWordBits - 1) / FrontWordBits),
      m_bits(m_wordsInPlane * planes, 0),
      m_marks(m_marksInPlane * planes, 0),
      m_holdsCells(planes, 0)
{}

void FrontList::appendCells(std::uint32_t x, std::vector<PlaneCell> &cells) const
{
    forEachWord(x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) {
        for (; bits != 0; bits &= bits - 1)
            cells.push_back({y, word * FrontWordBits + lowestBit(bits)});
    });
}

void FrontList::take(FrontList &other)
{
    for (std::uint32_t x = other.firstX(); x != other.endX(); ++x)
        other.forEachWord(
            x, [&](std::uint32_t y, std::uint32_t word, FrontWord bits) { add(x, y, word, bits); });
    other.clear();
}

void FrontList::clear()
{
    for (std::uint32_t plane = 0; plane < m_planes; ++plane) {
        if (!m_holdsCells[plane])
            continue;
        m_holdsCells[plane] = 0;
        FrontWord *bits = m_bits.data() + plane * m_wordsInPlane;
        FrontWord *marks = m_marks.data() + plane * m_marksInPlane;
        for (std::size_t i = 0; i < m_marksInPlane; ++i) {
            for (FrontWord mark = marks[i]; mark != 0; mark &= mark - 1)
                bits[i * FrontWordBits + lowestBit(mark)] = 0;
            marks[i] = 0;
        }
    }
}

} // namespace Core::Operations
