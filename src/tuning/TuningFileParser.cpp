#define LOG_TAG "TuningFileParser"
#include "tuning/TuningFileParser.h"

#include "tuning/FormatFamily.h"

#include <log/log.h>


namespace korvi {

namespace {

// The source line the invalid-name message has always carried; log readers search for it.
constexpr int kInvalidNameLine = 296;

// A profile's endpoint_type id: anything unknown is an "other" endpoint.
Endpoint profileEndpointOf(const std::string& text) {
    if (text == "speaker") return SPEAKER;
    if (text == "headphone") return HEADPHONE;
    return OTHER;
}

// A tuning's endpoint_type attribute: anything unknown is a speaker tuning, unlike a profile's.
Endpoint tuningEndpointOf(const std::string& text) {
    if (text == "headphone") return HEADPHONE;
    if (text == "other") return OTHER;
    return SPEAKER;
}

}  // namespace

const SetterCollection TuningFileParser::sSetterCollection;

TuningFileParser::TuningFileParser() = default;

TuningFileParser::TuningFileParser(std::string path) {
    setTuningFile(std::move(path));
}

// The members release everything: the iterator its document (and the XML library's global
// state), the owners every record, and the DeviceData its borrowed sets.
TuningFileParser::~TuningFileParser() = default;

int TuningFileParser::setTuningFile(std::string path) {
    if (mTagIterator.init(path) != 0) return -22;
    parseTuningFile();
    mDeviceData = std::make_unique<DeviceData>();
    mDeviceData->setFormatVersion(mFormatVersion);
    mDeviceData->setToolVersion(mToolVersion);
    mDeviceData->setIeqPresets(mIeqPresets);
    mDeviceData->setGeqPresets(mGeqPresets);
    mDeviceData->setProfiles(mProfiles);
    mDeviceData->setProfileEndPoints(mProfileEndpoints);
    mDeviceData->setTunings(mTunings);
    mDeviceData->setDeviceTunings(mDeviceTunings);
    return 0;
}

std::string TuningFileParser::getProfileName(int profileId) {
    return mProfileNames[profileId];
}

int TuningFileParser::getIeqPresetIdByName(std::string name) {
    // The order matters: a name holding two of the words takes the first one tested.
    if (name.size() < 3) {
        ALOGE("name is invalid, %d", kInvalidNameLine);
        return 0;
    }
    if (name.find("off") != std::string::npos) return 0;
    if (name.find("balanced") != std::string::npos) return 2;
    if (name.find("warm") != std::string::npos) return 3;
    if (name.find("detailed") != std::string::npos) return 1;
    ALOGE("name is invalid, %d", kInvalidNameLine);
    return 0;
}

bool TuningFileParser::isFamily32() const {
    return FormatFamily(mFormatVersion).is32();
}

bool TuningFileParser::isFormat322() const {
    return FormatFamily(mFormatVersion).is322();
}

bool TuningFileParser::isFormat330() const {
    return FormatFamily(mFormatVersion).is330();
}

std::vector<std::string> TuningFileParser::readAttributes(const std::vector<std::string>& names) {
    std::vector<std::string> values;
    mTagIterator.parseNodeWithName(names, values);
    values.resize(names.size());  // no current element reads as all attributes missing
    return values;
}

bool TuningFileParser::descend() {
    mTagIterator.pushNode();
    // Without children there is nothing to walk; staying on the element would walk its siblings.
    if (!mTagIterator.isChildrenValid()) return false;
    mTagIterator.childrenNext();
    return true;
}

void TuningFileParser::skipNonElements() {
    while (mTagIterator.isCurValid() && !mTagIterator.isElementNode()) mTagIterator.next();
}

void TuningFileParser::applySettersToChildren(ParameterValues& target) {
    if (descend()) {
        for (; mTagIterator.isCurValid(); mTagIterator.next()) {
            if (!mTagIterator.isElementNode()) continue;
            const ValueSetter* setter = sSetterCollection.getValueSetter(mTagIterator.getNodeName());
            if (setter != nullptr) setter->set(target, mTagIterator);
        }
    }
    mTagIterator.popNode();
}

void TuningFileParser::parseTuningFile() {
    // Versions first, wherever they stand: how presets, profiles and tunings are read depends
    // on the format version and the virtual-bass type. Within this first pass the elements are
    // read in file order, so a 3.2 file must give format_version before authorized_technologies
    // for the forced virtual-bass type 2 to apply.
    mTagIterator.pushNode();
    for (; mTagIterator.isCurValid(); mTagIterator.next()) {
        if (!mTagIterator.isElementNode()) continue;
        const std::string name = mTagIterator.getNodeName();
        if (name == "format_version") {
            mFormatVersion = parseVersion();
            ALOGD("xml version: %s", mFormatVersion.c_str());
        } else if (name == "tool_version") {
            mToolVersion = parseVersion();
        } else if (name == "authorized_technologies") {
            parseAuthorizedTechnologies();
        }
    }
    mTagIterator.popNode();
    mTagIterator.pushNode();
    for (; mTagIterator.isCurValid(); mTagIterator.next()) {
        if (!mTagIterator.isElementNode()) continue;
        const std::string name = mTagIterator.getNodeName();
        if (name == "preset") {
            parsePreset();
        } else if (name == "profile") {
            parseProfile();
        } else if (name == "tuning") {
            parseTuning();
        }
    }
    mTagIterator.popNode();
    mParsed = true;
}

std::string TuningFileParser::parseVersion() {
    const std::vector<std::string> parts = readAttributes({"major", "minor", "maintenance"});
    return parts[0] + "." + parts[1] + "." + parts[2];
}

void TuningFileParser::parseAuthorizedTechnologies() {
    if (isFamily32()) {
        mVirtualBassType = 2;
        return;
    }
    if (descend()) {
        skipNonElements();
        if (mTagIterator.isCurValid()) {
            mVirtualBassType = string2Int(readAttributes({"virtual_bass_process"})[0]);
            ALOGD("%s, mVirtualBassType = %d", "parseAuthorizedTechnologies", mVirtualBassType);
        }
    }
    mTagIterator.popNode();
}

void TuningFileParser::parsePreset() {
    const std::vector<std::string> attrs = readAttributes({"id", "name", "type"});
    const std::string& type = attrs[2];
    if (type == "ieq") {
        int presetId;
        std::string name;
        if (isFamily32() || isFormat330()) {
            presetId = getIeqPresetIdByName(attrs[0]);
            name = FormatFamily::kIeqPresetNames[presetId];
        } else {
            presetId = decimal2Int(attrs[0]);
            name = attrs[1];
        }
        auto preset = std::make_unique<IeqPreset>(presetId, name);
        if (const ValueSetter* setter = sSetterCollection.getValueSetter(type)) {
            setter->set(*preset, mTagIterator);
        }
        mIeqPresets.insert(preset.get());
        mOwnedRecords.push_back(std::move(preset));
    } else if (type == "geq") {
        // A GEQ preset's id is the id of the profile it belongs to.
        auto preset = std::make_unique<GeqPreset>(decimal2Int(attrs[0]));
        if (const ValueSetter* setter = sSetterCollection.getValueSetter(type)) {
            setter->set(*preset, mTagIterator);
        }
        mGeqPresets.insert(preset.get());
        mOwnedRecords.push_back(std::move(preset));
    }
}

void TuningFileParser::parseProfile() {
    // Counted first, so a profile that turns out faulty still counts.
    ++mNumOfProfiles;
    int profileIeqPresetId = 0;
    if (isFamily32()) {
        ALOGD("%s, parse the ieq preset", "parseProfile");
        if (descend()) {
            for (; mTagIterator.isCurValid(); mTagIterator.next()) {
                if (mTagIterator.isElementNode() && mTagIterator.getNodeName() == "include") {
                    profileIeqPresetId = getIeqPresetIdByName(readAttributes({"preset"})[0]);
                    break;
                }
            }
        }
        mTagIterator.popNode();
    }

    const std::vector<std::string> attrs = readAttributes({"id", "name", "group"});
    const int profileId = string2Int(attrs[0]);
    const bool mobility = !isFamily32() && attrs[2] == "mobility";
    mProfileNames[profileId] = attrs[1];
    auto profile = std::make_unique<Profile>(profileId, attrs[1], mobility);

    // The profile-level IEQ switch and amount reach only the endpoints written after them.
    int ieqEnable = 0;
    int ieqAmount = 0;
    if (descend()) {
        for (; mTagIterator.isCurValid(); mTagIterator.next()) {
            if (!mTagIterator.isElementNode()) continue;
            const std::string name = mTagIterator.getNodeName();
            if (const ValueSetter* setter = sSetterCollection.getValueSetter(name)) {
                if (name == "ieq-enable") {
                    ieqEnable = string2Int(readAttributes({"value"})[0]);
                } else if (name == "ieq-amount") {
                    ieqAmount = string2Int(readAttributes({"value"})[0]);
                } else {
                    setter->set(*profile, mTagIterator);
                }
            }
            if (name == "endpoint_type") {
                parseProfileEndpoint(profileId, ieqEnable, ieqAmount, profileIeqPresetId);
            }
        }
    }
    mTagIterator.popNode();
    mProfiles.insert(profile.get());
    mOwnedRecords.push_back(std::move(profile));
}

void TuningFileParser::parseProfileEndpoint(int profileId, int ieqEnable, int ieqAmount,
                                             int ieqPresetId) {
    const std::string endpointText = readAttributes({"id"})[0];
    const Endpoint endpoint = profileEndpointOf(endpointText);
    int selectedIeqPreset = ieqPresetId;
    if (!isFamily32()) {
        ALOGD("%s:%s, parse the include ieq preset", "parseProfileEndpoint", endpointText.c_str());
        if (descend()) {
            skipNonElements();
            // Only a leading include selects the preset; one further down is ignored.
            if (mTagIterator.isCurValid() && mTagIterator.getNodeName() == "include") {
                if (isFormat330()) {
                    selectedIeqPreset = getIeqPresetIdByName(readAttributes({"preset"})[0]);
                } else {
                    selectedIeqPreset = decimal2Int(readAttributes({"ieq_preset"})[0]);
                }
            }
        }
        mTagIterator.popNode();
    }

    auto record = std::make_unique<ProfileEndpoint>(profileId, endpoint, selectedIeqPreset);
    applySettersToChildren(*record);
    if (isFamily32()) {
        // The 3.2 family gives these once per profile or not at all; the effect needs them on
        // every endpoint.
        record->set(IEQ_ENABLE, {ieqEnable});
        record->set(IEQ_AMOUNT, {ieqAmount});
        if (isFormat322()) {
            record->set(HEARING_PROTECTION_ENABLE, {0});
            record->set(VIRTUALIZER_START_BAND, {0});
        }
        record->set(HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, {4});
    }
    record->set(VIRTUAL_BASS_TYPE, {mVirtualBassType});
    mProfileEndpoints.insert(record.get());
    mOwnedRecords.push_back(std::move(record));
}

void TuningFileParser::parseTuning() {
    const std::vector<std::string> attrs =
        readAttributes({"name", "endpoint_type", "mono_device", "orientation", "output_channels"});
    const std::string& name = attrs[0];
    auto tuning = std::make_unique<Tuning>(name, tuningEndpointOf(attrs[1]), attrs[2] == "true");
    tuning->set(ORIENTATION, {string2Int(attrs[3])});
    tuning->set(OUTPUT_CHANNELS, {string2Int(attrs[4])});

    bool hasData = false;
    if (descend()) {
        for (; mTagIterator.isCurValid(); mTagIterator.next()) {
            if (!mTagIterator.isElementNode()) continue;
            if (mTagIterator.getNodeName() != "device_id") break;
            parseDeviceTuning(name);
        }
        hasData = mTagIterator.isCurValid();
        if (hasData) applySettersToChildren(*tuning);
    }
    mTagIterator.popNode();
    if (!hasData) {
        // The devices read above stay: they name their tuning and are checked when loaded.
        ALOGE("There is no <data> in Tuning section");
        return;
    }
    if (isFormat322()) tuning->set(BASS_MBDRC_ENABLE, {0});
    mTunings.insert(tuning.get());
    mOwnedRecords.push_back(std::move(tuning));
}

void TuningFileParser::parseDeviceTuning(std::string tuningName) {
    const std::vector<std::string> attrs = readAttributes({"id", "endpoint_port"});
    auto deviceTuning = std::make_unique<DeviceTuning>(attrs[0], attrs[1], tuningName);
    mDeviceTunings.insert(deviceTuning.get());
    mOwnedDeviceTunings.push_back(std::move(deviceTuning));
}

}  // namespace korvi
