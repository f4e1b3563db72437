#include "model/ProfileParameters.h"

namespace korvi {

const std::set<Parameter> ProfileParameters::kValidParams = parametersOwnedBy({OWNER_PROFILE, OWNER_GEQ_PRESET});

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
    for (const auto& [parameter, values] : source.mValues) {
        const std::vector<int> copy = values;
        if (checkAndUpdate(parameter, copy) && mObserver != nullptr) {
            mObserver->onParameterChanged(parameter);
        }
    }
}

}  // namespace korvi
