// The service context over a store built from the sample tuning file: what each operation
// announces and when, observers calling back, IEQ preset selection, dirty flags and saves checked
// in the database file, tuning selection and reload, fatal exits, and concurrent use.
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

namespace korvi {
namespace {

using namespace test;

constexpr const char* kTag = "AxContext";
const std::string kEp = "onSelectedProfileEndpointChanged port=";
const std::string kIeq = "onSelectedProfileIeqChanged port=";
const std::string kTun = "onSelectedTuningChanged port=";

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

TEST_F(AxContextTest, LoadAnnouncesToAllAndRegistrationToTheNewObserverOnly) {
    AxContextChangeObservable observable;
    AxContext fresh(&mStore->provider(), &observable);
    Events log;
    RecordingObserver early("early", &log), late("late", &log);
    fresh.registerObserver(&early);
    fresh.load();
    fresh.registerObserver(&late);
    fresh.registerObserver(&late);
    fresh.unregisterObserver(&late);
    fresh.setSfxOn(false);
    EXPECT_EQ(log, (Events{"early onLoad", "early onLoad", "late onLoad", "late onLoad",
                           "early onSfxOnChanged on=0"}));
    EXPECT_EQ(std::to_string(fresh.getNumOfProfiles()) + std::to_string(fresh.getNumOfIeqPresets()) +
                  fresh.getSelectedTuning(PORT_MIRACAST)->getName(),
              "54external_display");
}

TEST_F(AxContextTest, AnnouncesOnlyRealChangesOfTheSelectedProfile) {
    LogCapture logs;
    AxContext& c = *mContext;
    const Values reverb = c.getProfileParameter(2, REVERB_SUPPRESSION_AMOUNT);
    const int gain = c.getProfileGeqParameter(2, GEQ_GAIN).at(0);
    const int bass = c.getProfileParameter(2, SPEAKER, VIRTUAL_BASS_ENABLE).at(0);
    auto profile = [&c](int id, Values v) {
        return [&c, id, v] { c.setProfileParameter(id, REVERB_SUPPRESSION_AMOUNT, v); };
    };
    auto endpoint = [&c](int id, Endpoint e, Parameter p, Values v) {
        return [&c, id, e, p, v] { c.setProfileParameter(id, e, p, v); };
    };
    const std::string p2 = "onSelectedProfileParameterChanged profile=2";
    const std::string g2 = "onSelectedProfileGeqChanged profile=2";
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
        {[&] { c.setProfileGeqParameter(2, GEQ_GAIN, {gain}); }, {}},
        {[&] { c.setProfileGeqParameter(2, GEQ_GAIN, {gain + 2}); }, {g2}},
        {[&] { c.setProfileGeqParameter(3, GEQ_GAIN, {1}); }, {}},
        {endpoint(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}),
         {kEp + "3 endpoint=1 profile=2", kEp + "4 endpoint=1 profile=2",
          kEp + "5 endpoint=1 profile=2"}},
        {endpoint(2, HEADPHONE, DIALOG_ENHANCER_AMOUNT, {11}), {}},
        {endpoint(2, OTHER, DIALOG_ENHANCER_AMOUNT, {12}),
         {kEp + "1 endpoint=2 profile=2", kEp + "2 endpoint=2 profile=2"}},
        {endpoint(4, SPEAKER, DIALOG_ENHANCER_AMOUNT, {3}), {}},
        {endpoint(2, HEADPHONE, VIRTUAL_BASS_ENABLE, {1, 1}), {}},  // refused
        {endpoint(2, SPEAKER, VIRTUAL_BASS_ENABLE, {bass == 0}), {kEp + "0 endpoint=0 profile=2"}},
        {[&] { c.resetProfile(1); }, {}},
        {[&] { c.resetProfile(2); }, {"onSelectedProfileChanged"}},
        {[&] { c.resetProfileGeq(3); }, {}},
        {[&] { c.resetProfileGeq(2); }, {g2}},
        {[&] { c.reloadAllProfile(); }, {"onSelectedProfileChanged", "onSfxOnChanged on=1"}},
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(mObserver.take(), steps[i].second) << "step " << i;
    }
    EXPECT_FALSE(mObserver.lockHeld);
    EXPECT_EQ(logLines(logs, kTag),
              Events{"W Setting virtual-bass-enable is not supported for non-speaker endpoints"});
    // The resets and the reload left no change anywhere, and the refused value was not taken.
    for (int id = 0; id < 5; ++id) EXPECT_FALSE(c.isProfileModified(id)) << id;
    EXPECT_EQ(c.getSelectedProfile(), 0);
}

TEST_F(AxContextTest, ObserverMayCallBackIntoTheContextFromACallback) {
    AxContext& c = *mContext;
    Events seen;
    mObserver.hook = [&seen](AxContext& ctx, const std::string& event) {
        if (event == "onSelectedProfileChanged") {  // the change is complete before it is told
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
                      kTun + "3 tuning=studio_hp3"}));
    EXPECT_EQ(seen, (Events{"selected 4", "device studio_monitor_hp3"}));
    EXPECT_EQ(c.getProfileParameter(4, REVERB_SUPPRESSION_AMOUNT), Values{42});
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, IeqPresetSelectionDrivesIeqEnableAndIsAnnouncedPerPort) {
    LogCapture logs;
    AxContext& c = *mContext;
    ASSERT_EQ(c.getProfileParameter(0, SPEAKER, IEQ_ID), Values{2});
    ASSERT_EQ(c.getProfileEndpoint(0, HEADPHONE)->getSelectedIeqPreset(), 3);
    struct Step {
        int profile;
        Endpoint endpoint;
        int preset;
        Events expected;
        int stored;  // the selection afterwards; "ieq-enable" is {stored != 0}
        bool dirty;
    };
    const Step steps[] = {
        {0, SPEAKER, 3, {kIeq + "0 preset=3"}, 3, true},
        {0, SPEAKER, 0, {kEp + "0 endpoint=0 profile=0", kIeq + "0 preset=0"}, 0, true},
        {0, SPEAKER, 0, {kIeq + "0 preset=0"}, 0, false},  // told again, changes nothing
        {0, SPEAKER, 5, {}, 0, false},                     // one past the preset count
        {0, SPEAKER, -1, {}, 0, false},
        {0, SPEAKER, 1, {kEp + "0 endpoint=0 profile=0", kIeq + "0 preset=1"}, 1, true},
        {0, HEADPHONE, 1, {kIeq + "3 preset=1", kIeq + "4 preset=1", kIeq + "5 preset=1"}, 1, true},
        {0, HEADPHONE, 0,
         {kEp + "3 endpoint=1 profile=0", kEp + "4 endpoint=1 profile=0",
          kEp + "5 endpoint=1 profile=0", kIeq + "3 preset=0", kIeq + "4 preset=0",
          kIeq + "5 preset=0"},
         0, true},
        {3, HEADPHONE, 2, {}, 2, true},  // a profile not selected changes silently
    };
    for (size_t i = 0; i < std::size(steps); ++i) {
        const Step& s = steps[i];
        ProfileEndpoint* record = c.getProfileEndpoint(s.profile, s.endpoint);
        record->setDirty(false);
        c.setProfileParameter(s.profile, s.endpoint, IEQ_ID, {s.preset});
        EXPECT_EQ(mObserver.take(), s.expected) << "step " << i;
        const Values got = {record->getSelectedIeqPreset(), record->isDirty(),
                            c.getProfileParameter(s.profile, s.endpoint, IEQ_ID).at(0)};
        EXPECT_EQ(got, (Values{s.stored, s.dirty, s.stored})) << "step " << i;
        EXPECT_EQ(record->mValues[IEQ_ENABLE], Values{s.stored != 0}) << "step " << i;
    }
    EXPECT_EQ(logLines(logs, kTag), (Events{"E setProfileParameter(): Invalid IEq preset 5",
                                            "E setProfileParameter(): Invalid IEq preset -1"}));
    EXPECT_FALSE(mObserver.lockHeld);
}

TEST_F(AxContextTest, EachSaveWritesExactlyItsAspect) {
    AxContext& c = *mContext;
    auto state = [&] {
        return Events{config("State"), config("Profile"), config("headphone"),
                      query("SELECT reverb_suppression_amount FROM profiles WHERE "
                            "custom_name='custom' AND profile_id=3"),
                      query("SELECT dialog_enhancer_amount FROM profile_endpoints WHERE "
                            "profile_id=3 AND endpoint='speaker' AND custom_name='custom'")};
    };
    Events expected = state();
    c.setSfxOn(false);
    c.setSelectedProfile(3);
    c.setProfileParameter(3, REVERB_SUPPRESSION_AMOUNT, {6});
    ASSERT_TRUE(c.setSelectedTuning(PORT_HEADPHONE, "korvi_earbuds_e2", false));
    EXPECT_EQ(state(), expected);
    const std::pair<std::function<int()>, Events> saves[] = {
        {[&] { return c.saveAxState(); }, {"false", "0"}},
        {[&] { return c.saveAxProfile(); }, {"false", "3"}},
        {[&] { c.setSfxOn(true), c.setSelectedProfile(1); return c.saveAxProfileSettings(); },
         {"false", "1", expected[2], "6"}},
    };
    for (const auto& [save, changed] : saves) {
        EXPECT_EQ(save(), 0);
        std::copy(changed.begin(), changed.end(), expected.begin());
        EXPECT_EQ(state(), expected);
    }
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
    EXPECT_EQ(state(), (Events{"true", "1", "korvi_earbuds_e2", "6", intVector2String(longer)}));
    EXPECT_EQ(config("usb"), "default_usb");
}

TEST_F(AxContextTest, DefaultTuningDeviceRules) {
    // "" stands for the first offered device, whichever that is: their order carries no meaning.
    const std::pair<Events, std::string> cases[] = {
        {{"alpha", "default_x", "headphone"}, "default_x"}, {{"alpha", "headphone"}, "headphone"},
        {{"xdefault_y", "default_z"}, "default_z"},         {{"default", "headphone"}, "headphone"},
        {{"alpha", "beta"}, ""},                            {{}, "headphone"},
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
        ASSERT_EQ(provider.create(&twin, Provider::kDefaultName) |
                      provider.create(&ghost, Provider::kDefaultName),
                  0);
    });
    LogCapture logs;
    AxContext& c = *mContext;
    struct Step {
        std::string device;
        bool force, result;
        Events expected;
        std::string selected, tuning;
    };
    const Step steps[] = {
        {"soundwave_bt500", false, false, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", false, true, {}, "default_headphone", "headphone_wired"},
        {"default_headphone", true, true, {kTun + "3 tuning=headphone_wired"}, "default_headphone",
         "headphone_wired"},
        {"twin", false, true, {}, "twin", "headphone_wired"},  // same tuning, other device
        {"korvi_earbuds_e2", false, true, {kTun + "3 tuning=earbuds_e2"}, "korvi_earbuds_e2",
         "earbuds_e2"},
        {"ghost", true, false, {}, "korvi_earbuds_e2", "earbuds_e2"},
    };
    for (const Step& s : steps) {
        EXPECT_EQ(c.setSelectedTuning(PORT_HEADPHONE, s.device, s.force), s.result);
        EXPECT_EQ(mObserver.take(), s.expected) << s.device;
        EXPECT_EQ(c.getSelectedTuningDevice(PORT_HEADPHONE) + " " +
                      c.getSelectedTuning(PORT_HEADPHONE)->getName(),
                  s.selected + " " + s.tuning);
    }
    const std::string done = "D Complete setting port[headphone] use tuning device[";
    EXPECT_EQ(logLines(logs, kTag),
              (Events{"E soundwave_bt500 is not a valid tuning device for port headphone, please "
                      "call getAvailableTuningDevice(port) to check first!",
                      done + "default_headphone]", done + "twin]", done + "korvi_earbuds_e2]",
                      "W Failed to set tuning for port[headphone] as device[ghost]"}));
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
    EXPECT_EQ(mObserver.take(),
              (Events{kTun + "0 tuning=internal_speaker", kTun + "2 tuning=external_display",
                      kTun + "3 tuning=headphone_wired", kTun + "4 tuning=headphone_bluetooth",
                      kTun + "5 tuning=headphone_usb"}));
    const std::string reset = "D Reset tuning[";
    EXPECT_EQ(logLines(logs, kTag),
              (Events{reset + "internal_speaker] for port[internal_speaker] and notify observers.",
                      "E Cannot load tuning data for device[default_hdmi] on port[hdmi]",
                      reset + "external_display] for port[miracast] and notify observers.",
                      "W Current selected tuning dev[korvi_earbuds_e2] is not available for "
                      "port[headphone], revert to use dev[default_headphone].",
                      reset + "headphone_wired] for port[headphone] and notify observers.",
                      reset + "headphone_bluetooth] for port[bluetooth] and notify observers.",
                      reset + "headphone_usb] for port[usb] and notify observers."}));
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
    ASSERT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE) +
                  tuning->mValues.count(VIRTUAL_BASS_TYPE),
              0u);
    EXPECT_TRUE(c.getProfileParameter(1, MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE).empty());
    EXPECT_TRUE(c.getSelectedTuningParameter(PORT_USB, VIRTUAL_BASS_TYPE).empty());
    EXPECT_EQ(profile->mValues.count(MI_VIRTUALIZER_BINAURAL_STEERING_ENABLE) +
                  tuning->mValues.count(VIRTUAL_BASS_TYPE),
              2u);
    // Ids up to the preset count are valid; 4 has no row.
    const Events names = {c.getIeqPresetName(-1), c.getIeqPresetName(0), c.getIeqPresetName(3),
                          c.getIeqPresetName(4), c.getIeqPresetName(5)};
    EXPECT_EQ(names, (Events{"", "off", "warm", "", ""}));
    EXPECT_EQ(logLines(logs, kTag), Events(2, "E Invalid IEQ Preset Id!"));
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
        {[&] { c.getProfileParameter(0, HEADPHONE, IEQ_ID); }, "profile endpoint fo 1\n"},
        {[&] { c.isProfileModified(0); }, "profile endpoint fo 1\n"},
        {[&] { c.isProfileSpecificSettingsModified(0); }, "profile endpoint fo 1\n"},
    };
    for (const auto& [call, message] : calls) {
        EXPECT_EXIT(call(), testing::ExitedWithCode(255), "Couldn't find the " + message);
    }
}

// The event handler's thread changes the state while a binder thread reads through the getters;
// observers run on the changing thread and read back. First both hammer the on/off state, then
// the reader goes through the other getters while the writer changes everything else.
TEST_F(AxContextTest, ConcurrencyOfChangesAndGetters) {
    AxContext& c = *mContext;
    mObserver.hook = [](AxContext& ctx, const std::string&) { ctx.getSelectedProfileGeq(); };
    constexpr int kRounds = 100;
    std::atomic<bool> toggled{false}, done{false};
    std::atomic<int> stateReads{0}, reads{0};
    std::thread reader([&] {
        for (; !toggled.load(); stateReads.fetch_add(1)) c.getSfxOn();
        for (; !done.load() || reads.load() < 50; reads.fetch_add(1)) {
            const int selected = c.getSelectedProfile();
            EXPECT_TRUE(selected >= 0 && selected < 5) << selected;
            c.isSelected(selected);
            c.isProfileModified(selected);
            c.isProfileGeqModified(reads.load() % 5);
            EXPECT_EQ(c.getSelectedProfileEndpoint(PORT_HEADPHONE)->getEndpoint(), HEADPHONE);
            c.getSelectedProfileIeq(PORT_INTERNAL_SPEAKER);
        }
    });
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
    EXPECT_EQ(c.getSelectedTuning(PORT_HEADPHONE)->getName(), "studio_hp3");
}

}  // namespace
}  // namespace korvi
