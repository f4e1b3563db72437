#define LOG_TAG "CheckedCount"

#include "effect/CheckedCount.h"

#include <cstdlib>

#include <log/log.h>

namespace korvi {

void countOverflow(int32_t base, size_t extra) {
    LOG_ALWAYS_FATAL_IF(base < 0, "count %d is negative", base);
    LOG_ALWAYS_FATAL("count overflow: %d + %zu does not fit in 32 bits", base, extra);
    std::abort();  // not reached: the fatal log aborts
}

}  // namespace korvi
