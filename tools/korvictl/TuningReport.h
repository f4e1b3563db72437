// What `korvictl inspect` shows of one tuning file: the records the reader made, in an order a
// tuning author can follow (presets and profiles by id, tunings as the file writes them), and the
// warnings of the file, as text or as JSON.
#pragma once

#include <string>
#include <vector>

#include "TuningLint.h"
#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/ParameterValues.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "tuning/DeviceData.h"

namespace korvi::ctl {

class TuningReport {
public:
    // data and the records in it are borrowed: the report must not outlive their parser.
    TuningReport(std::string path, DeviceData& data, int virtualBassType,
                  const std::vector<std::string>& tuningOrder, std::vector<LintWarning> warnings);

    // withValues false: the records without their values, for an overview.
    std::string text(bool withValues = true) const;
    std::string json() const;

    // "current", "3.2", "3.2.2" or "3.3.0": how the reader read the file.
    static std::string formatFamily(const std::string& formatVersion);

private:
    struct ProfileEntry {
        Profile* profile;
        std::vector<ProfileEndpoint*> endpoints;  // speaker, headphone, other
    };
    struct TuningEntry {
        Tuning* tuning;
        std::vector<DeviceTuning*> devices;  // by device name
    };

    void orderTunings(DeviceData& data, const std::vector<std::string>& tuningOrder);
    // "2 \"balanced\"", or "2 (no such preset in this file)".
    std::string ieqPresetText(int presetId) const;

    std::string mPath;
    std::string mFormatVersion;
    std::string mToolVersion;
    int mVirtualBassType;
    std::vector<IeqPreset*> mIeqPresets;
    std::vector<GeqPreset*> mGeqPresets;
    std::vector<ProfileEntry> mProfiles;
    std::vector<TuningEntry> mTunings;
    std::vector<DeviceTuning*> mDanglingDevices;
    std::vector<LintWarning> mWarnings;
};

}  // namespace korvi::ctl
