#include "context/ProfileContext.h"

#include "common/FatalExit.h"
#include "store/Provider.h"

namespace korvi {

namespace {

// A missing record only equals another missing one. (A working record is never the very object
// it is compared with: the defaults are copies, and the provider keeps factory and working
// records apart.)
template <typename Record>
bool differs(const Record* a, const Record* b) {
    if (a == nullptr || b == nullptr) return a != b;
    return !a->equals(*b);
}

// A missing endpoint record means the database is corrupt: the service cannot go on. The message
// is logged without a tag, and "fo" is how it has always read; log readers match it as it is.
[[noreturn]] void missingEndpoint(Endpoint endpoint) {
    fatalExit(nullptr, "Couldn't find the profile endpoint fo %d", static_cast<int>(endpoint));
}

ProfileEndpoint* findEndpoint(const std::set<ProfileEndpoint*>& endpoints, Endpoint endpoint) {
    for (ProfileEndpoint* record : endpoints) {
        if (record != nullptr && record->getEndpoint() == endpoint) return record;
    }
    missingEndpoint(endpoint);
}

}  // namespace

namespace {

template <typename Record>
std::unique_ptr<Record> copyOf(const Record* record) {
    return record != nullptr ? std::make_unique<Record>(*record) : nullptr;
}

}  // namespace

// Loaded in this order: profile, endpoints, GEQ preset.
ProfileContext::Defaults::Defaults(Provider* provider, int id)
    : mProfileCopy(copyOf(provider->loadDefaultProfile(id))) {
    mProfile = mProfileCopy.get();
    for (const ProfileEndpoint* endpoint : provider->loadDefaultProfileEndpoints(id)) {
        if (endpoint == nullptr) continue;
        mEndpointCopies.push_back(copyOf(endpoint));
        mProfileEndpoints.insert(mEndpointCopies.back().get());
    }
    mGeqCopy = copyOf(provider->loadDefaultGeqPreset(id));
    mGeqPreset = mGeqCopy.get();
}

ProfileContext::ProfileContext(Provider* provider, int id) : mProvider(provider), mId(id) {}

// Frees the sets and the defaults only: every record belongs to the provider.
ProfileContext::~ProfileContext() = default;

void ProfileContext::load() {
    mProfile = mProvider->loadProfile(mId);
    mProfileEndpoints = mProvider->loadProfileEndpoints(mId);
    mGeqPreset = mProvider->loadGeqPreset(mId);
    // The factory values are taken once, at the first load, and kept through later loads (after
    // a reload of the tuning file too): what counts as "modified" stays measured against the
    // values the profile started with.
    if (!mDefaults) mDefaults = std::make_unique<Defaults>(mProvider, mId);
}

int ProfileContext::save() {
    int result = 0;
    if (mProfile != nullptr) result |= mProvider->save(mProfile);
    for (ProfileEndpoint* endpoint : mProfileEndpoints) result |= mProvider->save(endpoint);
    if (mGeqPreset != nullptr) result |= mProvider->save(mGeqPreset);
    return result;
}

void ProfileContext::reset() {
    if (mProfile != nullptr) mProfile = mProvider->reset(mProfile);
    // Endpoint records are reset in place.
    for (ProfileEndpoint* endpoint : mProfileEndpoints) mProvider->reset(endpoint);
    resetGeq();
}

void ProfileContext::resetGeq() {
    if (mGeqPreset != nullptr) mProvider->reset(mGeqPreset);
}

ProfileEndpoint* ProfileContext::getProfileEndpoint(Endpoint endpoint) const {
    return findEndpoint(mProfileEndpoints, endpoint);
}

IeqPreset* ProfileContext::getSelectedIeqPreset(Endpoint endpoint) {
    ProfileEndpoint* record = getProfileEndpoint(endpoint);
    // Reading through operator[] leaves an empty "ieq-enable" entry in a record that had none;
    // the effect side sees the same record, so this is kept on purpose.
    const std::vector<int>& enable = record->mValues[IEQ_ENABLE];
    if (!enable.empty() && enable[0] != 0) {
        IeqPreset* preset = mProvider->loadIeqPreset(record->getSelectedIeqPreset());
        if (preset != nullptr) return preset;
    }
    // Preset 0 stands for IEQ off; it is also the answer for a selected preset without a row.
    return mProvider->loadIeqPreset(0);
}

bool ProfileContext::profileOrEndpointsModified() const {
    if (differs(mProfile, mDefaults ? mDefaults->mProfile : nullptr)) return true;
    if (!mDefaults) return false;
    for (const ProfileEndpoint* factory : mDefaults->mProfileEndpoints) {
        if (factory == nullptr) continue;
        // Endpoint equality includes the selected IEQ preset id.
        if (differs(findEndpoint(mProfileEndpoints, factory->getEndpoint()), factory)) return true;
    }
    return false;
}

bool ProfileContext::isProfileSpecificSettingsModified() const {
    return profileOrEndpointsModified();
}

bool ProfileContext::isModified() const {
    if (profileOrEndpointsModified()) return true;
    return differs(mGeqPreset, mDefaults ? mDefaults->mGeqPreset : nullptr);
}

// Unlike isModified, the factory GEQ preset is fetched afresh here, not taken from the defaults:
// after a reload of the tuning file this test follows the new factory values.
bool ProfileContext::isGeqModified() const {
    return differs(mGeqPreset, mProvider->loadDefaultGeqPreset(mId));
}

}  // namespace korvi
