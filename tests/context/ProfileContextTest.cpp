// One profile's working state against its factory values, over the real database file.
#include <gtest/gtest.h>

#include <array>
#include <functional>

#include "context/ContextTestSupport.h"
#include "context/ProfileContext.h"

namespace korvi {
namespace {

using test::ContextStore;
using test::RawDb;

TEST(ProfileContextTest, ModificationTestsTellProfileEndpointAndGeqChangesApart) {
    ContextStore store;
    ProfileContext context(&store.provider(), 1);
    context.load();
    Profile* profile = context.getProfile();
    // Change, then isModified, isProfileSpecificSettingsModified, isGeqModified.
    const std::pair<std::function<void()>, std::array<bool, 3>> cases[] = {
        {[] {}, {false, false, false}},
        {[&] {  // not compared
             profile->setName("Renamed"), profile->setMobility(!profile->isMobility());
             profile->setSelectedGeqPreset(3);
         },
         {false, false, false}},
        {[&] { context.getSelectedGeqPreset()->mValues[GEQ_GAIN].back()++; }, {true, false, true}},
        {[&] { context.getProfileEndpoint(SPEAKER)->setSelectedIeqPreset(1); },
         {true, true, false}},
        {[&] { context.getProfileEndpoint(OTHER)->set(DIALOG_ENHANCER_AMOUNT, {9}); },
         {true, true, false}},
        {[&] { profile->set(REVERB_SUPPRESSION_AMOUNT, {7}); }, {true, true, false}},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        cases[i].first();
        const std::array<bool, 3> got = {context.isModified(),
                                         context.isProfileSpecificSettingsModified(),
                                         context.isGeqModified()};
        EXPECT_EQ(got, cases[i].second) << "case " << i;
        context.reset();
        EXPECT_FALSE(context.isModified()) << "case " << i;
    }
    // The factory rows change behind the context (as after a new tuning file): a second load
    // keeps the defaults of the first, but the GEQ test reads the factory GEQ preset afresh.
    RawDb(store.dbPath())
        .exec("UPDATE geq_presets SET geq_gain='1,2,3' WHERE profile_id=1 AND custom_name="
              "'default'; UPDATE profiles SET reverb_suppression_amount='9' WHERE profile_id=1 "
              "AND custom_name='default'");
    context.load();
    EXPECT_FALSE(context.isModified() || context.isProfileSpecificSettingsModified());
    EXPECT_TRUE(context.isGeqModified());
}

TEST(ProfileContextTest, SaveWritesCustomRowsAndResetBringsBackFactoryValues) {
    ContextStore store;
    ProfileContext context(&store.provider(), 2);
    context.load();
    // Profile 2's GEQ gains, headphone dialog amount and reverb amount: custom, then default row.
    auto rows = [&] {
        std::vector<test::Row> all;
        for (const char* sql :
             {"geq_gain FROM geq_presets WHERE profile_id=2",
              "dialog_enhancer_amount FROM profile_endpoints WHERE profile_id=2 AND "
              "endpoint='headphone'",
              "reverb_suppression_amount FROM profiles WHERE profile_id=2"}) {
            for (auto& row : RawDb(store.dbPath())
                                 .rows(std::string("SELECT custom_name, ") + sql +
                                       " ORDER BY custom_name")) {
                all.push_back(row);
            }
        }
        return all;
    };
    const std::vector<test::Row> factory = rows();
    ASSERT_EQ(factory.size(), 6u);
    context.getSelectedGeqPreset()->set(GEQ_GAIN, {-77});
    context.getProfileEndpoint(HEADPHONE)->set(DIALOG_ENHANCER_AMOUNT, {13});
    context.getProfile()->set(REVERB_SUPPRESSION_AMOUNT, {5});
    EXPECT_EQ(context.save(), 0);
    EXPECT_FALSE(context.getSelectedGeqPreset()->isDirty() || context.getProfile()->isDirty() ||
                 context.getProfileEndpoint(HEADPHONE)->isDirty());
    std::vector<test::Row> saved = factory;
    saved[0][1] = "-77", saved[2][1] = "13", saved[4][1] = "5";
    EXPECT_EQ(rows(), saved);
    // resetGeq touches the GEQ preset only; nothing reaches the file before a save.
    context.resetGeq();
    EXPECT_EQ(context.getProfile()->mValues[REVERB_SUPPRESSION_AMOUNT], test::Values{5});
    EXPECT_TRUE(!context.isGeqModified() && context.isModified());
    EXPECT_EQ(rows(), saved);
    context.reset();
    EXPECT_EQ(context.save(), 0);
    EXPECT_EQ(rows(), factory);
}

TEST(ProfileContextTest, IeqPresetInForceFollowsIeqEnable) {
    ContextStore store;
    ProfileContext context(&store.provider(), 0);
    context.load();
    ProfileEndpoint* speaker = context.getProfileEndpoint(SPEAKER);
    speaker->setSelectedIeqPreset(3);
    const std::pair<std::function<void()>, int> cases[] = {
        {[&] { speaker->set(IEQ_ENABLE, {-1, 0}); }, 3},
        {[&] { speaker->set(IEQ_ENABLE, {0, 1}); }, 0},
        {[&] { speaker->mValues.erase(IEQ_ENABLE); }, 0},  // read back as an empty entry
        // A selected preset without a row answers as IEQ off.
        {[&] { speaker->set(IEQ_ENABLE, {1}), speaker->setSelectedIeqPreset(99); }, 0},
    };
    for (const auto& [apply, preset] : cases) {
        apply();
        EXPECT_EQ(context.getSelectedIeqPreset(SPEAKER)->getPresetId(), preset);
        EXPECT_EQ(speaker->mValues.count(IEQ_ENABLE), 1u);
    }
}

}  // namespace
}  // namespace korvi
