// The container of one file's records and its one rule: a disabled IEQ selects the "off" preset.
#include <gtest/gtest.h>

#include "tuning/DeviceData.h"

namespace korvi {
namespace {

TEST(DeviceData, ValidateDataSelectsOffOnlyWhereIeqIsDisabled) {
    ProfileEndpoint disabled(0, SPEAKER, 3);
    disabled.set(IEQ_ENABLE, {0});
    ProfileEndpoint enabled(0, HEADPHONE, 2);
    enabled.set(IEQ_ENABLE, {1, 0});
    ProfileEndpoint emptyList(1, OTHER, 1);
    emptyList.set(IEQ_ENABLE, {});
    ProfileEndpoint missing(2, OTHER, 2);  // never given ieq_enable
    std::set<ProfileEndpoint*> endpoints = {&disabled, &enabled, &emptyList, &missing};
    for (ProfileEndpoint* e : endpoints) e->setDirty(false);

    DeviceData data;
    data.setProfileEndPoints(endpoints);
    endpoints.clear();  // the setter took a copy
    data.validateData();

    EXPECT_EQ(disabled.getSelectedIeqPreset(), 0);
    EXPECT_TRUE(disabled.isDirty());
    EXPECT_EQ(enabled.getSelectedIeqPreset(), 2);
    EXPECT_FALSE(enabled.isDirty());
    // An empty or missing switch cannot be judged and counts as enabled.
    EXPECT_EQ(emptyList.getSelectedIeqPreset(), 1);
    EXPECT_FALSE(emptyList.isDirty());
    EXPECT_EQ(missing.getSelectedIeqPreset(), 2);
    EXPECT_FALSE(missing.isDirty());
    EXPECT_EQ(missing.mValues.count(IEQ_ENABLE), 1u);  // the lookup left an empty entry
    EXPECT_TRUE(missing.mValues[IEQ_ENABLE].empty());
}

TEST(DeviceData, SignatureIsKeptAndGettersHandOutTheMembers) {
    DeviceData data;
    EXPECT_EQ(data.getSignature(), "");
    data.setSignature("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(data.getSignature(), "0123456789abcdef0123456789abcdef");

    Tuning tuning("t", SPEAKER, false);
    std::set<Tuning*> tunings = {&tuning};
    data.setTunings(tunings);
    data.setTunings(data.getTunings());  // from itself: unchanged
    EXPECT_EQ(data.getTunings(), tunings);
    data.getTunings().clear();
    EXPECT_TRUE(data.getTunings().empty());
}

}  // namespace
}  // namespace korvi
