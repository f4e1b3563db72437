// A running service over a temporary device root with the bundled factory file and a real
// database. A probe client (a decoder client: its departure saves nothing) is registered first;
// it hears every refresh that a registration posts, so once it has heard as many as were posted,
// the handler has handled every message posted before the last registration (sync()).
#pragma once

#include <gtest/gtest.h>

#include <sfxparamstorage/SfxParamStore.h>
#include <vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "service/KorviManagerService.h"
#include "support/TempDeviceRoot.h"

namespace korvi::test {

using android::KorviManagerService;
using android::sp;
using Bytes = std::vector<uint8_t>;
// Notifications as every client received them, in order: (uid, payload).
using Journal = std::vector<std::pair<uint32_t, Bytes>>;

class RecordingClient : public KorviManagerService::ITcsCallbacks {
public:
    explicit RecordingClient(uint32_t uid, Journal* journal = nullptr)
        : mUid(uid), mJournal(journal) {}

    android::hardware::Return<void> onSfxParamUpdate(
            const android::hardware::hidl_vec<uint8_t>& data) override {
        std::lock_guard<std::mutex> guard(mLock);
        mUpdates.emplace_back(data.begin(), data.end());
        // Clients sharing a journal are called one at a time, under the service's lock.
        if (mJournal != nullptr) mJournal->emplace_back(mUid, mUpdates.back());
        mChanged.notify_all();
        if (failing) return android::hardware::Status::fromExceptionCode(-129);
        return android::hardware::Void();
    }
    std::vector<Bytes> updates() {
        std::lock_guard<std::mutex> guard(mLock);
        return mUpdates;
    }
    bool waitFor(size_t count) {
        std::unique_lock<std::mutex> guard(mLock);
        return mChanged.wait_for(guard, std::chrono::seconds(20),
                                 [&] { return mUpdates.size() >= count; });
    }
    std::atomic<bool> failing{false};

private:
    const uint32_t mUid;
    Journal* mJournal;
    std::mutex mLock;
    std::condition_variable mChanged;
    std::vector<Bytes> mUpdates;
};

// A request: the event word (most significant byte first), then little-endian words.
inline Bytes request(uint8_t event, std::initializer_list<int32_t> words) {
    Bytes bytes = {0, 0, 0, event};
    for (int32_t w : words) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(uint32_t(w) >> (8 * i)));
    }
    return bytes;
}
// Little-endian words, as answers are written.
inline Bytes words(std::initializer_list<int32_t> values) {
    Bytes bytes = request(0, values);
    return Bytes(bytes.begin() + 4, bytes.end());
}

class ServiceTest : public ::testing::Test {
protected:
    static constexpr uint32_t kProbeUid = 0xfff0;
    static constexpr const char* kDatabase = "data/vendor/korvi/wem_sqlite3.db";

    void SetUp() override { android::SfxParamStore::getInstance().clear(); }
    void TearDown() override {
        stopService();
        AxContextManager::getInstance().release();
        android::SfxParamStore::getInstance().clear();
    }

    // Installs the bundled factory file with each (from, to) replaced once, and starts.
    AxContext* start(const std::vector<std::pair<std::string, std::string>>& edits = {}) {
        const std::string xml = "vendor/etc/korvi/wem-default.xml";
        mRoot.copyFromData(xml);
        std::string text = mRoot.read(xml);
        for (const auto& [from, to] : edits) text.replace(text.find(from), from.size(), to);
        mRoot.write(xml, text);
        return restart();
    }
    // Runs the start-up again over the files the root holds now.
    AxContext* restart() {
        AxContextManager::getInstance().release();
        AxContextManager::init_smartpa_type();
        AxContextManager::getInstance().init();
        return AxContextManager::getInstance().getAxContext();
    }
    // Forgets the database, so that the next start builds it from the factory file again.
    void dropDatabase() {
        AxContextManager::getInstance().release();
        std::remove(mRoot.path(kDatabase).c_str());
    }

    void startService(const std::vector<std::pair<std::string, std::string>>& edits = {}) {
        mContext = start(edits);
        ASSERT_NE(nullptr, mContext);
        newService();
        ASSERT_TRUE(mService->isInitialised());
    }
    void newService() {
        mService = new KorviManagerService();
        mProbe = new RecordingClient(kProbeUid);
        mRefreshes = 0;
        registerClient(mProbe, 1, kProbeUid);
        EXPECT_TRUE(mProbe->waitFor(1));
    }
    int registerClient(const sp<RecordingClient>& client, int type, uint32_t uid) {
        if (client != nullptr) ++mRefreshes;
        return mService->registerClient(client, type, uid);
    }
    sp<RecordingClient> addClient(uint32_t uid, int type, Journal* journal = nullptr) {
        sp<RecordingClient> client = new RecordingClient(uid, journal);
        EXPECT_EQ(0, registerClient(client, type, uid));
        mRegistered.push_back(uid);
        return client;
    }
    // Returns once the handler has handled every message posted before the call.
    void sync() {
        registerClient(mProbe, 1, kProbeUid);
        ASSERT_TRUE(mProbe->waitFor(mRefreshes.load()));
    }

    // The request from a heap block of exactly its size, so that an over-read is caught.
    void send(const Bytes& bytes) {
        std::unique_ptr<uint8_t[]> copy(new uint8_t[bytes.size() + 1]);
        memcpy(copy.get(), bytes.data(), bytes.size());
        ASSERT_EQ(0, mService->setSfxParam(bytes.empty() ? nullptr : copy.get(), bytes.size()));
    }
    // The whole output buffer after a query: exactly outSize heap bytes, 0xee before the call.
    Bytes query(const Bytes& in, size_t outSize = 4) {
        Bytes input(in);
        std::unique_ptr<uint8_t[]> out(new uint8_t[outSize + 1]);
        memset(out.get(), 0xee, outSize);
        EXPECT_EQ(0, mService->getSfxParam(input.data(), input.size(), out.get(), outSize));
        return Bytes(out.get(), out.get() + outSize);
    }

    // Clients hold the service: it goes once every client has left; then its handler stops.
    void stopService() {
        if (mService == nullptr) return;
        for (uint32_t uid : mRegistered) mService->unregisterClient(nullptr, 0, uid);
        mService->unregisterClient(mProbe, 1, kProbeUid);
        mRegistered.clear();
        android::wp<KorviManagerService> weak = mService;
        mService.clear();
        EXPECT_EQ(nullptr, weak.promote()) << "the service outlived its last reference";
    }

    TempDeviceRoot mRoot;
    AxContext* mContext = nullptr;
    sp<KorviManagerService> mService;
    sp<RecordingClient> mProbe;
    std::vector<uint32_t> mRegistered;
    std::atomic<size_t> mRefreshes{0};  // refreshes posted since the probe registered
};

}  // namespace korvi::test
