#include "tuning/SetterCollection.h"

#include <memory>
#include <vector>

namespace korvi {

namespace {

struct SimpleEntry {
    const char* name;
    Parameter parameter;
};

// Elements that carry one number in their "value" attribute.
const SimpleEntry kSimpleSetters[] = {
    {"calibration-boost", CALIBRATION_BOOST},
    {"dialog-enhancer-enable", DIALOG_ENHANCER_ENABLE},
    {"dialog-enhancer-amount", DIALOG_ENHANCER_AMOUNT},
    {"dialog-enhancer-ducking", DIALOG_ENHANCER_DUCKING},
    {"mi-virtualizer-binaural-steering-enable", MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE},
    {"peak-value", PEAK_VALUE},
    {"surround-decoder-enable", SURROUND_DECODER_ENABLE},
    {"surround-boost", SURROUND_BOOST},
    {"volmax-boost", VOLMAX_BOOST},
    {"volume-leveler-enable", VOLUME_LEVELER_ENABLE},
    {"volume-leveler-amount", VOLUME_LEVELER_AMOUNT},
    {"volume-leveler-in-target", VOLUME_LEVELER_IN_TARGET},
    {"volume-leveler-out-target", VOLUME_LEVELER_OUT_TARGET},
    {"graphic-equalizer-enable", GRAPHIC_EQUALIZER_ENABLE},
    {"virtualizer-enable", VIRTUALIZER_ENABLE},
    {"virtualizer-start-band", VIRTUALIZER_START_BAND},
    {"bass-enhancer-enable", BASS_ENHANCER_ENABLE},
    {"virtual-bass-process-enable", VIRTUAL_BASS_ENABLE},
    {"headphone-virtualizer-steerer-source-distance", HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE},
    {"hearing-protection-enable", HEARING_PROTECTION_ENABLE},
    {"hearing-protection-rms-averaging-time-win-len", HEARING_PROTECTION_RMS_AVERAGING_TIME_WIN_LEN},
    {"hearing-protection-rms-attenuation-target", HEARING_PROTECTION_RMS_ATTENUATION_TARGET},
    {"hearing-protection-attenuation-attack-time", HEARING_PROTECTION_ATTENUATION_ATTACK_TIME},
    {"hearing-protection-attenuation-release-time", HEARING_PROTECTION_ATTENUATION_RELEASE_TIME},
    {"ieq-enable", IEQ_ENABLE},
    {"ieq-amount", IEQ_AMOUNT},
    {"mi-dv-leveler-steering-enable", MI_DV_LEVELER_STEERING_ENABLE},
    {"mi-ieq-steering-enable", MI_IEQ_STEERING_ENABLE},
    {"mi-surround-compressor-steering-enable", MI_SURROUND_COMPRESSOR_STEERING_ENABLE},
    {"mi-adaptive-virtualizer-steering-enable", MI_ADAPTIVE_VIRTUALIZER_STEERING_ENABLE},
    {"reverb-suppression-enable", REVERB_SUPPRESSION_ENABLE},
    {"reverb-suppression-amount", REVERB_SUPPRESSION_AMOUNT},
    {"volume-modeler-enable", VOLUME_MODELER_ENABLE},
    {"bass-enhancer-boost", BASS_ENHANCER_BOOST},
    {"bass-enhancer-cutoff-frequency", BASS_ENHANCER_CUTOFF_FREQUENCY},
    {"bass-enhancer-width", BASS_ENHANCER_WIDTH},
    {"bass-extraction-cutoff-frequency", BASS_EXTRACTION_CUTOFF_FREQUENCY},
    {"height-filter-mode", HEIGHT_FILTER_MODE},
    {"regulator-overdrive", REGULATOR_OVERDRIVE},
    {"regulator-timbre-preservation", REGULATOR_TIMBRE_PRESERVATION},
    {"regulator-distortion-slope", REGULATOR_DISTORTION_SLOPE},
    {"virtual-bass-rolloff-gain", VIRTUAL_BASS_ROLLOFF_GAIN},
    {"virtual-bass-blend-linear-gain", VIRTUAL_BASS_BLEND_LINEAR_GAIN},
    {"virtual-bass-overall-gain", VIRTUAL_BASS_OVERALL_GAIN},
    {"virtual-bass-slope-gain", VIRTUAL_BASS_SLOPE_GAIN},
    {"virtualizer-front-speaker-angle", VIRTUALIZER_FRONT_SPEAKER_ANGLE},
    {"virtualizer-height-speaker-angle", VIRTUALIZER_HEIGHT_SPEAKER_ANGLE},
    {"virtualizer-surround-speaker-angle", VIRTUALIZER_SURROUND_SPEAKER_ANGLE},
    {"volume-leveler-compressor-enable", VOLUME_LEVELER_COMPRESSOR_ENABLE},
    {"volume-modeler-calibration", VOLUME_MODELER_CALIBRATION},
    {"audio-optimizer-enable", AUDIO_OPTIMIZER_ENABLE},
    {"bass-extraction-enable", BASS_EXTRACTION_ENABLE},
    {"regulator-enable", REGULATOR_ENABLE},
    {"regulator-speaker-dist-enable", REGULATOR_SPEAKER_DIST_ENABLE},
    {"virtual-bass-mode", VIRTUAL_BASS_MODE},
    {"complex-equalizer-enable", COMPLEX_EQUALIZER_ENABLE},
    {"regulator-sibilance-suppress-enable", REGULATOR_SIBILANCE_SUPPRESS_ENABLE},
    {"bass-mbdrc-enable", BASS_MBDRC_ENABLE},
};

// Elements that carry a row of numbers in their first attribute. The stress amount is a row on
// purpose, unlike the other regulator amounts.
const SimpleEntry kRowSetters[] = {
    {"regulator-stress-amount", REGULATOR_STRESS_AMOUNT},
    {"virtual-bass-harmgains", VIRTUAL_BASS_HARMGAINS},
    {"virtual-bass-hybgains", VIRTUAL_BASS_HYBGAINS},
    {"virtual-bass-mix-frequency", VIRTUAL_BASS_MIX_FREQUENCY},
    {"virtual-bass-compressor-tuning", VIRTUAL_BASS_COMPRESSOR_TUNING},
    {"complex-equalizer-tuning-left", COMPLEX_EQUALIZER_TUNING_LEFT},
    {"complex-equalizer-tuning-right", COMPLEX_EQUALIZER_TUNING_RIGHT},
    {"complex-equalizer-tuning-left-surround", COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND},
    {"complex-equalizer-tuning-right-surround", COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND},
    {"regulator-sibilance-suppress-amounts-left", REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT},
    {"regulator-sibilance-suppress-amounts-right", REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT},
    {"regulator-sibilance-suppress-amounts-left-surround",
     REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND},
    {"regulator-sibilance-suppress-amounts-right-surround",
     REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND},
    {"bass-mbdrc-tuning", BASS_MBDRC_TUNING},
};

// The setter objects live as long as the library; the public table only points at them.
std::vector<std::unique_ptr<ValueSetter>> makeSetters() {
    std::vector<std::unique_ptr<ValueSetter>> setters;
    for (const SimpleEntry& e : kSimpleSetters) {
        setters.push_back(std::make_unique<SimpleValueSetter>(e.name, e.parameter));
    }
    for (const SimpleEntry& e : kRowSetters) {
        setters.push_back(std::make_unique<RowDataValueSetter>(e.name, e.parameter));
    }
    setters.push_back(std::make_unique<DrcRowDataValueSetter>("drc-metadata", CUSTOM_DRC_METADATA));
    setters.push_back(std::make_unique<MixMatrixValueSetter>("output-mode", OUTPUT_MIX_MATRIX));
    setters.push_back(std::make_unique<VirtualBassValueSetter>(
        "virtual-bass-mix-freqs", VIRTUAL_BASS_MIX_FREQ_LOW, VIRTUAL_BASS_MIX_FREQ_HIGH));
    setters.push_back(std::make_unique<VirtualBassValueSetter>(
        "virtual-bass-src-freqs", VIRTUAL_BASS_SRC_FREQ_LOW, VIRTUAL_BASS_SRC_FREQ_HIGH));
    setters.push_back(
        std::make_unique<VirtualBassSubgainValueSetter>("virtual-bass-subgains", VIRTUAL_BASS_SUBGAINS));
    setters.push_back(std::make_unique<AudioOptimizerValueSetter>(
        "audio-optimizer-bands",
        std::vector<Parameter>{AUDIO_OPTIMIZER_FREQUENCY, AUDIO_OPTIMIZER_GAIN_L, AUDIO_OPTIMIZER_GAIN_R,
                               AUDIO_OPTIMIZER_GAIN_LS, AUDIO_OPTIMIZER_GAIN_RS}));
    setters.push_back(std::make_unique<RegulatorTuningValueSetter>(
        "regulator-tuning", std::vector<Parameter>{REGULATOR_FREQUENCY, REGULATOR_THRESHOLD_LOW,
                                                   REGULATOR_THRESHOLD_HIGH, REGULATOR_ISOLATED_BAND}));
    setters.push_back(std::make_unique<IeqValueSetter>("ieq", IEQ_FREQUENCY, IEQ_TARGET));
    setters.push_back(std::make_unique<GeqValueSetter>("geq", GEQ_FREQUENCY, GEQ_GAIN));
    return setters;
}

}  // namespace

const std::set<ValueSetter*>& SetterCollection::allValueSetters() {
    static const std::vector<std::unique_ptr<ValueSetter>> sOwned = makeSetters();
    static const std::set<ValueSetter*> sAll = [] {
        std::set<ValueSetter*> all;
        for (const auto& setter : sOwned) all.insert(setter.get());
        return all;
    }();
    return sAll;
}

const std::set<ValueSetter*>& SetterCollection::kAllValueSetters = SetterCollection::allValueSetters();

SetterCollection::SetterCollection() {
    for (ValueSetter* setter : allValueSetters()) {
        mSetters.emplace(setter->getNodeName(), setter);  // emplace keeps the first of a name
    }
}

ValueSetter* SetterCollection::getValueSetter(const std::string& name) const {
    // A plain find: asking for an unknown name leaves the shared table as it was, so every miss
    // answers null and parsers on different threads never write to it.
    auto it = mSetters.find(name);
    return it == mSetters.end() ? nullptr : it->second;
}

}  // namespace korvi
