// A running service over a temporary device root: the bundled factory file is started up, a
// KorviManagerService is created over it, and a probe client (a decoder client, whose departure
// saves nothing) is registered so that tests can wait for the handler thread to catch up with
// every message posted before.
#pragma once

#include <gtest/gtest.h>

#include <hidl/HidlSupport.h>
#include <vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <sfxparamstorage/SfxParamStore.h>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
#include "support/TempDeviceRoot.h"
#include "service/KorviManagerService.h"

namespace korvi::test {

using android::KorviManagerService;
using android::sp;
using Bytes = std::vector<uint8_t>;

// Notifications in the order all clients received them: (uid, payload).
struct Journal {
    std::mutex lock;
    std::vector<std::pair<uint32_t, Bytes>> entries;
};

class RecordingClient : public KorviManagerService::ITcsCallbacks {
public:
    RecordingClient(uint32_t uid, Journal* journal = nullptr) : mUid(uid), mJournal(journal) {}

    android::hardware::Return<void> onSfxParamUpdate(
            const android::hardware::hidl_vec<uint8_t>& data) override {
        Bytes bytes(data.begin(), data.end());
        if (mJournal != nullptr) {
            std::lock_guard<std::mutex> guard(mJournal->lock);
            mJournal->entries.emplace_back(mUid, bytes);
        }
        std::lock_guard<std::mutex> guard(mLock);
        mUpdates.push_back(bytes);
        mChanged.notify_all();
        if (mFailing) {
            return android::hardware::Status::fromExceptionCode(
                    android::hardware::Status::EX_TRANSACTION_FAILED);
        }
        return android::hardware::Void();
    }

    size_t count() {
        std::lock_guard<std::mutex> guard(mLock);
        return mUpdates.size();
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
    void setFailing(bool failing) { mFailing = failing; }
    uint32_t uid() const { return mUid; }

private:
    const uint32_t mUid;
    Journal* mJournal;
    std::mutex mLock;
    std::condition_variable mChanged;
    std::vector<Bytes> mUpdates;
    bool mFailing = false;
};

inline Bytes littleEndianWords(std::initializer_list<int32_t> words) {
    Bytes bytes;
    for (int32_t w : words) {
        for (int i = 0; i < 4; ++i) bytes.push_back(static_cast<uint8_t>(static_cast<uint32_t>(w) >> (8 * i)));
    }
    return bytes;
}

// A request: the event word (most significant byte first), then little-endian words.
inline Bytes request(uint8_t event, std::initializer_list<int32_t> words) {
    Bytes bytes = {0, 0, 0, event};
    Bytes rest = littleEndianWords(words);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

// The refresh notification every registration posts: the integers -1 and 0.
inline const Bytes kRefreshAll = littleEndianWords({-1, 0});

class ServiceTest : public ::testing::Test {
protected:
    static constexpr uint32_t kProbeUid = 0xfff0;
    static constexpr int kProbeType = 1;

    void SetUp() override { android::SfxParamStore::getInstance().clear(); }
    void TearDown() override {
        stopService();
        AxContextManager::getInstance().release();
        android::SfxParamStore::getInstance().clear();
    }

    // Installs the bundled factory file with each (from, to) text replaced once, and starts.
    AxContext* start(const std::vector<std::pair<std::string, std::string>>& edits = {}) {
        const std::string xml = "vendor/etc/korvi/wem-default.xml";
        mRoot.copyFromData(xml);
        std::string text = mRoot.read(xml);
        for (const auto& [from, to] : edits) {
            const size_t at = text.find(from);
            EXPECT_NE(std::string::npos, at) << from;
            if (at != std::string::npos) text.replace(at, from.size(), to);
        }
        mRoot.write(xml, text);
        return restart();
    }
    // Runs the start-up again over whatever files the root holds now.
    AxContext* restart() {
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        return manager.getAxContext();
    }

    // Starts the state over the bundled files, creates the service and registers the probe.
    void startService() {
        mContext = start();
        ASSERT_NE(nullptr, mContext);
        mService = new KorviManagerService();
        registerProbe();
        ASSERT_TRUE(mService->isInitialised());
    }

    void registerProbe() {
        mProbe = new RecordingClient(kProbeUid);
        mRefreshes = 0;
        registerClient(mProbe, kProbeType, kProbeUid);
        EXPECT_TRUE(mProbe->waitFor(1));
    }

    // Every registration posts one refresh, and the probe, registered first, hears all of them:
    // once it has heard as many as were posted, the handler has handled every message posted
    // before the last one.
    int registerClient(const sp<RecordingClient>& client, int type, uint32_t uid) {
        if (client != nullptr) ++mRefreshes;
        return mService->registerClient(client, type, uid);
    }

    // Returns once the handler has handled every message posted before the call.
    void sync() {
        registerClient(mProbe, kProbeType, kProbeUid);
        ASSERT_TRUE(mProbe->waitFor(mRefreshes.load()));
    }

    // Forgets the database, so that the next start builds it from the factory file again.
    void dropDatabase() {
        AxContextManager::getInstance().release();
        for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
            std::remove(mRoot.path(std::string("data/vendor/korvi/wem_sqlite3.db") + suffix).c_str());
        }
    }

    void send(const Bytes& bytes) {
        // An exact-size heap copy, so that an over-read of the request is caught.
        std::unique_ptr<uint8_t[]> copy(new uint8_t[bytes.size() + (bytes.empty() ? 1 : 0)]);
        if (!bytes.empty()) memcpy(copy.get(), bytes.data(), bytes.size());
        ASSERT_EQ(0, mService->setSfxParam(copy.get(), bytes.size()));
    }

    // The answer of a query, read from an output buffer of exactly outSize bytes that starts
    // filled with 0xee; the answer is the buffer's whole content afterwards.
    Bytes query(const Bytes& in, size_t outSize = 80) {
        std::unique_ptr<uint8_t[]> input(new uint8_t[in.size() + (in.empty() ? 1 : 0)]);
        if (!in.empty()) memcpy(input.get(), in.data(), in.size());
        std::unique_ptr<uint8_t[]> out(new uint8_t[outSize + (outSize == 0 ? 1 : 0)]);
        memset(out.get(), 0xee, outSize);
        EXPECT_EQ(0, mService->getSfxParam(input.get(), in.size(), out.get(), outSize));
        return Bytes(out.get(), out.get() + outSize);
    }

    // The service goes when its last clients have left (they hold it), the handler is stopped.
    void stopService() {
        if (mService == nullptr) return;
        for (uint32_t uid : mRegistered) mService->unregisterClient(nullptr, 0, uid);
        mService->unregisterClient(mProbe, kProbeType, kProbeUid);
        mRegistered.clear();
        android::wp<KorviManagerService> weak = mService;
        mService.clear();
        EXPECT_EQ(nullptr, weak.promote()) << "the service outlived its last reference";
    }

    sp<RecordingClient> addClient(uint32_t uid, int type, Journal* journal = nullptr) {
        sp<RecordingClient> client = new RecordingClient(uid, journal);
        EXPECT_EQ(0, registerClient(client, type, uid));
        mRegistered.push_back(uid);
        return client;
    }

    TempDeviceRoot mRoot;
    AxContext* mContext = nullptr;
    sp<KorviManagerService> mService;
    sp<RecordingClient> mProbe;
    std::vector<uint32_t> mRegistered;
    std::atomic<size_t> mRefreshes{0};  // refresh notifications posted since the probe came
};

}  // namespace korvi::test
