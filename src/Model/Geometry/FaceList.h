#pragma once

#include "Model/Geometry/QuadFace.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Model::Geometry {

/// A list of quads in blocks: appending never moves a quad, and splicing moves blocks, not quads.
/// Blocks of a list that was cleared are kept for what it holds next: a picture is built again and
/// again, and fresh memory costs more than filling it.
class FaceList final
{
public:
    FaceList() = default;
    FaceList(const FaceList &) = delete;
    FaceList &operator=(const FaceList &) = delete;

    /// A quad at the end, whose fields the caller fills.
    QuadFace &append()
    {
        if (m_blocks.empty() || m_blocks.back().count == BlockSize)
            addBlock();
        Block &block = m_blocks.back();
        ++m_size;
        return block.faces[block.count++];
    }

    /// Moves all quads of `other` behind the last one here, and its spare blocks too, which leaves
    /// `other` without any memory.
    void splice(FaceList &other);
    void clear();
    /// Gives a share of the spare blocks away, the part-th of `parts` lists to get one.
    void lendSpareBlocks(FaceList &other, std::size_t part, std::size_t parts);

    std::size_t size() const { return m_size; }
    bool empty() const { return m_size == 0; }

    /// Calls visit(const QuadFace &) for each quad, first to last.
    template <typename Visitor>
    void forEach(Visitor &&visit) const
    {
        for (const Block &block : m_blocks)
            for (std::size_t i = 0; i < block.count; ++i)
                visit(static_cast<const QuadFace &>(block.faces[i]));
    }
    /// Calls visit(QuadFace &) for each quad, first to last.
    template <typename Visitor>
    void forEach(Visitor &&visit)
    {
        for (Block &block : m_blocks)
            for (std::size_t i = 0; i < block.count; ++i)
                visit(block.faces[i]);
    }

private:
    static constexpr std::size_t BlockSize = 1024;

    struct Block
    {
        std::unique_ptr<QuadFace[]> faces;
        std::size_t count;
    };

    void addBlock();

    std::vector<Block> m_blocks;
    std::vector<std::unique_ptr<QuadFace[]>> m_spare;
    std::size_t m_size = 0;
};

} // namespace Model::Geometry
