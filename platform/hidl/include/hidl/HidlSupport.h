// Host stand-in of the hardware-interface runtime: byte vectors that can wrap a caller's memory,
// the base interface with death notification, and the death recipient. On a device the transport
// reports that a client's process died; on host notifyDeath() does it, for tests and tools.
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <hidl/Status.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include <utility>
#include <vector>

namespace android {
namespace hidl {
namespace base {
namespace V1_0 {
class IBase;
}  // namespace V1_0
}  // namespace base
}  // namespace hidl

namespace hardware {

// A vector that either owns its elements or, after setToExternal(), refers to memory of the
// caller without copying it. Copies always own.
template <typename T>
class hidl_vec {
public:
    hidl_vec() : mBuffer(nullptr), mSize(0) {}
    hidl_vec(const std::vector<T>& values) : mOwned(values) { pointAtOwned(); }  // NOLINT
    hidl_vec(const hidl_vec& other) : mOwned(other.begin(), other.end()) { pointAtOwned(); }
    hidl_vec(hidl_vec&& other) noexcept { moveFrom(std::move(other)); }
    hidl_vec& operator=(const hidl_vec& other) {
        if (this != &other) {
            mOwned.assign(other.begin(), other.end());
            pointAtOwned();
        }
        return *this;
    }
    hidl_vec& operator=(hidl_vec&& other) noexcept {
        if (this != &other) moveFrom(std::move(other));
        return *this;
    }

    // Refers to size elements at data; the caller keeps the memory alive while this vector uses it.
    void setToExternal(T* data, size_t size, bool shouldOwn = false) {
        if (shouldOwn) {
            mOwned.assign(data, data + size);
            pointAtOwned();
            return;
        }
        mOwned.clear();
        mBuffer = data;
        mSize = data == nullptr ? 0 : size;
    }

    size_t size() const { return mSize; }
    T* data() { return mBuffer; }
    const T* data() const { return mBuffer; }
    T& operator[](size_t i) { return mBuffer[i]; }
    const T& operator[](size_t i) const { return mBuffer[i]; }
    const T* begin() const { return mBuffer; }
    const T* end() const { return mBuffer + mSize; }
    operator std::vector<T>() const { return std::vector<T>(begin(), end()); }

private:
    void pointAtOwned() {
        mBuffer = mOwned.empty() ? nullptr : mOwned.data();
        mSize = mOwned.size();
    }
    void moveFrom(hidl_vec&& other) {
        bool owned = other.mBuffer == nullptr || other.mBuffer == other.mOwned.data();
        mOwned = std::move(other.mOwned);
        if (owned) {
            pointAtOwned();
        } else {
            mBuffer = other.mBuffer;
            mSize = other.mSize;
        }
        other.mOwned.clear();
        other.mBuffer = nullptr;
        other.mSize = 0;
    }

    std::vector<T> mOwned;
    T* mBuffer;
    size_t mSize;
};

// Told when the process behind an interface object it is linked to dies.
struct hidl_death_recipient : virtual public RefBase {
    virtual void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) = 0;
};

}  // namespace hardware

namespace hidl {
namespace base {
namespace V1_0 {

class IBase : virtual public RefBase {
public:
    // Recipients are held weakly, as the transport does: dropping the last strong reference
    // to a recipient ends its subscription.
    virtual hardware::Return<bool> linkToDeath(const sp<hardware::hidl_death_recipient>& recipient,
                                               uint64_t cookie);
    virtual hardware::Return<bool> unlinkToDeath(
            const sp<hardware::hidl_death_recipient>& recipient);

    // Host only: acts as if the process behind this object died. Every linked recipient's
    // serviceDied() runs once, on the calling thread; the links are then gone.
    void notifyDeath();

private:
    struct Link {
        wp<hardware::hidl_death_recipient> recipient;
        uint64_t cookie;
    };

    Mutex mLinksLock;
    std::vector<Link> mLinks;
};

}  // namespace V1_0
}  // namespace base
}  // namespace hidl
}  // namespace android
