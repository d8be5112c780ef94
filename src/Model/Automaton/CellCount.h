#pragma once

#include <cstdint>
#include <optional>

namespace Model::Automaton {

/// The number of cells of a volume of these sizes; empty if it has more than 32 bits: such a volume
/// would have fewer cells than its sizes promise.
std::optional<std::uint32_t> countCells(std::uint32_t sizeX, std::uint32_t sizeY,
                                        std::uint32_t sizeZ);

/// Whether so many cells, of one volume or several, fit into the memory of the machine, with a list
/// of material ids to make them from.
bool fitIntoMemory(std::uint64_t cells);

} // namespace Model::Automaton
