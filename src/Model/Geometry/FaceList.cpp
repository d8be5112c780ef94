#include "Model/Geometry/FaceList.h"

#include <iterator>
#include <utility>

namespace Model::Geometry {

void FaceList::splice(FaceList &other)
{
    m_blocks.insert(m_blocks.end(), std::make_move_iterator(other.m_blocks.begin()),
                    std::make_move_iterator(other.m_blocks.end()));
    m_spare.insert(m_spare.end(), std::make_move_iterator(other.m_spare.begin()),
                   std::make_move_iterator(other.m_spare.end()));
    m_size += other.m_size;
    other.m_blocks.clear();
    other.m_spare.clear();
    other.m_size = 0;
}

void FaceList::clear()
{
    for (Block &block : m_blocks)
        m_spare.push_back(std::move(block.faces));
    m_blocks.clear();
    m_size = 0;
}

void FaceList::lendSpareBlocks(FaceList &other, std::size_t part, std::size_t parts)
{
    for (std::size_t share = m_spare.size() / (parts - part); share > 0; --share) {
        other.m_spare.push_back(std::move(m_spare.back()));
        m_spare.pop_back();
    }
}

void FaceList::addBlock()
{
    // Not value-initialised: every quad is written by whoever appends it.
    if (m_spare.empty())
        m_spare.emplace_back(new QuadFace[BlockSize]);
    m_blocks.push_back({std::move(m_spare.back()), 0});
    m_spare.pop_back();
}

} // namespace Model::Geometry
