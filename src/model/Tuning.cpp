#include "model/Tuning.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> Tuning::kValidParams = {
    AUDIO_OPTIMIZER_ENABLE,
    AUDIO_OPTIMIZER_FREQUENCY,
    AUDIO_OPTIMIZER_GAIN_L,
    AUDIO_OPTIMIZER_GAIN_LS,
    AUDIO_OPTIMIZER_GAIN_R,
    AUDIO_OPTIMIZER_GAIN_RS,
    BASS_ENHANCER_BOOST,
    BASS_ENHANCER_CUTOFF_FREQUENCY,
    BASS_ENHANCER_WIDTH,
    BASS_EXTRACTION_CUTOFF_FREQUENCY,
    BASS_EXTRACTION_ENABLE,
    BASS_MBDRC_ENABLE,
    BASS_MBDRC_TUNING,
    COMPLEX_EQUALIZER_ENABLE,
    COMPLEX_EQUALIZER_TUNING_LEFT,
    COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND,
    COMPLEX_EQUALIZER_TUNING_RIGHT,
    COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND,
    HEIGHT_FILTER_MODE,
    ORIENTATION,
    OUTPUT_CHANNELS,
    OUTPUT_MIX_MATRIX,
    REGULATOR_DISTORTION_SLOPE,
    REGULATOR_ENABLE,
    REGULATOR_FREQUENCY,
    REGULATOR_ISOLATED_BAND,
    REGULATOR_OVERDRIVE,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND,
    REGULATOR_SIBILANCE_SUPPRESS_ENABLE,
    REGULATOR_SPEAKER_DIST_ENABLE,
    REGULATOR_STRESS_AMOUNT,
    REGULATOR_THRESHOLD_HIGH,
    REGULATOR_THRESHOLD_LOW,
    REGULATOR_TIMBRE_PRESERVATION,
    VIRTUAL_BASS_BLEND_LINEAR_GAIN,
    VIRTUAL_BASS_COMPRESSOR_TUNING,
    VIRTUAL_BASS_HARMGAINS,
    VIRTUAL_BASS_HYBGAINS,
    VIRTUAL_BASS_MIX_FREQUENCY,
    VIRTUAL_BASS_MIX_FREQ_HIGH,
    VIRTUAL_BASS_MIX_FREQ_LOW,
    VIRTUAL_BASS_MODE,
    VIRTUAL_BASS_OVERALL_GAIN,
    VIRTUAL_BASS_ROLLOFF_GAIN,
    VIRTUAL_BASS_SLOPE_GAIN,
    VIRTUAL_BASS_SRC_FREQ_HIGH,
    VIRTUAL_BASS_SRC_FREQ_LOW,
    VIRTUAL_BASS_SUBGAINS,
    VIRTUALIZER_FRONT_SPEAKER_ANGLE,
    VIRTUALIZER_HEIGHT_SPEAKER_ANGLE,
    VIRTUALIZER_SURROUND_SPEAKER_ANGLE,
    VOLUME_LEVELER_COMPRESSOR_ENABLE,
    VOLUME_MODELER_CALIBRATION,
};

const std::map<std::string, Endpoint> Tuning::kEndpNameToEndpoint = {
    {"speaker", SPEAKER},
    {"headphone", HEADPHONE},
    {"other", OTHER},
};

Tuning::Tuning(const std::string& name, Endpoint endpoint, bool mono)
    : ParameterValues(-1, true), mName(name), mEndpoint(endpoint), mMono(mono), mReadonly(true) {}

Tuning::Tuning(int64_t id, const std::string& name, Endpoint endpoint, bool mono, bool readonly)
    : ParameterValues(id, false), mName(name), mEndpoint(endpoint), mMono(mono), mReadonly(readonly) {}

void Tuning::setEndpoint(const std::string& name) {
    auto it = kEndpNameToEndpoint.find(name);
    if (it != kEndpNameToEndpoint.end()) mEndpoint = it->second;
}

std::string Tuning::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "name", mName);
    recordtext::line(out, "endpoint", mEndpoint);
    recordtext::line(out, "mono", mMono);
    recordtext::line(out, "readonly", mReadonly);
    return out + valuesToString();
}

}  // namespace korvi
