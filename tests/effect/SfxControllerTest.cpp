// The effect controller driven by a real service context over a store built from the sample
// tuning file: what reaches the effect on load, on each kind of change and on a profile switch,
// decoded entry by entry, plus the scenario property, the logged gaps and the resend barrier.
#include <gtest/gtest.h>

#include <android/log.h>
#include <cutils/properties.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <sstream>
#include <thread>

#include "context/AxContext.h"
#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"
#include "effect/BlobFormatter.h"
#include "effect/SfxController.h"
#include "effect/SimpleTranslator.h"
#include "effect/TranslatorCollection.h"
#include "sfxparamstorage/StoreSnapshot.h"
#include "support/LogCapture.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::codeId;
using test::ContextStore;
using test::LogCapture;
using test::RecordingEffect;
using Lines = std::vector<std::string>;

constexpr const char* kTag = "SfxController";
constexpr const char* kScenario = "persist.vendor.audio.scenario";

// One line per entry, as the blob formatter renders them ("speaker DVLE 1").
Lines decode(const std::vector<int>& blob) {
    Lines lines;
    std::istringstream text(BlobFormatter::format(blob));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

std::string line(const char* device, const char* code, const std::vector<int>& values) {
    std::string text = std::string(device) + " " + code;
    for (int v : values) text += " " + std::to_string(v);
    return text;
}

std::string scenario() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get(kScenario, value, "");
    return value;
}

class SfxControllerTest : public testing::Test {
protected:
    void SetUp() override { build(); }
    void TearDown() override {
        if (mContext && mController) mContext->unregisterObserver(mController.get());
    }

    // A context over a fresh store; the controller is registered, which sends everything once.
    void build(const ContextStore::Prepare& prepare = nullptr) {
        mStore = std::make_unique<ContextStore>(prepare);
        mContext = std::make_unique<AxContext>(&mStore->provider(), &mObservable);
        mContext->load();
        mController = std::make_unique<SfxController>(7, mEffect);
        mContext->registerObserver(mController.get());
    }

    // The blobs sent since the last call, decoded.
    std::vector<Lines> sent() {
        std::vector<Lines> result;
        for (const auto& blob : mEffect.blobs) result.push_back(decode(blob));
        mEffect.blobs.clear();
        return result;
    }

    AxContext& context() { return *mContext; }

    RecordingEffect mEffect;
    std::unique_ptr<ContextStore> mStore;
    AxContextChangeObservable mObservable;
    std::unique_ptr<AxContext> mContext;
    std::unique_ptr<SfxController> mController;
};

// What the load must send for a copying translator: the value of its parameter in the record
// that holds it, under the device of every port (or under the profile level).
TEST_F(SfxControllerTest, LoadSendsEveryDeviceOnceWithTheValuesOfItsRecords) {
    ASSERT_EQ(mEffect.blobs.size(), 1u);
    const std::vector<int> blob = mEffect.blobs[0];
    EXPECT_EQ(blob[0], 0x40000000);

    // Entries come grouped by device in ascending order, the profile level last.
    std::vector<int> devices;
    for (size_t i = 2; i + 2 < blob.size(); i += 3 + static_cast<size_t>(blob[i + 2])) {
        if (devices.empty() || devices.back() != blob[i]) devices.push_back(blob[i]);
    }
    EXPECT_EQ(devices, (std::vector<int>{0x2, 0x8, 0x80, 0x400, 0x4000, 0x8000, 0x40000000}));

    const Lines lines = decode(blob);
    const std::set<std::string> all(lines.begin(), lines.end());
    EXPECT_EQ(all.size(), lines.size()) << "an entry was sent twice";
    AxContext& c = context();
    size_t checked = 0;
    for (Translator* t : TranslatorCollection::kAllTranslators) {
        auto* simple = dynamic_cast<SimpleTranslator*>(t);
        if (simple == nullptr) continue;
        const Parameter p = simple->getSrcParams().front();
        const char* code = sfxParameterCode(simple->getSfxParameter());
        if (ProfileParameters::kValidParams.count(p) != 0) {
            ParameterValues& record = GeqPreset::kValidParams.count(p)
                                          ? static_cast<ParameterValues&>(*c.getSelectedProfileGeq())
                                          : *c.getProfile(c.getSelectedProfile());
            EXPECT_EQ(all.count(line("profile", code, record.mValues[p])), 1u) << code;
            ++checked;
            continue;
        }
        for (const auto& [port, device] : SfxContext::kDeviceForPort) {
            ParameterValues* records[] = {c.getSelectedTuning(port), c.getSelectedProfileEndpoint(port),
                                          c.getSelectedProfileIeq(port)};
            for (ParameterValues* record : records) {
                auto value = record->mValues.find(p);
                if (value == record->mValues.end() || value->second.empty()) continue;
                EXPECT_EQ(all.count(line(androidDeviceName(device), code, value->second)), 1u)
                    << code << " on port " << kPortNames[port];
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 200u) << "the sample file should feed most copied parameters";
}

// The real effect writes into the shared store: every device's values land there, under the
// device of their own entry.
TEST_F(SfxControllerTest, LoadThroughTheRealEffectFillsTheSharedStorePerDevice) {
    android::SfxParamStore::getInstance().clear();
    SfxEffect effect(0, android::String16());
    SfxController controller(1, effect);
    context().registerObserver(&controller);
    context().unregisterObserver(&controller);

    int version = 0;
    const test::StoreContents store = test::readStore(false, &version);
    EXPECT_EQ(version, 1) << "one load, one commit";
    std::set<uint32_t> devices;
    for (const auto& [device, params] : store) devices.insert(device);
    EXPECT_EQ(devices, (std::set<uint32_t>{0x2, 0x8, 0x80, 0x400, 0x4000, 0x8000, 0x40000000}));
    AxContext& c = context();
    const std::vector<int> speakerLeveler = c.getSelectedProfileEndpoint(PORT_INTERNAL_SPEAKER)->mValues[VOLUME_LEVELER_ENABLE];
    const std::vector<int> usbLeveler = c.getSelectedProfileEndpoint(PORT_USB)->mValues[VOLUME_LEVELER_ENABLE];
    EXPECT_EQ(store.at(0x2).at(codeId("DVLE")), speakerLeveler);
    EXPECT_EQ(store.at(0x4000).at(codeId("DVLE")), usbLeveler);
    EXPECT_EQ(store.at(0x40000000).at(codeId("RVSA")),
              c.getProfile(c.getSelectedProfile())->mValues[REVERB_SUPPRESSION_AMOUNT]);
    EXPECT_EQ(store.at(0x40000000).count(codeId("DVLE")), 0u);
    EXPECT_EQ(store.at(0x2).count(codeId("RVSA")), 0u);
}

// Each change reaches only the devices whose ports it concerns, one send per announcement, and
// only the entries of translators whose sources changed.
TEST_F(SfxControllerTest, ChangesSendOnlyTheirEntriesOnTheirDevices) {
    sent();
    AxContext& c = context();
    const std::vector<int> leveler = c.getProfileEndpoint(0, HEADPHONE)->mValues[VOLUME_LEVELER_ENABLE];
    const std::vector<int> flipped{leveler.at(0) == 0 ? 1 : 0};
    struct Step {
        const char* what;
        std::function<void()> change;
        std::vector<Lines> expected;
    };
    const std::vector<int> freq = c.getProfileGeq(0)->mValues[GEQ_FREQUENCY];
    std::vector<int> gain(freq.size(), -3);
    std::vector<int> gebs{static_cast<int>(freq.size())};
    gebs.insert(gebs.end(), freq.begin(), freq.end());
    gebs.insert(gebs.end(), gain.begin(), gain.end());
    const Step steps[] = {
        {"headphone endpoint value: three ports, three sends",
         [&] { c.setProfileParameter(0, HEADPHONE, VOLUME_LEVELER_ENABLE, flipped); },
         {{line("headphone", "DVLE", flipped)},
          {line("bluetooth_a2dp", "DVLE", flipped)},
          {line("usb_device", "DVLE", flipped)}}},
        {"the same value again", [&] { c.setProfileParameter(0, HEADPHONE, VOLUME_LEVELER_ENABLE, flipped); },
         {}},
        {"speaker endpoint value", [&] { c.setProfileParameter(0, SPEAKER, DIALOG_ENHANCER_AMOUNT, {20}); },
         {{line("speaker", "DEA", {12})}}},
        {"profile value", [&] { c.setProfileParameter(0, REVERB_SUPPRESSION_AMOUNT, {77}); },
         {{line("profile", "RVSA", {77})}}},
        {"GEQ gains", [&] { c.setProfileGeqParameter(0, GEQ_GAIN, gain); },
         {{line("profile", "GEBS", gebs), line("profile", "VCBF", freq)}}},
        {"a profile not selected", [&] { c.setProfileParameter(1, REVERB_SUPPRESSION_AMOUNT, {5}); },
         {}},
        {"effect switched off", [&] { c.setSfxOn(!c.getSfxOn()); }, {}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        step.change();
        EXPECT_EQ(sent(), step.expected);
    }

    // An announcement whose record holds what the views already have sends nothing.
    mController->onSelectedProfileEndpointChanged(c, PORT_HEADPHONE, *c.getProfileEndpoint(0, HEADPHONE));
    mController->onSelectedTuningChanged(c, PORT_HDMI, *c.getSelectedTuning(PORT_HDMI));
    mController->onSelectedProfileParameterChanged(c, *c.getProfile(0));
    EXPECT_TRUE(sent().empty());
}

// An IEQ preset selection sends the preset's curve and the follow-up ieq-enable to the port's
// device only.
TEST_F(SfxControllerTest, IeqSelectionSendsTheCurveOfTheNewPreset) {
    sent();
    AxContext& c = context();
    ASSERT_EQ(c.getProfileEndpoint(0, SPEAKER)->getSelectedIeqPreset(), 2);
    c.setProfileParameter(0, SPEAKER, IEQ_ID, {3});
    IeqPreset* warm = c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER);
    ASSERT_EQ(warm->getPresetId(), 3);
    std::vector<int> iebs{static_cast<int>(warm->mValues[IEQ_FREQUENCY].size())};
    for (Parameter p : {IEQ_FREQUENCY, IEQ_TARGET}) {
        iebs.insert(iebs.end(), warm->mValues[p].begin(), warm->mValues[p].end());
    }
    const std::vector<Lines> sends = sent();
    ASSERT_EQ(sends.size(), 1u) << "ieq-enable stays 1: only the preset announcement sends";
    EXPECT_EQ(sends[0], (Lines{line("speaker", "IEBS", iebs), line("speaker", "IEID", {3})}));
}

TEST_F(SfxControllerTest, ProfileSwitchSendsTheDifferenceAndSetsTheScenario) {
    LogCapture logs;
    AxContext& c = context();
    struct Case {
        int profile;
        const char* scenario;
    };
    property_set(kScenario, "0");
    const Case cases[] = {{1, "2"}, {2, "1"}, {3, "3"}, {0, "4"}};
    for (const Case& step : cases) {
        sent();
        c.setSelectedProfile(step.profile);
        const std::vector<Lines> sends = sent();
        ASSERT_EQ(sends.size(), 1u) << step.profile;
        EXPECT_FALSE(sends[0].empty());
        EXPECT_EQ(scenario(), step.scenario) << step.profile;
        EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag,
                                  "Profile Changed to " + c.getProfile(step.profile)->getName()));
    }

    // Back on Dynamic after a round trip: the switch to Movie sends exactly the values that
    // differ, including the profile-level ones.
    sent();
    Profile& dynamic = *c.getProfile(0);
    Profile& movie = *c.getProfile(1);
    c.setSelectedProfile(1);
    const Lines toMovie = sent().at(0);
    for (Parameter p : {REVERB_SUPPRESSION_AMOUNT, VOLUME_MODELER_ENABLE}) {
        const char* code = p == REVERB_SUPPRESSION_AMOUNT ? "RVSA" : "DVME";
        const size_t expected = dynamic.mValues[p] != movie.mValues[p] ? 1u : 0u;
        EXPECT_EQ(std::count(toMovie.begin(), toMovie.end(), line("profile", code, movie.mValues[p])),
                  static_cast<long>(expected))
            << code;
    }

    // A name without a scenario: the values are still sent, the property stays.
    property_set(kScenario, "2");
    c.setSelectedProfile(4);
    EXPECT_EQ(sent().size(), 1u);
    EXPECT_EQ(scenario(), "2");
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag,
                              "onSelectedProfileChanged(): Unknown profile name Game for scenario"));
    // Re-selecting the selected profile announces and sends nothing.
    c.setSelectedProfile(4);
    EXPECT_TRUE(sent().empty());
}

TEST_F(SfxControllerTest, LoadWithoutATuningForUsbLogsItAndSendsTheOtherPorts) {
    TearDown();
    mContext.reset();
    mStore.reset();
    mEffect.blobs.clear();
    LogCapture logs;
    build([](Provider&, test::RawDb& db) {
        db.exec("UPDATE device_tunings SET tuning_id='gone' WHERE device='default_usb'");
    });
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag, "onLoad()"));
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "No tuning found for port : usb"), 1u);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "No profile endpoint found for port : 5"), 1u);
    EXPECT_EQ(logs.linesWithTag(kTag).size(), 3u) << logs.dump();
    // The endpoint gap of a port is logged before its tuning gap.
    const auto tagged = logs.linesWithTag(kTag);
    EXPECT_EQ(tagged[1].message, "No profile endpoint found for port : 5");

    const std::vector<Lines> sends = sent();
    ASSERT_EQ(sends.size(), 1u);
    std::set<std::string> devices;
    for (const std::string& entry : sends[0]) devices.insert(entry.substr(0, entry.find(' ')));
    EXPECT_EQ(devices, (std::set<std::string>{"speaker", "headphone", "bluetooth_a2dp",
                                              "aux_digital", "remote_submix", "profile"}));
}

// A new effect gets everything the views hold, in one blob equal to the load's; the controller
// waits for a context update in progress before it returns.
TEST_F(SfxControllerTest, NewEffectGetsAFullResendBehindTheContextLock) {
    const std::vector<int> loaded = mEffect.blobs.at(0);
    RecordingEffect other;
    std::atomic<bool> done{false};
    context().getLock().lock();
    std::thread resend([&] {
        mController->setSfxEffect(other, context());
        done = true;
    });
    for (int i = 0; i < 500 && other.blobs.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(done) << "returned while the context's lock was held";
    context().getLock().unlock();
    resend.join();
    EXPECT_TRUE(done);
    ASSERT_EQ(other.blobs.size(), 1u);
    EXPECT_EQ(other.blobs[0], loaded);

    // Later changes go to the new effect only.
    mEffect.blobs.clear();
    context().setProfileParameter(0, REVERB_SUPPRESSION_AMOUNT, {78});
    EXPECT_TRUE(mEffect.blobs.empty());
    ASSERT_EQ(other.blobs.size(), 2u);
    EXPECT_EQ(decode(other.blobs[1]), Lines{line("profile", "RVSA", {78})});
}

}  // namespace
}  // namespace korvi
