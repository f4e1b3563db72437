// The host stand-ins the service front runs on: the looper (one thread, posting order, stop()
// drops what was not handled) and the hardware-interface runtime (byte vectors that wrap memory,
// death notification).
#include <gtest/gtest.h>

#include <hidl/HidlSupport.h>
#include <media/stagefright/foundation/ABuffer.h>
#include <media/stagefright/foundation/ALooper.h>
#include <media/stagefright/foundation/AMessage.h>

#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using namespace android;

// Records what it handles; can be held inside a message until released.
struct RecordingHandler : public AHandler {
    std::mutex lock;
    std::condition_variable changed;
    std::vector<int32_t> seen;
    std::vector<std::thread::id> threads;
    bool holdFirst = false;
    bool released = false;

    void onMessageReceived(const sp<AMessage>& msg) override {
        int32_t value = -1;
        msg->findInt32("value", &value);
        sp<ABuffer> buffer;
        if (msg->findBuffer("buffer", &buffer)) value = buffer->data()[buffer->size() - 1];
        std::unique_lock<std::mutex> guard(lock);
        seen.push_back(static_cast<int32_t>(msg->what()) * 1000 + value);
        threads.push_back(std::this_thread::get_id());
        changed.notify_all();
        if (holdFirst && seen.size() == 1) changed.wait(guard, [this] { return released; });
    }
    void waitFor(size_t count) {
        std::unique_lock<std::mutex> guard(lock);
        ASSERT_TRUE(changed.wait_for(guard, std::chrono::seconds(10),
                                     [&] { return seen.size() >= count; }));
    }
};

sp<AMessage> message(uint32_t what, const sp<AHandler>& handler, int32_t value) {
    sp<AMessage> msg = new AMessage(what, handler);
    msg->setInt32("value", value);
    return msg;
}

TEST(LooperTest, HandlesMessagesOnItsOwnThreadInPostingOrder) {
    sp<ALooper> looper = new ALooper();
    looper->setName("test looper");
    EXPECT_STREQ("test looper", looper->getName());
    sp<RecordingHandler> handler = new RecordingHandler();
    EXPECT_GT(looper->registerHandler(handler), 0);
    ASSERT_EQ(OK, looper->start());

    std::vector<int32_t> expected;
    for (int32_t i = 0; i < 200; ++i) {
        ASSERT_EQ(OK, message(i % 3, handler, i)->post());
        expected.push_back(i % 3 * 1000 + i);
    }
    sp<ABuffer> buffer = new ABuffer(3);
    EXPECT_EQ(3u, buffer->size());
    memcpy(buffer->data(), "\x01\x02\x07", 3);
    sp<AMessage> withBuffer = new AMessage(9, handler);
    withBuffer->setBuffer("buffer", buffer);
    ASSERT_EQ(OK, withBuffer->post());
    expected.push_back(9007);

    handler->waitFor(expected.size());
    looper->stop();
    EXPECT_EQ(expected, handler->seen);
    for (const auto& id : handler->threads) {
        EXPECT_EQ(handler->threads[0], id);
        EXPECT_NE(std::this_thread::get_id(), id);
    }
    int32_t missing = 0;
    EXPECT_FALSE(withBuffer->findInt32("value", &missing));
}

TEST(LooperTest, StopJoinsAndDropsWhatWasNotHandledAndLaterPostsFail) {
    sp<ALooper> looper = new ALooper();
    sp<RecordingHandler> handler = new RecordingHandler();
    handler->holdFirst = true;
    looper->registerHandler(handler);
    looper->start();
    for (int32_t i = 0; i < 5; ++i) message(1, handler, i)->post();
    handler->waitFor(1);  // the first message is being handled, four wait

    std::thread releaser([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        std::lock_guard<std::mutex> guard(handler->lock);
        handler->released = true;
        handler->changed.notify_all();
    });
    looper->stop();  // returns only once the held message is done
    {
        std::lock_guard<std::mutex> guard(handler->lock);
        EXPECT_TRUE(handler->released);
    }
    releaser.join();
    EXPECT_NE(OK, message(1, handler, 9)->post());
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(std::vector<int32_t>{1000}, handler->seen);
}

TEST(LooperTest, MessagesOfAnUnregisteredHandlerAreNotDelivered) {
    sp<ALooper> looper = new ALooper();
    sp<RecordingHandler> kept = new RecordingHandler();
    sp<RecordingHandler> dropped = new RecordingHandler();
    looper->registerHandler(kept);
    looper->registerHandler(dropped);
    looper->start();
    sp<AMessage> late = message(2, dropped, 1);  // addressed before the handler leaves
    looper->unregisterHandler(dropped->id());
    late->post();
    message(1, kept, 1)->post();
    kept->waitFor(1);
    looper->stop();
    EXPECT_TRUE(dropped->seen.empty());
}

struct DeathRecorder : public hardware::hidl_death_recipient {
    std::vector<uint64_t> cookies;
    void serviceDied(uint64_t cookie, const wp<hidl::base::V1_0::IBase>& who) override {
        EXPECT_NE(nullptr, who.promote());
        cookies.push_back(cookie);
    }
};

TEST(HidlTest, DeathReachesLinkedRecipientsOnceAndNotUnlinkedOnes) {
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

    hardware::Return<void> failed(hardware::Status::fromExceptionCode(-129));
    EXPECT_FALSE(failed.isOk());
    EXPECT_TRUE(hardware::Return<void>(hardware::Status::ok()).isOk());
}

TEST(HidlTest, ExternalVectorsWrapWithoutCopyingAndCopiesOwn) {
    uint8_t bytes[3] = {1, 2, 3};
    hardware::hidl_vec<uint8_t> wrapped;
    EXPECT_EQ(0u, wrapped.size());
    wrapped.setToExternal(bytes, sizeof(bytes));
    EXPECT_EQ(bytes, wrapped.data());
    hardware::hidl_vec<uint8_t> copy(wrapped);
    hardware::hidl_vec<uint8_t> moved(std::move(wrapped));
    EXPECT_EQ(bytes, moved.data());
    bytes[0] = 9;
    EXPECT_EQ((std::vector<uint8_t>{1, 2, 3}), static_cast<std::vector<uint8_t>>(copy));
    EXPECT_EQ((std::vector<uint8_t>{9, 2, 3}), static_cast<std::vector<uint8_t>>(moved));
    EXPECT_EQ(0u, wrapped.size());
}

}  // namespace
