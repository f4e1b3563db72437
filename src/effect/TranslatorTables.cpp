// The effect path's load-time tables, all in this one file so that they are built in the order
// they depend on each other: the translators (whose source lists, defined inline in their headers,
// are ready before anything in this file), then the set of all of them, then the collection that
// indexes them by parameter.
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

#include <memory>
#include <utility>

namespace korvi {

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

// Owns every translator for the whole life of the process. Defined before the set and the
// collection that borrow from it, so it is built before them and destroyed after them.
std::vector<std::unique_ptr<Translator>> sTranslatorOwner;

template <typename T, typename... Args>
Translator* makeOwned(Args... args) {
    sTranslatorOwner.push_back(std::make_unique<T>(args...));
    return sTranslatorOwner.back().get();
}

TranslatorCollection::TranslatorSet makeAllTranslators() {
    TranslatorCollection::TranslatorSet all;
    for (const auto& [sfxParameter, source] : kSimpleTranslations) {
        all.insert(makeOwned<SimpleTranslator>(sfxParameter, source));
    }
    all.insert(makeOwned<BassMbdrcTranslator>());
    all.insert(makeOwned<CustomDRCTranslator>());
    all.insert(makeOwned<ComplexEqualizerTranslator>());
    all.insert(makeOwned<OutputModeTranslator>());
    all.insert(makeOwned<VirtualBassTranslator>());
    all.insert(makeOwned<VirtualBassEnableTranslator>());
    all.insert(makeOwned<AudioRegulatorTranslator>());
    all.insert(makeOwned<DeEnableTranslator>());
    all.insert(makeOwned<DeAmountTranslator>());
    all.insert(makeOwned<AudioOptimizerTranslator>());
    all.insert(makeOwned<IeqTranslator>());
    all.insert(makeOwned<GeqTranslator>());
    return all;
}

}  // namespace

const TranslatorCollection::TranslatorSet TranslatorCollection::kAllTranslators =
    makeAllTranslators();

namespace {

// Owns the one collection every device translates through.
const std::unique_ptr<TranslatorCollection> sCollectionOwner =
    std::make_unique<TranslatorCollection>(TranslatorCollection::kAllTranslators);

}  // namespace

TranslatorCollection* const ParameterTranslator::sTranslatorCollection = sCollectionOwner.get();

}  // namespace korvi
