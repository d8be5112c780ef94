#pragma once

#include "Wafer.h"

#include "Model/Automaton/TotalVolume.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

/// What the benchmarks of processes share.
namespace Benchmarks {

std::unique_ptr<Model::Automaton::TotalVolume> trenchedWafer(const Size &size);
/// Puts the materials back without another allocation.
void refill(Model::Automaton::TotalVolume &volume, const std::vector<std::uint32_t> &materials);
/// Cells of a material.
std::size_t countOf(Model::Automaton::TotalVolume &volume, std::uint32_t material);

void setCellRate(benchmark::State &state, const Size &size);
/// Argument 0 is the size, argument 1 the number of threads.
void atAllSizesAndThreads(benchmark::internal::Benchmark *subject);
void atAllSizes(benchmark::internal::Benchmark *subject);

/// A floor: copies both cell arrays, which is the memory that a run must touch.
void copyBothArrays(benchmark::State &state);
/// A floor: one pass over the cells of both arrays that gives each another material.
void passOverBothArrays(benchmark::State &state);

} // namespace Benchmarks
