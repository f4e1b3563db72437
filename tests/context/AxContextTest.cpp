// The service context over a store built from the sample tuning file: what each operation
// announces and when, observers calling back, the IEQ preset selection, dirty flags and the four
// saves checked in the database file, tuning selection and reload, and the fatal exits.
#include <gtest/gtest.h>

#include <android/log.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

#include "common/IntText.h"
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
using Values = std::vector<int>;

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

    std::string query(const std::string& sql) const { return RawDb(mStore->dbPath()).value(sql); }
    std::string config(const std::string& key) const {
        return query("SELECT value FROM configuration WHERE key='" + key + "'");
    }

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
    fresh.load();
    EXPECT_EQ(early.take(), (Events{"onLoad", "onLoad"}));
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
    EXPECT_TRUE(fresh.isSelected(0) && !fresh.isSelected(1));
    EXPECT_EQ(fresh.getSelectedTuningDevice(PORT_USB), "default_usb");
    EXPECT_EQ(fresh.getSelectedTuning(PORT_MIRACAST)->getName(), "external_display");
}

TEST_F(AxContextTest, AnnouncesOnlyRealChangesOfTheSelectedProfile) {
    LogCapture logs;
    AxContext& c = *mContext;
    const Values reverb = c.getProfileParameter(2, REVERB_SUPPRESSION_AMOUNT);
    Values gains = c.getProfileGeqParameter(2, GEQ_GAIN);
    const int bass = c.getProfileParameter(2, SPEAKER, VIRTUAL_BASS_ENABLE).at(0);
    auto profile = [&](int id, const Values& v) {
        return [&c, id, v] { c.setProfileParameter(id, REVERB_SUPPRESSION_AMOUNT, v); };
    };
    auto endpoint = [&](int id, Endpoint e, Parameter p, const Values& v) {
        return [&c, id, e, p, v] { c.setProfileParameter(id, e, p, v); };
    };
    const std::string p2 = "onSelectedProfileParameterChanged profile=2";
    const std::string hp = "onSelectedProfileEndpointChanged port=";
    const std::pair<std::function<void()>, Events> steps[] = {
        {[&] { c.setSfxOn(true); }, {}},
        {[&] { c.setSfxOn(false); }, {"onSfxOnChanged on=0"}},
        {[&] { c.setSelectedProfile(0); }, {}},
        {[&] { c.setSelectedProfile(2); }, {"onSelectedProfileChanged"}},
        {profile(2, reverb), {}},
        {profile(2, {reverb[0], 5}), {p2}},  // longer than the stored list
        {profile(2, {reverb[0]}), {}},       // a prefix of it
        {profile(2, {}), {}},
        {profile(2, {reverb[0] + 1}), {p2}},
        {profile(1, {44}), {}},  // not the selected profile
        {[&] { c.setProfileGeqParameter(2, GEQ_GAIN, gains); }, {}},
        {[&] { c.setProfileGeqParameter(2, GEQ_GAIN, {gains[0] + 2}); },
         {"onSelectedProfileGeqChanged profile=2"}},
        {[&] { c.setProfileGeqParameter(3, GEQ_GAIN, {1}); }, {}},
        {endpoint(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}),
         {hp + "3 endpoint=1 profile=2", hp + "4 endpoint=1 profile=2",
          hp + "5 endpoint=1 profile=2"}},
        {endpoint(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}), {}},
        {endpoint(2, OTHER, DIALOG_ENHANCER_AMOUNT, {12}),
         {hp + "1 endpoint=2 profile=2", hp + "2 endpoint=2 profile=2"}},
        {endpoint(4, SPEAKER, DIALOG_ENHANCER_AMOUNT, {3}), {}},
        {endpoint(2, HEADPHONE, VIRTUAL_BASS_ENABLE, {1, 1}), {}},  // refused
        {endpoint(2, SPEAKER, VIRTUAL_BASS_ENABLE, {bass == 0 ? 1 : 0}),
         {hp + "0 endpoint=0 profile=2"}},
        {[&] { c.resetProfile(1); EXPECT_FALSE(c.isProfileModified(1)); }, {}},
        {[&] { c.resetProfile(2); }, {"onSelectedProfileChanged"}},
        {[&] { c.resetProfileGeq(3); EXPECT_FALSE(c.isProfileGeqModified(3)); }, {}},
        {[&] { c.resetProfileGeq(2); }, {"onSelectedProfileGeqChanged profile=2"}},
        {[&] { c.reloadAllProfile(); }, {"onSelectedProfileChanged", "onSfxOnChanged on=1"}},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(mObserver.take(), steps[i].second) << "step " << i;
    }
    EXPECT_FALSE(mObserver.lockHeld);
    EXPECT_EQ(logs.count(ANDROID_LOG_WARN, kTag,
                         "Setting virtual-bass-enable is not supported for non-speaker endpoints"),
              1u);
    EXPECT_NE(c.getProfileParameter(2, HEADPHONE, VIRTUAL_BASS_ENABLE), (Values{1, 1}));
    // The reload read the stored rows again: the unsaved change of profile 4 is gone.
    EXPECT_FALSE(c.isProfileModified(4));
    EXPECT_EQ(c.getSelectedProfile(), 0);
}

TEST_F(AxContextTest, ObserverMayCallBackIntoTheContextFromACallback) {
    AxContext& c = *mContext;
    Events seen;
    mObserver.hook = [&seen](AxContext& ctx, const std::string& event) {
        if (event == "onSelectedProfileChanged") {
            // The change is complete before it is announced.
            seen.push_back("selected " + std::to_string(ctx.getSelectedProfile()));
            ctx.setProfileParameter(ctx.getSelectedProfile(), REVERB_SUPPRESSION_AMOUNT, {42});
        } else if (event.rfind("onSelectedTuningChanged", 0) == 0) {
            seen.push_back("device " + ctx.getSelectedTuningDevice(PORT_HEADPHONE));
        }
    };
    c.setSelectedProfile(4);
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "studio_monitor_hp3", false));
    EXPECT_EQ(mObserver.take(),
              (Events{"onSelectedProfileChanged", "onSelectedProfileParameterChanged profile=4",
                      "onSelectedTuningChanged port=3 tuning=studio_hp3"}));
    EXPECT_EQ(seen, (Events{"selected 4", "device studio_monitor_hp3"}));
    EXPECT_EQ(c.getProfileParameter(4, REVERB_SUPPRESSION_AMOUNT), Values{42});
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, IeqPresetSelectionDrivesIeqEnableAndIsAnnouncedPerPort) {
    LogCapture logs;
    AxContext& c = *mContext;
    ASSERT_EQ(c.getProfileParameter(0, SPEAKER, IEQ_ENABLE), Values{1});
    ASSERT_EQ(c.getProfileEndpoint(0, SPEAKER)->getSelectedIeqPreset(), 2);
    ASSERT_EQ(c.getProfileEndpoint(0, HEADPHONE)->getSelectedIeqPreset(), 3);
    const std::string ieq = "onSelectedProfileIeqChanged port=";
    const std::string ep = "onSelectedProfileEndpointChanged port=";
    struct Step {
        Endpoint endpoint;
        int preset;
        Events expected;
        int stored;  // the selection afterwards; "ieq-enable" is {stored != 0}
        bool dirty;
    };
    const Step steps[] = {
        {SPEAKER, 3, {ieq + "0 preset=3"}, 3, true},
        {SPEAKER, 0, {ep + "0 endpoint=0 profile=0", ieq + "0 preset=0"}, 0, true},
        {SPEAKER, 0, {ieq + "0 preset=0"}, 0, false},  // announced again, changes nothing
        {SPEAKER, 5, {}, 0, false},                    // one past the preset count
        {SPEAKER, -1, {}, 0, false},
        {SPEAKER, 1, {ep + "0 endpoint=0 profile=0", ieq + "0 preset=1"}, 1, true},
        {HEADPHONE, 1, {ieq + "3 preset=1", ieq + "4 preset=1", ieq + "5 preset=1"}, 1, true},
        {HEADPHONE, 0,
         {ep + "3 endpoint=1 profile=0", ep + "4 endpoint=1 profile=0",
          ep + "5 endpoint=1 profile=0", ieq + "3 preset=0", ieq + "4 preset=0",
          ieq + "5 preset=0"},
         0, true},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        const Step& step = steps[i];
        ProfileEndpoint* record = c.getProfileEndpoint(0, step.endpoint);
        record->setDirty(false);
        c.setProfileParameter(0, step.endpoint, IEQ_ID, {step.preset});
        EXPECT_EQ(mObserver.take(), step.expected) << "step " << i;
        EXPECT_EQ(record->getSelectedIeqPreset(), step.stored) << "step " << i;
        EXPECT_EQ(record->mValues[IEQ_ENABLE], Values{step.stored != 0}) << "step " << i;
        EXPECT_EQ(record->isDirty(), step.dirty) << "step " << i;
        EXPECT_EQ(c.getProfileParameter(0, step.endpoint, IEQ_ID), Values{step.stored});
    }
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "setProfileParameter(): Invalid IEq preset 5"),
              1u);
    EXPECT_TRUE(
        logs.contains(ANDROID_LOG_ERROR, kTag, "setProfileParameter(): Invalid IEq preset -1"));

    // A profile not selected takes the selection and "ieq-enable" silently.
    c.setProfileParameter(3, HEADPHONE, IEQ_ID, {2});
    EXPECT_TRUE(mObserver.take().empty());
    EXPECT_EQ(c.getProfileParameter(3, HEADPHONE, IEQ_ID), Values{2});
    EXPECT_EQ(c.getProfileParameter(3, HEADPHONE, IEQ_ENABLE), Values{1});
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, EachSaveWritesExactlyItsAspect) {
    AxContext& c = *mContext;
    auto state = [&] {
        return Events{config("State"), config("Profile"), config("headphone"),
                      query("SELECT reverb_suppression_amount FROM profiles WHERE "
                            "custom_name='custom' AND profile_id=3")};
    };
    const std::string factory = state()[3];
    c.setSfxOn(false);
    c.setSelectedProfile(3);
    c.setProfileParameter(3, REVERB_SUPPRESSION_AMOUNT, {6});
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "korvi_earbuds_e2", false));
    ASSERT_EQ(state(), (Events{"true", "0", "default_headphone", factory}));
    EXPECT_EQ(c.saveAxState(), 0);
    EXPECT_EQ(state(), (Events{"false", "0", "default_headphone", factory}));
    EXPECT_EQ(c.saveAxProfile(), 0);
    EXPECT_EQ(state(), (Events{"false", "3", "default_headphone", factory}));
    c.setSfxOn(true);
    c.setSelectedProfile(1);
    EXPECT_EQ(c.saveAxProfileSettings(), 0);
    EXPECT_EQ(state(), (Events{"false", "1", "default_headphone", "6"}));

    // Saved records are clean, and values that change nothing (equal, a prefix, empty) leave
    // them clean; a longer list does not.
    c.setProfileParameter(3, REVERB_SUPPRESSION_AMOUNT, {6});
    c.setProfileGeqParameter(3, GEQ_GAIN, {c.getProfileGeqParameter(3, GEQ_GAIN)[0]});
    c.setProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT, {});
    EXPECT_FALSE(c.getProfile(3)->isDirty() || c.getProfileGeq(3)->isDirty() ||
                 c.getProfileEndpoint(3, SPEAKER)->isDirty());
    Values longer = c.getProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT);
    longer.push_back(1);
    c.setProfileParameter(3, SPEAKER, DIALOG_ENHANCER_AMOUNT, longer);
    EXPECT_TRUE(c.getProfileEndpoint(3, SPEAKER)->isDirty());

    EXPECT_EQ(c.save(), 0);
    EXPECT_EQ(state(), (Events{"true", "1", "korvi_earbuds_e2", "6"}));
    EXPECT_EQ(config("usb"), "default_usb");
    EXPECT_EQ(query("SELECT dialog_enhancer_amount FROM profile_endpoints WHERE profile_id=3 AND "
                    "endpoint='speaker' AND custom_name='custom'"),
              intVector2String(longer));
}

TEST_F(AxContextTest, DefaultTuningDeviceRules) {
    // "" stands for the first offered device, whichever that is: their order carries no meaning.
    const std::pair<Events, std::string> cases[] = {
        {{"alpha", "default_x", "headphone"}, "default_x"},
        {{"alpha", "headphone"}, "headphone"},
        {{"xdefault_y", "default_z"}, "default_z"},
        {{"default", "headphone"}, "headphone"},
        {{"alpha", "beta"}, ""},
        {{}, "headphone"},
    };
    for (const auto& [devices, answer] : cases) {
        build([&devices = devices](Provider& provider, RawDb& db) {
            db.exec("DELETE FROM device_tunings WHERE port='headphone'");
            for (const std::string& name : devices) {
                DeviceTuning device(name, "headphone", "headphone_wired");
                ASSERT_EQ(provider.create(&device, Provider::kDefaultName), 0);
            }
        });
        const Events offered = mContext->getAvailableTuningDevice(PORT_HEADPHONE);
        ASSERT_EQ(offered.size(), devices.size());
        const std::string expected = answer.empty() ? offered.at(0) : answer;
        EXPECT_EQ(mContext->getDefaultTuningDevice(PORT_HEADPHONE), expected);
        const bool usable = std::find(offered.begin(), offered.end(), expected) != offered.end();
        EXPECT_EQ(mContext->selectDefaultTuning(PORT_HEADPHONE), usable) << expected;
        EXPECT_EQ(mContext->getSelectedTuningDevice(PORT_HEADPHONE),
                  usable ? expected : "default_headphone");
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
    AxContext& c = *mContext;
    const std::string announced = "onSelectedTuningChanged port=3 tuning=";
    struct Step {
        std::string device;
        bool force, result;
        Events expected;
        std::string selected, tuning;
    };
    const Step steps[] = {
        {"soundwave_bt500", false, false, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", false, true, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", true, true, {announced + "headphone_wired"}, "default_headphone",
         "headphone_wired"},
        {"twin", false, true, {}, "twin", "headphone_wired"},  // same tuning, other device
        {"korvi_earbuds_e2", false, true, {announced + "earbuds_e2"}, "korvi_earbuds_e2",
         "earbuds_e2"},
        {"ghost", true, false, {}, "korvi_earbuds_e2", "earbuds_e2"},
    };
    for (const Step& step : steps) {
        EXPECT_EQ(c.setSelectedTuning(PORT_HEADPHONE, step.device, step.force), step.result);
        EXPECT_EQ(mObserver.take(), step.expected) << step.device;
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
    AxContext& c = *mContext;
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "korvi_earbuds_e2", false));
    ASSERT_EQ(c.save(), 0);
    mObserver.take();
    RawDb(mStore->dbPath())
        .exec("DELETE FROM device_tunings WHERE device='korvi_earbuds_e2'; UPDATE device_tunings "
              "SET tuning_id='gone' WHERE device='default_hdmi'");
    mStore->provider().reloadCachedDeviceTunings();
    LogCapture logs;
    c.reloadTuning();
    const std::string announced = "onSelectedTuningChanged port=";
    EXPECT_EQ(mObserver.take(),
              (Events{announced + "0 tuning=internal_speaker",
                      announced + "2 tuning=external_display",
                      announced + "3 tuning=headphone_wired",
                      announced + "4 tuning=headphone_bluetooth",
                      announced + "5 tuning=headphone_usb"}));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag,
                              "Current selected tuning dev[korvi_earbuds_e2] is not available for "
                              "port[headphone], revert to use dev[default_headphone]."));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                              "Cannot load tuning data for device[default_hdmi] on port[hdmi]"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Reset tuning[headphone_wired] for port[headphone] and notify "
                              "observers."));
    EXPECT_EQ(c.getSelectedTuning(PORT_HDMI), nullptr);
    EXPECT_EQ(config("headphone"), "korvi_earbuds_e2");
    ASSERT_EQ(c.save(), 0);
    EXPECT_EQ(config("headphone"), "default_headphone");
}

TEST_F(AxContextTest, QueriesReadThroughTheRecordsAndInsertOnRead) {
    LogCapture logs;
    AxContext& c = *mContext;
    Profile* profile = c.getProfile(1);
    Tuning* tuning = c.getSelectedTuning(PORT_USB);
    ASSERT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE), 0u);
    ASSERT_EQ(tuning->mValues.count(VIRTUAL_BASS_TYPE), 0u);
    EXPECT_TRUE(c.getProfileParameter(1, MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE).empty());
    EXPECT_TRUE(c.getSelectedTuningParameter(PORT_USB, VIRTUAL_BASS_TYPE).empty());
    EXPECT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE), 1u);
    EXPECT_EQ(tuning->mValues.count(VIRTUAL_BASS_TYPE), 1u);

    // Ids up to the preset count are valid; 4 has no row.
    const Events names = {c.getIeqPresetName(-1), c.getIeqPresetName(0), c.getIeqPresetName(3),
                          c.getIeqPresetName(4), c.getIeqPresetName(5)};
    EXPECT_EQ(names, (Events{"", "off", "warm", "", ""}));
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "Invalid IEQ Preset Id!"), 2u);

    EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_BLUETOOTH), c.getProfileEndpoint(0, HEADPHONE));
    EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_MIRACAST), c.getProfileEndpoint(OTHER));
    EXPECT_EQ(c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER)->getPresetId(), 2);
    EXPECT_EQ(c.getSelectedProfileGeq(), c.getProfileGeq(0));
}

TEST_F(AxContextTest, UnknownProfileIdOrMissingEndpointEndsTheProcess) {
    // The stored selection names no profile, and profile 0 lost its working headphone record.
    build([](Provider&, RawDb& db) {
        db.exec("UPDATE configuration SET value='9' WHERE key='Profile'; DELETE FROM "
                "profile_endpoints WHERE profile_id=0 AND endpoint='headphone' AND "
                "custom_name='custom'");
    });
    AxContext& c = *mContext;
    const std::pair<std::function<void()>, std::string> calls[] = {
        {[&] { c.setSelectedProfile(5); }, "context for profileId: 5\n"},
        {[&] { c.getProfile(-1); }, "context for profileId: -1\n"},
        {[&] { c.setProfileParameter(7, GEQ_GAIN, {1}); }, "context for profileId: 7\n"},
        {[&] { c.setProfileParameter(9, SPEAKER, IEQ_ID, {1}); }, "context for profileId: 9\n"},
        {[&] { c.resetProfileGeq(5); }, "context for profileId: 5\n"},
        {[&] { c.isProfileModified(99); }, "context for profileId: 99\n"},
        {[&] { c.getSelectedProfile(); }, "context for profileId: -1\n"},
        {[&] { c.getProfileEndpoint(0, HEADPHONE); }, "profile endpoint fo 1\n"},
        {[&] { c.setProfileParameter(0, HEADPHONE, IEQ_ID, {1}); }, "profile endpoint fo 1\n"},
    };
    for (const auto& [call, message] : calls) {
        EXPECT_EXIT(call(), testing::ExitedWithCode(255), "Couldn't find the " + message);
    }
}

// One thread changes the state (as the event handler does) while another reads through the
// getters (as binder threads do); observers run on the changing thread and read back. First both
// hammer the on/off state, then the reader goes through the other getters while the writer changes
// profiles, values, IEQ presets and tunings.
TEST_F(AxContextTest, ConcurrencyOfChangesAndGetters) {
    AxContext& c = *mContext;
    mObserver.hook = [](AxContext& ctx, const std::string&) { ctx.getSelectedProfileGeq(); };
    constexpr int kRounds = 100;
    std::atomic<bool> toggled{false}, done{false};
    std::atomic<int> stateReads{0}, reads{0};
    std::thread reader([&] {
        while (!toggled.load()) {
            c.getSfxOn();
            stateReads.fetch_add(1);
        }
        while (!done.load() || reads.load() < 50) {
            const int selected = c.getSelectedProfile();
            EXPECT_TRUE(selected >= 0 && selected < 5) << selected;
            c.isSelected(selected);
            c.isProfileModified(selected);
            c.isProfileGeqModified(reads.load() % 5);
            EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_HEADPHONE)->getEndpoint(), HEADPHONE);
            c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER);
            reads.fetch_add(1);
        }
    });
    // Toggles until the reader has read the state many times while it changed.
    size_t toggles = 0;
    for (; toggles < 500 || stateReads.load() < 5000; ++toggles) c.setSfxOn(toggles % 2 == 0);
    toggled = true;
    const char* devices[] = {"korvi_earbuds_e2", "studio_monitor_hp3"};
    for (int i = 0; i < kRounds; ++i) {
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
    // Every toggle is a change; every round changes the profile, a profile, GEQ and headphone
    // value (three ports), the speaker's IEQ preset and the headphone tuning.
    EXPECT_GE(mObserver.events.size(), toggles + 8u * kRounds);
    EXPECT_EQ(c.getSelectedProfile(), (kRounds - 1) % 5);
    EXPECT_EQ(c.getSelectedTuning(PORT_HEADPHONE)->getName(), "studio_hp3");
}

}  // namespace
}  // namespace korvi
