// Host stand-in of the media foundation looper: one thread per started looper, which hands the
// posted messages to their handlers strictly in posting order. stop() joins the thread; messages
// not handled by then are dropped.
#pragma once

#include <stdint.h>

#include <media/stagefright/foundation/AHandler.h>
#include <utils/Condition.h>
#include <utils/Errors.h>
#include <utils/Mutex.h>
#include <utils/RefBase.h>
#include <utils/Thread.h>

#include <deque>
#include <map>
#include <string>

namespace android {

struct AMessage;

struct ALooper : public RefBase {
    ALooper();

    void setName(const char* name);
    const char* getName() const { return mName.c_str(); }

    handler_id registerHandler(const sp<AHandler>& handler);
    void unregisterHandler(handler_id handlerID);

    // The looper's own thread; the caller's thread is never used, priority is ignored on host.
    status_t start(bool runOnCallingThread = false, bool canCallJava = false,
                   int32_t priority = 0);
    status_t stop();

protected:
    ~ALooper() override;

private:
    friend struct AMessage;

    struct LooperThread;

    status_t post(const sp<AMessage>& msg);
    bool loop();
    sp<AHandler> handlerFor(handler_id id);

    std::string mName;
    Mutex mLock;
    Condition mQueueChanged;
    std::deque<sp<AMessage>> mQueue;
    std::map<handler_id, wp<AHandler>> mHandlers;
    handler_id mNextHandlerID;
    sp<LooperThread> mThread;
    bool mStopping;

    ALooper(const ALooper&) = delete;
    ALooper& operator=(const ALooper&) = delete;
};

}  // namespace android
