#include "service/ClientBytes.h"

namespace korvi {

uint32_t ClientBytes::littleEndian(size_t offset) const {
    if (!has(offset, 4)) return 0;
    const uint8_t* p = mData + offset;
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
           static_cast<uint32_t>(p[2]) << 16 | static_cast<uint32_t>(p[3]) << 24;
}

uint32_t ClientBytes::bigEndian(size_t offset) const {
    if (!has(offset, 4)) return 0;
    const uint8_t* p = mData + offset;
    return static_cast<uint32_t>(p[0]) << 24 | static_cast<uint32_t>(p[1]) << 16 |
           static_cast<uint32_t>(p[2]) << 8 | static_cast<uint32_t>(p[3]);
}

std::vector<int> ClientBytes::wordsFrom(size_t offset) const {
    std::vector<int> words;
    if (offset > mSize) return words;
    size_t count = (mSize - offset) / 4;
    words.reserve(count);
    for (size_t i = 0; i < count; ++i) words.push_back(signedWord(offset + 4 * i));
    return words;
}

}  // namespace korvi
