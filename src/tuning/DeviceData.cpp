#include "tuning/DeviceData.h"

namespace korvi {

std::string DeviceData::getFormatVersion() { return mFormatVersion; }
std::string DeviceData::getToolVersion() { return mToolVersion; }

std::set<IeqPreset*>& DeviceData::getIeqPresets() { return mIeqPresets; }
std::set<GeqPreset*>& DeviceData::getGeqPresets() { return mGeqPresets; }
std::set<Profile*>& DeviceData::getProfiles() { return mProfiles; }
std::set<ProfileEndpoint*>& DeviceData::getProfileEndpoints() { return mProfileEndpoints; }
std::set<Tuning*>& DeviceData::getTunings() { return mTunings; }
std::set<DeviceTuning*>& DeviceData::getDeviceTunings() { return mDeviceTunings; }

void DeviceData::setFormatVersion(std::string version) { mFormatVersion = std::move(version); }
void DeviceData::setToolVersion(std::string version) { mToolVersion = std::move(version); }

// Copy assignment of a std::set leaves it unchanged when a set is assigned to itself.
void DeviceData::setIeqPresets(std::set<IeqPreset*>& presets) { mIeqPresets = presets; }
void DeviceData::setGeqPresets(std::set<GeqPreset*>& presets) { mGeqPresets = presets; }
void DeviceData::setProfiles(std::set<Profile*>& profiles) { mProfiles = profiles; }
void DeviceData::setProfileEndPoints(std::set<ProfileEndpoint*>& endpoints) {
    mProfileEndpoints = endpoints;
}
void DeviceData::setTunings(std::set<Tuning*>& tunings) { mTunings = tunings; }
void DeviceData::setDeviceTunings(std::set<DeviceTuning*>& deviceTunings) {
    mDeviceTunings = deviceTunings;
}

std::string DeviceData::getSignature() { return mSignature; }
void DeviceData::setSignature(std::string signature) { mSignature = std::move(signature); }

void DeviceData::validateData() {
    for (ProfileEndpoint* endpoint : mProfileEndpoints) {
        // Looking the parameter up adds an empty list when it is missing, as every read of a
        // value map does; an empty list says nothing about the IEQ, so it counts as enabled.
        const std::vector<int>& enable = endpoint->mValues[IEQ_ENABLE];
        if (!enable.empty() && enable.front() == 0) {
            endpoint->setSelectedIeqPreset(0);
            endpoint->setDirty(true);
        }
    }
}

}  // namespace korvi
