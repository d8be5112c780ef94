#pragma once

#include <QtGlobal>

namespace Util {

// Qt marks both functions as deprecated; their number sequence is wanted all the same.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

/// Starts the calling thread's sequence of `nextRandom` anew; equal seeds give equal sequences.
inline void seedRandom(unsigned seed)
{
    qsrand(seed);
}

/// The next number of the calling thread's sequence, 0 to RAND_MAX inclusive.
inline int nextRandom()
{
    return qrand();
}

#pragma GCC diagnostic pop

} // namespace Util
