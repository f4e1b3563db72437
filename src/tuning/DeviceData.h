// What one tuning file yields: its format and tool versions, its signature (set by whoever loads
// it) and the records the parser made. DeviceData only borrows the records: they belong to the
// TuningFileParser that made them, so a DeviceData must not outlive its parser.
#pragma once

#include <set>
#include <string>

#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {

class DeviceData {
public:
    DeviceData() = default;
    // Frees only the strings and set nodes, never a record.
    virtual ~DeviceData() = default;

    virtual std::string getFormatVersion();
    virtual std::string getToolVersion();

    // References to the member sets: callers iterate them and may change the records in place.
    virtual std::set<IeqPreset*>& getIeqPresets();
    virtual std::set<GeqPreset*>& getGeqPresets();
    virtual std::set<Profile*>& getProfiles();
    virtual std::set<ProfileEndpoint*>& getProfileEndpoints();
    virtual std::set<Tuning*>& getTunings();
    virtual std::set<DeviceTuning*>& getDeviceTunings();

    virtual void setFormatVersion(std::string version);
    virtual void setToolVersion(std::string version);

    // Each replaces the member by a copy of the given set.
    virtual void setIeqPresets(std::set<IeqPreset*>& presets);
    virtual void setGeqPresets(std::set<GeqPreset*>& presets);
    virtual void setProfiles(std::set<Profile*>& profiles);
    virtual void setProfileEndPoints(std::set<ProfileEndpoint*>& endpoints);
    virtual void setTunings(std::set<Tuning*>& tunings);
    virtual void setDeviceTunings(std::set<DeviceTuning*>& deviceTunings);

    virtual std::string getSignature();
    virtual void setSignature(std::string signature);

    // A disabled IEQ always selects the "off" preset: every endpoint whose first ieq_enable value
    // is 0 gets selected IEQ preset 0 and becomes dirty. An endpoint with an empty ieq_enable
    // cannot be judged and is left as it is, like an enabled one.
    virtual void validateData();

private:
    std::string mFormatVersion;
    std::string mToolVersion;
    std::string mSignature;
    std::set<IeqPreset*> mIeqPresets;
    std::set<GeqPreset*> mGeqPresets;
    std::set<Profile*> mProfiles;
    std::set<ProfileEndpoint*> mProfileEndpoints;
    std::set<Tuning*> mTunings;
    std::set<DeviceTuning*> mDeviceTunings;
};

}  // namespace korvi
