#define LOG_TAG "AxContext"

#include "context/AxContext.h"

#include <log/log.h>

#include <algorithm>

#include "common/FatalExit.h"
#include "store/Provider.h"

namespace korvi {

using android::Mutex;

const std::set<Port> AxContext::kSupportedPorts = {
    PORT_INTERNAL_SPEAKER, PORT_HDMI, PORT_MIRACAST, PORT_HEADPHONE, PORT_BLUETOOTH, PORT_USB,
};

AxContext::AxContext(Provider* provider, AxContextChangeObservable* observable)
    : mProvider(provider),
      mObservable(observable),
      mNumIeqPresets(provider->getNumOfIeqPresets()),
      mNumProfiles(provider->getNumOfProfiles()) {
    for (int id = 0; id < mNumProfiles; ++id) {
        mProfileContexts.emplace(id, std::make_unique<ProfileContext>(provider, id));
    }
}

// Deletes the profile contexts only: every record belongs to the provider.
AxContext::~AxContext() = default;

void AxContext::registerObserver(OnAxContextChange* observer) {
    mObservable->registerObserver(observer);
    observer->onLoad(*this);
}

void AxContext::unregisterObserver(OnAxContextChange* observer) {
    mObservable->unregisterObserver(observer);
}

// ---- lookups (callers hold the lock, or run before any client can call) ----

ProfileContext* AxContext::findContext(int id) const {
    ProfileContext* selected = mSelectedContext.load();
    if (selected != nullptr && selected->getId() == id) return selected;
    auto it = mProfileContexts.find(id);
    if (it == mProfileContexts.end()) {
        fatalExit(LOG_TAG, "Couldn't find the context for profileId: %d", id);
    }
    return it->second.get();
}

ProfileContext* AxContext::selectedContext() const {
    ProfileContext* selected = mSelectedContext.load();
    if (selected == nullptr) fatalExit(LOG_TAG, "Couldn't find the context for profileId: %d", -1);
    return selected;
}

int AxContext::selectedIdLocked() const {
    ProfileContext* selected = mSelectedContext.load();
    return selected != nullptr ? selected->getId() : -1;
}

std::vector<int>& AxContext::noValues() {
    mNoValues.clear();
    return mNoValues;
}

std::vector<std::pair<Port, Tuning*>> AxContext::portsForEndpoint(Endpoint endpoint) const {
    std::vector<std::pair<Port, Tuning*>> ports;
    for (const auto& [port, tuning] : mTunings) {
        if (tuning != nullptr && tuning->getEndpoint() == endpoint) ports.emplace_back(port, tuning);
    }
    return ports;
}

Tuning* AxContext::tuningForQuery(Port port, const char* caller) const {
    auto it = mTunings.find(port);
    if (it == mTunings.end() || it->second == nullptr) {
        ALOGE("%s(): No tuning loaded for port[%s]", caller, kPortNames[port]);
        return nullptr;
    }
    return it->second;
}

// ---- loading and saving ----

void AxContext::loadProfilesLocked() {
    int selected = mProvider->getSelectedProfile();
    for (auto& [id, context] : mProfileContexts) {
        context->load();
        if (id == selected) mSelectedContext = context.get();
    }
    mSfxOn = mProvider->isSfxOn();
}

void AxContext::load() {
    loadProfilesLocked();
    for (Port port : kSupportedPorts) {
        std::string device = mProvider->getDeviceTuning(kPortNames[port]);
        // Only warms the provider's device cache, which loadTuningForDevice looks devices up in.
        mProvider->loadDeviceTuningsForPort(port);
        mSelectedTuningDevice.emplace(port, device);
        mTunings.emplace(port, mProvider->loadTuningForDevice(device));
    }
    mObservable->onLoad(*this);
}

void AxContext::reloadAllProfile() {
    bool on;
    {
        Mutex::Autolock lock(mLock);
        loadProfilesLocked();
        on = mSfxOn;
    }
    mObservable->onSelectedProfileChanged(*this);
    mObservable->onSfxOnChanged(*this, on);
}

void AxContext::reloadTuning() {
    {
        Mutex::Autolock lock(mLock);
        mTunings.clear();
    }
    for (Port port : kSupportedPorts) {
        const char* portName = kPortNames[port];
        std::string current = getSelectedTuningDevice(port);
        std::vector<std::string> available = getAvailableTuningDevice(port);
        if (std::find(available.begin(), available.end(), current) == available.end()) {
            std::string fallback = getDefaultTuningDevice(port);
            ALOGW("Current selected tuning dev[%s] is not available for port[%s], revert to use "
                  "dev[%s].",
                  current.c_str(), portName, fallback.c_str());
            // Kept in memory only: the next save writes it.
            Mutex::Autolock lock(mLock);
            mSelectedTuningDevice[port] = fallback;
            current = fallback;
        }
        Tuning* tuning;
        {
            Mutex::Autolock lock(mLock);
            tuning = mProvider->loadTuningForDevice(current);
            if (tuning != nullptr) mTunings[port] = tuning;
        }
        if (tuning == nullptr) {
            ALOGE("Cannot load tuning data for device[%s] on port[%s]", current.c_str(), portName);
            continue;
        }
        ALOGD("Reset tuning[%s] for port[%s] and notify observers.", tuning->getName().c_str(),
              portName);
        mObservable->onSelectedTuningChanged(*this, port, *tuning);
    }
}

int AxContext::saveProfilesLocked() {
    int result = 0;
    for (auto& [id, context] : mProfileContexts) result |= context->save();
    return result;
}

int AxContext::save() {
    Mutex::Autolock lock(mLock);
    int result = mProvider->beginTransaction();
    result |= saveProfilesLocked();
    result |= mProvider->setSelectedProfile(selectedIdLocked());
    result |= mProvider->setSfxOn(mSfxOn);
    for (Port port : kSupportedPorts) {
        auto it = mSelectedTuningDevice.find(port);
        const std::string device = it != mSelectedTuningDevice.end() ? it->second : "";
        result |= mProvider->updateDeviceTuning(kPortNames[port], device);
    }
    result |= mProvider->commitTransaction();
    return result;
}

int AxContext::saveAxState() {
    Mutex::Autolock lock(mLock);
    return mProvider->setSfxOn(mSfxOn);
}

int AxContext::saveAxProfile() {
    Mutex::Autolock lock(mLock);
    return mProvider->setSelectedProfile(selectedIdLocked());
}

int AxContext::saveAxProfileSettings() {
    Mutex::Autolock lock(mLock);
    int result = mProvider->beginTransaction();
    result |= saveProfilesLocked();
    result |= mProvider->setSelectedProfile(selectedIdLocked());
    result |= mProvider->commitTransaction();
    return result;
}

// ---- state queries ----

bool AxContext::getSfxOn() {
    Mutex::Autolock lock(mLock);
    return mSfxOn;
}

void AxContext::setSfxOn(bool on) {
    bool changed;
    {
        Mutex::Autolock lock(mLock);
        changed = mSfxOn != on;
        mSfxOn = on;
    }
    if (changed) mObservable->onSfxOnChanged(*this, on);
}

bool AxContext::isSelected(int id) const {
    ProfileContext* selected = mSelectedContext.load();
    return selected != nullptr && selected->getId() == id;
}

int AxContext::getSelectedProfile() {
    Mutex::Autolock lock(mLock);
    return selectedContext()->getId();
}

GeqPreset* AxContext::getSelectedProfileGeq() {
    Mutex::Autolock lock(mLock);
    return selectedContext()->getSelectedGeqPreset();
}

ProfileEndpoint* AxContext::getSelectedProfileEndpoint(Port port) {
    Mutex::Autolock lock(mLock);
    Tuning* tuning = tuningForQuery(port, __func__);
    return tuning != nullptr ? selectedContext()->getProfileEndpoint(tuning->getEndpoint())
                             : nullptr;
}

IeqPreset* AxContext::getSelectedProfileIeq(Port port) {
    Mutex::Autolock lock(mLock);
    Tuning* tuning = tuningForQuery(port, __func__);
    return tuning != nullptr ? selectedContext()->getSelectedIeqPreset(tuning->getEndpoint())
                             : nullptr;
}

Tuning* AxContext::getSelectedTuning(Port port) const {
    auto it = mTunings.find(port);
    return it != mTunings.end() ? it->second : nullptr;
}

std::string AxContext::getSelectedTuningDevice(Port port) const {
    auto it = mSelectedTuningDevice.find(port);
    return it != mSelectedTuningDevice.end() ? it->second : "";
}

std::string AxContext::getIeqPresetName(int presetId) const {
    if (presetId < 0 || presetId > mNumIeqPresets) {
        ALOGE("Invalid IEQ Preset Id!");
        return "";
    }
    IeqPreset* preset = mProvider->loadIeqPreset(presetId);
    return preset != nullptr ? preset->getName() : "";
}

Profile* AxContext::getDefaultProfile(int id) {
    Mutex::Autolock lock(mLock);
    return mProvider->loadDefaultProfile(id);
}

Profile* AxContext::getProfile(int id) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->getProfile();
}

GeqPreset* AxContext::getProfileGeq(int id) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->getSelectedGeqPreset();
}

ProfileEndpoint* AxContext::getProfileEndpoint(Endpoint endpoint) {
    Mutex::Autolock lock(mLock);
    return selectedContext()->getProfileEndpoint(endpoint);
}

ProfileEndpoint* AxContext::getProfileEndpoint(int id, Endpoint endpoint) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->getProfileEndpoint(endpoint);
}

bool AxContext::isProfileModified(int id) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->isModified();
}

bool AxContext::isProfileGeqModified(int id) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->isGeqModified();
}

bool AxContext::isProfileSpecificSettingsModified(int id) {
    Mutex::Autolock lock(mLock);
    return findContext(id)->isProfileSpecificSettingsModified();
}

// ---- changes ----

void AxContext::setSelectedProfile(int id) {
    {
        Mutex::Autolock lock(mLock);
        if (isSelected(id)) return;
        mSelectedContext = findContext(id);
    }
    mObservable->onSelectedProfileChanged(*this);
}

void AxContext::resetProfile(int id) {
    bool selected;
    {
        Mutex::Autolock lock(mLock);
        findContext(id)->reset();
        selected = isSelected(id);
    }
    if (selected) mObservable->onSelectedProfileChanged(*this);
}

void AxContext::resetProfileGeq(int id) {
    GeqPreset* preset;
    bool selected;
    {
        Mutex::Autolock lock(mLock);
        ProfileContext* context = findContext(id);
        context->resetGeq();
        preset = context->getSelectedGeqPreset();
        selected = isSelected(id);
    }
    if (selected && preset != nullptr) mObservable->onSelectedProfileGeqChanged(*this, *preset);
}

// A new list that matches the start of the stored one changes nothing: only the new list's length
// is compared, so a shorter list cannot truncate a value, and an empty list cannot clear one.
bool AxContext::setValue(ParameterValues& record, Parameter parameter,
                         const std::vector<int>& values) {
    const std::vector<int>& current = record.mValues[parameter];
    if (!current.empty() && values.size() <= current.size() &&
        std::equal(values.begin(), values.end(), current.begin())) {
        return false;
    }
    record.set(parameter, values);
    return true;
}

void AxContext::setProfileParameter(int id, Parameter parameter, const std::vector<int>& values) {
    Profile* profile;
    bool announce;
    {
        Mutex::Autolock lock(mLock);
        profile = findContext(id)->getProfile();
        if (profile == nullptr) return;
        announce = setValue(*profile, parameter, values) && isSelected(id);
    }
    if (announce) mObservable->onSelectedProfileParameterChanged(*this, *profile);
}

void AxContext::setProfileGeqParameter(int id, Parameter parameter,
                                       const std::vector<int>& values) {
    GeqPreset* preset;
    bool announce;
    {
        Mutex::Autolock lock(mLock);
        preset = findContext(id)->getSelectedGeqPreset();
        if (preset == nullptr) return;
        announce = setValue(*preset, parameter, values) && isSelected(id);
    }
    if (announce) mObservable->onSelectedProfileGeqChanged(*this, *preset);
}

void AxContext::setProfileParameter(int id, Endpoint endpoint, Parameter parameter,
                                    const std::vector<int>& values) {
    if (parameter == IEQ_ID) {
        setIeqPresetSelection(id, endpoint, values);
        return;
    }
    ProfileEndpoint* record;
    std::vector<std::pair<Port, Tuning*>> ports;
    {
        Mutex::Autolock lock(mLock);
        if (endpoint != SPEAKER && parameter == VIRTUAL_BASS_ENABLE) {
            ALOGW("Setting virtual-bass-enable is not supported for non-speaker endpoints");
            return;
        }
        record = findContext(id)->getProfileEndpoint(endpoint);
        if (!setValue(*record, parameter, values) || !isSelected(id)) return;
        ports = portsForEndpoint(endpoint);
    }
    for (const auto& [port, tuning] : ports) {
        mObservable->onSelectedProfileEndpointChanged(*this, port, *record);
    }
}

// Selecting an IEQ preset is done once per port fed by the endpoint, and announced for each of
// them even when the preset was selected already, so the effect always follows the selection.
// "ieq-enable" follows the selection through an ordinary endpoint change, made without the lock.
void AxContext::setIeqPresetSelection(int id, Endpoint endpoint, const std::vector<int>& values) {
    // An empty request counts as preset 0 (off).
    const int preset = values.empty() ? 0 : values[0];
    mLock.lock();
    ProfileEndpoint* record = findContext(id)->getProfileEndpoint(endpoint);
    const std::vector<std::pair<Port, Tuning*>> ports = portsForEndpoint(endpoint);
    for (const auto& [port, tuning] : ports) {
        if (preset < 0 || preset > mNumIeqPresets) {
            ALOGE("%s(): Invalid IEq preset %d", "setProfileParameter", preset);
            continue;
        }
        if (record->getSelectedIeqPreset() != preset) {
            mLock.unlock();
            setProfileParameter(id, endpoint, IEQ_ENABLE, {preset != 0 ? 1 : 0});
            mLock.lock();
            record->setSelectedIeqPreset(preset);  // marks the record dirty
        }
        if (!isSelected(id)) continue;
        IeqPreset* inForce = selectedContext()->getSelectedIeqPreset(endpoint);
        mLock.unlock();
        if (inForce != nullptr) mObservable->onSelectedProfileIeqChanged(*this, port, *inForce);
        mLock.lock();
    }
    mLock.unlock();
}

std::vector<int>& AxContext::getProfileParameter(int id, Parameter parameter) {
    Mutex::Autolock lock(mLock);
    Profile* profile = findContext(id)->getProfile();
    return profile != nullptr ? profile->mValues[parameter] : noValues();
}

std::vector<int>& AxContext::getProfileParameter(int id, Endpoint endpoint, Parameter parameter) {
    Mutex::Autolock lock(mLock);
    ProfileContext* context = findContext(id);
    if (parameter != IEQ_ID) return context->getProfileEndpoint(endpoint)->mValues[parameter];
    IeqPreset* preset = context->getSelectedIeqPreset(endpoint);
    return preset != nullptr ? preset->mValues[IEQ_ID] : noValues();
}

std::vector<int>& AxContext::getProfileGeqParameter(int id, Parameter parameter) {
    Mutex::Autolock lock(mLock);
    GeqPreset* preset = findContext(id)->getSelectedGeqPreset();
    return preset != nullptr ? preset->mValues[parameter] : noValues();
}

std::vector<int>& AxContext::getSelectedTuningParameter(Port port, Parameter parameter) {
    Mutex::Autolock lock(mLock);
    Tuning* tuning = tuningForQuery(port, __func__);
    return tuning != nullptr ? tuning->mValues[parameter] : noValues();
}

// ---- tuning devices ----

std::vector<std::string> AxContext::getAvailableTuningDevice(Port port) {
    std::vector<std::string> devices;
    for (const DeviceTuning* deviceTuning : mProvider->loadDeviceTuningsForPort(port)) {
        devices.push_back(deviceTuning->getDevice());
    }
    return devices;
}

// A device named "default_..." wins; else the first offered device, unless a device carries the
// port's own name, or nothing usable is offered: then the port's name.
std::string AxContext::getDefaultTuningDevice(Port port) {
    const std::string portName = kPortNames[port];
    const std::vector<std::string> devices = getAvailableTuningDevice(port);
    bool portNameOffered = false;
    for (const std::string& device : devices) {
        if (device.compare(0, 8, "default_") == 0) return device;
        if (device == portName) portNameOffered = true;
    }
    if (!portNameOffered && !devices.empty() && !devices.front().empty()) return devices.front();
    return portName;
}

bool AxContext::setSelectedTuning(Port port, const std::string& device, bool force) {
    const char* portName = kPortNames[port];
    Tuning* announced = nullptr;
    {
        Mutex::Autolock lock(mLock);
        auto selected = mSelectedTuningDevice.find(port);
        if (!force && selected != mSelectedTuningDevice.end() && selected->second == device) {
            return true;
        }
        std::vector<std::string> offered = getAvailableTuningDevice(port);
        if (std::find(offered.begin(), offered.end(), device) == offered.end()) {
            ALOGE("%s is not a valid tuning device for port %s, please call "
                  "getAvailableTuningDevice(port) to check first!",
                  device.c_str(), portName);
            return false;
        }
        Tuning* tuning = mProvider->loadTuningForDevice(device);
        if (tuning == nullptr) {
            ALOGW("Failed to set tuning for port[%s] as device[%s]", portName, device.c_str());
            return false;
        }
        mSelectedTuningDevice[port] = device;
        // Two devices may share one tuning: switching between them changes nothing the effect
        // sees, so the loaded tuning stays and nothing is announced.
        Tuning* old = getSelectedTuning(port);
        if (force || old == nullptr || old->getName() != tuning->getName()) {
            mTunings[port] = tuning;
            announced = tuning;
        }
    }
    if (announced != nullptr) mObservable->onSelectedTuningChanged(*this, port, *announced);
    ALOGD("Complete setting port[%s] use tuning device[%s]", portName, device.c_str());
    return true;
}

bool AxContext::selectDefaultTuning(Port port) {
    return setSelectedTuning(port, getDefaultTuningDevice(port), false);
}

}  // namespace korvi
