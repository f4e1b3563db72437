// The kind of transducer a tuning or a profile-endpoint is made for.
#pragma once

#include <cstdint>

namespace korvi {

enum Endpoint : int32_t {
    SPEAKER = 0,
    HEADPHONE = 1,
    OTHER = 2,
};

inline constexpr int kEndpointCount = 3;

// "speaker", "headphone" or "other". An endpoint value of 3 or more is a programming error and
// aborts the process.
const char* endpointName(Endpoint endpoint);

}  // namespace korvi
