// The effect handle end to end: commands written into the real shared store and read back the
// way the effect reads them.
#include <gtest/gtest.h>

#include "effect/SetParamCommand.h"
#include "effect/SfxEffect.h"
#include "sfxparamstorage/StoreSnapshot.h"
#include "support/LogCapture.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using android::SfxParamStore;
using test::codeId;
using test::LogCapture;
using test::readStore;
using test::StoreContents;

const char kInvalidBlob[] = "sendSharedStore() Invalid data for setting parameter values.";

class SfxEffectTest : public ::testing::Test {
protected:
    void SetUp() override { SfxParamStore::getInstance().clear(); }
    void TearDown() override { SfxParamStore::getInstance().clear(); }
    static int version() {
        int v = 0;
        readStore(false, &v);
        return v;
    }
    SfxEffect mEffect{0, android::String16("korvi")};
};

TEST_F(SfxEffectTest, ACommandReachesTheStoreAsOneCommit) {
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x2);
    cmd.add(SFX_DVLE, 1);
    const std::vector<int> bands{100, 200};
    cmd.add(SFX_VCBF, &bands);
    cmd.setDeviceId(0x8);
    const std::vector<int> none;
    cmd.add(SFX_DHFM, {none});
    cmd.add(SFX_IEBS, 2, {bands, bands});
    EXPECT_EQ(cmd.execute(mEffect), -22);
    EXPECT_EQ(version(), 1) << "one commit per command";
    EXPECT_EQ(readStore(), (StoreContents{{0x2, {{0x656c7664, {1}}, {codeId("VCBF"), {100, 200}}}},
                                          {0x8, {{codeId("DHFM"), {}}, {codeId("IEBS"), {2, 100, 200, 100, 200}}}}}));
}

TEST_F(SfxEffectTest, AnInvalidBlobIsLoggedAndNothingIsWritten) {
    LogCapture logs;
    // Entry count 2, but one entry.
    std::vector<int> twoClaimed{0x40000000, 2, 0x2, codeId("DVLE"), 1, 1};
    mEffect.sendSharedStore(twoClaimed.data(), twoClaimed.size() * sizeof(int));
    // Not a whole number of words.
    std::vector<int> good{0x40000000, 1, 0x2, codeId("DVLE"), 1, 1};
    mEffect.sendSharedStore(good.data(), good.size() * sizeof(int) - 1);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "SfxEffect", kInvalidBlob), 2u) << logs.dump();
    EXPECT_EQ(version(), 0);
    EXPECT_TRUE(readStore().empty());

    // The same path takes a good blob.
    logs.clear();
    EXPECT_EQ(mEffect.send(7, good), -22);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "SfxEffect", kInvalidBlob), 0u) << logs.dump();
    EXPECT_EQ(readStore(), (StoreContents{{0x2, {{0x656c7664, {1}}}}}));
}

}  // namespace
}  // namespace korvi
