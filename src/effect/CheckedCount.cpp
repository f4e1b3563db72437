#include "effect/CheckedCount.h"

#include <limits>

#define LOG_TAG "SetParamCommand"
#include <log/log.h>

namespace korvi {

int32_t checkedCount(int32_t base, size_t extra) {
    constexpr size_t kMax = static_cast<size_t>(std::numeric_limits<int32_t>::max());
    LOG_ALWAYS_FATAL_IF(base < 0, "count %d is negative", base);
    LOG_ALWAYS_FATAL_IF(extra > kMax - static_cast<size_t>(base),
                        "count overflow: %d + %zu does not fit in 32 bits", base, extra);
    return static_cast<int32_t>(static_cast<size_t>(base) + extra);
}

}  // namespace korvi
