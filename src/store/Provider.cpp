#define LOG_TAG "KrvDatabaseProvider"

#include "store/Provider.h"

#include <log/log.h>

#include "common/IntText.h"
#include "store/DatabaseHelper.h"

namespace korvi {

bool Provider::kSfxStateValue = true;

Provider::Provider(std::unique_ptr<DatabaseHelper> helper) : mHelper(std::move(helper)) {
    LOG_ALWAYS_FATAL_IF(mHelper == nullptr, "%s: a provider needs a database helper", __func__);
}

Provider::~Provider() = default;

DatabaseState Provider::checkDatabase() {
    return mHelper->checkDatabase();
}

bool Provider::init() {
    std::vector<std::string> profileNames;
    const bool readable = mHelper->queryProfileNames(profileNames, kDefaultName) == 0;
    mNumOfProfiles = static_cast<int>(profileNames.size());
    if (!readable) {
        // Not "no profiles": a locked or broken file says nothing about what it holds.
        ALOGE("%s(): the profiles cannot be read from the database", "init");
    } else if (mNumOfProfiles == 0) {
        ALOGE("%s(): No profiles found from the database", "init");
    } else {
        ALOGD("%s(): Total %d profiles found", "init", mNumOfProfiles);
    }

    // Placeholders numbered by index until each profile's rows are loaded.
    mProfiles.clear();
    mDefaultProfiles.clear();
    mGeqPresets.clear();
    mDefaultGeqPresets.clear();
    mProfileEndpoints.clear();
    mDefaultEndpoints.clear();
    mProfileEndpoints.resize(static_cast<size_t>(mNumOfProfiles));
    mDefaultEndpoints.resize(static_cast<size_t>(mNumOfProfiles));
    for (int id = 0; id < mNumOfProfiles; ++id) {
        mProfiles.push_back(std::make_unique<Profile>(id, "", false));
        mDefaultProfiles.push_back(std::make_unique<Profile>(id, "", false));
        mGeqPresets.push_back(std::make_unique<GeqPreset>(id));
        mDefaultGeqPresets.push_back(std::make_unique<GeqPreset>(id));
        for (int e = 0; e < kEndpointCount; ++e) {
            const Endpoint endpoint = static_cast<Endpoint>(e);
            mProfileEndpoints[id][e].record = std::make_unique<ProfileEndpoint>(id, endpoint, 0);
            mDefaultEndpoints[id][e].record = std::make_unique<ProfileEndpoint>(id, endpoint, 0);
        }
    }

    std::vector<std::string> ieqNames;
    mHelper->queryIeqPresetNames(ieqNames, kDefaultName);
    mNumOfIeqPresets = static_cast<int>(ieqNames.size());
    if (mNumOfIeqPresets == 0) {
        ALOGE("%s(): No ieq presets found from the database", "init");
    } else {
        ALOGD("%s(): Total %d ieq presets found", "init", mNumOfIeqPresets);
    }
    // Filled on demand; preset 0 is the "off" preset.
    mIeqPresets.clear();
    return mNumOfProfiles > 0;
}

int Provider::getNumOfProfiles() {
    return mNumOfProfiles;
}

int Provider::getNumOfIeqPresets() {
    return mNumOfIeqPresets;
}

// ---- configuration ----

int Provider::getSelectedProfile() {
    return string2Int(mHelper->querySelectedProfile(kSelectedProfile));
}

int Provider::setSelectedProfile(int profileId) {
    return mHelper->updateSelectedProfile(kSelectedProfile, int2String(profileId));
}

bool Provider::isSfxOn() {
    return mHelper->querySfxStatus(kSfxState);
}

int Provider::setSfxOn(bool on) {
    return mHelper->updateSfxStatus(kSfxState, on);
}

int Provider::setDefaultXmlSignature(const std::string& signature) {
    int result = mHelper->insertConfigurationValue(kSignature, signature);
    // Profile 0 is the initial selection.
    result |= mHelper->insertConfigurationValue(kSelectedProfile, "0");
    result |= mHelper->insertConfigurationValue(kSfxState, kSfxStateValue ? "true" : "false");
    return result;
}

std::string Provider::getDefaultXmlSignature() {
    return mHelper->queryConfigurationValue(kSignature);
}

int Provider::setDefaultXmlFormatVersion(const std::string& version) {
    return mHelper->insertConfigurationValue(kFormatVersion, version);
}

std::string Provider::getDefaultXmlFormatVersion() {
    return mHelper->queryConfigurationValue(kFormatVersion);
}

int Provider::setDeviceTuning(const std::string& key, const std::string& value) {
    return mHelper->insertConfigurationValue(key, value);
}

std::string Provider::getDeviceTuning(const std::string& key) {
    return mHelper->queryConfigurationValue(key);
}

int Provider::updateDeviceTuning(const std::string& key, const std::string& value) {
    return mHelper->updateTuningDevice(key, value);
}

// ---- database-wide operations ----

int Provider::initDatabase() {
    return mHelper->init();
}

int Provider::clear() {
    return mHelper->clear();
}

int Provider::beginTransaction() {
    return mHelper->beginTransaction();
}

int Provider::commitTransaction() {
    return mHelper->commitTransaction();
}

int Provider::clearOemTunings() {
    return mHelper->clearOemTunings();
}

int Provider::clearOemDeviceTunings() {
    return mHelper->clearOemDeviceTunings();
}

// ---- creating rows ----

int Provider::create(IeqPreset* preset) {
    return mHelper->insertValue(preset, kDefaultName);
}

// The default row first, then the custom row, each with the row count + 1 as _id; the record
// ends with the custom row's id, the row it is saved to later.
int Provider::create(GeqPreset* preset) {
    if (mHelper->insertValue(preset, kDefaultName, -1) != 0) return 1;
    if (mHelper->insertValue(preset, kCustomName, -1) != 0) return 1;
    preset->setDirty(false);
    return 0;
}

int Provider::create(Profile* profile) {
    if (mHelper->insertValue(profile, kDefaultName, -1) != 0) return 1;
    if (mHelper->insertValue(profile, kCustomName, -1) != 0) return 1;
    profile->setDirty(false);
    return 0;
}

int Provider::create(ProfileEndpoint* endpoint) {
    if (mHelper->insertValue(endpoint, kDefaultName, -1) != 0) return 1;
    if (mHelper->insertValue(endpoint, kCustomName, -1) != 0) return 1;
    endpoint->setDirty(false);
    return 0;
}

int Provider::create(Tuning* tuning, const std::string& customName) {
    return mHelper->insertValue(tuning, customName);
}

int Provider::create(DeviceTuning* deviceTuning, const std::string& customName) {
    return mHelper->insertValue(deviceTuning, customName);
}

// ---- profiles, endpoints and GEQ presets ----

bool Provider::isKnownProfile(int profileId, const char* caller) const {
    if (profileId < 0 || profileId >= mNumOfProfiles) {
        ALOGE("%s(): unknown profile id %d (%d profiles)", caller, profileId, mNumOfProfiles);
        return false;
    }
    return true;
}

Profile* Provider::loadProfileRow(std::vector<std::unique_ptr<Profile>>& cache, int profileId,
                                  const char* customName, const char* caller) {
    if (!isKnownProfile(profileId, caller)) return nullptr;
    Profile* profile = cache[static_cast<size_t>(profileId)].get();
    // A failed read leaves the cached record as it was.
    if (mHelper->queryProfileValue(int2String(profileId), customName, profile) == 0) {
        profile->setDirty(false);
    }
    return profile;
}

GeqPreset* Provider::loadGeqRow(std::vector<std::unique_ptr<GeqPreset>>& cache, int profileId,
                                const char* customName, const char* caller) {
    if (!isKnownProfile(profileId, caller)) return nullptr;
    GeqPreset* preset = cache[static_cast<size_t>(profileId)].get();
    if (mHelper->queryGeqValue(int2String(profileId), customName, preset) == 0) {
        preset->setDirty(false);
    }
    return preset;
}

bool Provider::loadEndpointRow(EndpointSlot& slot, int profileId, Endpoint endpoint,
                               const char* customName) {
    if (mHelper->queryEndpointValue(int2String(profileId), endpointName(endpoint), customName,
                                    slot.record.get()) == 0) {
        slot.record->setDirty(false);
        slot.stored = true;
    }
    return slot.stored;
}

std::set<ProfileEndpoint*> Provider::loadEndpointRows(std::vector<EndpointSlots>& cache,
                                                      int profileId, const char* customName,
                                                      const char* caller) {
    std::set<ProfileEndpoint*> endpoints;
    if (!isKnownProfile(profileId, caller)) return endpoints;
    EndpointSlots& slots = cache[static_cast<size_t>(profileId)];
    std::array<ProfileEndpoint*, kEndpointCount> records;
    for (int e = 0; e < kEndpointCount; ++e) records[e] = slots[e].record.get();
    std::array<bool, kEndpointCount> found{};
    // All endpoints of the profile from one read of the table.
    mHelper->queryEndpointValues(int2String(profileId), customName, records, found);
    for (int e = 0; e < kEndpointCount; ++e) {
        if (found[e]) {
            slots[e].record->setDirty(false);
            slots[e].stored = true;
        }
        if (slots[e].stored) endpoints.insert(slots[e].record.get());
    }
    return endpoints;
}

Profile* Provider::loadProfile(int profileId) {
    return loadProfileRow(mProfiles, profileId, kCustomName, __func__);
}

Profile* Provider::loadDefaultProfile(int profileId) {
    return loadProfileRow(mDefaultProfiles, profileId, kDefaultName, __func__);
}

GeqPreset* Provider::loadGeqPreset(int profileId) {
    return loadGeqRow(mGeqPresets, profileId, kCustomName, __func__);
}

GeqPreset* Provider::loadDefaultGeqPreset(int profileId) {
    return loadGeqRow(mDefaultGeqPresets, profileId, kDefaultName, __func__);
}

std::set<ProfileEndpoint*> Provider::loadProfileEndpoints(int profileId) {
    return loadEndpointRows(mProfileEndpoints, profileId, kCustomName, __func__);
}

std::set<ProfileEndpoint*> Provider::loadDefaultProfileEndpoints(int profileId) {
    return loadEndpointRows(mDefaultEndpoints, profileId, kDefaultName, __func__);
}

ProfileEndpoint* Provider::loadProfileEndpoint(int profileId, Endpoint endpoint) {
    if (!isKnownProfile(profileId, __func__)) return nullptr;
    LOG_ALWAYS_FATAL_IF(endpoint < 0 || endpoint >= kEndpointCount, "%s: endpoint %d", __func__,
                        static_cast<int>(endpoint));
    EndpointSlot& slot = mProfileEndpoints[static_cast<size_t>(profileId)][endpoint];
    return loadEndpointRow(slot, profileId, endpoint, kCustomName) ? slot.record.get() : nullptr;
}

int Provider::save(Profile* profile) {
    if (mHelper->updateProfileValue(profile, kCustomName) != 0) return 1;
    profile->setDirty(false);
    return 0;
}

int Provider::save(ProfileEndpoint* endpoint) {
    if (mHelper->updateProfileEndpointValue(endpoint, kCustomName) != 0) return 1;
    endpoint->setDirty(false);
    return 0;
}

int Provider::save(GeqPreset* preset) {
    if (mHelper->updateGeqValue(preset, kCustomName) != 0) return 1;
    preset->setDirty(false);
    return 0;
}

// A reset record holds the factory values but keeps its own row id: it stays the user's working
// copy, and it differs from its custom row until it is saved, hence dirty.
Profile* Provider::reset(Profile* profile) {
    if (profile == nullptr) return nullptr;
    Profile restored = *profile;
    if (mHelper->queryProfileValue(int2String(profile->getProfileId()), kDefaultName, &restored) == 0) {
        profile->setName(restored.getName());
        profile->setMobility(restored.isMobility());
        profile->setSelectedGeqPreset(restored.getSelectedGeqPreset());
        profile->mValues = std::move(restored.mValues);
        profile->setDirty(true);
    }
    return profile;
}

ProfileEndpoint* Provider::reset(ProfileEndpoint* endpoint) {
    if (endpoint == nullptr) return nullptr;
    ProfileEndpoint restored = *endpoint;
    if (mHelper->queryEndpointValue(int2String(endpoint->getProfileId()),
                                    endpointName(endpoint->getEndpoint()), kDefaultName,
                                    &restored) == 0) {
        endpoint->setSelectedIeqPreset(restored.getSelectedIeqPreset());
        endpoint->mValues = std::move(restored.mValues);
        endpoint->setDirty(true);
    }
    return endpoint;
}

GeqPreset* Provider::reset(GeqPreset* preset) {
    if (preset == nullptr) return nullptr;
    GeqPreset restored = *preset;
    if (mHelper->queryGeqValue(int2String(preset->getProfileId()), kDefaultName, &restored) == 0) {
        preset->mValues = std::move(restored.mValues);
        preset->setDirty(true);
    }
    return preset;
}

// ---- IEQ presets ----

IeqPreset* Provider::loadIeqPreset(int presetId) {
    auto cached = mIeqPresets.find(presetId);
    if (cached != mIeqPresets.end()) return cached->second.get();
    auto preset = std::make_unique<IeqPreset>(presetId, "");
    if (mHelper->queryIeqValue(int2String(presetId), kDefaultName, preset.get()) != 0) {
        return nullptr;
    }
    IeqPreset* loaded = preset.get();
    mIeqPresets.emplace(presetId, std::move(preset));
    return loaded;
}

// ---- device tunings and tunings ----

std::set<DeviceTuning*> Provider::loadDeviceTuningsForPort(Port port) {
    LOG_ALWAYS_FATAL_IF(port < 0 || port > kPortCount, "%s: port %d out of range", __func__,
                        static_cast<int>(port));
    std::set<DeviceTuning*> deviceTunings;
    auto cached = mDeviceTunings.find(port);
    if (cached == mDeviceTunings.end()) {
        std::vector<std::unique_ptr<DeviceTuning>> rows;
        if (mHelper->queryDeviceTunings(kPortNames[port], rows) != 0) return deviceTunings;
        cached = mDeviceTunings.emplace(port, std::move(rows)).first;
    }
    for (const auto& deviceTuning : cached->second) deviceTunings.insert(deviceTuning.get());
    return deviceTunings;
}

const DeviceTuning* Provider::findCachedDevice(const std::string& device) const {
    for (const auto& [port, deviceTunings] : mDeviceTunings) {
        for (const auto& deviceTuning : deviceTunings) {
            if (deviceTuning->getDevice() == device) return deviceTuning.get();
        }
    }
    return nullptr;
}

Tuning* Provider::loadTuningForDevice(const std::string& device) {
    const DeviceTuning* deviceTuning = findCachedDevice(device);
    if (deviceTuning == nullptr) {
        ALOGW("Cannot find device with name %s in mDeviceTunings", device.c_str());
        return nullptr;
    }
    const std::string& name = deviceTuning->getTuning();
    auto cached = mTunings.find(name);
    if (cached != mTunings.end()) {
        ALOGD("Found existing tuning[%s] from cache device[%s]", name.c_str(), device.c_str());
        return cached->second.get();
    }
    auto tuning = std::make_unique<Tuning>(name, SPEAKER, false);
    if (mHelper->queryTuning(name, tuning.get()) != 0) return nullptr;
    ALOGD("Load tuning[%s] from cache device[%s], and put it in cached mTunings", name.c_str(),
          device.c_str());
    Tuning* loaded = tuning.get();
    mTunings.emplace(name, std::move(tuning));
    return loaded;
}

void Provider::reloadCachedDeviceTunings() {
    std::vector<Port> ports;
    for (const auto& [port, deviceTunings] : mDeviceTunings) {
        for (const auto& deviceTuning : deviceTunings) {
            ALOGD("Clear cached device tuning Port[%s]:Device[%s]", kPortNames[port],
                  deviceTuning->getDevice().c_str());
        }
        ports.push_back(port);
    }
    mDeviceTunings.clear();
    mTunings.clear();
    for (Port port : ports) loadDeviceTuningsForPort(port);
}

}  // namespace korvi
