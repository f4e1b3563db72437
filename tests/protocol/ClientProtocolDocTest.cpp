// Every worked example of docs/client-protocol.md, parsed from the document and sent to a real
// service over the sample device root: the bytes a client developer copies must do what the
// document says they do.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <mutex>
#include <sstream>

#include <vendor/korvi/hardware/tcs/2.0/ITcsCallbacks.h>

#include "context/AxContextManager.h"
#include "service/KorviManagerService.h"
#include "support/TempDeviceRoot.h"

namespace korvi::test {
namespace {

using android::hardware::hidl_vec;
using android::hardware::Return;
using android::hardware::Status;

// Counts notifications, so the test can wait for the handler to catch up.
class CountingClient : public vendor::korvi::hardware::tcs::V2_0::ITcsCallbacks {
public:
    Return<void> onSfxParamUpdate(const hidl_vec<uint8_t>&) override {
        std::lock_guard<std::mutex> lock(mLock);
        ++mCount;
        mArrived.notify_all();
        return Status::ok();
    }
    bool waitFor(int count) {
        std::unique_lock<std::mutex> lock(mLock);
        return mArrived.wait_for(lock, std::chrono::seconds(10), [&] { return mCount >= count; });
    }
    int count() {
        std::lock_guard<std::mutex> lock(mLock);
        return mCount;
    }

private:
    std::mutex mLock;
    std::condition_variable mArrived;
    int mCount = 0;
};

struct Step {
    int line;
    std::string method;  // setSfxParam, getSfxParam, getIntParam
    std::string in;      // hex bytes, or the four characters of an integer code
    std::string expect;  // hex bytes, "nothing", or a decimal number; empty for setSfxParam
};

std::vector<uint8_t> bytesOf(const std::string& hex) {
    std::istringstream in(hex);
    std::vector<uint8_t> bytes;
    for (std::string b; in >> b;) bytes.push_back(static_cast<uint8_t>(std::stoul(b, nullptr, 16)));
    return bytes;
}

std::vector<Step> readExchanges(const std::string& path) {
    std::ifstream doc(path);
    std::vector<Step> steps;
    bool inBlock = false;
    int number = 0;
    for (std::string line; std::getline(doc, line);) {
        ++number;
        if (line.rfind("```", 0) == 0) {
            inBlock = line == "```exchange";
            continue;
        }
        if (!inBlock || line.empty()) continue;
        Step step{number, line.substr(0, line.find(' ')), "", ""};
        const std::string rest = line.substr(step.method.size());
        const size_t arrow = rest.find("->");
        step.in = rest.substr(0, arrow);
        if (arrow != std::string::npos) step.expect = rest.substr(arrow + 2);
        for (std::string* s : {&step.in, &step.expect}) {
            s->erase(0, s->find_first_not_of(' '));
            s->erase(s->find_last_not_of(' ') + 1);
        }
        steps.push_back(step);
    }
    return steps;
}

TEST(ClientProtocolDoc, EveryExampleDoesWhatTheDocumentSays) {
    TempDeviceRoot root;
    for (const char* f : {"vendor/etc/korvi/wem-default.xml", "vendor/etc/korvi/wem-fs19xx.xml",
                          "data/vendor/korvi/wem-extra.xml", "sys/kernel/smartpa/smartpa_type"}) {
        root.copyFromData(f);
    }
    // Start-up over this root, also when an earlier test of the process started (and released)
    // the process-wide context manager: the service only asks it for its context.
    if (AxContextManager::hasInstance()) {
        AxContextManager::getInstance().release();
        AxContextManager::init_smartpa_type();
        AxContextManager::getInstance().init();
    }
    const std::vector<Step> steps = readExchanges(KORVI_SOURCE_DIR "/docs/client-protocol.md");
    ASSERT_GE(steps.size(), 20u) << "the document's examples were not found";
    {
        android::sp<android::KorviManagerService> service = new android::KorviManagerService();
        android::sp<CountingClient> client = new CountingClient();
        int posted = 0;
        service->registerClient(client, 0, 1000);
        ASSERT_TRUE(client->waitFor(++posted));
        for (const Step& step : steps) {
            SCOPED_TRACE("docs/client-protocol.md:" + std::to_string(step.line));
            if (step.method == "setSfxParam") {
                std::vector<uint8_t> in = bytesOf(step.in);
                ASSERT_EQ(service->setSfxParam(in.data(), static_cast<uint32_t>(in.size())), 0);
                service->registerClient(client, 0, 1000);  // its refresh comes after the write
                ASSERT_TRUE(client->waitFor(++posted));
            } else if (step.method == "getSfxParam") {
                std::vector<uint8_t> in = bytesOf(step.in);
                const bool nothing = step.expect == "nothing";
                const std::vector<uint8_t> expected = nothing ? std::vector<uint8_t>(4, 0xee)
                                                              : bytesOf(step.expect);
                std::vector<uint8_t> out(expected.size(), 0xee);
                ASSERT_EQ(service->getSfxParam(in.data(), static_cast<uint32_t>(in.size()),
                                               out.data(), static_cast<uint32_t>(out.size())),
                          0);
                EXPECT_EQ(out, expected);
            } else if (step.method == "getIntParam") {
                const bool number = step.in.rfind("0x", 0) == 0;
                ASSERT_TRUE(number || step.in.size() == 4u);
                const uint32_t code =
                        number ? static_cast<uint32_t>(std::stoul(step.in, nullptr, 16))
                               : (uint32_t(uint8_t(step.in[0])) << 24) |
                                         (uint32_t(uint8_t(step.in[1])) << 16) |
                                         (uint32_t(uint8_t(step.in[2])) << 8) | uint8_t(step.in[3]);
                EXPECT_EQ(service->getIntParam(code), std::stol(step.expect));
            } else {
                ADD_FAILURE() << "unknown method in an exchange block: " << step.method;
            }
        }
        service->unregisterClient(client, 0, 1000);
    }
    AxContextManager::getInstance().release();
}

}  // namespace
}  // namespace korvi::test
