// The shared store on one thread: staging, commits, versions and what readers get.
#include <gtest/gtest.h>

#include <sfxparamstorage/SfxParamStore.h>

#include <vector>

#include "StoreSnapshot.h"

namespace korvi {
namespace {

using android::KeyedVector;
using android::SfxParamCache;
using android::SfxParamStore;
using test::readStore;
using test::StoreContents;

constexpr int32_t kDvle = 0x656c7664;
constexpr int32_t kVol = 0x006c6f76;
constexpr int32_t kIebs = 0x73626569;

class SfxParamStoreTest : public ::testing::Test {
protected:
    void SetUp() override { store().clear(); }
    void TearDown() override { store().clear(); }
    static SfxParamStore& store() { return SfxParamStore::getInstance(); }
    static void set(uint32_t device, int32_t id, std::vector<int32_t> values) {
        ASSERT_EQ(store().setParam(device, id, values.data(), static_cast<uint32_t>(values.size())), 0);
    }
};

TEST_F(SfxParamStoreTest, StagedValuesAppearOnlyAtCommitAllAtOnce) {
    int version = -1;
    EXPECT_TRUE(readStore(false, &version).empty());
    EXPECT_EQ(version, 0);

    set(2, kDvle, {1});
    set(0x40000000, kIebs, {3, 10, 20, 30});
    set(8, kVol, {});
    EXPECT_TRUE(readStore(false, &version).empty());
    EXPECT_EQ(version, 0);

    EXPECT_EQ(store().commitChange(), 0);
    const StoreContents expected = {
        {2, {{kDvle, {1}}}},
        {8, {{kVol, {}}}},
        {0x40000000, {{kIebs, {3, 10, 20, 30}}}},
    };
    EXPECT_EQ(readStore(false, &version), expected);
    EXPECT_EQ(version, 1);

    // The staging area was emptied by the commit: a second commit publishes nothing new.
    EXPECT_EQ(store().commitChange(), 0);
    EXPECT_EQ(readStore(false, &version), expected);
    EXPECT_EQ(version, 1);

    // clear() forgets staged and committed values and the version.
    set(4, kDvle, {2});
    store().clear();
    store().commitChange();
    EXPECT_TRUE(readStore(false, &version).empty());
    EXPECT_EQ(version, 0);
}

TEST_F(SfxParamStoreTest, OnlyChangedReportsWhatCommitsAfterTheReadersVersionWrote) {
    set(2, kDvle, {5, 6});
    set(2, kDvle, {1});  // staged twice before one commit: the last one counts
    set(2, kVol, {2});
    set(8, kDvle, {3});
    store().commitChange();  // version 1
    set(2, kVol, {2});       // the same value again still counts as written
    store().commitChange();  // version 2
    set(8, kIebs, {4});
    set(2, kDvle, {0});      // replaces the value of version 1, the others stay
    store().commitChange();  // version 3

    int version = 1;
    StoreContents since1 = readStore(true, &version);
    EXPECT_EQ(version, 3);
    EXPECT_EQ(since1, (StoreContents{{2, {{kDvle, {0}}, {kVol, {2}}}}, {8, {{kIebs, {4}}}}}));

    version = 2;
    EXPECT_EQ(readStore(true, &version), (StoreContents{{2, {{kDvle, {0}}}}, {8, {{kIebs, {4}}}}}));
    EXPECT_EQ(version, 3);

    // Up to date: nothing, and the version stays.
    EXPECT_TRUE(readStore(true, &version).empty());
    EXPECT_EQ(version, 3);

    // From 0 everything; onlyChanged false ignores the incoming version.
    version = 0;
    const StoreContents all = {{2, {{kDvle, {0}}, {kVol, {2}}}}, {8, {{kDvle, {3}}, {kIebs, {4}}}}};
    EXPECT_EQ(readStore(true, &version), all);
    version = 3;
    EXPECT_EQ(readStore(false, &version), all);
    EXPECT_EQ(version, 3);
}

TEST_F(SfxParamStoreTest, RefusesBadArgumentsWithoutTouchingAnything) {
    EXPECT_EQ(store().setParam(2, kDvle, nullptr, 1), -22);
    EXPECT_EQ(store().setParam(2, kVol, nullptr, 0), 0);
    store().commitChange();
    EXPECT_EQ(readStore(), (StoreContents{{2, {{kVol, {}}}}}));

    int version = 0;
    KeyedVector<uint32_t, SfxParamCache*> params;
    EXPECT_EQ(store().getStoredParams(nullptr, false, &version), -22);
    EXPECT_EQ(store().getStoredParams(&params, false, nullptr), -22);
    EXPECT_TRUE(params.isEmpty());

    // A result vector that still holds caches is refused and left as it was.
    SfxParamCache* mine = new SfxParamCache();
    params.add(99, mine);
    version = 0;
    EXPECT_EQ(store().getStoredParams(&params, false, &version), -22);
    EXPECT_EQ(version, 0);
    ASSERT_EQ(params.size(), 1u);
    EXPECT_EQ(params.valueAt(0), mine);
    SfxParamStore::releaseStoredParams(&params);
    EXPECT_TRUE(params.isEmpty());
    SfxParamStore::releaseStoredParams(nullptr);
}

TEST_F(SfxParamStoreTest, CachesAreCopiesThatOutliveLaterCommits) {
    set(2, kIebs, {1, 2, 3});
    store().commitChange();
    KeyedVector<uint32_t, SfxParamCache*> params;
    int version = 0;
    ASSERT_EQ(store().getStoredParams(&params, false, &version), 0);
    set(2, kIebs, {4});
    store().commitChange();
    store().clear();
    ASSERT_EQ(params.size(), 1u);
    const SfxParamCache* cache = params.valueFor(2);
    EXPECT_EQ(cache->size(), 1u);
    EXPECT_TRUE(cache->contains(kIebs));
    EXPECT_FALSE(cache->contains(kDvle));
    EXPECT_EQ(cache->find(kDvle), nullptr);
    ASSERT_NE(cache->find(kIebs), nullptr);
    EXPECT_EQ(*cache->find(kIebs), (std::vector<int32_t>{1, 2, 3}));
    SfxParamStore::releaseStoredParams(&params);
}

}  // namespace
}  // namespace korvi
