// A blob copied into a heap block of exactly its own size, optionally one byte past an aligned
// address, so that AddressSanitizer catches any read past its end and UBSan any misaligned word
// access.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace korvi::test {

class BlobBuffer {
public:
    BlobBuffer(const std::vector<int32_t>& words, bool unaligned = false)
        : BlobBuffer(reinterpret_cast<const unsigned char*>(words.data()), words.size() * 4, unaligned) {}

    BlobBuffer(const unsigned char* bytes, size_t size, bool unaligned = false)
        : mOffset(unaligned ? 1 : 0), mSize(size), mBlock(new unsigned char[size + mOffset]) {
        if (size != 0) {
            std::memcpy(mBlock.get() + mOffset, bytes, size);
        }
    }

    const void* data() const { return mBlock.get() + mOffset; }
    uint32_t size() const { return static_cast<uint32_t>(mSize); }

private:
    size_t mOffset;
    size_t mSize;
    std::unique_ptr<unsigned char[]> mBlock;
};

}  // namespace korvi::test
