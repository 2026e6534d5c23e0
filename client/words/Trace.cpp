#include "client/words/Trace.hpp"

#include "common/ResultStatus.hpp"

#include <cstdarg>
#include <cstdio>

namespace client::words {

void trace(const char* format, ...)
{
    if (!traceWanted.load(std::memory_order_relaxed))
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
}

void traceFailure(const ResultStatus& failure)
{
    for (const RStatus& entry : failure) {
        trace("Operation: %d", entry.mCommand);
        trace(" failed Error code. %d  -", entry.mErrorCode);
    }
}

} // namespace client::words
