// The effect handle end to end: commands written into the real shared store and read back the
// way the effect reads them.
#include <gtest/gtest.h>

#include <sfxparamstorage/SfxParamStore.h>

#include "effect/ParameterTranslator.h"
#include "effect/SetParamCommand.h"
#include "effect/SfxEffect.h"
#include "model/DeviceParameters.h"
#include "support/LogCapture.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using android::KeyedVector;
using android::SfxParamCache;
using android::SfxParamStore;
using test::codeId;
using test::LogCapture;

const char kInvalidBlob[] = "sendSharedStore() Invalid data for setting parameter values.";

// What a reader of the store sees: device -> parameter id -> values, and the store's version.
struct StoreView {
    std::map<uint32_t, std::map<int32_t, std::vector<int32_t>>> params;
    int version = 0;
};

StoreView readStore(bool onlyChanged = false, int since = 0) {
    KeyedVector<uint32_t, SfxParamCache*> out;
    StoreView view;
    view.version = since;
    EXPECT_EQ(SfxParamStore::getInstance().getStoredParams(&out, onlyChanged, &view.version), 0);
    for (size_t i = 0; i < out.size(); ++i) {
        for (const auto& [id, values] : out.valueAt(i)->params()) view.params[out.keyAt(i)][id] = values;
    }
    SfxParamStore::releaseStoredParams(&out);
    return view;
}

class SfxEffectTest : public ::testing::Test {
protected:
    void SetUp() override { SfxParamStore::getInstance().clear(); }
    void TearDown() override { SfxParamStore::getInstance().clear(); }
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

    StoreView stored = readStore();
    EXPECT_EQ(stored.version, 1) << "one commit per command";
    ASSERT_EQ(stored.params.size(), 2u);
    EXPECT_EQ(stored.params[0x2], (std::map<int32_t, std::vector<int32_t>>{
                                      {0x656c7664, {1}}, {codeId("VCBF"), {100, 200}}}));
    EXPECT_EQ(stored.params[0x8], (std::map<int32_t, std::vector<int32_t>>{
                                      {codeId("DHFM"), {}}, {codeId("IEBS"), {2, 100, 200, 100, 200}}}));

    // A second command is a second commit; a reader asking for news sees only its entries.
    SetParamCommand next(0x40000000);
    next.setDeviceId(0x8);
    next.add(SFX_DHFM, 3);
    EXPECT_EQ(next.execute(mEffect), -22);
    StoreView news = readStore(true, stored.version);
    EXPECT_EQ(news.version, 2);
    EXPECT_EQ(news.params, (std::map<uint32_t, std::map<int32_t, std::vector<int32_t>>>{
                               {0x8, {{codeId("DHFM"), {3}}}}}));
    EXPECT_EQ(readStore().params[0x2].size(), 2u);

    // An empty command does not reach the store at all.
    SetParamCommand empty(0x40000000);
    EXPECT_EQ(empty.execute(mEffect), 0);
    EXPECT_EQ(readStore().version, 2);
}

TEST_F(SfxEffectTest, AnInvalidBlobIsLoggedAndNothingIsWritten) {
    LogCapture logs;
    // Entry count 2, but one entry.
    std::vector<int> twoClaimed{0x40000000, 2, 0x2, codeId("DVLE"), 1, 1};
    mEffect.sendSharedStore(twoClaimed.data(), twoClaimed.size() * sizeof(int));
    // Not a whole number of words.
    std::vector<int> ragged{0x40000000, 1, 0x2, codeId("DVLE"), 1, 1};
    mEffect.sendSharedStore(ragged.data(), ragged.size() * sizeof(int) - 1);
    // A value count running past the end.
    std::vector<int> overrun{0x40000000, 1, 0x2, codeId("DVLE"), 5, 1};
    EXPECT_EQ(mEffect.send(0, overrun), -22);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "SfxEffect", kInvalidBlob), 3u) << logs.dump();
    StoreView stored = readStore();
    EXPECT_EQ(stored.version, 0);
    EXPECT_TRUE(stored.params.empty());

    // The same path takes a good blob.
    logs.clear();
    std::vector<int> good{0x40000000, 1, 0x2, codeId("DVLE"), 1, 1};
    EXPECT_EQ(mEffect.send(7, good), -22);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "SfxEffect", kInvalidBlob), 0u) << logs.dump();
    EXPECT_EQ(readStore().params[0x2][0x656c7664], (std::vector<int32_t>{1}));
}

TEST_F(SfxEffectTest, ReadingGoesThroughTheStoreNotTheHandle) {
    std::vector<int> blob{1, 2, 3};
    EXPECT_EQ(mEffect.receive(0, blob), 0);
    EXPECT_EQ(blob, (std::vector<int>{1, 2, 3}));
    EXPECT_TRUE(mEffect.hasControl());
    mEffect.setEnabled(false);
    EXPECT_TRUE(mEffect.hasControl());
}

TEST_F(SfxEffectTest, AViewChangeTravelsIntoTheStore) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    ProfileEndpoint endpoint(1, HEADPHONE, 0);
    endpoint.set(DIALOG_ENHANCER_AMOUNT, {14});
    endpoint.set(DIALOG_ENHANCER_ENABLE, {1});
    view.setProfileEndpoint(endpoint);

    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x8);
    translator.translatePending(cmd);
    cmd.execute(mEffect);
    EXPECT_EQ(readStore().params, (std::map<uint32_t, std::map<int32_t, std::vector<int32_t>>>{
                                      {0x8,
                                       {{codeId("DEA"), {12}},
                                        {codeId("DEON"), {1}},
                                        {codeId("MDEE"), {1}}}}}));

    // Unchanged values: nothing pending, no commit.
    view.setProfileEndpoint(endpoint);
    SetParamCommand again(0x40000000);
    again.setDeviceId(0x8);
    translator.translatePending(again);
    EXPECT_EQ(again.execute(mEffect), 0);
    EXPECT_EQ(readStore().version, 1);
}

}  // namespace
}  // namespace korvi
