#pragma once

#include <cstdint>
#include <vector>

namespace Benchmarks {

/// Exact squared Euclidean distance of every cell to the nearest cell of `sources`, in cells, by
/// three passes of lower envelopes of parabolas, one an axis (Felzenszwalb and Huttenlocher,
/// "Distance transforms of sampled functions", Theory of Computing 8, 2012). What a user could do
/// instead of running a front. Single-threaded; index (x * sizeY + y) * sizeZ + z.
std::vector<float> squaredDistances(const std::vector<std::uint8_t> &sources, std::uint32_t sizeX,
                                    std::uint32_t sizeY, std::uint32_t sizeZ);

} // namespace Benchmarks
