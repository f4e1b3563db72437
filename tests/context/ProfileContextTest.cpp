// One profile's working state against its factory values, over the real database file.
#include <gtest/gtest.h>

#include <functional>

#include "common/IntText.h"
#include "context/ContextTestSupport.h"
#include "context/ProfileContext.h"

namespace korvi {
namespace {

using test::ContextStore;
using test::RawDb;

// The custom and default rows of one column of profile 2's records, as the file holds them.
std::string rows(const ContextStore& store, const std::string& table, const std::string& column) {
    const std::string endpoint = table == "profile_endpoints" ? " AND endpoint='headphone'" : "";
    return RawDb(store.dbPath())
        .value("SELECT group_concat(custom_name || '=' || " + column +
               ", ' ') FROM (SELECT * FROM " + table + " WHERE profile_id=2" + endpoint +
               " ORDER BY custom_name)");
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
         [](ProfileContext& c) { c.getSelectedGeqPreset()->mValues[GEQ_GAIN].back()++; }, true,
         false, true},
        {"selected IEQ preset of an endpoint",
         [](ProfileContext& c) { c.getProfileEndpoint(SPEAKER)->setSelectedIeqPreset(1); }, true,
         true, false},
        {"an endpoint value",
         [](ProfileContext& c) { c.getProfileEndpoint(OTHER)->set(DIALOG_ENHANCER_AMOUNT, {9}); },
         true, true, false},
        {"a profile value",
         [](ProfileContext& c) { c.getProfile()->set(REVERB_SUPPRESSION_AMOUNT, {7}); }, true, true,
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.change);
        c.apply(context);
        EXPECT_EQ(context.isModified(), c.modified);
        EXPECT_EQ(context.isProfileSpecificSettingsModified(), c.specific);
        EXPECT_EQ(context.isGeqModified(), c.geq);
        context.reset();
        EXPECT_FALSE(context.isModified());
    }

    // The factory rows change behind the context (as after a new tuning file): a second load keeps
    // the defaults of the first, but the GEQ test reads the factory GEQ preset afresh.
    RawDb(store.dbPath())
        .exec(
            "UPDATE geq_presets SET geq_gain='1,2,3' WHERE profile_id=1 AND "
            "custom_name='default'; UPDATE profiles SET reverb_suppression_amount="
            "'9' WHERE profile_id=1 AND custom_name='default'");
    context.load();
    EXPECT_FALSE(context.isModified());
    EXPECT_FALSE(context.isProfileSpecificSettingsModified());
    EXPECT_TRUE(context.isGeqModified());
}

TEST(ProfileContextTest, SaveWritesCustomRowsAndResetBringsBackFactoryValues) {
    ContextStore store;
    ProfileContext context(&store.provider(), 2);
    context.load();
    // Each record's column as "custom=... default=..." before any change: both hold the factory.
    const std::string factory[] = {rows(store, "geq_presets", "geq_gain"),
                                   rows(store, "profile_endpoints", "dialog_enhancer_amount"),
                                   rows(store, "profiles", "reverb_suppression_amount")};
    auto defaultPart = [](const std::string& r) { return r.substr(r.find(" default=")); };
    context.getSelectedGeqPreset()->set(GEQ_GAIN, {-77});
    context.getProfileEndpoint(HEADPHONE)->set(DIALOG_ENHANCER_AMOUNT, {13});
    context.getProfile()->set(REVERB_SUPPRESSION_AMOUNT, {5});
    EXPECT_EQ(context.save(), 0);
    EXPECT_FALSE(context.getSelectedGeqPreset()->isDirty() || context.getProfile()->isDirty() ||
                 context.getProfileEndpoint(HEADPHONE)->isDirty());
    EXPECT_EQ(rows(store, "geq_presets", "geq_gain"), "custom=-77" + defaultPart(factory[0]));
    EXPECT_EQ(rows(store, "profile_endpoints", "dialog_enhancer_amount"),
              "custom=13" + defaultPart(factory[1]));
    EXPECT_EQ(rows(store, "profiles", "reverb_suppression_amount"),
              "custom=5" + defaultPart(factory[2]));

    // resetGeq touches the GEQ preset only; nothing reaches the file before a save.
    context.resetGeq();
    EXPECT_EQ("custom=" + intVector2String(context.getSelectedGeqPreset()->mValues[GEQ_GAIN]) +
                  defaultPart(factory[0]),
              factory[0]);
    EXPECT_EQ(context.getProfile()->mValues[REVERB_SUPPRESSION_AMOUNT], std::vector<int>{5});
    EXPECT_EQ(rows(store, "geq_presets", "geq_gain"), "custom=-77" + defaultPart(factory[0]));
    context.reset();
    EXPECT_EQ(context.save(), 0);
    EXPECT_EQ(rows(store, "geq_presets", "geq_gain"), factory[0]);
    EXPECT_EQ(rows(store, "profile_endpoints", "dialog_enhancer_amount"), factory[1]);
    EXPECT_EQ(rows(store, "profiles", "reverb_suppression_amount"), factory[2]);
}

TEST(ProfileContextTest, IeqPresetInForceFollowsIeqEnable) {
    ContextStore store;
    ProfileContext context(&store.provider(), 0);
    context.load();
    ProfileEndpoint* speaker = context.getProfileEndpoint(SPEAKER);
    speaker->setSelectedIeqPreset(3);
    const std::pair<std::function<void()>, int> cases[] = {
        {[&] {
             speaker->set(IEQ_ENABLE, {-1, 0});
         },
         3},
        {[&] {
             speaker->set(IEQ_ENABLE, {0, 1});
         },
         0},
        {[&] { speaker->mValues.erase(IEQ_ENABLE); }, 0},
        // A selected preset without a row answers as IEQ off.
        {[&] { speaker->set(IEQ_ENABLE, {1}), speaker->setSelectedIeqPreset(99); }, 0},
    };
    for (const auto& [apply, preset] : cases) {
        apply();
        EXPECT_EQ(context.getSelectedIeqPreset(SPEAKER)->getPresetId(), preset);
        EXPECT_EQ(speaker->mValues.count(IEQ_ENABLE), 1u);
    }
}

TEST(ProfileContextDeathTest, MissingEndpointRecordEndsTheProcess) {
    // Profile 3 lost its working "other" record; its factory one is still there.
    ContextStore store([](Provider&, RawDb& db) {
        db.exec(
            "DELETE FROM profile_endpoints WHERE profile_id=3 AND endpoint='other' AND "
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
        EXPECT_EXIT(call(), testing::ExitedWithCode(255),
                    "Couldn't find the profile endpoint fo 2");
    }
}

}  // namespace
}  // namespace korvi
