// The effect controller driven by a real service context over a store built from the sample
// tuning file; what the effect receives is decoded entry by entry ("speaker DVLE 1").
#include <gtest/gtest.h>

#include <android/log.h>
#include <cutils/properties.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <sstream>
#include <thread>

#include "context/AxContext.h"
#include "context/ContextTestSupport.h"
#include "effect/BlobFormatter.h"
#include "effect/SfxController.h"
#include "effect/SimpleTranslator.h"
#include "effect/TranslatorCollection.h"
#include "support/LogCapture.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::LogCapture;
using Lines = std::vector<std::string>;
constexpr const char* kTag = "SfxController";

Lines decode(const std::vector<int>& blob) {
    Lines lines;
    std::istringstream text(BlobFormatter::format(blob));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

std::string line(const std::string& device, const char* code, const std::vector<int>& values) {
    std::string text = device + " " + code;
    for (int v : values) text += " " + std::to_string(v);
    return text;
}

std::string scenario() {
    char value[PROPERTY_VALUE_MAX] = {};
    property_get("persist.vendor.audio.scenario", value, "");
    return value;
}

class SfxControllerTest : public testing::Test {
protected:
    void SetUp() override { build(); }
    void TearDown() override { mContext->unregisterObserver(mController.get()); }

    // A fresh controller; registering it sends everything once.
    void build(const test::ContextStore::Prepare& prepare = nullptr) {
        mStore = std::make_unique<test::ContextStore>(prepare);
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

    test::RecordingEffect mEffect;
    std::unique_ptr<SfxController> mController;
    std::unique_ptr<test::ContextStore> mStore;
    AxContextChangeObservable mObservable;
    std::unique_ptr<AxContext> mContext;
};

// Every copied parameter of every record in force reaches the port's own device (the profile
// level for profile-wide ones), once, grouped by device in ascending order.
TEST_F(SfxControllerTest, LoadSendsEveryRecordUnderItsPortsDevice) {
    ASSERT_EQ(mEffect.blobs.size(), 1u);
    const std::vector<int>& blob = mEffect.blobs[0];
    EXPECT_EQ(blob[0], 0x40000000);
    std::vector<int> devices;
    for (size_t i = 2; i + 2 < blob.size(); i += 3 + static_cast<size_t>(blob[i + 2])) {
        if (devices.empty() || devices.back() != blob[i]) devices.push_back(blob[i]);
    }
    EXPECT_EQ(devices, (std::vector<int>{0x2, 0x8, 0x80, 0x400, 0x4000, 0x8000, 0x40000000}));

    const Lines lines = decode(blob);
    const std::multiset<std::string> all(lines.begin(), lines.end());
    const std::pair<Port, const char*> ports[] = {
        {PORT_INTERNAL_SPEAKER, "speaker"}, {PORT_HDMI, "aux_digital"}, {PORT_MIRACAST, "remote_submix"},
        {PORT_HEADPHONE, "headphone"}, {PORT_BLUETOOTH, "bluetooth_a2dp"}, {PORT_USB, "usb_device"}};
    AxContext& c = *mContext;
    size_t checked = 0;
    for (Translator* t : TranslatorCollection::kAllTranslators) {
        auto* simple = dynamic_cast<SimpleTranslator*>(t);
        if (simple == nullptr) continue;
        const Parameter p = simple->getSrcParams().front();
        const char* code = sfxParameterCode(simple->getSfxParameter());
        std::vector<std::pair<std::string, ParameterValues*>> records{
            {"profile", c.getProfile(c.getSelectedProfile())}, {"profile", c.getSelectedProfileGeq()}};
        for (const auto& [port, device] : ports) {
            for (ParameterValues* r : {static_cast<ParameterValues*>(c.getSelectedTuning(port)),
                                       static_cast<ParameterValues*>(c.getSelectedProfileEndpoint(port)),
                                       static_cast<ParameterValues*>(c.getSelectedProfileIeq(port))}) {
                records.emplace_back(device, r);
            }
        }
        for (const auto& [device, record] : records) {
            auto value = record->mValues.find(p);
            if (value == record->mValues.end() || value->second.empty()) continue;
            EXPECT_EQ(all.count(line(device, code, value->second)), 1u) << device << " " << code;
            ++checked;
        }
    }
    EXPECT_GT(checked, 200u);

    SfxContext& views = mController->getSfxContext();
    EXPECT_EQ(views.getParameters(AUDIO_DEVICE_OUT_DEFAULT)->mValues[REVERB_SUPPRESSION_AMOUNT],
              c.getProfile(0)->mValues[REVERB_SUPPRESSION_AMOUNT]);
    EXPECT_EQ(views.getParameters(AUDIO_DEVICE_OUT_SPEAKER), views.getDeviceParameters(PORT_INTERNAL_SPEAKER));
}

// One send per announcement, carrying only the entries of changed sources on the devices of the
// announced ports; nothing for unchanged values, other profiles or the on/off switch.
TEST_F(SfxControllerTest, ChangesSendOnlyTheirEntriesOnTheirDevices) {
    sent();
    AxContext& c = *mContext;
    const std::vector<int> on{c.getProfileEndpoint(0, HEADPHONE)->mValues[VOLUME_LEVELER_ENABLE].at(0) == 0};
    const std::vector<int> freq = c.getProfileGeq(0)->mValues[GEQ_FREQUENCY];
    std::vector<int> gebs{static_cast<int>(freq.size())};
    gebs.insert(gebs.end(), freq.begin(), freq.end());
    gebs.insert(gebs.end(), freq.size(), -3);
    IeqPreset& warm = *mStore->provider().loadIeqPreset(3);
    std::vector<int> iebs{static_cast<int>(warm.mValues[IEQ_FREQUENCY].size())};
    for (Parameter p : {IEQ_FREQUENCY, IEQ_TARGET}) {
        iebs.insert(iebs.end(), warm.mValues[p].begin(), warm.mValues[p].end());
    }
    const struct {
        std::function<void()> change;
        std::vector<Lines> expected;
    } steps[] = {
        {[&] { c.setProfileParameter(0, HEADPHONE, VOLUME_LEVELER_ENABLE, on); },
         {{line("headphone", "DVLE", on)}, {line("bluetooth_a2dp", "DVLE", on)}, {line("usb_device", "DVLE", on)}}},
        {[&] { c.setProfileParameter(0, HEADPHONE, VOLUME_LEVELER_ENABLE, on); }, {}},
        {[&] { c.setProfileParameter(0, SPEAKER, DIALOG_ENHANCER_AMOUNT, {20}); }, {{line("speaker", "DEA", {12})}}},
        {[&] { c.setProfileParameter(0, SPEAKER, IEQ_ID, {3}); },
         {{line("speaker", "IEBS", iebs), line("speaker", "IEID", {3})}}},
        {[&] { c.setProfileParameter(0, REVERB_SUPPRESSION_AMOUNT, {77}); }, {{line("profile", "RVSA", {77})}}},
        {[&] { c.setProfileGeqParameter(0, GEQ_GAIN, std::vector<int>(freq.size(), -3)); },
         {{line("profile", "GEBS", gebs), line("profile", "VCBF", freq)}}},
        {[&] { c.setProfileParameter(1, REVERB_SUPPRESSION_AMOUNT, {5}); }, {}},
        {[&] { c.setSfxOn(!c.getSfxOn()); }, {}},
        {[&] {
             mController->onSelectedProfileEndpointChanged(c, PORT_HEADPHONE, *c.getProfileEndpoint(0, HEADPHONE));
             mController->onSelectedTuningChanged(c, PORT_HDMI, *c.getSelectedTuning(PORT_HDMI));
         },
         {}},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        steps[i].change();
        EXPECT_EQ(sent(), steps[i].expected) << "step " << i;
    }
}

TEST_F(SfxControllerTest, ProfileSwitchSendsAndSetsTheScenarioOfKnownNames) {
    LogCapture logs;
    // Game has no scenario: the property keeps Voice's.
    const std::pair<int, const char*> cases[] = {{1, "2"}, {2, "1"}, {0, "4"}, {3, "3"}, {4, "3"}};
    for (const auto& [profile, expected] : cases) {
        sent();
        mContext->setSelectedProfile(profile);
        EXPECT_EQ(sent().size(), 1u) << profile;
        EXPECT_EQ(scenario(), expected) << profile;
        EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag,
                                  "Profile Changed to " + mContext->getProfile(profile)->getName()));
    }
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag,
                              "onSelectedProfileChanged(): Unknown profile name Game for scenario"));
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
    const auto lines = logs.linesWithTag(kTag);
    ASSERT_EQ(lines.size(), 3u) << logs.dump();
    EXPECT_EQ(lines[0].message, "onLoad()");
    EXPECT_EQ(lines[1].message, "No profile endpoint found for port : 5");
    EXPECT_EQ(lines[2].message, "No tuning found for port : usb");
    EXPECT_EQ(lines[2].priority, ANDROID_LOG_ERROR);
    const std::vector<Lines> sends = sent();
    ASSERT_EQ(sends.size(), 1u);
    std::set<std::string> devices;
    for (const std::string& entry : sends[0]) devices.insert(entry.substr(0, entry.find(' ')));
    EXPECT_EQ(devices, (std::set<std::string>{"speaker", "headphone", "bluetooth_a2dp", "aux_digital",
                                              "remote_submix", "profile"}));
}

// A new effect gets the whole state, equal to the load's blob, and the controller returns only
// once a context update in progress has released the context's lock.
TEST_F(SfxControllerTest, NewEffectGetsAFullResendBehindTheContextLock) {
    const std::vector<int> loaded = mEffect.blobs.at(0);
    test::RecordingEffect other;
    std::atomic<bool> done{false};
    mContext->getLock().lock();
    std::thread resend([&] {
        mController->setSfxEffect(other, *mContext);
        done = true;
    });
    for (int i = 0; i < 500 && other.blobs.empty(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(2));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(done);
    mContext->getLock().unlock();
    resend.join();
    ASSERT_EQ(other.blobs.size(), 1u);
    EXPECT_EQ(other.blobs[0], loaded);
    mContext->setProfileParameter(0, REVERB_SUPPRESSION_AMOUNT, {78});
    EXPECT_EQ(mEffect.blobs.size(), 1u) << "the old effect gets nothing more";
    EXPECT_EQ(decode(other.blobs.at(1)), Lines{line("profile", "RVSA", {78})});
}

}  // namespace
}  // namespace korvi
