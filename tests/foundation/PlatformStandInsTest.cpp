// The host stand-ins under the service front, for what the service's own tests cannot show:
// stop() waits for the message being handled and drops the rest, a handler that left gets
// nothing, death reaches only linked recipients, and wrapped byte vectors do not copy. (Posting
// order and the looper's own thread are relied on, and so checked, by every service test.)
#include <gtest/gtest.h>

#include <hidl/HidlSupport.h>
#include <media/stagefright/foundation/ALooper.h>
#include <media/stagefright/foundation/AMessage.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace android;

// Records the "value" of what it handles; the first message waits until release().
struct HoldingHandler : public AHandler {
    std::mutex lock;
    std::condition_variable changed;
    std::vector<int32_t> seen;
    bool released = false;

    void onMessageReceived(const sp<AMessage>& msg) override {
        int32_t value = -1;
        msg->findInt32("value", &value);
        std::unique_lock<std::mutex> guard(lock);
        seen.push_back(value);
        changed.notify_all();
        changed.wait(guard, [this] { return released; });
    }
    void release() {
        std::lock_guard<std::mutex> guard(lock);
        released = true;
        changed.notify_all();
    }
};

status_t post(const sp<AHandler>& handler, int32_t value) {
    sp<AMessage> msg = new AMessage(1, handler);
    msg->setInt32("value", value);
    return msg->post();
}

TEST(LooperTest, StopWaitsForTheCurrentMessageAndDropsTheRest) {
    sp<ALooper> looper = new ALooper();
    sp<HoldingHandler> handler = new HoldingHandler();
    sp<HoldingHandler> gone = new HoldingHandler();
    looper->registerHandler(handler);
    looper->registerHandler(gone);
    ASSERT_EQ(OK, looper->start());
    sp<AMessage> late = new AMessage(1, gone);  // addressed before its handler leaves
    looper->unregisterHandler(gone->id());
    EXPECT_EQ(OK, late->post());
    for (int32_t i = 0; i < 4; ++i) EXPECT_EQ(OK, post(handler, i));
    {
        std::unique_lock<std::mutex> guard(handler->lock);
        ASSERT_TRUE(handler->changed.wait_for(guard, std::chrono::seconds(10),
                                              [&] { return !handler->seen.empty(); }));
    }
    std::thread releaser([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        handler->release();
    });
    looper->stop();
    {
        std::lock_guard<std::mutex> guard(handler->lock);
        EXPECT_TRUE(handler->released);  // stop() returned only after the message was done
    }
    releaser.join();
    EXPECT_NE(OK, post(handler, 9));
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(std::vector<int32_t>{0}, handler->seen);
    EXPECT_TRUE(gone->seen.empty());
}

struct DeathRecorder : public hardware::hidl_death_recipient {
    std::vector<uint64_t> cookies;
    void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override {
        EXPECT_NE(nullptr, who.promote());
        cookies.push_back(cookie);
    }
};

TEST(HidlTest, DeathReachesLinkedRecipientsOnceAndWrappedVectorsDoNotCopy) {
    sp<hidl::base::V1_0::IBase> client = new hidl::base::V1_0::IBase();
    sp<DeathRecorder> linked = new DeathRecorder();
    sp<DeathRecorder> unlinked = new DeathRecorder();
    EXPECT_TRUE(client->linkToDeath(linked, 41).withDefault(false));
    EXPECT_TRUE(client->linkToDeath(unlinked, 42).withDefault(false));
    EXPECT_TRUE(client->unlinkToDeath(unlinked).withDefault(false));
    EXPECT_FALSE(client->unlinkToDeath(unlinked).withDefault(true));
    client->notifyDeath();
    client->notifyDeath();
    EXPECT_EQ(std::vector<uint64_t>{41}, linked->cookies);
    EXPECT_TRUE(unlinked->cookies.empty());

    uint8_t bytes[3] = {1, 2, 3};
    hardware::hidl_vec<uint8_t> wrapped;
    wrapped.setToExternal(bytes, sizeof(bytes));
    hardware::hidl_vec<uint8_t> copy(wrapped);
    hardware::hidl_vec<uint8_t> moved(std::move(wrapped));
    EXPECT_EQ(bytes, moved.data());
    bytes[0] = 9;
    EXPECT_EQ((std::vector<uint8_t>{1, 2, 3}), static_cast<std::vector<uint8_t>>(copy));
    EXPECT_EQ((std::vector<uint8_t>{9, 2, 3}), static_cast<std::vector<uint8_t>>(moved));
    EXPECT_EQ(0u, wrapped.size());
}

}  // namespace
