// Host stand-in of the media foundation message handler: receives the messages posted to it on
// the thread of the looper it is registered with.
#pragma once

#include <utils/RefBase.h>

namespace android {

struct AMessage;
struct ALooper;

typedef int32_t handler_id;

struct AHandler : public RefBase {
    AHandler() : mID(0) {}

    handler_id id() const { return mID; }

protected:
    virtual void onMessageReceived(const sp<AMessage>& msg) = 0;

private:
    friend struct ALooper;
    friend struct AMessage;

    void setID(handler_id id, const wp<ALooper>& looper) {
        mID = id;
        mLooper = looper;
    }
    void deliverMessage(const sp<AMessage>& msg) { onMessageReceived(msg); }

    handler_id mID;
    wp<ALooper> mLooper;

    AHandler(const AHandler&) = delete;
    AHandler& operator=(const AHandler&) = delete;
};

}  // namespace android
