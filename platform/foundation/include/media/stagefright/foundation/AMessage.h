// Host stand-in of the media foundation message: a code, a few named items (32-bit integers and
// buffers) and a target handler. post() hands the message to the looper the target is
// registered with; a message whose target is not registered (any more) is dropped.
#pragma once

#include <stdint.h>

#include <media/stagefright/foundation/ABuffer.h>
#include <media/stagefright/foundation/AHandler.h>
#include <utils/Errors.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>

#include <map>
#include <string>

namespace android {

struct AMessage : public RefBase {
    AMessage();
    AMessage(uint32_t what, const sp<const AHandler>& handler);

    uint32_t what() const { return mWhat; }
    void setWhat(uint32_t what) { mWhat = what; }
    void setTarget(const sp<const AHandler>& handler);

    void setInt32(const char* name, int32_t value);
    bool findInt32(const char* name, int32_t* value) const;
    void setBuffer(const char* name, const sp<ABuffer>& buffer);
    bool findBuffer(const char* name, sp<ABuffer>* buffer) const;

    // Queues the message for its target; NAME_NOT_FOUND when the target has no running looper.
    status_t post(int64_t delayUs = 0);

protected:
    ~AMessage() override;

private:
    friend struct ALooper;

    // Called by the looper thread once the handler is done with the message.
    void markHandled();

    uint32_t mWhat;
    handler_id mTarget;
    wp<AHandler> mHandler;
    wp<ALooper> mLooper;
    std::map<std::string, int32_t> mInt32s;
    std::map<std::string, sp<ABuffer>> mBuffers;
    // Whichever thread drops the last reference destroys the message. libutils' reference
    // counts order that destruction after the handler's last use, but on host they are not
    // visible to ThreadSanitizer; this lock, taken after handling and on destruction, shows it.
    Mutex mHandledLock;
};

}  // namespace android
