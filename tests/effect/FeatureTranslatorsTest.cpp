// The twelve computing translators, each in every branch, checked word by word.
#include <gtest/gtest.h>

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
#include "effect/VirtualBassEnableTranslator.h"
#include "effect/VirtualBassTranslator.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::AnyValues;
using test::entries;
using test::entry;
using test::entriesOf;

constexpr int kDevice = 0x8;

// Runs one translator over values for kDevice and returns the words it appended.
std::vector<int> run(const Translator& translator, ParameterValues& values,
                     Endpoint endpoint = OTHER, bool mono = false) {
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(kDevice);
    translator.sfxTranslate(cmd, values, endpoint, mono);
    return entriesOf(cmd);
}

TEST(FeatureTranslators, BassMbdrcCustomDrcAndDialogEnhancerSwitch) {
    BassMbdrcTranslator t;
    AnyValues v;
    v.set(BASS_MBDRC_TUNING, {4, 5, 6});
    // No switch value at all counts as off.
    EXPECT_TRUE(run(t, v).empty());
    v.set(BASS_MBDRC_ENABLE, {0});
    EXPECT_TRUE(run(t, v).empty());
    v.set(BASS_MBDRC_ENABLE, {2});
    EXPECT_EQ(run(t, v), entry(kDevice, "BMDT", {4, 5, 6}));

    v.set(CUSTOM_DRC_METADATA, {9, 8, 7, 6});
    EXPECT_EQ(run(CustomDRCTranslator(), v), entry(kDevice, "DRCM", {9, 8, 7, 6}));
    AnyValues empty;
    EXPECT_EQ(run(CustomDRCTranslator(), empty), entry(kDevice, "DRCM", {}));

    v.set(DIALOG_ENHANCER_ENABLE, {1});
    EXPECT_EQ(run(DeEnableTranslator(), v),
              entries({entry(kDevice, "DEON", {1}), entry(kDevice, "MDEE", {1})}));
}

TEST(FeatureTranslators, DialogEnhancerAmountIsClampedAt12OnTheFirstValueOnly) {
    DeAmountTranslator t;
    AnyValues v;
    v.set(DIALOG_ENHANCER_AMOUNT, {15, 20});
    EXPECT_EQ(run(t, v), entry(kDevice, "DEA", {12, 20}));
    // The stored amount is not touched.
    EXPECT_EQ(v.mValues.at(DIALOG_ENHANCER_AMOUNT), (std::vector<int>{15, 20}));
    v.set(DIALOG_ENHANCER_AMOUNT, {-3});
    EXPECT_EQ(run(t, v), entry(kDevice, "DEA", {-3}));
    v.set(DIALOG_ENHANCER_AMOUNT, {});
    EXPECT_EQ(run(t, v), entry(kDevice, "DEA", {}));
}

TEST(FeatureTranslators, VirtualBassSwitchTravelsAsModeAndTypeAsVbon) {
    VirtualBassEnableTranslator t;
    AnyValues v;
    v.set(VIRTUAL_BASS_ENABLE, {0});
    v.set(VIRTUAL_BASS_TYPE, {2});
    EXPECT_EQ(run(t, v), entries({entry(kDevice, "VBM", {0}), entry(kDevice, "VBON", {2})}));
    v.set(VIRTUAL_BASS_ENABLE, {-1});
    v.set(VIRTUAL_BASS_TYPE, {1, 4});
    EXPECT_EQ(run(t, v), entries({entry(kDevice, "VBM", {3}), entry(kDevice, "VBON", {1, 4})}));
}

TEST(FeatureTranslators, VirtualBassRangesJoinLowAndHighAndIeqAndGeqLeadWithTheirBandCount) {
    AnyValues v;
    v.set(VIRTUAL_BASS_SRC_FREQ_LOW, {40});
    v.set(VIRTUAL_BASS_SRC_FREQ_HIGH, {120, 121});
    v.set(VIRTUAL_BASS_MIX_FREQ_LOW, {200});
    v.set(VIRTUAL_BASS_MIX_FREQ_HIGH, {300});
    EXPECT_EQ(run(VirtualBassTranslator(), v),
              entries({entry(kDevice, "VBSF", {40, 120, 121}), entry(kDevice, "VBMF", {200, 300})}));

    v.set(IEQ_FREQUENCY, {100, 1000, 10000});
    v.set(IEQ_TARGET, {-1, -2, -3});
    EXPECT_EQ(run(IeqTranslator(), v), entry(kDevice, "IEBS", {3, 100, 1000, 10000, -1, -2, -3}));

    std::vector<int> freq{32, 64, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};
    std::vector<int> gain{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    v.set(GEQ_FREQUENCY, freq);
    v.set(GEQ_GAIN, gain);
    std::vector<int> gebs{10};
    gebs.insert(gebs.end(), freq.begin(), freq.end());
    gebs.insert(gebs.end(), gain.begin(), gain.end());
    EXPECT_EQ(run(GeqTranslator(), v), entries({entry(kDevice, "GEBS", gebs), entry(kDevice, "VCBF", freq)}));
}

TEST(FeatureTranslators, OutputModeOffTheSpeakerCarriesTheEndpointKind) {
    OutputModeTranslator t;
    AnyValues v;
    v.set(VIRTUALIZER_ENABLE, {1});
    v.set(ORIENTATION, {2});
    v.set(OUTPUT_MIX_MATRIX, {9, 9});
    EXPECT_EQ(run(t, v, HEADPHONE, false), entry(kDevice, "DOM", {1, 1, 2}));
    // Away from the speaker the mono flag forces nothing.
    EXPECT_EQ(run(t, v, OTHER, true), entry(kDevice, "DOM", {1, 2, 2}));

    // On the speaker the mix matrix follows, and mono forces the switch off and orientation 1.
    v.set(OUTPUT_MIX_MATRIX, {5, 6, 7});
    EXPECT_EQ(run(t, v, SPEAKER, false), entry(kDevice, "DOM", {1, 0, 2, 5, 6, 7}));
    EXPECT_EQ(v.mValues.at(VIRTUALIZER_ENABLE), (std::vector<int>{1}));

    EXPECT_EQ(run(t, v, SPEAKER, true), entry(kDevice, "DOM", {0, 0, 1, 5, 6, 7}));
    // The forced values stay in the source for every later reader.
    EXPECT_EQ(v.mValues.at(VIRTUALIZER_ENABLE), (std::vector<int>{0}));
    EXPECT_EQ(v.mValues.at(ORIENTATION), (std::vector<int>{1}));
    EXPECT_EQ(run(t, v, HEADPHONE, false), entry(kDevice, "DOM", {0, 1, 1}));
}

TEST(FeatureTranslators, ComplexEqualizerNeedsExactly1AndTwoOrFourChannels) {
    ComplexEqualizerTranslator t;
    AnyValues v;
    v.set(COMPLEX_EQUALIZER_TUNING_LEFT, {1, 2});
    v.set(COMPLEX_EQUALIZER_TUNING_LEFT_SURROUND, {3, 4});
    v.set(COMPLEX_EQUALIZER_TUNING_RIGHT, {5, 6});
    v.set(COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND, {7, 8});
    v.set(OUTPUT_CHANNELS, {4});
    v.set(COMPLEX_EQUALIZER_ENABLE, {2});
    EXPECT_TRUE(run(t, v).empty());
    v.set(COMPLEX_EQUALIZER_ENABLE, {1});
    // Channels first, then bands; left, right, left surround, right surround.
    EXPECT_EQ(run(t, v), entry(kDevice, "CEQT", {4, 2, 1, 2, 5, 6, 3, 4, 7, 8}));
    v.set(OUTPUT_CHANNELS, {2});
    EXPECT_EQ(run(t, v), entry(kDevice, "CEQT", {2, 2, 1, 2, 5, 6}));
    v.set(OUTPUT_CHANNELS, {6});
    EXPECT_TRUE(run(t, v).empty());
    v.set(OUTPUT_CHANNELS, {});
    EXPECT_TRUE(run(t, v).empty());
}

TEST(FeatureTranslators, AudioOptimizerLeadsWithBandsThenChannels) {
    AudioOptimizerTranslator t;
    AnyValues v;
    v.set(AUDIO_OPTIMIZER_FREQUENCY, {100, 200, 300});
    v.set(AUDIO_OPTIMIZER_GAIN_L, {1, 1, 1});
    v.set(AUDIO_OPTIMIZER_GAIN_LS, {2, 2, 2});
    v.set(AUDIO_OPTIMIZER_GAIN_R, {3, 3, 3});
    v.set(AUDIO_OPTIMIZER_GAIN_RS, {4, 4, 4});
    v.set(OUTPUT_CHANNELS, {4});
    EXPECT_EQ(run(t, v), entry(kDevice, "AOBS", {3, 4, 100, 200, 300, 1, 1, 1, 3, 3, 3, 2, 2, 2, 4, 4, 4}));
    v.set(OUTPUT_CHANNELS, {2});
    EXPECT_EQ(run(t, v), entry(kDevice, "AOBS", {3, 2, 100, 200, 300, 1, 1, 1, 3, 3, 3}));
    v.set(OUTPUT_CHANNELS, {6});
    EXPECT_TRUE(run(t, v).empty());
}

TEST(FeatureTranslators, AudioRegulatorSendsStressAndBandsAndSibilanceWhenOn) {
    AudioRegulatorTranslator t;
    AnyValues v;
    v.set(OUTPUT_CHANNELS, {4});
    v.set(REGULATOR_STRESS_AMOUNT, {50});
    v.set(REGULATOR_FREQUENCY, {100, 200});
    v.set(REGULATOR_THRESHOLD_LOW, {-10, -11});
    v.set(REGULATOR_THRESHOLD_HIGH, {-1, -2});
    v.set(REGULATOR_ISOLATED_BAND, {0, 1});
    v.set(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT, {1, 2, 3});
    v.set(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT, {4, 5, 6});
    v.set(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_LEFT_SURROUND, {7, 8, 9});
    v.set(REGULATOR_SIBILANCE_SUPPRESS_AMOUNTS_RIGHT_SURROUND, {10, 11, 12});
    const std::vector<int> arsa = entry(kDevice, "ARSA", {4, 50});
    const std::vector<int> arbs = entry(kDevice, "ARBS", {2, 100, 200, -10, -11, -1, -2, 0, 1});

    v.set(REGULATOR_SIBILANCE_SUPPRESS_ENABLE, {0});
    EXPECT_EQ(run(t, v), entries({arsa, arbs}));
    v.set(REGULATOR_SIBILANCE_SUPPRESS_ENABLE, {2});
    EXPECT_EQ(run(t, v), entries({arsa, arbs}));
    v.set(REGULATOR_SIBILANCE_SUPPRESS_ENABLE, {1});
    EXPECT_EQ(run(t, v), entries({arsa, arbs,
                                  entry(kDevice, "RSSA", {4, 3, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})}));
    v.set(OUTPUT_CHANNELS, {2});
    EXPECT_EQ(run(t, v), entries({entry(kDevice, "ARSA", {2, 50}), arbs,
                                  entry(kDevice, "RSSA", {2, 3, 1, 2, 3, 4, 5, 6})}));
    // An unsupported channel count drops only the sibilance amounts.
    v.set(OUTPUT_CHANNELS, {6});
    EXPECT_EQ(run(t, v), entries({entry(kDevice, "ARSA", {6, 50}), arbs}));
}

TEST(FeatureTranslators, AbsentSourcesAreReadAsEmptyAndInserted) {
    AnyValues v;
    EXPECT_EQ(run(AudioRegulatorTranslator(), v),
              entries({entry(kDevice, "ARSA", {}), entry(kDevice, "ARBS", {0})}));
    EXPECT_EQ(v.mValues.count(REGULATOR_FREQUENCY), 1u);
    EXPECT_EQ(v.mValues.count(OUTPUT_CHANNELS), 1u);
    AnyValues w;
    EXPECT_EQ(run(OutputModeTranslator(), w, SPEAKER, false), entry(kDevice, "DOM", {0}));
}

}  // namespace
}  // namespace korvi
