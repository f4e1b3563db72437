#include "model/ProfileParameters.h"

namespace korvi {

const std::set<Parameter> ProfileParameters::kValidParams = parametersOwnedBy({OWNER_PROFILE, OWNER_GEQ_PRESET});

namespace {
const std::bitset<kParameterCount> kAdmitted = parameterFlags(ProfileParameters::kValidParams);
}  // namespace

bool ProfileParameters::admits(Parameter parameter) const {
    return isValidParameter(parameter) && kAdmitted.test(static_cast<size_t>(parameter));
}

ProfileParameters::ProfileParameters(ParamChangeObserver* observer)
    : ParameterValues(-1, false), mObserver(observer) {
    if (mObserver != nullptr) mObserver->setSource(this, OTHER, false);
}

void ProfileParameters::setProfile(Profile& profile) {
    mProfile = &profile;
    updateParams(profile);
}

void ProfileParameters::setGeqPreset(GeqPreset& preset) {
    mGeqPreset = &preset;
    updateParams(preset);
}

void ProfileParameters::updateParams(ParameterValues& source) {
    mergeFrom(source, false, [this](Parameter parameter) {
        if (mObserver != nullptr) mObserver->onParameterChanged(parameter);
    });
}

}  // namespace korvi
