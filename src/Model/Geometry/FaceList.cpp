#include "Model/Geometry/FaceList.h"

#include <iterator>
#include <utility>

namespace Model::Geometry {

void FaceList::splice(FaceList &other)
{
    m_blocks.insert(m_blocks.end(), std::make_move_iterator(other.m_blocks.begin()),
                    std::make_move_iterator(other.m_blocks.end()));
    m_size += other.m_size;
    other.clear();
}

void FaceList::clear()
{
    m_blocks.clear();
    m_size = 0;
}

void FaceList::addBlock()
{
    // Not value-initialised: every quad is written by whoever appends it.
    m_blocks.push_back({std::unique_ptr<QuadFace[]>(new QuadFace[BlockSize]), 0});
}

} // namespace Model::Geometry
