#include "model/DeviceParameters.h"

namespace korvi {

const std::set<Parameter> DeviceParameters::kValidParams = parametersOwnedBy(
    {OWNER_TUNING, OWNER_PROFILE_ENDPOINT, OWNER_IEQ_PRESET, OWNER_NONE});

namespace {
const std::bitset<kParameterCount> kAdmitted = parameterFlags(DeviceParameters::kValidParams);
}  // namespace

bool DeviceParameters::admits(Parameter parameter) const {
    return isValidParameter(parameter) && kAdmitted.test(static_cast<size_t>(parameter));
}

DeviceParameters::DeviceParameters(ParamChangeObserver* observer)
    : ParameterValues(-1, false), mObserver(observer) {
    if (mObserver != nullptr) mObserver->setSource(this, OTHER, false);
}

void DeviceParameters::setProfile(Profile& profile) {
    mProfile = &profile;
    updateParams(profile);
}

void DeviceParameters::setProfileEndpoint(ProfileEndpoint& endpoint) {
    mProfileEndpoint = &endpoint;
    updateParams(endpoint);
}

void DeviceParameters::setIeqPreset(IeqPreset& preset) {
    mIeqPreset = &preset;
    updateParams(preset);
}

void DeviceParameters::setTuning(Tuning& tuning) {
    mTuning = &tuning;
    if (mObserver != nullptr) mObserver->setSource(this, tuning.getEndpoint(), tuning.isMono());
    updateParams(tuning);
}

void DeviceParameters::updateParams(ParameterValues& source) {
    mergeFrom(source, true, [this](Parameter parameter) {
        if (mObserver != nullptr) mObserver->onParameterChanged(parameter);
    });
}

}  // namespace korvi
