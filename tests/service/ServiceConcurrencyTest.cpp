// Several client threads against one service for a few seconds: registering, setting, querying,
// asking integer queries, leaving and dying, while the handler thread changes the state and
// notifies. Each thread owns one profile, so every change it makes must become visible to it and
// stay until its next change; the whole run must end (no deadlock) and leave the service empty.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "ServiceFixture.h"

namespace korvi::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kThreads = 4;
constexpr auto kRunTime = std::chrono::seconds(3);
constexpr auto kVisibleWithin = std::chrono::seconds(20);
constexpr int kSteererId = 113;  // 4 ... 64, one value per profile endpoint

class ServiceConcurrencyTest : public ServiceTest {
protected:
    Bytes steererOf(int profile) { return query(request(1, {kSteererId, profile})); }

    // One client thread: returns the number of changes it saw through.
    int runClient(int thread, Clock::time_point end, std::string* failure) {
        const int profile = thread;
        int changes = 0;
        for (uint32_t round = 0; Clock::now() < end; ++round) {
            const uint32_t uid = 1000 * (thread + 1) + round;
            const int type = round % 3 == 0 ? 1 + thread % 4 : round % 3 == 1 ? 7 : 5;
            sp<RecordingClient> client = new RecordingClient(uid);
            registerClient(client, type, uid);

            const int value = 4 + static_cast<int>((round * 7 + thread) % 61);
            Bytes set = request(1, {profile, kSteererId, 0, value});
            if (mService->setSfxParam(set.data(), set.size()) != 0) {
                *failure = "setSfxParam refused";
                return changes;
            }
            // Acknowledged: the change must show, and nobody else writes this profile.
            const auto deadline = Clock::now() + kVisibleWithin;
            while (steererOf(profile) != words({value})) {
                if (Clock::now() > deadline) {
                    *failure = "change of thread " + std::to_string(thread) + " never showed";
                    return changes;
                }
                std::this_thread::yield();
            }
            ++changes;
            for (uint32_t id : {0x44434350u, 0x47444541u, 0x4445414Du, 0x44564C41u, 0x5346584Fu,
                                0x41444556u, 0x44544656u}) {
                mService->getIntParam(id);
            }
            if (mService->getAvailableTuningDevicesLen(3) <= 0) *failure = "no headphone devices";
            if (steererOf(profile) != words({value})) {
                *failure = "thread " + std::to_string(thread) + " lost its change";
                return changes;
            }
            if (round % 2 == 0) {
                mService->unregisterClient(client, type, uid);
            } else {
                client->notifyDeath();
            }
        }
        return changes;
    }
};

TEST_F(ServiceConcurrencyTest, ClientThreadsRegisterSetQueryAndLeaveWithoutLosingChanges) {
    startService();
    ASSERT_GE(mContext->getNumOfProfiles(), kThreads);
    const auto end = Clock::now() + kRunTime;
    std::vector<std::string> failures(kThreads);
    std::vector<int> changes(kThreads, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&, t] { changes[t] = runClient(t, end, &failures[t]); });
    }
    for (std::thread& thread : threads) thread.join();  // a deadlock hangs here: ctest times out
    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ("", failures[t]);
        EXPECT_GT(changes[t], 0) << "thread " << t << " made no change";
    }
    // Every client left or died: only the probe is registered, and it is a decoder client.
    sync();
    EXPECT_EQ(1, mService->getIntParam(0x44434350u));  // DCCP
}

}  // namespace
}  // namespace korvi::test
