// One client query of getSfxParam, decoded from untrusted bytes, and the writing of its answer
// into the client's output buffer without passing its end.
//
// Layout: the first four bytes, most significant first, select the query; queries 1, 2 and 11
// carry further fields (little-endian words, and for query 2 one byte packing profile and port).
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

namespace korvi {

class ClientQuery {
public:
    enum Query : int32_t {
        QUERY_ON_OFF = 0,
        QUERY_PARAMETER = 1,
        QUERY_PORT_PARAMETER = 2,
        QUERY_PROFILE_COUNT = 3,
        QUERY_IEQ_PRESET_COUNT = 4,
        QUERY_SELECTED_PROFILE = 10,
        QUERY_PROFILE_MODIFIED = 11,
        QUERY_MONO_SPEAKER = 13,
    };
    static constexpr uint32_t kLastQuery = 13;

    enum Status {
        OK,
        INPUT_TOO_SHORT,  // no query word, or not the fields the query needs
        UNKNOWN,          // a query number past 13: ignored
    };

    static ClientQuery decode(const void* in, size_t inSize);
    // Bytes a query's input occupies: the query word and its fields.
    static size_t inputSize(uint32_t query);

    Status status() const { return mStatus; }
    uint32_t query() const { return mQuery; }
    // Query 1: the word at byte 4; query 2: the word at byte 4.
    int32_t paramId() const { return mParamId; }
    // Query 1: the word at byte 8; query 2: high four bits of byte 8; query 11: the word at byte 4.
    int32_t profileId() const { return mProfileId; }
    // Query 2: low four bits of byte 8.
    int32_t port() const { return mPort; }

    // Writes values into out when their byte length fits outSize; false (nothing written)
    // otherwise.
    static bool writeValues(const std::vector<int>& values, void* out, size_t outSize);
    // Writes one 32-bit value at the start of out when outSize has room for it.
    static bool writeValue(int32_t value, void* out, size_t outSize);

private:
    ClientQuery() = default;

    Status mStatus = INPUT_TOO_SHORT;
    uint32_t mQuery = 0;
    int32_t mParamId = 0;
    int32_t mProfileId = 0;
    int32_t mPort = 0;
};

}  // namespace korvi
