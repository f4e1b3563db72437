// Fuzzes the parameter blob parser and the readable-blob renderer with arbitrary bytes, at the
// input's own address and one byte off it. Beyond the sanitizers' checks, the parser's verdict is
// compared with a plain reading of the blob format over a copy of the words, and a valid blob
// must walk to exactly its declared entries and render to one line per entry.
#include <sfxparamstorage/EffectParamParser.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "effect/BlobFormatter.h"

namespace {

// The blob format read the obvious way, for comparison: -1 when malformed, else the number of
// entries.
long referenceEntryCount(const uint8_t* data, size_t size) {
    if (size % 4 != 0 || size < 8) {
        return -1;
    }
    std::vector<int32_t> words(size / 4);
    std::memcpy(words.data(), data, size);
    if (words[1] < 0) {
        return -1;
    }
    size_t pos = 2;
    for (int32_t i = 0; i < words[1]; ++i) {
        if (pos + 3 > words.size() || words[pos + 2] < 0) {
            return -1;
        }
        const size_t n = static_cast<size_t>(words[pos + 2]);
        if (n > words.size() - pos - 3) {
            return -1;
        }
        pos += 3 + n;
    }
    return pos == words.size() ? words[1] : -1;
}

void check(const uint8_t* data, size_t size) {
    android::EffectParamParser parser(data, static_cast<uint32_t>(size));
    const bool valid = parser.validate();
    const long expected = referenceEntryCount(data, size);
    if (valid != (expected >= 0)) {
        abort();
    }
    parser.begin();
    int32_t device;
    int32_t paramId;
    uint32_t count;
    const int32_t* values;
    long entries = 0;
    uint64_t words = 2;
    int64_t checksum = 0;
    while (parser.next(&device, &paramId, &count, &values)) {
        ++entries;
        words += 3 + uint64_t{count};
        for (uint32_t i = 0; i < count; ++i) {
            checksum += values[i];  // every value must be readable
        }
    }
    if (valid ? (entries != expected || words != size / 4) : entries != 0) {
        abort();
    }
    const std::string text = korvi::BlobFormatter::format(data, static_cast<uint32_t>(size));
    size_t lines = 0;
    for (char c : text) {
        lines += c == '\n';
    }
    if (valid ? static_cast<long>(lines) != entries : (lines != 1 || text.rfind("invalid parameter blob: ", 0) != 0)) {
        abort();
    }
    (void)checksum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > (1u << 20)) {
        return 0;
    }
    check(data, size);
    // The same bytes at an odd address.
    std::vector<uint8_t> shifted(size + 1);
    if (size != 0) {
        std::memcpy(shifted.data() + 1, data, size);
    }
    check(shifted.data() + 1, size);
    return 0;
}
