#include "Util/FutureGroup.h"

namespace Util {

FutureGroup::~FutureGroup()
{
    waitForAll();
}

void FutureGroup::wait()
{
    const std::exception_ptr thrown = waitForAll();
    if (thrown)
        std::rethrow_exception(thrown);
}

std::exception_ptr FutureGroup::waitForAll()
{
    std::exception_ptr first;
    for (QFuture<void> &run : m_runs) {
        try {
            run.waitForFinished();
        } catch (...) {
            if (!first)
                first = std::current_exception();
        }
    }
    m_runs.clear();
    return first;
}

} // namespace Util
