// Fuzzes the decoding of client requests with arbitrary bytes. Beyond the sanitizers' checks
// (libFuzzer hands over a buffer of exactly the input's size), the decoded request is compared
// with a plain reading of the request layout.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "service/ClientRequest.h"

namespace {

using korvi::ClientRequest;

int32_t wordAt(const uint8_t* data, size_t offset) {
    uint32_t u = 0;
    for (int i = 3; i >= 0; --i) u = (u << 8) | data[offset + i];
    return static_cast<int32_t>(u);
}

void check(bool condition) {
    if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    ClientRequest request = ClientRequest::decode(data, size);
    if (size < 4) {
        check(request.status() == ClientRequest::NO_EVENT_WORD);
        return 0;
    }
    const bool isEvent = data[0] == 0 && data[1] == 0 && data[2] == 0 && data[3] <= 12;
    check(request.eventWord() == static_cast<uint32_t>(wordAt(data, 0)));
    if (!isEvent) {
        check(request.status() == ClientRequest::NOT_AN_EVENT);
        return 0;
    }
    const int event = data[3];
    check(request.event() == event);
    const bool known = event <= 2 || event == 9 || event == 10 || event == 12;
    if (!known) {
        check(request.status() == ClientRequest::RESERVED);
        return 0;
    }
    const size_t header = event == 1 ? 16 : event == 2 ? 20 : event == 9 ? 4 : 8;
    if (size < header) {
        check(request.status() == ClientRequest::HEADER_TOO_SHORT);
        return 0;
    }
    check(request.status() == ClientRequest::OK);
    if (event != 9) check(request.word1() == wordAt(data, 4));
    if (event == 1) check(request.paramId() == wordAt(data, 8));
    if (event == 2) check(request.port() == wordAt(data, 8) && request.paramId() == wordAt(data, 12));
    std::vector<int> values;
    if (event == 1 || event == 2) {
        for (size_t at = header; at + 4 <= size; at += 4) values.push_back(wordAt(data, at));
    }
    check(request.values() == values);
    return 0;
}
