// The service context over a store built from the sample tuning file: what each operation
// announces and when, observers calling back, the IEQ preset selection, the value-setting rule,
// the four save operations checked in the database file, tuning selection and reload, and the
// fatal exits.
#include <gtest/gtest.h>

#include <android/log.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "context/AxContext.h"
#include "context/AxContextChangeObservable.h"
#include "context/ContextTestSupport.h"
#include "support/LogCapture.h"

namespace korvi {
namespace {

using test::ContextStore;
using test::LogCapture;
using test::RawDb;
using test::RecordingObserver;
using Events = std::vector<std::string>;

constexpr const char* kTag = "AxContext";

class AxContextTest : public testing::Test {
protected:
    void SetUp() override { build(); }

    void build(const ContextStore::Prepare& prepare = nullptr) {
        mContext.reset();
        mStore = std::make_unique<ContextStore>(prepare);
        mContext = std::make_unique<AxContext>(&mStore->provider(), &mObservable);
        mContext->load();
        mContext->registerObserver(&mObserver);
        mObserver.take();
    }

    std::string config(const std::string& key) const {
        RawDb db(mStore->dbPath());
        return db.value("SELECT value FROM configuration WHERE key='" + key + "'");
    }

    std::string customReverb(int profileId) const {
        RawDb db(mStore->dbPath());
        return db.value("SELECT reverb_suppression_amount FROM profiles WHERE custom_name='custom' "
                        "AND profile_id=" + std::to_string(profileId));
    }

    AxContext& context() { return *mContext; }

    std::unique_ptr<ContextStore> mStore;
    AxContextChangeObservable mObservable;
    std::unique_ptr<AxContext> mContext;
    RecordingObserver mObserver;
};

TEST_F(AxContextTest, LoadReadsTheStoreAndRegistrationAnnouncesToTheNewObserverOnly) {
    AxContextChangeObservable observable;
    AxContext fresh(&mStore->provider(), &observable);
    RecordingObserver early, late;
    fresh.registerObserver(&early);
    EXPECT_EQ(early.take(), Events{"onLoad"});
    fresh.load();
    EXPECT_EQ(early.take(), Events{"onLoad"});

    fresh.registerObserver(&late);
    fresh.registerObserver(&late);
    EXPECT_EQ(late.take(), (Events{"onLoad", "onLoad"}));
    EXPECT_TRUE(early.take().empty());
    fresh.unregisterObserver(&late);
    fresh.setSfxOn(false);
    EXPECT_TRUE(late.take().empty());
    EXPECT_EQ(early.take(), Events{"onSfxOnChanged on=0"});

    EXPECT_EQ(fresh.getNumOfProfiles(), 5);
    EXPECT_EQ(fresh.getNumOfIeqPresets(), 4);
    EXPECT_EQ(fresh.getSelectedProfile(), 0);
    EXPECT_TRUE(fresh.isSelected(0));
    EXPECT_FALSE(fresh.isSelected(1));
    const std::pair<Port, const char*> tunings[] = {
        {PORT_INTERNAL_SPEAKER, "internal_speaker"}, {PORT_HDMI, "external_display"},
        {PORT_MIRACAST, "external_display"},         {PORT_HEADPHONE, "headphone_wired"},
        {PORT_BLUETOOTH, "headphone_bluetooth"},     {PORT_USB, "headphone_usb"},
    };
    for (const auto& [port, tuning] : tunings) {
        EXPECT_EQ(fresh.getSelectedTuningDevice(port), std::string("default_") + kPortNames[port]);
        ASSERT_NE(fresh.getSelectedTuning(port), nullptr) << port;
        EXPECT_EQ(fresh.getSelectedTuning(port)->getName(), tuning);
    }
    EXPECT_FALSE(early.lockHeld);
}

TEST_F(AxContextTest, AnnouncesOnlyRealChangesOfTheSelectedProfile) {
    LogCapture logs;
    const std::vector<int> reverb = context().getProfileParameter(2, REVERB_SUPPRESSION_AMOUNT);
    const std::vector<int> gains = context().getProfileGeqParameter(2, GEQ_GAIN);
    std::vector<int> otherGains = gains;
    otherGains[3] += 2;
    const std::vector<int> bass = context().getProfileParameter(2, SPEAKER, VIRTUAL_BASS_ENABLE);
    ASSERT_FALSE(reverb.empty());
    ASSERT_FALSE(bass.empty());
    AxContext& c = context();
    struct Step {
        const char* what;
        std::function<void()> apply;
        Events expected;
    };
    const Step steps[] = {
        {"effect already on", [&] { c.setSfxOn(true); }, {}},
        {"effect off", [&] { c.setSfxOn(false); }, {"onSfxOnChanged on=0"}},
        {"profile already selected", [&] { c.setSelectedProfile(0); }, {}},
        {"another profile", [&] { c.setSelectedProfile(2); }, {"onSelectedProfileChanged"}},
        {"same profile value", [&] { c.setProfileParameter(2, REVERB_SUPPRESSION_AMOUNT, reverb); },
         {}},
        {"longer profile value",
         [&] { c.setProfileParameter(2, REVERB_SUPPRESSION_AMOUNT, {reverb[0], 5}); },
         {"onSelectedProfileParameterChanged profile=2"}},
        {"prefix of the value",
         [&] { c.setProfileParameter(2, REVERB_SUPPRESSION_AMOUNT, {reverb[0]}); }, {}},
        {"empty value", [&] { c.setProfileParameter(2, REVERB_SUPPRESSION_AMOUNT, {}); }, {}},
        {"other first value",
         [&] { c.setProfileParameter(2, REVERB_SUPPRESSION_AMOUNT, {reverb[0] + 1}); },
         {"onSelectedProfileParameterChanged profile=2"}},
        {"value of a profile not selected",
         [&] { c.setProfileParameter(1, REVERB_SUPPRESSION_AMOUNT, {44}); }, {}},
        {"same GEQ value", [&] { c.setProfileGeqParameter(2, GEQ_GAIN, gains); }, {}},
        {"other GEQ value", [&] { c.setProfileGeqParameter(2, GEQ_GAIN, otherGains); },
         {"onSelectedProfileGeqChanged profile=2"}},
        {"GEQ of a profile not selected", [&] { c.setProfileGeqParameter(3, GEQ_GAIN, {1}); }, {}},
        {"headphone value",
         [&] { c.setProfileParameter(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}); },
         {"onSelectedProfileEndpointChanged port=3 endpoint=1 profile=2",
          "onSelectedProfileEndpointChanged port=4 endpoint=1 profile=2",
          "onSelectedProfileEndpointChanged port=5 endpoint=1 profile=2"}},
        {"same headphone value",
         [&] { c.setProfileParameter(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}); }, {}},
        {"other-endpoint value",
         [&] { c.setProfileParameter(2, OTHER, DIALOG_ENHANCER_AMOUNT, {12}); },
         {"onSelectedProfileEndpointChanged port=1 endpoint=2 profile=2",
          "onSelectedProfileEndpointChanged port=2 endpoint=2 profile=2"}},
        {"endpoint value of a profile not selected",
         [&] { c.setProfileParameter(4, SPEAKER, DIALOG_ENHANCER_AMOUNT, {3}); }, {}},
        {"virtual bass on headphone is refused",
         [&] { c.setProfileParameter(2, HEADPHONE, VIRTUAL_BASS_ENABLE, {1, 1}); }, {}},
        {"virtual bass on speaker",
         [&] { c.setProfileParameter(2, SPEAKER, VIRTUAL_BASS_ENABLE, {bass[0] == 0 ? 1 : 0}); },
         {"onSelectedProfileEndpointChanged port=0 endpoint=0 profile=2"}},
        {"reset of a profile not selected", [&] { c.resetProfile(1); }, {}},
        {"reset of the selected profile", [&] { c.resetProfile(2); },
         {"onSelectedProfileChanged"}},
        {"GEQ reset of a profile not selected", [&] { c.resetProfileGeq(3); }, {}},
        {"GEQ reset of the selected profile", [&] { c.resetProfileGeq(2); },
         {"onSelectedProfileGeqChanged profile=2"}},
        {"reload of every profile", [&] { c.reloadAllProfile(); },
         {"onSelectedProfileChanged", "onSfxOnChanged on=1"}},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        step.apply();
        EXPECT_EQ(mObserver.take(), step.expected);
    }
    EXPECT_FALSE(mObserver.lockHeld);

    // What the steps left behind: the refusal changed nothing and warned once; resets brought
    // the factory values back; the reload took the stored selection, state and rows again.
    EXPECT_EQ(logs.count(ANDROID_LOG_WARN, kTag,
                         "Setting virtual-bass-enable is not supported for non-speaker endpoints"),
              1u);
    EXPECT_NE(c.getProfileParameter(2, HEADPHONE, VIRTUAL_BASS_ENABLE),
              (std::vector<int>{1, 1}));
    EXPECT_EQ(c.getProfileParameter(1, REVERB_SUPPRESSION_AMOUNT),
              c.getDefaultProfile(1)->mValues[REVERB_SUPPRESSION_AMOUNT]);
    EXPECT_FALSE(c.isProfileModified(1));
    EXPECT_FALSE(c.isProfileGeqModified(3));
    EXPECT_FALSE(c.isProfileModified(2));
    // The reload read the stored rows again: the unsaved change of profile 4 is gone.
    EXPECT_FALSE(c.isProfileModified(4));
    EXPECT_EQ(c.getSelectedProfile(), 0);
    EXPECT_TRUE(c.getSfxOn());
}

TEST_F(AxContextTest, ValueChangesMarkRecordsDirtyOnlyWhenTheyChangeSomething) {
    AxContext& c = context();
    Profile* profile = c.getProfile(3);
    ProfileEndpoint* speaker = c.getProfileEndpoint(3, SPEAKER);
    GeqPreset* geq = c.getProfileGeq(3);
    ASSERT_FALSE(profile->isDirty());
    ASSERT_FALSE(speaker->isDirty());
    ASSERT_FALSE(geq->isDirty());
    c.setProfileParameter(3, REVERB_SUPPRESSION_AMOUNT,
                          std::vector<int>(c.getProfileParameter(3, REVERB_SUPPRESSION_AMOUNT)));
    c.setProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT, {});
    c.setProfileGeqParameter(3, GEQ_GAIN, {c.getProfileGeqParameter(3, GEQ_GAIN)[0]});
    EXPECT_FALSE(profile->isDirty());
    EXPECT_FALSE(speaker->isDirty());
    EXPECT_FALSE(geq->isDirty());
    c.setProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT, {1, 2, 3, 4, 5, 6, 7, 8});
    c.setProfileGeqParameter(3, GEQ_FREQUENCY, {1});
    EXPECT_TRUE(speaker->isDirty());
    EXPECT_TRUE(geq->isDirty());
    EXPECT_FALSE(profile->isDirty());
    EXPECT_EQ(c.getProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT),
              (std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(AxContextTest, ObserverMayCallBackIntoTheContextFromACallback) {
    AxContext& c = context();
    Events seen;
    mObserver.hook = [&seen](AxContext& ctx, const std::string& event) {
        if (event == "onSelectedProfileChanged") {
            // The change is complete before it is announced.
            seen.push_back("selected " + std::to_string(ctx.getSelectedProfile()));
            ctx.setProfileParameter(ctx.getSelectedProfile(), REVERB_SUPPRESSION_AMOUNT, {42});
        }
        if (event.rfind("onSelectedTuningChanged", 0) == 0) {
            seen.push_back("device " + ctx.getSelectedTuningDevice(PORT_HEADPHONE));
        }
    };
    c.setSelectedProfile(4);
    EXPECT_EQ(mObserver.take(), (Events{"onSelectedProfileChanged",
                                        "onSelectedProfileParameterChanged profile=4"}));
    EXPECT_EQ(c.getProfileParameter(4, REVERB_SUPPRESSION_AMOUNT), std::vector<int>{42});
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "studio_monitor_hp3", false));
    EXPECT_EQ(seen, (Events{"selected 4", "device studio_monitor_hp3"}));
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, IeqPresetSelectionDrivesIeqEnableAndIsAnnouncedPerPort) {
    LogCapture logs;
    AxContext& c = context();
    ProfileEndpoint* speaker = c.getProfileEndpoint(0, SPEAKER);
    ProfileEndpoint* headphone = c.getProfileEndpoint(0, HEADPHONE);
    ASSERT_EQ(speaker->mValues[IEQ_ENABLE], std::vector<int>{1});
    ASSERT_EQ(speaker->getSelectedIeqPreset(), 2);
    ASSERT_EQ(headphone->getSelectedIeqPreset(), 3);
    struct Step {
        const char* what;
        int profile;
        Endpoint endpoint;
        std::vector<int> preset;
        Events expected;
        int stored;
        std::vector<int> enable;
        bool dirty;
    };
    const Step steps[] = {
        {"select 3 on the speaker", 0, SPEAKER, {3}, {"onSelectedProfileIeqChanged port=0 preset=3"},
         3, {1}, true},
        {"IEQ off", 0, SPEAKER, {0},
         {"onSelectedProfileEndpointChanged port=0 endpoint=0 profile=0",
          "onSelectedProfileIeqChanged port=0 preset=0"},
         0, {0}, true},
        {"off again is announced again", 0, SPEAKER, {0},
         {"onSelectedProfileIeqChanged port=0 preset=0"}, 0, {0}, false},
        {"one past the count", 0, SPEAKER, {5}, {}, 0, {0}, false},
        {"negative", 0, SPEAKER, {-1}, {}, 0, {0}, false},
        {"back on", 0, SPEAKER, {1},
         {"onSelectedProfileEndpointChanged port=0 endpoint=0 profile=0",
          "onSelectedProfileIeqChanged port=0 preset=1"},
         1, {1}, true},
        {"headphone ports", 0, HEADPHONE, {1},
         {"onSelectedProfileIeqChanged port=3 preset=1",
          "onSelectedProfileIeqChanged port=4 preset=1",
          "onSelectedProfileIeqChanged port=5 preset=1"},
         1, {1}, true},
        {"headphone off", 0, HEADPHONE, {0},
         {"onSelectedProfileEndpointChanged port=3 endpoint=1 profile=0",
          "onSelectedProfileEndpointChanged port=4 endpoint=1 profile=0",
          "onSelectedProfileEndpointChanged port=5 endpoint=1 profile=0",
          "onSelectedProfileIeqChanged port=3 preset=0",
          "onSelectedProfileIeqChanged port=4 preset=0",
          "onSelectedProfileIeqChanged port=5 preset=0"},
         0, {0}, true},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        ProfileEndpoint* record = c.getProfileEndpoint(step.profile, step.endpoint);
        record->setDirty(false);
        c.setProfileParameter(step.profile, step.endpoint, IEQ_ID, step.preset);
        EXPECT_EQ(mObserver.take(), step.expected);
        EXPECT_EQ(record->getSelectedIeqPreset(), step.stored);
        EXPECT_EQ(record->mValues[IEQ_ENABLE], step.enable);
        EXPECT_EQ(record->isDirty(), step.dirty);
        EXPECT_EQ(c.getProfileParameter(step.profile, step.endpoint, IEQ_ID),
                  std::vector<int>{step.stored});
    }
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "setProfileParameter(): Invalid IEq preset 5"), 1u);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "setProfileParameter(): Invalid IEq preset -1"), 1u);

    // A profile not selected takes the selection and ieq-enable silently.
    c.setProfileParameter(3, HEADPHONE, IEQ_ID, {2});
    EXPECT_TRUE(mObserver.take().empty());
    EXPECT_EQ(c.getProfileEndpoint(3, HEADPHONE)->getSelectedIeqPreset(), 2);
    EXPECT_EQ(c.getProfileParameter(3, HEADPHONE, IEQ_ENABLE), std::vector<int>{1});
    EXPECT_EQ(c.getSelectedProfileIeq(PORT_HEADPHONE)->getPresetId(), 0);
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, EachSaveWritesExactlyItsAspect) {
    AxContext& c = context();
    const std::string factoryReverb = customReverb(3);
    c.setSfxOn(false);
    c.setSelectedProfile(3);
    c.setProfileParameter(3, REVERB_SUPPRESSION_AMOUNT, {6});
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "korvi_earbuds_e2", false));
    auto state = [&] {
        return Events{config("State"), config("Profile"), customReverb(3), config("headphone")};
    };
    ASSERT_EQ(state(), (Events{"true", "0", factoryReverb, "default_headphone"}));

    EXPECT_EQ(c.saveAxState(), 0);
    EXPECT_EQ(state(), (Events{"false", "0", factoryReverb, "default_headphone"}));
    EXPECT_EQ(c.saveAxProfile(), 0);
    EXPECT_EQ(state(), (Events{"false", "3", factoryReverb, "default_headphone"}));
    c.setSfxOn(true);
    c.setSelectedProfile(1);
    EXPECT_EQ(c.saveAxProfileSettings(), 0);
    EXPECT_EQ(state(), (Events{"false", "1", "6", "default_headphone"}));
    EXPECT_FALSE(c.getProfile(3)->isDirty());
    EXPECT_EQ(c.save(), 0);
    EXPECT_EQ(state(), (Events{"true", "1", "6", "korvi_earbuds_e2"}));
    for (Port port : {PORT_INTERNAL_SPEAKER, PORT_HDMI, PORT_MIRACAST, PORT_BLUETOOTH, PORT_USB}) {
        EXPECT_EQ(config(kPortNames[port]), std::string("default_") + kPortNames[port]);
    }

    // The next start sees what was saved.
    std::unique_ptr<Provider> provider = ContextStore::openProvider();
    ASSERT_TRUE(provider->init());
    AxContextChangeObservable observable;
    AxContext next(provider.get(), &observable);
    next.load();
    EXPECT_TRUE(next.getSfxOn());
    EXPECT_EQ(next.getSelectedProfile(), 1);
    EXPECT_EQ(next.getProfileParameter(3, REVERB_SUPPRESSION_AMOUNT), std::vector<int>{6});
    EXPECT_EQ(next.getSelectedTuning(PORT_HEADPHONE)->getName(), "earbuds_e2");
}

TEST_F(AxContextTest, DefaultTuningDeviceRules) {
    struct Case {
        std::vector<std::string> devices;
        std::string expected;  // "" : the first offered device, whichever that is
    };
    const Case cases[] = {
        {{"alpha", "default_x", "headphone"}, "default_x"},
        {{"alpha", "headphone"}, "headphone"},
        {{"alpha"}, "alpha"},
        {{"xdefault_y", "default_z"}, "default_z"},
        {{"default", "headphone"}, "headphone"},
        {{"alpha", "beta"}, ""},
        {{}, "headphone"},
    };
    for (const Case& cs : cases) {
        SCOPED_TRACE(cs.devices.empty() ? "none" : cs.devices[0] + "...");
        build([&](Provider& provider, RawDb& db) {
            db.exec("DELETE FROM device_tunings WHERE port='headphone'");
            for (const std::string& name : cs.devices) {
                DeviceTuning device(name, "headphone", "headphone_wired");
                ASSERT_EQ(provider.create(&device, Provider::kDefaultName), 0);
            }
        });
        const std::vector<std::string> offered = context().getAvailableTuningDevice(PORT_HEADPHONE);
        EXPECT_EQ(offered.size(), cs.devices.size());
        const std::string expected = cs.expected.empty() ? offered.at(0) : cs.expected;
        EXPECT_EQ(context().getDefaultTuningDevice(PORT_HEADPHONE), expected);
        const bool offeredDefault =
            std::find(offered.begin(), offered.end(), expected) != offered.end();
        EXPECT_EQ(context().selectDefaultTuning(PORT_HEADPHONE), offeredDefault);
        EXPECT_EQ(context().getSelectedTuningDevice(PORT_HEADPHONE),
                  offeredDefault ? expected : "default_headphone");
    }
}

TEST_F(AxContextTest, SetSelectedTuningResults) {
    build([](Provider& provider, RawDb&) {
        DeviceTuning twin("twin", "headphone", "headphone_wired");
        DeviceTuning ghost("ghost", "headphone", "no_such_tuning");
        ASSERT_EQ(provider.create(&twin, Provider::kDefaultName), 0);
        ASSERT_EQ(provider.create(&ghost, Provider::kDefaultName), 0);
    });
    LogCapture logs;
    AxContext& c = context();
    struct Step {
        std::string device;
        bool force;
        bool result;
        Events expected;
        std::string selected;
        std::string tuning;
    };
    const Step steps[] = {
        {"soundwave_bt500", false, false, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", false, true, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", true, true, {"onSelectedTuningChanged port=3 tuning=headphone_wired"},
         "default_headphone", "headphone_wired"},
        {"twin", false, true, {}, "twin", "headphone_wired"},
        {"korvi_earbuds_e2", false, true, {"onSelectedTuningChanged port=3 tuning=earbuds_e2"},
         "korvi_earbuds_e2", "earbuds_e2"},
        {"ghost", true, false, {}, "korvi_earbuds_e2", "earbuds_e2"},
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.device);
        EXPECT_EQ(c.setSelectedTuning(PORT_HEADPHONE, step.device, step.force), step.result);
        EXPECT_EQ(mObserver.take(), step.expected);
        EXPECT_EQ(c.getSelectedTuningDevice(PORT_HEADPHONE), step.selected);
        EXPECT_EQ(c.getSelectedTuning(PORT_HEADPHONE)->getName(), step.tuning);
    }
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                              "soundwave_bt500 is not a valid tuning device for port headphone, "
                              "please call getAvailableTuningDevice(port) to check first!"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag,
                              "Failed to set tuning for port[headphone] as device[ghost]"));
    EXPECT_EQ(logs.count(ANDROID_LOG_DEBUG, kTag,
                         "Complete setting port[headphone] use tuning device[twin]"),
              1u);
    EXPECT_EQ(config("headphone"), "default_headphone");
}

TEST_F(AxContextTest, ReloadTuningRevertsVanishedDevicesAndSavePersistsTheDefault) {
    AxContext& c = context();
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "korvi_earbuds_e2", false));
    ASSERT_EQ(c.save(), 0);
    mObserver.take();
    {
        RawDb db(mStore->dbPath());
        db.exec("DELETE FROM device_tunings WHERE device='korvi_earbuds_e2'");
        db.exec("UPDATE device_tunings SET tuning_id='gone' WHERE device='default_hdmi'");
    }
    mStore->provider().reloadCachedDeviceTunings();
    LogCapture logs;
    c.reloadTuning();
    EXPECT_EQ(mObserver.take(),
              (Events{"onSelectedTuningChanged port=0 tuning=internal_speaker",
                      "onSelectedTuningChanged port=2 tuning=external_display",
                      "onSelectedTuningChanged port=3 tuning=headphone_wired",
                      "onSelectedTuningChanged port=4 tuning=headphone_bluetooth",
                      "onSelectedTuningChanged port=5 tuning=headphone_usb"}));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag,
                              "Current selected tuning dev[korvi_earbuds_e2] is not available for "
                              "port[headphone], revert to use dev[default_headphone]."));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                              "Cannot load tuning data for device[default_hdmi] on port[hdmi]"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Reset tuning[headphone_wired] for port[headphone] and notify "
                              "observers."));
    EXPECT_EQ(c.getSelectedTuning(PORT_HDMI), nullptr);
    EXPECT_EQ(c.getSelectedTuningDevice(PORT_HEADPHONE), "default_headphone");
    EXPECT_EQ(config("headphone"), "korvi_earbuds_e2");
    ASSERT_EQ(c.save(), 0);
    EXPECT_EQ(config("headphone"), "default_headphone");
    EXPECT_EQ(config("hdmi"), "default_hdmi");
}

TEST_F(AxContextTest, QueriesReadThroughTheRecordsAndInsertOnRead) {
    LogCapture logs;
    AxContext& c = context();
    Profile* profile = c.getProfile(1);
    ASSERT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE), 0u);
    EXPECT_TRUE(c.getProfileParameter(1, MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE).empty());
    EXPECT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE), 1u);
    Tuning* tuning = c.getSelectedTuning(PORT_USB);
    const size_t before = tuning->mValues.size();
    EXPECT_TRUE(c.getSelectedTuningParameter(PORT_USB, VIRTUAL_BASS_TYPE).empty());
    EXPECT_EQ(tuning->mValues.size(), before + 1);
    EXPECT_EQ(&c.getSelectedTuningParameter(PORT_USB, OUTPUT_CHANNELS),
              &tuning->mValues[OUTPUT_CHANNELS]);

    EXPECT_EQ(c.getIeqPresetName(0), "off");
    EXPECT_EQ(c.getIeqPresetName(3), "warm");
    EXPECT_EQ(c.getIeqPresetName(-1), "");
    EXPECT_EQ(c.getIeqPresetName(5), "");
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "Invalid IEQ Preset Id!"), 2u);

    EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_BLUETOOTH), c.getProfileEndpoint(0, HEADPHONE));
    EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_MIRACAST), c.getProfileEndpoint(OTHER));
    EXPECT_EQ(c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER)->getPresetId(), 2);
    EXPECT_EQ(c.getSelectedProfileIeq(PORT_HEADPHONE)->getPresetId(), 3);
    EXPECT_EQ(c.getSelectedProfileGeq(), c.getProfileGeq(0));
    EXPECT_EQ(c.getDefaultProfile(2)->getName(), "Music");
}

TEST_F(AxContextTest, UnknownProfileIdEndsTheProcess) {
    AxContext& c = context();
    const std::pair<std::function<void()>, const char*> calls[] = {
        {[&] { c.setSelectedProfile(5); }, "5"},
        {[&] { c.getProfile(-1); }, "-1"},
        {[&] { c.setProfileParameter(7, REVERB_SUPPRESSION_AMOUNT, {1}); }, "7"},
        {[&] { c.setProfileParameter(9, SPEAKER, IEQ_ID, {1}); }, "9"},
        {[&] { c.resetProfileGeq(5); }, "5"},
        {[&] { c.isProfileModified(99); }, "99"},
    };
    for (const auto& [call, id] : calls) {
        EXPECT_EXIT(call(), testing::ExitedWithCode(255),
                    std::string("Couldn't find the context for profileId: ") + id + "\n");
    }
}

TEST_F(AxContextTest, MissingEndpointOfTheSelectedProfileEndsTheProcess) {
    build([](Provider&, RawDb& db) {
        db.exec("DELETE FROM profile_endpoints WHERE profile_id=0 AND endpoint='headphone' AND "
                "custom_name='custom'");
    });
    AxContext& c = context();
    EXPECT_EXIT(c.getSelectedProfileEndpoint(PORT_USB), testing::ExitedWithCode(255),
                "Couldn't find the profile endpoint fo 1");
    EXPECT_EXIT(c.setProfileParameter(0, HEADPHONE, IEQ_ID, {1}), testing::ExitedWithCode(255),
                "Couldn't find the profile endpoint fo 1");
}

// One thread changes the state (as the event handler does) while another reads through the
// getters (as binder threads do); observers run on the changing thread and read back.
TEST_F(AxContextTest, ConcurrencyOfChangesAndGetters) {
    AxContext& c = context();
    mObserver.hook = [](AxContext& ctx, const std::string&) {
        ctx.getSfxOn();
        ctx.getSelectedProfileGeq();
    };
    constexpr int kRounds = 200;
    std::atomic<bool> done{false};
    std::atomic<int> reads{0};
    std::thread reader([&] {
        while (!done.load() || reads.load() < 50) {
            const int selected = c.getSelectedProfile();
            EXPECT_GE(selected, 0);
            EXPECT_LT(selected, 5);
            c.getSfxOn();
            c.isSelected(selected);
            c.isProfileModified(selected);
            c.isProfileGeqModified(reads.load() % 5);
            EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_HEADPHONE)->getEndpoint(), HEADPHONE);
            c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER);
            reads.fetch_add(1);
        }
    });
    const char* devices[] = {"korvi_earbuds_e2", "studio_monitor_hp3"};
    for (int i = 0; i < kRounds; ++i) {
        c.setSfxOn(i % 2 == 0);
        c.setSelectedProfile(i % 5);
        c.setProfileParameter(i % 5, REVERB_SUPPRESSION_AMOUNT, {i});
        c.setProfileGeqParameter(i % 5, GEQ_GAIN, {i, i});
        c.setProfileParameter(i % 5, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {i});
        c.setProfileParameter(i % 5, SPEAKER, IEQ_ID, {i % 4});
        EXPECT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, devices[i % 2], false));
        if (i % 50 == 0) c.resetProfile(i % 5);
    }
    done = true;
    reader.join();
    // Every round changes the state, the profile, a profile, GEQ and headphone value (three
    // ports), the speaker's IEQ preset and the headphone tuning.
    EXPECT_GE(mObserver.events.size(), 9u * kRounds);
    EXPECT_FALSE(c.getSfxOn());
    EXPECT_EQ(c.getSelectedProfile(), (kRounds - 1) % 5);
    EXPECT_EQ(c.getSelectedTuning(PORT_HEADPHONE)->getName(), "studio_hp3");
}

}  // namespace
}  // namespace korvi
