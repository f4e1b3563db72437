#include "model/ProfileEndpoint.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> ProfileEndpoint::kValidParams = {
    BASS_ENHANCER_ENABLE,
    CALIBRATION_BOOST,
    DIALOG_ENHANCER_AMOUNT,
    DIALOG_ENHANCER_DUCKING,
    DIALOG_ENHANCER_ENABLE,
    GRAPHIC_EQUALIZER_ENABLE,
    HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE,
    HEARING_PROTECTION_ATTENUATION_ATTACK_TIME,
    HEARING_PROTECTION_ATTENUATION_RELEASE_TIME,
    HEARING_PROTECTION_ENABLE,
    HEARING_PROTECTION_RMS_ATTENUATION_TARGET,
    HEARING_PROTECTION_RMS_AVERAGING_TIME_WIN_LEN,
    IEQ_AMOUNT,
    IEQ_ENABLE,
    MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE,
    PEAK_VALUE,
    SURROUND_BOOST,
    SURROUND_DECODER_ENABLE,
    VIRTUAL_BASS_ENABLE,
    VIRTUALIZER_ENABLE,
    VIRTUALIZER_START_BAND,
    VOLMAX_BOOST,
    VOLUME_LEVELER_AMOUNT,
    VOLUME_LEVELER_ENABLE,
    VOLUME_LEVELER_IN_TARGET,
    VOLUME_LEVELER_OUT_TARGET,
};

ProfileEndpoint::ProfileEndpoint(int profileId, Endpoint endpoint, int selectedIeqPreset)
    : ProfileEndpoint(-1, profileId, endpoint, selectedIeqPreset) {
    mDirty = true;
}

ProfileEndpoint::ProfileEndpoint(int64_t id, int profileId, Endpoint endpoint, int selectedIeqPreset)
    : ParameterValues(id, false),
      mProfileId(profileId),
      mEndpoint(endpoint),
      mSelectedIeqPreset(selectedIeqPreset) {}

void ProfileEndpoint::setSelectedIeqPreset(int presetId) {
    mSelectedIeqPreset = presetId;
    mDirty = true;
}

bool ProfileEndpoint::equals(const ProfileEndpoint& other) const {
    if (this == &other) return true;
    if (mEndpoint != other.mEndpoint) return false;
    if (mProfileId != other.mProfileId) return false;
    if (mSelectedIeqPreset != other.mSelectedIeqPreset) return false;
    return ParameterValues::equals(other);
}

std::string ProfileEndpoint::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "profileId", mProfileId);
    recordtext::line(out, "endpoint", mEndpoint);
    recordtext::line(out, "selectedIeqPreset", mSelectedIeqPreset);
    return out + valuesToString();
}

}  // namespace korvi
