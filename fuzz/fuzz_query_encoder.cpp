// Fuzzes query decoding and the writing of answers into a client's output buffer. The first two
// bytes choose the output buffer's size (0-63 bytes, allocated at exactly that size) and the
// length of a vector answer; the rest is the query. The answer is written as the service writes
// it, and the buffer is checked: a fitting answer lands whole, one that does not fit leaves every
// byte untouched.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "service/ClientQuery.h"

namespace {

using korvi::ClientQuery;

void check(bool condition) {
    if (!condition) abort();
}

constexpr uint8_t kUntouched = 0xa5;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    const size_t outSize = data[0] % 64;
    const size_t answerLength = data[1] % 24;
    const uint8_t* in = data + 2;
    const size_t inSize = size - 2;
    // The query in a block of its exact size, so that a read past it is caught.
    std::unique_ptr<uint8_t[]> input(new uint8_t[inSize > 0 ? inSize : 1]);
    if (inSize > 0) memcpy(input.get(), in, inSize);
    ClientQuery query = ClientQuery::decode(inSize > 0 ? input.get() : nullptr, inSize);
    if (inSize < 4) {
        check(query.status() == ClientQuery::INPUT_TOO_SHORT);
        return 0;
    }
    const uint32_t number = static_cast<uint32_t>(in[0]) << 24 | in[1] << 16 | in[2] << 8 | in[3];
    check(query.query() == number);
    if (number > ClientQuery::kLastQuery) {
        check(query.status() == ClientQuery::UNKNOWN);
        return 0;
    }
    check(query.status() == (inSize >= ClientQuery::inputSize(number) ? ClientQuery::OK
                                                                      : ClientQuery::INPUT_TOO_SHORT));
    if (query.status() == ClientQuery::OK && number == ClientQuery::QUERY_PORT_PARAMETER) {
        check(query.profileId() == in[8] >> 4 && query.port() == (in[8] & 0x0f));
    }

    std::vector<int> answer(answerLength);
    for (size_t i = 0; i < answerLength; ++i) {
        answer[i] = static_cast<int>(static_cast<uint32_t>(query.paramId()) * static_cast<uint32_t>(i) -
                                     static_cast<uint32_t>(query.profileId()));
    }
    std::unique_ptr<uint8_t[]> out(new uint8_t[outSize > 0 ? outSize : 1]);
    memset(out.get(), kUntouched, outSize);
    const bool fits = answerLength * 4 <= outSize;
    check(ClientQuery::writeValues(answer, out.get(), outSize) == fits);
    for (size_t i = 0; i < outSize; ++i) {
        uint8_t expected = kUntouched;
        if (fits && i < answerLength * 4) {
            expected = static_cast<uint8_t>(static_cast<uint32_t>(answer[i / 4]) >> (8 * (i % 4)));
        }
        check(out[i] == expected);
    }
    memset(out.get(), kUntouched, outSize);
    check(ClientQuery::writeValue(query.profileId(), out.get(), outSize) == (outSize >= 4));
    for (size_t i = 4; i < outSize; ++i) check(out[i] == kUntouched);
    return 0;
}
