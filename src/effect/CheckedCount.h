// Counts written into the parameter blob are 32-bit words. A count that does not fit is a
// programming error, never a run-time condition: it aborts the process instead of wrapping.
#pragma once

#include <cstddef>
#include <cstdint>

namespace korvi {

// base + extra as a non-negative 32-bit count; aborts when the sum exceeds INT32_MAX or base is
// negative.
int32_t checkedCount(int32_t base, size_t extra);

}  // namespace korvi
