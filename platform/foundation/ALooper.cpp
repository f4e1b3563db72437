#include <media/stagefright/foundation/ALooper.h>

#include <media/stagefright/foundation/AMessage.h>

namespace android {

struct ALooper::LooperThread : public Thread {
    // The looper outlives its thread: stop(), also run by the destructor, joins it.
    explicit LooperThread(ALooper* looper) : Thread(false), mLooper(looper) {}
    bool threadLoop() override { return mLooper->loop(); }

private:
    ALooper* mLooper;
};

ALooper::ALooper() : mNextHandlerID(1), mStopping(false) {}

ALooper::~ALooper() { stop(); }

void ALooper::setName(const char* name) { mName = name != nullptr ? name : ""; }

handler_id ALooper::registerHandler(const sp<AHandler>& handler) {
    Mutex::Autolock lock(mLock);
    if (handler == nullptr || handler->id() != 0) return INVALID_OPERATION;
    handler_id id = mNextHandlerID++;
    mHandlers[id] = handler;
    handler->setID(id, this);
    return id;
}

void ALooper::unregisterHandler(handler_id handlerID) {
    Mutex::Autolock lock(mLock);
    auto it = mHandlers.find(handlerID);
    if (it == mHandlers.end()) return;
    sp<AHandler> handler = it->second.promote();
    if (handler != nullptr) handler->setID(0, nullptr);
    mHandlers.erase(it);
}

status_t ALooper::start(bool /*runOnCallingThread*/, bool /*canCallJava*/, int32_t /*priority*/) {
    Mutex::Autolock lock(mLock);
    if (mThread != nullptr) return INVALID_OPERATION;
    mStopping = false;
    mThread = new LooperThread(this);
    status_t err = mThread->run(mName.empty() ? "ALooper" : mName.c_str());
    if (err != OK) mThread.clear();
    return err;
}

status_t ALooper::stop() {
    sp<LooperThread> thread;
    {
        Mutex::Autolock lock(mLock);
        if (mThread == nullptr) return INVALID_OPERATION;
        thread = mThread;
        mStopping = true;
        mQueueChanged.broadcast();
    }
    // From the looper's own thread this cannot wait for itself (libutils answers WOULD_BLOCK);
    // the loop then ends after the current message.
    thread->requestExitAndWait();
    Mutex::Autolock lock(mLock);
    mQueue.clear();
    mThread.clear();
    return OK;
}

status_t ALooper::post(const sp<AMessage>& msg) {
    Mutex::Autolock lock(mLock);
    if (mThread == nullptr || mStopping) return INVALID_OPERATION;
    mQueue.push_back(msg);
    mQueueChanged.signal();
    return OK;
}

sp<AHandler> ALooper::handlerFor(handler_id id) {
    Mutex::Autolock lock(mLock);
    auto it = mHandlers.find(id);
    return it == mHandlers.end() ? nullptr : it->second.promote();
}

bool ALooper::loop() {
    sp<AMessage> msg;
    {
        Mutex::Autolock lock(mLock);
        while (mQueue.empty() && !mStopping) mQueueChanged.wait(mLock);
        if (mStopping) return false;
        msg = mQueue.front();
        mQueue.pop_front();
    }
    // A message whose handler was unregistered in the meantime is dropped.
    sp<AHandler> handler = handlerFor(msg->mTarget);
    if (handler != nullptr) handler->deliverMessage(msg);
    msg->markHandled();
    return true;
}

}  // namespace android
