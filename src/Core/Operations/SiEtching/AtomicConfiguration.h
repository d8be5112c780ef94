#pragma once

namespace Core::Operations {

/// Neighbourhood of a surface atom of silicon, by its surface and bulk first neighbours and its
/// surface and bulk second neighbours: 0 to 32 as in the table of ContinuosWetEtching.
enum AtomicConfiguration : unsigned
{
    /// Any other neighbourhood.
    Unexpected = 33
};

/// How many configurations have a rate.
inline constexpr unsigned AtomicConfigurations = 33;

} // namespace Core::Operations
