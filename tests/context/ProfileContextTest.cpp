// One profile's working state against its factory values: the three modification tests, save and
// reset through the real database file, defaults kept from the first load, the IEQ preset in
// force, and the fatal exit for a missing endpoint record.
#include <gtest/gtest.h>

#include <functional>

#include "common/IntText.h"
#include "context/ContextTestSupport.h"
#include "context/ProfileContext.h"

namespace korvi {
namespace {

using test::ContextStore;
using test::RawDb;

// Values of one column of a profile's custom or default row, as the database file holds them.
std::string column(const ContextStore& store, const std::string& table, const std::string& column,
                   int profileId, const std::string& customName, const std::string& extra = "") {
    RawDb db(store.dbPath());
    return db.value("SELECT " + column + " FROM " + table + " WHERE profile_id=" +
                    std::to_string(profileId) + " AND custom_name='" + customName + "'" + extra);
}

TEST(ProfileContextTest, ModificationTestsTellProfileEndpointAndGeqChangesApart) {
    ContextStore store;
    ProfileContext context(&store.provider(), 1);
    context.load();
    struct Case {
        const char* change;
        std::function<void(ProfileContext&)> apply;
        bool modified, specific, geq;
    };
    const Case cases[] = {
        {"nothing", [](ProfileContext&) {}, false, false, false},
        {"name, mobility and GEQ selection are not compared",
         [](ProfileContext& c) {
             c.getProfile()->setName("Renamed");
             c.getProfile()->setMobility(!c.getProfile()->isMobility());
             c.getProfile()->setSelectedGeqPreset(3);
         },
         false, false, false},
        {"one GEQ band",
         [](ProfileContext& c) {
             std::vector<int> gains = c.getSelectedGeqPreset()->mValues[GEQ_GAIN];
             gains.back() += 1;
             c.getSelectedGeqPreset()->set(GEQ_GAIN, gains);
         },
         true, false, true},
        {"selected IEQ preset of an endpoint",
         [](ProfileContext& c) {
             ProfileEndpoint* speaker = c.getProfileEndpoint(SPEAKER);
             speaker->setSelectedIeqPreset(speaker->getSelectedIeqPreset() == 1 ? 2 : 1);
         },
         true, true, false},
        {"an endpoint value",
         [](ProfileContext& c) { c.getProfileEndpoint(OTHER)->set(DIALOG_ENHANCER_AMOUNT, {9}); },
         true, true, false},
        {"a profile value",
         [](ProfileContext& c) { c.getProfile()->set(REVERB_SUPPRESSION_AMOUNT, {7}); }, true,
         true, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change);
        c.apply(context);
        EXPECT_EQ(context.isModified(), c.modified);
        EXPECT_EQ(context.isProfileSpecificSettingsModified(), c.specific);
        EXPECT_EQ(context.isGeqModified(), c.geq);
        context.reset();
        EXPECT_FALSE(context.isModified());
        EXPECT_FALSE(context.isGeqModified());
    }
}

TEST(ProfileContextTest, SaveWritesCustomRowsAndResetBringsBackFactoryValues) {
    ContextStore store;
    ProfileContext context(&store.provider(), 2);
    context.load();
    const std::string factoryGains = column(store, "geq_presets", "geq_gain", 2, "default");
    const std::string factoryAmount = column(store, "profile_endpoints", "dialog_enhancer_amount",
                                             2, "default", " AND endpoint='headphone'");
    const std::string factoryReverb =
        column(store, "profiles", "reverb_suppression_amount", 2, "default");

    std::vector<int> gains = context.getSelectedGeqPreset()->mValues[GEQ_GAIN];
    gains[0] = -77;
    context.getSelectedGeqPreset()->set(GEQ_GAIN, gains);
    context.getProfileEndpoint(HEADPHONE)->set(DIALOG_ENHANCER_AMOUNT, {13});
    context.getProfile()->set(REVERB_SUPPRESSION_AMOUNT, {5});
    EXPECT_EQ(context.save(), 0);
    EXPECT_FALSE(context.getSelectedGeqPreset()->isDirty());
    EXPECT_FALSE(context.getProfileEndpoint(HEADPHONE)->isDirty());
    EXPECT_FALSE(context.getProfile()->isDirty());
    EXPECT_EQ(column(store, "geq_presets", "geq_gain", 2, "custom"), intVector2String(gains));
    EXPECT_EQ(column(store, "profile_endpoints", "dialog_enhancer_amount", 2, "custom",
                     " AND endpoint='headphone'"),
              "13");
    EXPECT_EQ(column(store, "profiles", "reverb_suppression_amount", 2, "custom"), "5");
    EXPECT_EQ(column(store, "geq_presets", "geq_gain", 2, "default"), factoryGains);

    // resetGeq touches the GEQ preset only, and nothing reaches the file before a save.
    context.resetGeq();
    EXPECT_EQ(intVector2String(context.getSelectedGeqPreset()->mValues[GEQ_GAIN]), factoryGains);
    EXPECT_EQ(context.getProfile()->mValues[REVERB_SUPPRESSION_AMOUNT], std::vector<int>{5});
    EXPECT_EQ(column(store, "geq_presets", "geq_gain", 2, "custom"), intVector2String(gains));

    context.reset();
    EXPECT_FALSE(context.isModified());
    EXPECT_EQ(context.save(), 0);
    EXPECT_EQ(column(store, "geq_presets", "geq_gain", 2, "custom"), factoryGains);
    EXPECT_EQ(column(store, "profile_endpoints", "dialog_enhancer_amount", 2, "custom",
                     " AND endpoint='headphone'"),
              factoryAmount);
    EXPECT_EQ(column(store, "profiles", "reverb_suppression_amount", 2, "custom"), factoryReverb);
}

TEST(ProfileContextTest, DefaultsAreTakenAtTheFirstLoadButTheGeqTestReadsTheFactoryAfresh) {
    ContextStore store;
    ProfileContext context(&store.provider(), 0);
    context.load();
    const std::vector<int> oldGains = context.getDefaults()->mGeqPreset->mValues[GEQ_GAIN];
    {
        // The factory rows change behind the context (as after a new tuning file).
        RawDb db(store.dbPath());
        db.exec("UPDATE geq_presets SET geq_gain='1,2,3' WHERE profile_id=0 AND "
                "custom_name='default'");
        db.exec("UPDATE profiles SET reverb_suppression_amount='9' WHERE profile_id=0 AND "
                "custom_name='default'");
    }
    context.load();
    EXPECT_EQ(context.getDefaults()->mGeqPreset->mValues[GEQ_GAIN], oldGains);
    EXPECT_FALSE(context.isModified());
    EXPECT_FALSE(context.isProfileSpecificSettingsModified());
    EXPECT_TRUE(context.isGeqModified());
}

TEST(ProfileContextTest, IeqPresetInForceFollowsIeqEnable) {
    ContextStore store;
    ProfileContext context(&store.provider(), 0);
    context.load();
    ProfileEndpoint* speaker = context.getProfileEndpoint(SPEAKER);
    speaker->setSelectedIeqPreset(3);
    struct Case {
        const char* enable;
        std::function<void()> apply;
        int preset;
    };
    const Case cases[] = {
        {"on", [&] { speaker->set(IEQ_ENABLE, {1}); }, 3},
        {"any non-zero first value", [&] { speaker->set(IEQ_ENABLE, {-1, 0}); }, 3},
        {"off", [&] { speaker->set(IEQ_ENABLE, {0, 1}); }, 0},
        {"empty", [&] { speaker->set(IEQ_ENABLE, {}); }, 0},
        {"absent", [&] { speaker->mValues.erase(IEQ_ENABLE); }, 0},
        {"on, selected preset without a row",
         [&] {
             speaker->set(IEQ_ENABLE, {1});
             speaker->setSelectedIeqPreset(99);
         },
         0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.enable);
        c.apply();
        IeqPreset* preset = context.getSelectedIeqPreset(SPEAKER);
        ASSERT_NE(preset, nullptr);
        EXPECT_EQ(preset->getPresetId(), c.preset);
        EXPECT_EQ(speaker->mValues.count(IEQ_ENABLE), 1u);
    }
}

TEST(ProfileContextDeathTest, MissingEndpointRecordEndsTheProcess) {
    // Profile 3 lost its working "other" record; its factory one is still there.
    ContextStore store([](Provider&, RawDb& db) {
        db.exec("DELETE FROM profile_endpoints WHERE profile_id=3 AND endpoint='other' AND "
                "custom_name='custom'");
    });
    ProfileContext context(&store.provider(), 3);
    context.load();
    EXPECT_NE(context.getProfileEndpoint(HEADPHONE), nullptr);
    const std::function<void()> calls[] = {
        [&] { context.getProfileEndpoint(OTHER); },
        [&] { context.getSelectedIeqPreset(OTHER); },
        [&] { context.isModified(); },
        [&] { context.isProfileSpecificSettingsModified(); },
    };
    for (const auto& call : calls) {
        EXPECT_EXIT(call(), testing::ExitedWithCode(255), "Couldn't find the profile endpoint fo 2");
    }
}

}  // namespace
}  // namespace korvi
