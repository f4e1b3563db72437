// A read-only view of bytes received from a client, with bounds-checked reads. Nothing is read
// past the end; a caller asks has() before reading a field.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <vector>

namespace korvi {

class ClientBytes {
public:
    ClientBytes(const void* data, size_t size)
        : mData(static_cast<const uint8_t*>(data)), mSize(data == nullptr ? 0 : size) {}

    size_t size() const { return mSize; }
    // True when the bytes [offset, offset + length) exist.
    bool has(size_t offset, size_t length) const {
        return offset <= mSize && length <= mSize - offset;
    }
    uint8_t byte(size_t offset) const { return has(offset, 1) ? mData[offset] : 0; }
    // Four bytes, least significant first; 0 when they do not all exist.
    uint32_t littleEndian(size_t offset) const;
    // Four bytes, most significant first; 0 when they do not all exist.
    uint32_t bigEndian(size_t offset) const;
    int32_t signedWord(size_t offset) const { return static_cast<int32_t>(littleEndian(offset)); }
    // Every whole little-endian word from offset on; empty when fewer than four bytes follow.
    std::vector<int> wordsFrom(size_t offset) const;

private:
    const uint8_t* mData;
    size_t mSize;
};

}  // namespace korvi
