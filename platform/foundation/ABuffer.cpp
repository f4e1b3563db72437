#include <media/stagefright/foundation/ABuffer.h>

namespace android {

ABuffer::ABuffer(size_t capacity) : mData(new uint8_t[capacity > 0 ? capacity : 1]), mSize(capacity) {}

}  // namespace android
