// The container of one file's records and its one rule: a disabled IEQ selects the "off" preset.
#include <gtest/gtest.h>

#include <memory>

#include "tuning/DeviceData.h"

namespace korvi {
namespace {

TEST(DeviceData, ValidateDataSelectsOffOnlyWhereIeqIsDisabled) {
    ProfileEndpoint disabled(0, SPEAKER, 3);
    disabled.set(IEQ_ENABLE, {0});
    disabled.setDirty(false);
    ProfileEndpoint enabled(0, HEADPHONE, 2);
    enabled.set(IEQ_ENABLE, {1, 0});
    enabled.setDirty(false);
    ProfileEndpoint emptyList(1, OTHER, 1);
    emptyList.set(IEQ_ENABLE, {});
    emptyList.setDirty(false);
    ProfileEndpoint missing(2, OTHER, 2);  // never given ieq_enable
    missing.setDirty(false);

    DeviceData data;
    std::set<ProfileEndpoint*> endpoints = {&disabled, &enabled, &emptyList, &missing};
    data.setProfileEndPoints(endpoints);
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

TEST(DeviceData, SettersCopyTheSetsAndGettersHandOutTheMembers) {
    IeqPreset ieq(1, "detailed");
    GeqPreset geq(0);
    Profile profile(0, "Dynamic", true);
    Tuning tuning("t", SPEAKER, false);
    DeviceTuning device("default_usb", "usb", "t");

    DeviceData data;
    EXPECT_EQ(data.getFormatVersion(), "");
    EXPECT_EQ(data.getSignature(), "");
    EXPECT_TRUE(data.getIeqPresets().empty());
    data.setFormatVersion("3.5.0");
    data.setToolVersion("2.11.3");
    data.setSignature("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(data.getFormatVersion(), "3.5.0");
    EXPECT_EQ(data.getToolVersion(), "2.11.3");
    EXPECT_EQ(data.getSignature(), "0123456789abcdef0123456789abcdef");

    std::set<IeqPreset*> ieqs = {&ieq};
    std::set<GeqPreset*> geqs = {&geq};
    std::set<Profile*> profiles = {&profile};
    std::set<Tuning*> tunings = {&tuning};
    std::set<DeviceTuning*> devices = {&device};
    data.setIeqPresets(ieqs);
    data.setGeqPresets(geqs);
    data.setProfiles(profiles);
    data.setTunings(tunings);
    data.setDeviceTunings(devices);
    ieqs.clear();  // a copy was taken
    EXPECT_EQ(data.getIeqPresets(), (std::set<IeqPreset*>{&ieq}));
    EXPECT_EQ(data.getGeqPresets(), geqs);
    EXPECT_EQ(data.getProfiles(), profiles);
    EXPECT_EQ(data.getTunings(), tunings);
    EXPECT_EQ(data.getDeviceTunings(), devices);

    // The getters return the members themselves.
    data.getTunings().clear();
    EXPECT_TRUE(data.getTunings().empty());
    // Setting a set from itself leaves it unchanged.
    data.setGeqPresets(data.getGeqPresets());
    EXPECT_EQ(data.getGeqPresets(), geqs);
    data.setDeviceTunings(data.getDeviceTunings());
    EXPECT_EQ(data.getDeviceTunings().size(), 1u);
}

TEST(DeviceData, DestroyingItLeavesEveryRecordAlive) {
    auto endpoint = std::make_unique<ProfileEndpoint>(0, SPEAKER, 2);
    auto device = std::make_unique<DeviceTuning>("d", "usb", "t");
    {
        auto data = std::make_unique<DeviceData>();
        std::set<ProfileEndpoint*> endpoints = {endpoint.get()};
        std::set<DeviceTuning*> devices = {device.get()};
        data->setProfileEndPoints(endpoints);
        data->setDeviceTunings(devices);
    }
    // Under the address sanitizer a record freed with the container would fail here.
    endpoint->set(IEQ_AMOUNT, {4});
    EXPECT_EQ(endpoint->mValues[IEQ_AMOUNT], std::vector<int>{4});
    EXPECT_EQ(device->getDevice(), "d");
}

}  // namespace
}  // namespace korvi
