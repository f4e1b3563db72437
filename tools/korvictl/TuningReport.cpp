#include "TuningReport.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "JsonWriter.h"
#include "Quoted.h"
#include "model/Endpoint.h"
#include "model/Parameter.h"
#include "tuning/FormatFamily.h"

namespace korvi::ctl {

namespace {

std::string join(const std::vector<int>& numbers) {
    if (numbers.empty()) return "(empty)";
    std::string out;
    for (size_t i = 0; i < numbers.size(); ++i) {
        if (i > 0) out += ", ";
        out += std::to_string(numbers[i]);
    }
    return out;
}

// Every value of a record, one "name = v1, v2" line each, in parameter order. The IEQ preset's
// own id is shown as the preset's id, not among its values.
void appendValues(std::string& out, const ParameterValues& values, const std::string& indent) {
    for (const auto& [parameter, numbers] : values.mValues) {
        if (parameter == IEQ_ID) continue;
        out += indent + kParameterNames[parameter] + " = " + join(numbers) + "\n";
    }
}

void writeValues(JsonWriter& json, const ParameterValues& values) {
    json.key("values");
    json.beginObject();
    for (const auto& [parameter, numbers] : values.mValues) {
        if (parameter == IEQ_ID) continue;
        json.key(kParameterNames[parameter]);
        json.value(numbers);
    }
    json.endObject();
}

size_t bandCount(const ParameterValues& values, Parameter frequencies) {
    const auto it = values.mValues.find(frequencies);
    return it == values.mValues.end() ? 0 : it->second.size();
}

std::string familyText(const std::string& family) {
    if (family == "current") return "current format";
    if (family == "3.2") return "3.2 family";
    if (family == "3.2.2") return "3.2 family, with the 3.2.2 defaults";
    return "3.3.0 format";
}

}  // namespace

std::string TuningReport::formatFamily(const std::string& formatVersion) {
    return FormatFamily(formatVersion).name();
}

TuningReport::TuningReport(std::string path, DeviceData& data, int virtualBassType,
                             const std::vector<std::string>& tuningOrder,
                             std::vector<LintWarning> warnings)
    : mPath(std::move(path)),
      mFormatVersion(data.getFormatVersion()),
      mToolVersion(data.getToolVersion()),
      mVirtualBassType(virtualBassType),
      mIeqPresets(data.getIeqPresets().begin(), data.getIeqPresets().end()),
      mGeqPresets(data.getGeqPresets().begin(), data.getGeqPresets().end()),
      mWarnings(std::move(warnings)) {
    // The sets are ordered by address; a tuning author thinks in ids.
    std::stable_sort(mIeqPresets.begin(), mIeqPresets.end(), [](auto* a, auto* b) {
        return a->getPresetId() < b->getPresetId();
    });
    std::stable_sort(mGeqPresets.begin(), mGeqPresets.end(), [](auto* a, auto* b) {
        return a->getProfileId() < b->getProfileId();
    });

    std::vector<Profile*> profiles(data.getProfiles().begin(), data.getProfiles().end());
    std::stable_sort(profiles.begin(), profiles.end(), [](auto* a, auto* b) {
        return a->getProfileId() < b->getProfileId();
    });
    std::vector<ProfileEndpoint*> endpoints(data.getProfileEndpoints().begin(),
                                            data.getProfileEndpoints().end());
    std::stable_sort(endpoints.begin(), endpoints.end(), [](auto* a, auto* b) {
        return a->getEndpoint() < b->getEndpoint();
    });
    // Endpoints know their profile only by id: with a duplicate id they are shown once, under
    // the first profile of that id (the duplicate is a warning of its own). Grouped once, so the
    // report grows with the file, not with profiles times endpoints.
    std::map<int, std::vector<ProfileEndpoint*>> endpointsOf;
    for (ProfileEndpoint* endpoint : endpoints) {
        endpointsOf[endpoint->getProfileId()].push_back(endpoint);
    }
    std::set<int> shown;
    for (Profile* profile : profiles) {
        ProfileEntry entry{profile, {}};
        if (shown.insert(profile->getProfileId()).second) {
            entry.endpoints = std::move(endpointsOf[profile->getProfileId()]);
        }
        mProfiles.push_back(std::move(entry));
    }
    orderTunings(data, tuningOrder);
}

void TuningReport::orderTunings(DeviceData& data, const std::vector<std::string>& tuningOrder) {
    std::vector<Tuning*> tunings(data.getTunings().begin(), data.getTunings().end());
    std::map<std::string, size_t> position;
    for (const std::string& name : tuningOrder) position.emplace(name, position.size());
    std::stable_sort(tunings.begin(), tunings.end(), [&position](auto* a, auto* b) {
        const auto pa = position.find(a->getName());
        const auto pb = position.find(b->getName());
        const size_t ia = pa == position.end() ? position.size() : pa->second;
        const size_t ib = pb == position.end() ? position.size() : pb->second;
        return ia < ib;
    });

    std::vector<DeviceTuning*> devices(data.getDeviceTunings().begin(),
                                       data.getDeviceTunings().end());
    std::stable_sort(devices.begin(), devices.end(), [](auto* a, auto* b) {
        return a->getDevice() < b->getDevice();
    });
    std::map<std::string, std::vector<DeviceTuning*>> devicesOf;
    for (DeviceTuning* device : devices) devicesOf[device->getTuning()].push_back(device);
    std::set<std::string> named;
    for (Tuning* tuning : tunings) {
        TuningEntry entry{tuning, {}};
        if (named.insert(tuning->getName()).second) {
            entry.devices = std::move(devicesOf[tuning->getName()]);
        }
        mTunings.push_back(std::move(entry));
    }
    for (DeviceTuning* device : devices) {
        if (named.count(device->getTuning()) == 0) mDanglingDevices.push_back(device);
    }
}

std::string TuningReport::ieqPresetText(int presetId) const {
    // The presets are sorted by id; the first of an id is the one shown.
    const auto it = std::lower_bound(
            mIeqPresets.begin(), mIeqPresets.end(), presetId,
            [](const IeqPreset* preset, int id) { return preset->getPresetId() < id; });
    if (it != mIeqPresets.end() && (*it)->getPresetId() == presetId) {
        return std::to_string(presetId) + " " + quoted((*it)->getName());
    }
    return std::to_string(presetId) + " (no such preset in this file)";
}

std::string TuningReport::text(bool withValues) const {
    std::string out;
    out += mPath + "\n";
    out += "  format version  " + mFormatVersion + " (" + familyText(formatFamily(mFormatVersion)) +
           ")\n";
    out += "  tool version    " + (mToolVersion.empty() ? "(none)" : mToolVersion) + "\n";
    out += "  virtual bass    type " + std::to_string(mVirtualBassType) + "\n";

    out += "\nIEQ presets: " + std::to_string(mIeqPresets.size()) + "\n";
    for (const IeqPreset* preset : mIeqPresets) {
        out += "  preset " + std::to_string(preset->getPresetId()) + " " +
               quoted(preset->getName()) + ", " +
               std::to_string(bandCount(*preset, IEQ_FREQUENCY)) + " bands\n";
        if (withValues) appendValues(out, *preset, "      ");
    }

    out += "\nGEQ presets: " + std::to_string(mGeqPresets.size()) + "\n";
    for (const GeqPreset* preset : mGeqPresets) {
        out += "  preset of profile " + std::to_string(preset->getProfileId()) + ", " +
               std::to_string(bandCount(*preset, GEQ_FREQUENCY)) + " bands\n";
        if (withValues) appendValues(out, *preset, "      ");
    }

    out += "\nProfiles: " + std::to_string(mProfiles.size()) + "\n";
    for (const ProfileEntry& entry : mProfiles) {
        const Profile* p = entry.profile;
        out += "  profile " + std::to_string(p->getProfileId()) + " " + quoted(p->getName()) +
               ", mobility " + (p->isMobility() ? "yes" : "no") + ", GEQ preset " +
               std::to_string(p->getSelectedGeqPreset()) + "\n";
        if (withValues) appendValues(out, *p, "      ");
        for (const ProfileEndpoint* e : entry.endpoints) {
            out += std::string("    endpoint ") + endpointName(e->getEndpoint()) +
                   ", IEQ preset " + ieqPresetText(e->getSelectedIeqPreset()) + "\n";
            if (withValues) appendValues(out, *e, "        ");
        }
    }

    out += "\nTunings: " + std::to_string(mTunings.size()) + "\n";
    for (const TuningEntry& entry : mTunings) {
        const Tuning* t = entry.tuning;
        out += "  tuning " + quoted(t->getName()) + ", endpoint " + endpointName(t->getEndpoint()) +
               ", mono " + (t->isMono() ? "yes" : "no") + "\n";
        for (const DeviceTuning* d : entry.devices) {
            out += "    device " + quoted(d->getDevice()) + " on port " + d->getPort() + "\n";
        }
        if (withValues) appendValues(out, *t, "      ");
    }
    if (!mDanglingDevices.empty()) {
        out += "\nDevices without a tuning: " + std::to_string(mDanglingDevices.size()) + "\n";
        for (const DeviceTuning* d : mDanglingDevices) {
            out += "  device " + quoted(d->getDevice()) + " on port " + d->getPort() +
                   " -> tuning " + quoted(d->getTuning()) + "\n";
        }
    }

    if (mWarnings.empty()) {
        out += "\nNo warnings.\n";
        return out;
    }
    out += "\nWarnings: " + std::to_string(mWarnings.size()) + "\n";
    for (const LintWarning& w : mWarnings) {
        out += mPath + ":" + std::to_string(w.line) + ": warning: " + w.message + " [" + w.kind +
               "]\n";
    }
    return out;
}

std::string TuningReport::json() const {
    JsonWriter json;
    json.beginObject();
    json.key("file");
    json.value(mPath);
    json.key("format_version");
    json.value(mFormatVersion);
    json.key("format_family");
    json.value(formatFamily(mFormatVersion));
    json.key("tool_version");
    json.value(mToolVersion);
    json.key("virtual_bass_type");
    json.value(mVirtualBassType);

    json.key("ieq_presets");
    json.beginArray();
    for (const IeqPreset* preset : mIeqPresets) {
        json.beginObject();
        json.key("id");
        json.value(preset->getPresetId());
        json.key("name");
        json.value(preset->getName());
        writeValues(json, *preset);
        json.endObject();
    }
    json.endArray();

    json.key("geq_presets");
    json.beginArray();
    for (const GeqPreset* preset : mGeqPresets) {
        json.beginObject();
        json.key("profile_id");
        json.value(preset->getProfileId());
        writeValues(json, *preset);
        json.endObject();
    }
    json.endArray();

    json.key("profiles");
    json.beginArray();
    for (const ProfileEntry& entry : mProfiles) {
        const Profile* p = entry.profile;
        json.beginObject();
        json.key("id");
        json.value(p->getProfileId());
        json.key("name");
        json.value(p->getName());
        json.key("mobility");
        json.value(p->isMobility());
        json.key("selected_geq_preset");
        json.value(p->getSelectedGeqPreset());
        writeValues(json, *p);
        json.key("endpoints");
        json.beginArray();
        for (const ProfileEndpoint* e : entry.endpoints) {
            json.beginObject();
            json.key("endpoint");
            json.value(endpointName(e->getEndpoint()));
            json.key("selected_ieq_preset");
            json.value(e->getSelectedIeqPreset());
            writeValues(json, *e);
            json.endObject();
        }
        json.endArray();
        json.endObject();
    }
    json.endArray();

    json.key("tunings");
    json.beginArray();
    for (const TuningEntry& entry : mTunings) {
        const Tuning* t = entry.tuning;
        json.beginObject();
        json.key("name");
        json.value(t->getName());
        json.key("endpoint");
        json.value(endpointName(t->getEndpoint()));
        json.key("mono");
        json.value(t->isMono());
        json.key("devices");
        json.beginArray();
        for (const DeviceTuning* d : entry.devices) {
            json.beginObject();
            json.key("id");
            json.value(d->getDevice());
            json.key("port");
            json.value(d->getPort());
            json.endObject();
        }
        json.endArray();
        writeValues(json, *t);
        json.endObject();
    }
    json.endArray();

    json.key("devices_without_tuning");
    json.beginArray();
    for (const DeviceTuning* d : mDanglingDevices) {
        json.beginObject();
        json.key("id");
        json.value(d->getDevice());
        json.key("port");
        json.value(d->getPort());
        json.key("tuning");
        json.value(d->getTuning());
        json.endObject();
    }
    json.endArray();

    json.key("warnings");
    json.beginArray();
    for (const LintWarning& w : mWarnings) {
        json.beginObject();
        json.key("line");
        json.value(static_cast<long long>(w.line));
        json.key("kind");
        json.value(w.kind);
        json.key("message");
        json.value(w.message);
        json.endObject();
    }
    json.endArray();
    json.endObject();
    return json.str();
}

}  // namespace korvi::ctl
