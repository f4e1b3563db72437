// Host stand-in of the media foundation byte buffer: a fixed-size block of bytes owned by the
// buffer and shared between threads by strong pointer.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <utils/RefBase.h>

#include <memory>

namespace android {

struct ABuffer : public RefBase {
    explicit ABuffer(size_t capacity);

    uint8_t* data() { return mData.get(); }
    const uint8_t* data() const { return mData.get(); }
    size_t size() const { return mSize; }
    size_t capacity() const { return mSize; }

protected:
    ~ABuffer() override = default;

private:
    std::unique_ptr<uint8_t[]> mData;
    size_t mSize;

    ABuffer(const ABuffer&) = delete;
    ABuffer& operator=(const ABuffer&) = delete;
};

}  // namespace android
