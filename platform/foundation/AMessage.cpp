#include <media/stagefright/foundation/AMessage.h>

#include <media/stagefright/foundation/ALooper.h>

namespace android {

AMessage::AMessage() : mWhat(0), mTarget(0) {}

AMessage::~AMessage() { Mutex::Autolock lock(mHandledLock); }

void AMessage::markHandled() { Mutex::Autolock lock(mHandledLock); }

AMessage::AMessage(uint32_t what, const sp<const AHandler>& handler) : mWhat(what), mTarget(0) {
    setTarget(handler);
}

void AMessage::setTarget(const sp<const AHandler>& handler) {
    if (handler == nullptr) {
        mTarget = 0;
        mHandler.clear();
        mLooper.clear();
        return;
    }
    mTarget = handler->id();
    mHandler = const_cast<AHandler*>(handler.get());
    mLooper = handler->mLooper;
}

void AMessage::setInt32(const char* name, int32_t value) { mInt32s[name] = value; }

bool AMessage::findInt32(const char* name, int32_t* value) const {
    auto it = mInt32s.find(name);
    if (it == mInt32s.end()) return false;
    *value = it->second;
    return true;
}

void AMessage::setBuffer(const char* name, const sp<ABuffer>& buffer) { mBuffers[name] = buffer; }

bool AMessage::findBuffer(const char* name, sp<ABuffer>* buffer) const {
    auto it = mBuffers.find(name);
    if (it == mBuffers.end()) return false;
    *buffer = it->second;
    return true;
}

status_t AMessage::post(int64_t /*delayUs*/) {
    sp<ALooper> looper = mLooper.promote();
    if (looper == nullptr) return NAME_NOT_FOUND;
    return looper->post(this);
}

}  // namespace android
