// Counts written into the parameter blob are 32-bit words. A count that does not fit is a
// programming error, never a run-time condition: it aborts the process instead of wrapping.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

namespace korvi {

// Logs why base + extra does not fit and aborts.
[[noreturn]] void countOverflow(int32_t base, size_t extra);

// base + extra as a non-negative 32-bit count; aborts when the sum exceeds INT32_MAX or base is
// negative. Inline: every entry of every blob goes through it.
inline int32_t checkedCount(int32_t base, size_t extra) {
    constexpr size_t kMax = static_cast<size_t>(std::numeric_limits<int32_t>::max());
    if (base < 0 || extra > kMax - static_cast<size_t>(base)) countOverflow(base, extra);
    return static_cast<int32_t>(static_cast<size_t>(base) + extra);
}

}  // namespace korvi
