// The effect path's load-time tables, all in this one file so that they are built in the order
// they depend on each other: first the source lists of the computing translators, then the
// translators themselves, then the collection that indexes them by parameter.
#include "effect/AudioOptimizerTranslator.h"
#include "effect/AudioRegulatorTranslator.h"
#include "effect/BassMbdrcTranslator.h"
#include "effect/ComplexEqualizerTranslator.h"
#include "effect/CustomDRCTranslator.h"
#include "effect/DeAmountTranslator.h"
#include "effect/DeEnableTranslator.h"
#include "effect/GeqTranslator.h"
#include "effect/IeqTranslator.h"
#include "effect/OutputModeTranslator.h"
#include "effect/ParameterTranslator.h"
#include "effect/SimpleTranslator.h"
#include "effect/TranslatorCollection.h"
#include "effect/VirtualBassEnableTranslator.h"
#include "effect/VirtualBassTranslator.h"

#include <utility>

namespace korvi {

// The order of each list is the order its translator expects its sources in.
const std::vector<Parameter> BassMbdrcTranslator::kSrcParams = {BASS_MBDRC_TUNING};
const std::vector<Parameter> CustomDRCTranslator::kSrcParams = {CUSTOM_DRC_METADATA};
const std::vector<Parameter> ComplexEqualizerTranslator::kSrcParams = {
    COMPLEX_EQUALIZER_TUNING_LEFT,
    COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND,
    COMPLEX_EQUALIZER_TUNING_RIGHT,
    COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND,
};
const std::vector<Parameter> OutputModeTranslator::kSrcParams = {
    VIRTUALIZER_ENABLE,
    OUTPUT_MIX_MATRIX,
    ORIENTATION,
};
const std::vector<Parameter> VirtualBassTranslator::kSrcParams = {
    VIRTUAL_BASS_SRC_FREQ_LOW,
    VIRTUAL_BASS_SRC_FREQ_HIGH,
    VIRTUAL_BASS_MIX_FREQ_LOW,
    VIRTUAL_BASS_MIX_FREQ_HIGH,
};
const std::vector<Parameter> VirtualBassEnableTranslator::kSrcParams = {
    VIRTUAL_BASS_ENABLE,
    VIRTUAL_BASS_TYPE,
};
const std::vector<Parameter> AudioRegulatorTranslator::kSrcParams = {
    REGULATOR_STRESS_AMOUNT,
    REGULATOR_FREQUENCY,
    REGULATOR_ISOLATED_BAND,
    REGULATOR_THRESHOLD_HIGH,
    REGULATOR_THRESHOLD_LOW,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT,
    REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND,
};
const std::vector<Parameter> DeEnableTranslator::kSrcParams = {DIALOG_ENHANCER_ENABLE};
const std::vector<Parameter> DeAmountTranslator::kSrcParams = {DIALOG_ENHANCER_AMOUNT};
const std::vector<Parameter> AudioOptimizerTranslator::kSrcParams = {
    AUDIO_OPTIMIZER_FREQUENCY,
    AUDIO_OPTIMIZER_GAIN_L,
    AUDIO_OPTIMIZER_GAIN_LS,
    AUDIO_OPTIMIZER_GAIN_R,
    AUDIO_OPTIMIZER_GAIN_RS,
};
const std::vector<Parameter> IeqTranslator::kSrcParams = {IEQ_FREQUENCY, IEQ_TARGET};
const std::vector<Parameter> GeqTranslator::kSrcParams = {GEQ_FREQUENCY, GEQ_GAIN};

namespace {

// The parameters the effect takes unchanged, each under its own code (57). Note
// virtual_bass_subgains travels as "VBHG": that is the effect's code for it.
constexpr std::pair<SfxParameter, Parameter> kSimpleTranslations[] = {
    {SFX_PLB, CALIBRATION_BOOST},
    {SFX_NGON, SURROUND_DECODER_ENABLE},
    {SFX_DED, DIALOG_ENHANCER_DUCKING},
    {SFX_VMB, VOLMAX_BOOST},
    {SFX_DVME, VOLUME_MODELER_ENABLE},
    {SFX_DVMC, VOLUME_MODELER_CALIBRATION},
    {SFX_DVLE, VOLUME_LEVELER_ENABLE},
    {SFX_DVLA, VOLUME_LEVELER_AMOUNT},
    {SFX_DVLI, VOLUME_LEVELER_IN_TARGET},
    {SFX_DVLO, VOLUME_LEVELER_OUT_TARGET},
    {SFX_DVLC, VOLUME_LEVELER_COMPRESSOR_ENABLE},
    {SFX_IEON, IEQ_ENABLE},
    {SFX_IEA, IEQ_AMOUNT},
    {SFX_AROD, REGULATOR_OVERDRIVE},
    {SFX_ARTP, REGULATOR_TIMBRE_PRESERVATION},
    {SFX_GEON, GRAPHIC_EQUALIZER_ENABLE},
    {SFX_AOON, AUDIO_OPTIMIZER_ENABLE},
    {SFX_ARDS, REGULATOR_DISTORTION_SLOPE},
    {SFX_ARON, REGULATOR_ENABLE},
    {SFX_ARDE, REGULATOR_SPEAKER_DIST_ENABLE},
    {SFX_DSB, SURROUND_BOOST},
    {SFX_BEON, BASS_ENHANCER_ENABLE},
    {SFX_BEB, BASS_ENHANCER_BOOST},
    {SFX_BECF, BASS_ENHANCER_CUTOFF_FREQUENCY},
    {SFX_BEW, BASS_ENHANCER_WIDTH},
    {SFX_VBOG, VIRTUAL_BASS_OVERALL_GAIN},
    {SFX_VBSG, VIRTUAL_BASS_SLOPE_GAIN},
    {SFX_VBHG, VIRTUAL_BASS_SUBGAINS},
    {SFX_VBBG, VIRTUAL_BASS_BLEND_LINEAR_GAIN},
    {SFX_VBCT, VIRTUAL_BASS_COMPRESSOR_TUNING},
    {SFX_VBHM, VIRTUAL_BASS_HARMGAINS},
    {SFX_VBHB, VIRTUAL_BASS_HYBGAINS},
    {SFX_VBMX, VIRTUAL_BASS_MIX_FREQUENCY},
    {SFX_VBRG, VIRTUAL_BASS_ROLLOFF_GAIN},
    {SFX_MSCE, MI_SURROUND_COMPRESSOR_STEERING_ENABLE},
    {SFX_MIEE, MI_IEQ_STEERING_ENABLE},
    {SFX_MDLE, MI_DV_LEVELER_STEERING_ENABLE},
    {SFX_MAVE, MI_ADAPTIVE_VIRTUALIZER_STEERING_ENABLE},
    {SFX_DHFM, HEIGHT_FILTER_MODE},
    {SFX_DFSA, VIRTUALIZER_FRONT_SPEAKER_ANGLE},
    {SFX_DSA, VIRTUALIZER_SURROUND_SPEAKER_ANGLE},
    {SFX_DHSA, VIRTUALIZER_HEIGHT_SPEAKER_ANGLE},
    {SFX_SVSB, VIRTUALIZER_START_BAND},
    {SFX_CEON, COMPLEX_EQUALIZER_ENABLE},
    {SFX_DPLP, PEAK_VALUE},
    {SFX_MVBE, MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE},
    {SFX_RSSE, REGULATOR_SIBILANCE_SUPPRESS_ENABLE},
    {SFX_IEID, IEQ_ID},
    {SFX_HPON, HEARING_PROTECTION_ENABLE},
    {SFX_HPTW, HEARING_PROTECTION_RMS_AVERAGING_TIME_WIN_LEN},
    {SFX_HPAT, HEARING_PROTECTION_RMS_ATTENUATION_TARGET},
    {SFX_HPAA, HEARING_PROTECTION_ATTENUATION_ATTACK_TIME},
    {SFX_HPAR, HEARING_PROTECTION_ATTENUATION_RELEASE_TIME},
    {SFX_BMDE, BASS_MBDRC_ENABLE},
    {SFX_RVSE, REVERB_SUPPRESSION_ENABLE},
    {SFX_RVSA, REVERB_SUPPRESSION_AMOUNT},
    {SFX_VSSD, HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE},
};

TranslatorCollection::TranslatorSet makeAllTranslators() {
    // The translators are process-wide and never freed: the set that indexes them is their owner.
    TranslatorCollection::TranslatorSet all;
    for (const auto& [sfxParameter, source] : kSimpleTranslations) {
        all.insert(new SimpleTranslator(sfxParameter, source));
    }
    all.insert(new BassMbdrcTranslator());
    all.insert(new CustomDRCTranslator());
    all.insert(new ComplexEqualizerTranslator());
    all.insert(new OutputModeTranslator());
    all.insert(new VirtualBassTranslator());
    all.insert(new VirtualBassEnableTranslator());
    all.insert(new AudioRegulatorTranslator());
    all.insert(new DeEnableTranslator());
    all.insert(new DeAmountTranslator());
    all.insert(new AudioOptimizerTranslator());
    all.insert(new IeqTranslator());
    all.insert(new GeqTranslator());
    return all;
}

}  // namespace

const TranslatorCollection::TranslatorSet TranslatorCollection::kAllTranslators =
    makeAllTranslators();

TranslatorCollection* const ParameterTranslator::sTranslatorCollection = new TranslatorCollection();

}  // namespace korvi
