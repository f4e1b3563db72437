// Which translator reads which parameter, and how a device's translator collects changes and
// runs them: change-only sends, once per translator, and full sends of a whole view.
#include <gtest/gtest.h>

#include <map>
#include <typeinfo>

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
#include "model/DeviceParameters.h"
#include "model/ProfileParameters.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::AnyValues;
using test::codeId;
using test::entries;
using test::entriesOf;
using test::entry;
using test::RecordingEffect;

// The parameters the effect takes unchanged, with their codes, written out here on their own.
const std::map<Parameter, std::string> kSimple = {
    {CALIBRATION_BOOST, "PLB"},
    {SURROUND_DECODER_ENABLE, "NGON"},
    {DIALOG_ENHANCER_DUCKING, "DED"},
    {VOLMAX_BOOST, "VMB"},
    {VOLUME_MODELER_ENABLE, "DVME"},
    {VOLUME_MODELER_CALIBRATION, "DVMC"},
    {VOLUME_LEVELER_ENABLE, "DVLE"},
    {VOLUME_LEVELER_AMOUNT, "DVLA"},
    {VOLUME_LEVELER_IN_TARGET, "DVLI"},
    {VOLUME_LEVELER_OUT_TARGET, "DVLO"},
    {VOLUME_LEVELER_COMPRESSOR_ENABLE, "DVLC"},
    {IEQ_ENABLE, "IEON"},
    {IEQ_AMOUNT, "IEA"},
    {REGULATOR_OVERDRIVE, "AROD"},
    {REGULATOR_TIMBRE_PRESERVATION, "ARTP"},
    {GRAPHIC_EQUALIZER_ENABLE, "GEON"},
    {AUDIO_OPTIMIZER_ENABLE, "AOON"},
    {REGULATOR_DISTORTION_SLOPE, "ARDS"},
    {REGULATOR_ENABLE, "ARON"},
    {REGULATOR_SPEAKER_DIST_ENABLE, "ARDE"},
    {SURROUND_BOOST, "DSB"},
    {BASS_ENHANCER_ENABLE, "BEON"},
    {BASS_ENHANCER_BOOST, "BEB"},
    {BASS_ENHANCER_CUTOFF_FREQUENCY, "BECF"},
    {BASS_ENHANCER_WIDTH, "BEW"},
    {VIRTUAL_BASS_OVERALL_GAIN, "VBOG"},
    {VIRTUAL_BASS_SLOPE_GAIN, "VBSG"},
    {VIRTUAL_BASS_SUBGAINS, "VBHG"},
    {VIRTUAL_BASS_BLEND_LINEAR_GAIN, "VBBG"},
    {VIRTUAL_BASS_COMPRESSOR_TUNING, "VBCT"},
    {VIRTUAL_BASS_HARMGAINS, "VBHM"},
    {VIRTUAL_BASS_HYBGAINS, "VBHB"},
    {VIRTUAL_BASS_MIX_FREQUENCY, "VBMX"},
    {VIRTUAL_BASS_ROLLOFF_GAIN, "VBRG"},
    {MI_SURROUND_COMPRESSOR_STEERING_ENABLE, "MSCE"},
    {MI_IEQ_STEERING_ENABLE, "MIEE"},
    {MI_DV_LEVELER_STEERING_ENABLE, "MDLE"},
    {MI_ADAPTIVE_VIRTUALIZER_STEERING_ENABLE, "MAVE"},
    {HEIGHT_FILTER_MODE, "DHFM"},
    {VIRTUALIZER_FRONT_SPEAKER_ANGLE, "DFSA"},
    {VIRTUALIZER_SURROUND_SPEAKER_ANGLE, "DSA"},
    {VIRTUALIZER_HEIGHT_SPEAKER_ANGLE, "DHSA"},
    {VIRTUALIZER_START_BAND, "SVSB"},
    {COMPLEX_EQUALIZER_ENABLE, "CEON"},
    {PEAK_VALUE, "DPLP"},
    {MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE, "MVBE"},
    {REGULATOR_SIBILANCE_SUPPRESS_ENABLE, "RSSE"},
    {IEQ_ID, "IEID"},
    {HEARING_PROTECTION_ENABLE, "HPON"},
    {HEARING_PROTECTION_RMS_AVERAGING_TIME_WIN_LEN, "HPTW"},
    {HEARING_PROTECTION_RMS_ATTENUATION_TARGET, "HPAT"},
    {HEARING_PROTECTION_ATTENUATION_ATTACK_TIME, "HPAA"},
    {HEARING_PROTECTION_ATTENUATION_RELEASE_TIME, "HPAR"},
    {BASS_MBDRC_ENABLE, "BMDE"},
    {REVERB_SUPPRESSION_ENABLE, "RVSE"},
    {REVERB_SUPPRESSION_AMOUNT, "RVSA"},
    {HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, "VSSD"},
};

const Parameter kUntranslated[] = {BASS_EXTRACTION_CUTOFF_FREQUENCY, BASS_EXTRACTION_ENABLE,
                                   OUTPUT_CHANNELS, VIRTUAL_BASS_MODE};

// Splits a run of entries into code id -> (device, values); fails on a repeated code.
std::map<int32_t, std::pair<int, std::vector<int>>> byCode(const std::vector<int>& words) {
    std::map<int32_t, std::pair<int, std::vector<int>>> out;
    size_t i = 0;
    while (i + 3 <= words.size()) {
        const int n = words[i + 2];
        EXPECT_GE(n, 0);
        EXPECT_LE(i + 3 + n, words.size());
        std::vector<int> values(words.begin() + i + 3, words.begin() + i + 3 + n);
        EXPECT_EQ(out.count(words[i + 1]), 0u) << "code sent twice: " << words[i + 1];
        out[words[i + 1]] = {words[i], values};
        i += 3 + n;
    }
    EXPECT_EQ(i, words.size());
    return out;
}

TEST(TranslatorCollection, EveryParameterHasItsTranslatorExceptFour) {
    EXPECT_EQ(TranslatorCollection::kAllTranslators.size(), 69u);
    EXPECT_EQ(kSimple.size(), 57u);
    TranslatorCollection& collection = *ParameterTranslator::sTranslatorCollection;
    for (const auto& [p, code] : kSimple) {
        auto* simple = dynamic_cast<SimpleTranslator*>(collection.getTranslator(p));
        ASSERT_NE(simple, nullptr) << kParameterNames[p];
        EXPECT_STREQ(sfxParameterCode(simple->getSfxParameter()), code.c_str()) << kParameterNames[p];
        EXPECT_EQ(simple->getSrcParams(), std::vector<Parameter>{p});
        EXPECT_EQ(TranslatorCollection::kAllTranslators.count(simple), 1u);
    }
    const std::vector<std::pair<const std::vector<Parameter>*, const std::type_info*>> computing = {
        {&BassMbdrcTranslator::kSrcParams, &typeid(BassMbdrcTranslator)},
        {&CustomDRCTranslator::kSrcParams, &typeid(CustomDRCTranslator)},
        {&ComplexEqualizerTranslator::kSrcParams, &typeid(ComplexEqualizerTranslator)},
        {&OutputModeTranslator::kSrcParams, &typeid(OutputModeTranslator)},
        {&VirtualBassTranslator::kSrcParams, &typeid(VirtualBassTranslator)},
        {&VirtualBassEnableTranslator::kSrcParams, &typeid(VirtualBassEnableTranslator)},
        {&AudioRegulatorTranslator::kSrcParams, &typeid(AudioRegulatorTranslator)},
        {&DeEnableTranslator::kSrcParams, &typeid(DeEnableTranslator)},
        {&DeAmountTranslator::kSrcParams, &typeid(DeAmountTranslator)},
        {&AudioOptimizerTranslator::kSrcParams, &typeid(AudioOptimizerTranslator)},
        {&IeqTranslator::kSrcParams, &typeid(IeqTranslator)},
        {&GeqTranslator::kSrcParams, &typeid(GeqTranslator)},
    };
    std::set<Parameter> covered;
    for (const auto& entry : kSimple) covered.insert(entry.first);
    for (const auto& [params, type] : computing) {
        Translator* first = collection.getTranslator(params->front());
        ASSERT_NE(first, nullptr);
        EXPECT_EQ(typeid(*first), *type);
        for (Parameter p : *params) {
            EXPECT_EQ(collection.getTranslator(p), first) << kParameterNames[p];
            EXPECT_TRUE(covered.insert(p).second) << kParameterNames[p] << " claimed twice";
        }
    }
    for (Parameter p : kUntranslated) {
        EXPECT_EQ(collection.getTranslator(p), nullptr) << kParameterNames[p];
        EXPECT_EQ(collection.getTranslator(p), nullptr) << "asking twice changes nothing";
        EXPECT_TRUE(covered.insert(p).second);
    }
    EXPECT_EQ(covered.size(), static_cast<size_t>(kParameterCount));
}

// A translator over two sources that emits nothing; for the lookup's insert-if-absent rule.
class PairTranslator : public Translator {
public:
    explicit PairTranslator(std::vector<Parameter> sources) : mSources(std::move(sources)) {}
    const std::vector<Parameter>& getSrcParams() const override { return mSources; }
    void sfxTranslate(SetParamCommand&, ParameterValues&, Endpoint, bool) const override {}

private:
    std::vector<Parameter> mSources;
};

TEST(TranslatorCollection, AParameterKeepsTheFirstTranslatorThatClaimsIt) {
    PairTranslator early({AUDIO_OPTIMIZER_ENABLE, IEQ_ID});
    PairTranslator late({BASS_ENHANCER_BOOST, IEQ_ID});
    TranslatorCollection collection(TranslatorCollection::TranslatorSet{&late, &early});
    EXPECT_EQ(collection.getTranslator(AUDIO_OPTIMIZER_ENABLE), &early);
    EXPECT_EQ(collection.getTranslator(BASS_ENHANCER_BOOST), &late);
    EXPECT_EQ(collection.getTranslator(IEQ_ID), &early);
    EXPECT_EQ(collection.getTranslator(IEQ_TARGET), nullptr);
}

TEST(ParameterTranslator, StartsUnboundAndKeepsWhatSetSourceGives) {
    ParameterTranslator translator;
    EXPECT_EQ(translator.getSource(), nullptr);
    EXPECT_EQ(translator.getEndpoint(), SPEAKER);
    EXPECT_FALSE(translator.isMono());
    EXPECT_EQ(translator.pendingCount(), 0u);

    AnyValues values;
    translator.onParameterChanged(IEQ_AMOUNT);
    translator.setSource(&values, HEADPHONE, true);
    EXPECT_EQ(translator.getSource(), &values);
    EXPECT_EQ(translator.getEndpoint(), HEADPHONE);
    EXPECT_TRUE(translator.isMono());
    EXPECT_EQ(translator.pendingCount(), 1u) << "setSource must not drop pending work";
}

TEST(ParameterTranslator, RunsEachChangedTranslatorOnceThenForgetsIt) {
    ParameterTranslator translator;
    AnyValues values;
    values.set(IEQ_FREQUENCY, {100, 200});
    values.set(IEQ_TARGET, {5, 6});
    translator.setSource(&values, OTHER, false);

    for (Parameter p : kUntranslated) translator.onParameterChanged(p);
    EXPECT_EQ(translator.pendingCount(), 0u);
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x80);
    translator.translatePending(cmd);
    EXPECT_EQ(cmd.getEntryCount(), 0);

    translator.onParameterChanged(IEQ_FREQUENCY);
    translator.onParameterChanged(IEQ_TARGET);
    translator.onParameterChanged(IEQ_FREQUENCY);
    EXPECT_EQ(translator.pendingCount(), 1u);
    // A simple translator over a parameter the source lacks still sends, with no values.
    translator.onParameterChanged(VOLUME_LEVELER_ENABLE);
    translator.translatePending(cmd);
    EXPECT_EQ(translator.pendingCount(), 0u);
    const auto sent = byCode(entriesOf(cmd));
    ASSERT_EQ(sent.size(), 2u);
    EXPECT_EQ(sent.at(codeId("IEBS")), (std::pair<int, std::vector<int>>{0x80, {2, 100, 200, 5, 6}}));
    EXPECT_EQ(sent.at(codeId("DVLE")), (std::pair<int, std::vector<int>>{0x80, {}}));

    // Nothing pending any more: a second run adds nothing.
    const size_t before = cmd.getBlob().size();
    translator.translatePending(cmd);
    EXPECT_EQ(cmd.getBlob().size(), before);
    EXPECT_EQ(cmd.getEntryCount(), 2);
}

TEST(ParameterTranslator, ChangeOnlySendsThroughADeviceView) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    EXPECT_EQ(translator.getSource(), &view);
    EXPECT_EQ(translator.getEndpoint(), OTHER);

    ProfileEndpoint endpoint(1, HEADPHONE, 0);
    endpoint.set(VOLUME_LEVELER_ENABLE, {1});
    endpoint.set(VOLUME_LEVELER_AMOUNT, {4});
    view.setProfileEndpoint(endpoint);
    {
        SetParamCommand cmd(0x40000000);
        cmd.setDeviceId(0x8);
        translator.translatePending(cmd);
        RecordingEffect effect;
        EXPECT_EQ(cmd.execute(effect), -22);
        ASSERT_EQ(effect.blobs.size(), 1u);
        std::vector<int> expected{0x40000000, 2};
        const auto e = entries({entry(0x8, "DVLA", {4}), entry(0x8, "DVLE", {1})});
        expected.insert(expected.end(), e.begin(), e.end());
        EXPECT_EQ(effect.blobs[0], expected);
    }
    // The same record again changes nothing, so nothing is pending and nothing is sent.
    view.setProfileEndpoint(endpoint);
    EXPECT_EQ(translator.pendingCount(), 0u);
    {
        SetParamCommand cmd(0x40000000);
        cmd.setDeviceId(0x8);
        translator.translatePending(cmd);
        RecordingEffect effect;
        EXPECT_EQ(cmd.execute(effect), 0);
        EXPECT_TRUE(effect.blobs.empty());
    }
    // A change of one value sends only that value.
    ProfileEndpoint changed(1, HEADPHONE, 0);
    changed.set(VOLUME_LEVELER_ENABLE, {1});
    changed.set(VOLUME_LEVELER_AMOUNT, {7});
    view.setProfileEndpoint(changed);
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x8);
    translator.translatePending(cmd);
    EXPECT_EQ(entriesOf(cmd), entry(0x8, "DVLA", {7}));

    // A tuning that changes only parameters no translator reads sends nothing.
    Tuning tuning("hp", HEADPHONE, false);
    tuning.set(BASS_EXTRACTION_ENABLE, {1});
    tuning.set(BASS_EXTRACTION_CUTOFF_FREQUENCY, {80});
    tuning.set(OUTPUT_CHANNELS, {2});
    tuning.set(VIRTUAL_BASS_MODE, {1});
    view.setTuning(tuning);
    EXPECT_EQ(view.mValues.at(OUTPUT_CHANNELS), (std::vector<int>{2}));
    EXPECT_EQ(translator.pendingCount(), 0u);
    EXPECT_EQ(translator.getEndpoint(), HEADPHONE);
}

TEST(ParameterTranslator, ForcedSpeakerValuesReachTheView) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    Tuning mono("speaker", SPEAKER, true);
    mono.set(OUTPUT_MIX_MATRIX, {1, 0, 0, 1});
    ProfileEndpoint endpoint(1, SPEAKER, 0);
    endpoint.set(VIRTUALIZER_ENABLE, {1});
    view.setProfileEndpoint(endpoint);
    view.setTuning(mono);
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x2);
    translator.translatePending(cmd);
    EXPECT_EQ(entriesOf(cmd), entry(0x2, "DOM", {0, 0, 1, 1, 0, 0, 1}));
    EXPECT_EQ(view.mValues.at(VIRTUALIZER_ENABLE), (std::vector<int>{0}));
    EXPECT_EQ(view.mValues.at(ORIENTATION), (std::vector<int>{1}));
}

TEST(ParameterTranslator, TranslateAllOfAnEmptySourceAddsNothing) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    SetParamCommand cmd(0x40000000);
    translator.translateAll(cmd);
    EXPECT_EQ(cmd.getEntryCount(), 0);
    // Nor does a source that holds only parameters no translator reads.
    AnyValues values;
    values.set(OUTPUT_CHANNELS, {2});
    values.set(VIRTUAL_BASS_MODE, {1});
    translator.setSource(&values, OTHER, false);
    translator.translateAll(cmd);
    EXPECT_EQ(cmd.getEntryCount(), 0);
}

// Distinct values for every parameter; switches and channel counts chosen so that every
// translator emits all it can.
std::vector<int> valueFor(Parameter p) {
    switch (p) {
        case OUTPUT_CHANNELS: return {4};
        case COMPLEX_EQUALIZER_ENABLE:
        case BASS_MBDRC_ENABLE:
        case REGULATOR_SIBILANCE_SUPPRESS_ENABLE:
        case VIRTUAL_BASS_ENABLE: return {1};
        case DIALOG_ENHANCER_AMOUNT: return {20};
        default: return {1000 + p, 2000 + p};
    }
}

TEST(ParameterTranslator, TranslateAllSendsAWholeDeviceView) {
    ParameterTranslator translator;
    DeviceParameters view(&translator);
    Tuning tuning("headphone", HEADPHONE, false);
    ProfileEndpoint endpoint(1, HEADPHONE, 0);
    IeqPreset preset(3, "warm");
    for (Parameter p : Tuning::kValidParams) tuning.set(p, valueFor(p));
    for (Parameter p : ProfileEndpoint::kValidParams) endpoint.set(p, valueFor(p));
    for (Parameter p : IeqPreset::kValidParams) {
        if (p != IEQ_ID) preset.set(p, valueFor(p));
    }
    view.setTuning(tuning);
    view.setProfileEndpoint(endpoint);
    view.setIeqPreset(preset);
    view.checkAndUpdate(VIRTUAL_BASS_TYPE, valueFor(VIRTUAL_BASS_TYPE));
    ASSERT_EQ(view.mValues.size(), 86u);
    // Drop what the changes above left pending: only translateAll must produce the send.
    {
        SetParamCommand discard(0);
        translator.translatePending(discard);
    }

    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x8);
    translator.translateAll(cmd);
    const auto sent = byCode(entriesOf(cmd));

    std::map<int32_t, std::vector<int>> expected;
    for (const auto& [p, code] : kSimple) {
        if (DeviceParameters::kValidParams.count(p)) {
            expected[codeId(code)] = p == IEQ_ID ? std::vector<int>{3} : valueFor(p);
        }
    }
    auto v = [](Parameter p) { return valueFor(p); };
    auto cat = [](std::initializer_list<std::vector<int>> lists) {
        std::vector<int> out;
        for (const auto& l : lists) out.insert(out.end(), l.begin(), l.end());
        return out;
    };
    expected[codeId("BMDT")] = v(BASS_MBDRC_TUNING);
    expected[codeId("DEON")] = v(DIALOG_ENHANCER_ENABLE);
    expected[codeId("MDEE")] = v(DIALOG_ENHANCER_ENABLE);
    expected[codeId("DEA")] = {12};
    expected[codeId("VBM")] = {3};
    expected[codeId("VBON")] = v(VIRTUAL_BASS_TYPE);
    expected[codeId("VBSF")] = cat({v(VIRTUAL_BASS_SRC_FREQ_LOW), v(VIRTUAL_BASS_SRC_FREQ_HIGH)});
    expected[codeId("VBMF")] = cat({v(VIRTUAL_BASS_MIX_FREQ_LOW), v(VIRTUAL_BASS_MIX_FREQ_HIGH)});
    expected[codeId("IEBS")] = cat({{2}, v(IEQ_FREQUENCY), v(IEQ_TARGET)});
    expected[codeId("DOM")] = cat({v(VIRTUALIZER_ENABLE), {1}, v(ORIENTATION)});
    expected[codeId("CEQT")] =
        cat({{4, 2}, v(COMPLEX_EQUALIZER_TUNING_LEFT), v(COMPLEX_EQUALIZER_TUNING_RIGHT),
             v(COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND), v(COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND)});
    expected[codeId("AOBS")] =
        cat({{2, 4}, v(AUDIO_OPTIMIZER_FREQUENCY), v(AUDIO_OPTIMIZER_GAIN_L), v(AUDIO_OPTIMIZER_GAIN_R),
             v(AUDIO_OPTIMIZER_GAIN_LS), v(AUDIO_OPTIMIZER_GAIN_RS)});
    expected[codeId("ARSA")] = cat({{4}, v(REGULATOR_STRESS_AMOUNT)});
    expected[codeId("ARBS")] = cat({{2}, v(REGULATOR_FREQUENCY), v(REGULATOR_THRESHOLD_LOW),
                                    v(REGULATOR_THRESHOLD_HIGH), v(REGULATOR_ISOLATED_BAND)});
    expected[codeId("RSSA")] =
        cat({{4, 2}, v(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT), v(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT),
             v(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND),
             v(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND)});

    EXPECT_EQ(expected.size(), 50u + 15u);
    EXPECT_EQ(cmd.getEntryCount(), static_cast<int>(expected.size()));
    ASSERT_EQ(sent.size(), expected.size());
    for (const auto& [id, values] : expected) {
        ASSERT_EQ(sent.count(id), 1u) << "missing id " << std::hex << id;
        EXPECT_EQ(sent.at(id).first, 0x8);
        EXPECT_EQ(sent.at(id).second, values) << "id " << std::hex << id;
    }
    EXPECT_EQ(translator.pendingCount(), 0u);

    // Two full sends of the same view give the same blob, word for word.
    SetParamCommand again(0x40000000);
    again.setDeviceId(0x8);
    translator.translateAll(again);
    EXPECT_EQ(again.getBlob(), cmd.getBlob());
}

TEST(ParameterTranslator, TranslateAllSendsAWholeProfileView) {
    ParameterTranslator translator;
    ProfileParameters view(&translator);
    Profile profile(1, "Movie", false);
    for (Parameter p : Profile::kValidParams) profile.set(p, valueFor(p));
    GeqPreset geq(1);
    geq.set(GEQ_FREQUENCY, {100, 200, 300});
    geq.set(GEQ_GAIN, {1, 2, 3});
    view.setProfile(profile);
    view.setGeqPreset(geq);

    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(0x40000000);
    translator.translateAll(cmd);
    const auto sent = byCode(entriesOf(cmd));
    std::map<int32_t, std::vector<int>> expected;
    for (const auto& [p, code] : kSimple) {
        if (Profile::kValidParams.count(p)) expected[codeId(code)] = valueFor(p);
    }
    expected[codeId("DRCM")] = valueFor(CUSTOM_DRC_METADATA);
    expected[codeId("GEBS")] = {3, 100, 200, 300, 1, 2, 3};
    expected[codeId("VCBF")] = {100, 200, 300};
    ASSERT_EQ(expected.size(), 10u);
    ASSERT_EQ(sent.size(), expected.size());
    for (const auto& [id, values] : expected) {
        ASSERT_EQ(sent.count(id), 1u) << "missing id " << std::hex << id;
        EXPECT_EQ(sent.at(id), (std::pair<int, std::vector<int>>{0x40000000, values}));
    }
}

}  // namespace
}  // namespace korvi
