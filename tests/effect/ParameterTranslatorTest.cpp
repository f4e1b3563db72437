// Which translator reads which parameter, and how a device's translator collects changes and
// runs them: change-only sends, once per translator, and full sends of a whole view.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "effect/ParameterTranslator.h"
#include "effect/SimpleTranslator.h"
#include "effect/TranslatorCollection.h"
#include "model/DeviceParameters.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::AnyValues;
using test::codeId;
using test::entries;
using test::entriesOf;
using test::entry;
using test::RecordingEffect;

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

SetParamCommand commandFor(int device) {
    SetParamCommand cmd(0x40000000);
    cmd.setDeviceId(device);
    return cmd;
}

// Which code each copying translator sends is held against docs/parameter-blob.md by the
// CodeCatalogueDoc tests; here every parameter but four must reach some translator.
TEST(TranslatorCollection, EveryParameterHasItsTranslatorExceptFour) {
    EXPECT_EQ(TranslatorCollection::kAllTranslators.size(), 69u);
    TranslatorCollection& collection = *ParameterTranslator::sTranslatorCollection;
    const std::set<Parameter> untranslated(std::begin(kUntranslated), std::end(kUntranslated));
    for (int i = 0; i < kParameterCount; ++i) {
        const Parameter p = static_cast<Parameter>(i);
        Translator* t = collection.getTranslator(p);
        if (untranslated.count(p)) {
            EXPECT_EQ(t, nullptr) << kParameterNames[p];
        } else {
            ASSERT_NE(t, nullptr) << kParameterNames[p];
            EXPECT_EQ(TranslatorCollection::kAllTranslators.count(t), 1u);
            const auto& sources = t->getSrcParams();
            EXPECT_NE(std::find(sources.begin(), sources.end(), p), sources.end()) << kParameterNames[p];
        }
    }
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

TEST(ParameterTranslator, RunsEachChangedTranslatorOnceThenForgetsIt) {
    ParameterTranslator translator;
    EXPECT_EQ(translator.getSource(), nullptr);
    EXPECT_EQ(translator.getEndpoint(), SPEAKER);
    EXPECT_FALSE(translator.isMono());
    AnyValues values;
    values.set(IEQ_FREQUENCY, {100, 200});
    values.set(IEQ_TARGET, {5, 6});
    translator.onParameterChanged(IEQ_FREQUENCY);
    translator.setSource(&values, OTHER, true);
    EXPECT_EQ(translator.getSource(), &values);
    EXPECT_EQ(translator.getEndpoint(), OTHER);
    EXPECT_TRUE(translator.isMono());
    EXPECT_EQ(translator.pendingCount(), 1u) << "setSource must not drop pending work";

    translator.onParameterChanged(IEQ_TARGET);
    translator.onParameterChanged(IEQ_FREQUENCY);
    EXPECT_EQ(translator.pendingCount(), 1u);
    // A simple translator over a parameter the source lacks still sends, with no values.
    translator.onParameterChanged(VOLUME_LEVELER_ENABLE);
    SetParamCommand cmd = commandFor(0x80);
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
    SetParamCommand first = commandFor(0x8);
    translator.translatePending(first);
    RecordingEffect effect;
    EXPECT_EQ(first.execute(effect), -22);
    ASSERT_EQ(effect.blobs.size(), 1u);
    std::vector<int> expected{0x40000000, 2};
    const auto e = entries({entry(0x8, "DVLA", {4}), entry(0x8, "DVLE", {1})});
    expected.insert(expected.end(), e.begin(), e.end());
    EXPECT_EQ(effect.blobs[0], expected);

    // The same record again changes nothing, so nothing is pending and nothing is sent.
    view.setProfileEndpoint(endpoint);
    EXPECT_EQ(translator.pendingCount(), 0u);
    SetParamCommand same = commandFor(0x8);
    translator.translatePending(same);
    EXPECT_EQ(same.execute(effect), 0);
    EXPECT_EQ(effect.blobs.size(), 1u);

    // A change of one value sends only that value.
    endpoint.set(VOLUME_LEVELER_AMOUNT, {7});
    view.setProfileEndpoint(endpoint);
    SetParamCommand changed = commandFor(0x8);
    translator.translatePending(changed);
    EXPECT_EQ(entriesOf(changed), entry(0x8, "DVLA", {7}));

    // A tuning that changes only parameters no translator reads sends nothing.
    Tuning tuning("hp", HEADPHONE, false);
    for (Parameter p : kUntranslated) tuning.set(p, {2});
    view.setTuning(tuning);
    EXPECT_EQ(view.mValues.at(OUTPUT_CHANNELS), (std::vector<int>{2}));
    EXPECT_EQ(translator.pendingCount(), 0u);
    EXPECT_EQ(translator.getEndpoint(), HEADPHONE);
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
    SetParamCommand discard(0);
    translator.translatePending(discard);

    SetParamCommand cmd = commandFor(0x8);
    translator.translateAll(cmd);
    const auto sent = byCode(entriesOf(cmd));

    // Every copying translator over a device parameter sends that parameter's values unchanged.
    std::map<int32_t, std::vector<int>> expected;
    for (Translator* t : TranslatorCollection::kAllTranslators) {
        const auto* simple = dynamic_cast<const SimpleTranslator*>(t);
        if (simple != nullptr && DeviceParameters::kValidParams.count(simple->getSrcParams().at(0))) {
            expected[sfxParameterId(simple->getSfxParameter())] = valueFor(simple->getSrcParams().at(0));
        }
    }
    expected[codeId("IEID")] = {3};
    // The computing translators' arithmetic is pinned in FeatureTranslators; here the endpoint
    // kind and channel count they are handed must be the view's.
    expected[codeId("DOM")] = {1000 + VIRTUALIZER_ENABLE, 2000 + VIRTUALIZER_ENABLE, 1, 1000 + ORIENTATION,
                               2000 + ORIENTATION};
    expected[codeId("ARSA")] = {4, 1000 + REGULATOR_STRESS_AMOUNT, 2000 + REGULATOR_STRESS_AMOUNT};
    expected[codeId("DEA")] = {12};
    // The others must at least be there, for the device.
    const char* const present[] = {"BMDT", "DEON", "MDEE", "VBM", "VBON", "VBSF",
                                   "VBMF", "IEBS", "CEQT", "AOBS", "ARBS", "RSSA"};
    for (const char* code : present) {
        ASSERT_EQ(sent.count(codeId(code)), 1u) << code;
        EXPECT_EQ(sent.at(codeId(code)).first, 0x8) << code;
    }
    EXPECT_EQ(cmd.getEntryCount(), 65);
    ASSERT_EQ(sent.size(), expected.size() + std::size(present));
    for (const auto& [id, values] : expected) {
        ASSERT_EQ(sent.count(id), 1u) << "missing id " << std::hex << id;
        EXPECT_EQ(sent.at(id), (std::pair<int, std::vector<int>>{0x8, values})) << "id " << std::hex << id;
    }
    EXPECT_EQ(translator.pendingCount(), 0u);

    // Two full sends of the same view give the same blob, word for word.
    SetParamCommand again = commandFor(0x8);
    translator.translateAll(again);
    EXPECT_EQ(again.getBlob(), cmd.getBlob());
}

}  // namespace
}  // namespace korvi
