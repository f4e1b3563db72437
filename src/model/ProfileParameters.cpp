#include "model/ProfileParameters.h"

namespace korvi {

const std::set<Parameter> ProfileParameters::kValidParams = {
    CUSTOM_DRC_METADATA,
    GEQ_FREQUENCY,
    GEQ_GAIN,
    MI_ADAPTIVE_VIRTUALIZER_STEERING_ENABLE,
    MI_DV_LEVELER_STEERING_ENABLE,
    MI_IEQ_STEERING_ENABLE,
    MI_SURROUND_COMPRESSOR_STEERING_ENABLE,
    REVERB_SUPPRESSION_AMOUNT,
    REVERB_SUPPRESSION_ENABLE,
    VOLUME_MODELER_ENABLE,
};

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
