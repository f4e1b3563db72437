// The service front's facade and its client-id table over a real start-up (sample tuning file,
// SQLite database in a temporary device root): clamping and the level each id writes, input
// checks, port to endpoint mapping, tuning read-outs, saves checked in the database file, and the
// effect handle checked in the shared parameter store.

#include <map>
#include <set>
#include <tuple>

#include "ServiceFixture.h"
#include "service/AxManager.h"
#include "store/StoreTestSupport.h"
#include "support/LogCapture.h"

namespace korvi::test {
namespace {

using Values = std::vector<int>;
using Edits = std::vector<std::pair<std::string, std::string>>;

class AxManagerTest : public ServiceTest {
protected:
    void TearDown() override {
        mManager.reset();  // its controller leaves the context first
        ServiceTest::TearDown();
    }
    // Starts over the sample factory file with each (from, to) replaced, and inits a manager.
    AxContext* start(const Edits& edits = {}) {
        AxContext* context = ServiceTest::start(edits);
        mManager = std::make_unique<AxManager>();
        EXPECT_EQ(mManager->init(), 0);
        return context;
    }
    // Commits seen by the shared store: one more per non-empty send.
    static int storeVersion() {
        android::KeyedVector<uint32_t, android::SfxParamCache*> params;
        int version = 0;
        android::SfxParamStore::getInstance().getStoredParams(&params, false, &version);
        android::SfxParamStore::releaseStoredParams(&params);
        return version;
    }
    std::string dbValue(const std::string& sql) { return RawDb(mRoot.path(kDatabase)).value(sql); }

    std::unique_ptr<AxManager> mManager;
};

// Every place a client id could write in profile 1.
std::map<std::string, Values> levels(AxContext* context, Parameter parameter) {
    return {{"profile", context->getProfileParameter(1, parameter)},
            {"geq", context->getProfileGeqParameter(1, parameter)},
            {"speaker", context->getProfileParameter(1, SPEAKER, parameter)},
            {"headphone", context->getProfileParameter(1, HEADPHONE, parameter)},
            {"other", context->getProfileParameter(1, OTHER, parameter)}};
}

TEST_F(AxManagerTest, ClientIdsClampAndWriteTheirLevel) {
    AxContext* context = start();
    // Sets id on profile 1 and checks the caller's list, every level and the read-back.
    auto check = [&](int id, Parameter parameter, const std::vector<std::string>& written,
                     Values values, const Values& out) {
        SCOPED_TRACE(id);
        std::map<std::string, Values> expected = levels(context, parameter);
        for (const std::string& level : written) {
            EXPECT_NE(expected[level], out) << level << " holds the value already";
            expected[level] = out;
        }
        EXPECT_TRUE(mManager->setParameter(1, id, values));
        EXPECT_EQ(values, out);
        EXPECT_EQ(levels(context, parameter), expected);
        EXPECT_EQ(mManager->getParameter(1, id), out);
    };
    const std::vector<std::string> endpoints{"speaker", "headphone", "other"};
    const std::tuple<int, Parameter, std::vector<std::string>, int, int> ranges[] = {
            {103, VOLUME_LEVELER_ENABLE, endpoints, 0, 1},
            {105, DIALOG_ENHANCER_ENABLE, endpoints, 0, 1},
            {106, GRAPHIC_EQUALIZER_ENABLE, endpoints, 0, 1},
            {107, IEQ_AMOUNT, endpoints, 0, 16},
            {108, DIALOG_ENHANCER_AMOUNT, endpoints, 0, 16},
            {109, DIALOG_ENHANCER_DUCKING, endpoints, 0, 16},
            {112, VIRTUAL_BASS_ENABLE, {"speaker"}, 0, 1},  // the context keeps it to the speaker
            {113, HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, endpoints, 4, 64},
            {114, REVERB_SUPPRESSION_ENABLE, {"profile"}, 0, 1},
            {115, REVERB_SUPPRESSION_AMOUNT, {"profile"}, 0, 9},
            {116, VOLUME_LEVELER_AMOUNT, endpoints, 0, 10},
    };
    for (const auto& [id, parameter, written, min, max] : ranges) {
        EXPECT_EQ(mManager->getParamLength(id), 1);
        // Both ends, starting with the one the records are not at.
        const bool atMax = levels(context, parameter)[written[0]] == Values{max};
        check(id, parameter, written, {atMax ? min - 5 : max + 5}, {atMax ? min : max});
        check(id, parameter, written, {atMax ? max + 5 : min - 5}, {atMax ? max : min});
    }
    for (int id : {101, 102, 104, 111}) EXPECT_EQ(mManager->getParamLength(id), 1);
    check(101, VIRTUALIZER_ENABLE, {"headphone"}, {5}, {5});  // virtualizer ids do not clamp
    check(102, VIRTUALIZER_ENABLE, {"speaker"}, {-3}, {-3});
    check(104, IEQ_ID, endpoints, {3}, {3});
    Values preset{9};  // the IEQ selection is clamped to the preset count, 4 in the sample
    mManager->setParameter(2, 104, preset);
    EXPECT_EQ(preset, Values{4});
    EXPECT_EQ(mManager->getParamLength(110), 20);
    Values gains(20, 100), clamped(20, 100);
    gains[0] = -577, clamped[0] = -576, gains[1] = 600, clamped[1] = 576;
    check(110, GEQ_GAIN, {"geq"}, gains, clamped);

    // The bass-enhancer switch drags virtual bass along, not the other way round.
    for (auto [id, value, bass, virtualBass] :
         {std::tuple{111, 3, 1, 1}, {111, -3, 0, 0}, {112, 1, 0, 1}}) {
        Values values{value};
        EXPECT_TRUE(mManager->setParameter(0, id, values));
        EXPECT_EQ(mManager->getParameter(0, 111), Values{bass});
        EXPECT_EQ(mManager->getParameter(0, 112), Values{virtualBass});
        EXPECT_EQ(mManager->getProfilePortParameter(0, PORT_INTERNAL_SPEAKER, 112),
                  Values{virtualBass});
    }
}

TEST_F(AxManagerTest, InvalidInputAndUnknownIds) {
    AxContext* context = start();
    const std::map<std::string, Values> before = levels(context, VOLUME_LEVELER_ENABLE);
    const int profiles = context->getNumOfProfiles();
    const std::tuple<int, int, Values> refused[] = {
            {1, 99, {0}}, {-1, 103, {0}}, {profiles, 103, {0}}, {1, 103, {}}};
    for (auto [profile, id, values] : refused) {
        SCOPED_TRACE(std::to_string(profile) + "/" + std::to_string(id));
        EXPECT_FALSE(mManager->setParameter(profile, id, values));
        EXPECT_FALSE(mManager->setProfilePortParameter(profile, 0, id, values));
        if (!values.empty()) {
            EXPECT_TRUE(mManager->getParameter(profile, id).empty());
            EXPECT_TRUE(mManager->getProfilePortParameter(profile, 0, id).empty());
        }
    }
    EXPECT_EQ(levels(context, VOLUME_LEVELER_ENABLE), before);

    LogCapture logs;
    auto only = [&](const char* tag, const std::string& message) {
        const std::vector<LogLine> lines = logs.lines();
        logs.clear();
        return lines.size() == 1 && lines[0].priority == ANDROID_LOG_ERROR && lines[0].tag == tag &&
               lines[0].message == message;
    };
    EXPECT_EQ(mManager->getParamLength(99), 0);
    EXPECT_TRUE(only("AxManager", "Invalid paramId!"));
    for (int id : {100, 117}) {
        const std::string message = "param id " + std::to_string(id) + " not supported";
        EXPECT_EQ(mManager->getParamLength(id), 1);
        EXPECT_TRUE(only("ParameterAdapter", message));
        EXPECT_TRUE(mManager->getParameter(1, id).empty());
        EXPECT_TRUE(only("ParameterAdapter", message));
        EXPECT_TRUE(mManager->getProfilePortParameter(1, 0, id).empty());
        EXPECT_TRUE(only("ParameterAdapter", message));
    }
    // Setting id 100 is reported; an id past the table is dropped without a word.
    Values one{1};
    EXPECT_TRUE(mManager->setParameter(1, 100, one));
    EXPECT_TRUE(only("ParameterAdapter", "param id 100 not supported"));
    EXPECT_TRUE(mManager->setProfilePortParameter(1, 0, 100, one));
    EXPECT_TRUE(only("ParameterAdapter", "param id 100 not supported"));
    EXPECT_TRUE(mManager->setParameter(1, 117, one));
    EXPECT_TRUE(mManager->setProfilePortParameter(1, 0, 117, one));
    EXPECT_TRUE(logs.lines().empty());
}

TEST_F(AxManagerTest, PortsSelectTheirEndpoint) {
    AxContext* context = start();
    const char* endpointOf[] = {"speaker",   "other",     "other", "headphone",
                                "headphone", "headphone", "other"};
    for (int port = 0; port <= 6; ++port) {
        SCOPED_TRACE(port);
        std::map<std::string, Values> expected = levels(context, IEQ_AMOUNT);
        expected[endpointOf[port]] = {port + 1};
        Values amount{port + 1};
        EXPECT_TRUE(mManager->setProfilePortParameter(1, port, 107, amount));
        EXPECT_EQ(levels(context, IEQ_AMOUNT), expected);
        EXPECT_EQ(mManager->getProfilePortParameter(1, port, 107), amount);
    }
    Values loud{40};
    EXPECT_TRUE(mManager->setProfilePortParameter(1, PORT_USB, 107, loud));
    EXPECT_EQ(loud, Values{16});
    EXPECT_EQ(mManager->getProfilePortParameter(1, PORT_USB, 107), Values{16});
    // Profile-level, GEQ and virtualizer ids have no per-endpoint values.
    for (auto [id, parameter] :
         {std::pair{114, REVERB_SUPPRESSION_ENABLE}, {110, GEQ_GAIN}, {101, VIRTUALIZER_ENABLE}}) {
        const std::map<std::string, Values> unchanged = levels(context, parameter);
        Values values(20, 1);
        EXPECT_TRUE(mManager->setProfilePortParameter(1, PORT_HEADPHONE, id, values));
        EXPECT_EQ(levels(context, parameter), unchanged);
        EXPECT_TRUE(mManager->getProfilePortParameter(1, PORT_HEADPHONE, id).empty());
    }
    LogCapture logs;
    Values one{1};
    EXPECT_TRUE(mManager->getProfilePortParameter(1, 7, 107).empty());
    EXPECT_FALSE(mManager->setProfilePortParameter(1, -1, 107, one));
    EXPECT_EQ(logs.linesWithTag("AxManager").size(), 2u);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "AxManager", "Invalid Port!"));
}

TEST_F(AxManagerTest, EffectHandleAndSuspension) {
    ASSERT_EQ(restart(), nullptr);  // no factory tuning file: no context, so nothing is created
    LogCapture logs;
    EXPECT_EQ(AxManager().init(), -19);
    EXPECT_TRUE(logs.linesWithTag("AxManager").empty());
    EXPECT_EQ(storeVersion(), 0);
    AxContext* context = start();
    ASSERT_EQ(logs.linesWithTag("AxManager").size(), 1u);  // session 0 is not reported
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, "AxManager", "Created SFX effect version [ 0 ]"));
    EXPECT_EQ(storeVersion(), 1);  // registering loaded the controller: one full send
    EXPECT_TRUE(mManager->recreateAxEffect());
    EXPECT_EQ(storeVersion(), 2);  // the new handle got a full send
    mManager->createSfxEffect(-5);
    EXPECT_EQ(storeVersion(), 3);  // and so does a handle made for a new session
    logs.clear();
    EXPECT_TRUE(mManager->recreateAxEffect());  // the negative session is kept and reported again
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "AxManager",
                              "SFX effect with specified session Id (-5) is less than zero"));

    mManager->setAxOn(true);
    mManager->setAxSuspended(true);
    logs.clear();
    EXPECT_FALSE(mManager->getAxOn());
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, "AxManager", "AX effect is now suspended"));
    EXPECT_TRUE(mManager->getAxSuspended());
    EXPECT_TRUE(context->getSfxOn());
    mManager->setAxSuspended(false);
    EXPECT_TRUE(mManager->getAxOn());
    EXPECT_FALSE(mManager->isMonoInternalSpeaker());  // the sample speaker; mono is checked below
    EXPECT_TRUE(mManager->isSpeakerPortraitMode());

    // A manager that is gone leaves no controller behind in the context.
    mManager.reset();
    const int version = storeVersion();
    context->setProfileParameter(0, SPEAKER, IEQ_AMOUNT, {3});
    EXPECT_EQ(storeVersion(), version);
}

TEST_F(AxManagerTest, ProfilesTuningDevicesAndReadOuts) {
    start({{R"(name="internal_speaker" endpoint_type="speaker" mono_device="false" orientation="0")",
            R"(name="internal_speaker" endpoint_type="speaker" mono_device="true" orientation="1")"}});
    LogCapture logs;
    EXPECT_EQ(mManager->getProfileName(0), "Dynamic");
    EXPECT_EQ(mManager->getProfileNameLen(4), 5);
    for (int id : {-1, 5}) {
        EXPECT_EQ(mManager->getProfileName(id), "");
        EXPECT_FALSE(mManager->setSelectedProfile(id) || mManager->resetProfile(id) ||
                     mManager->isProfileModified(id));
    }
    EXPECT_EQ(logs.linesWithTag("AxManager").size(), 2u);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "AxManager", "Invalid Profile Id!"));
    Values seven{7}, three{3};
    mManager->setProfilePortParameter(0, PORT_INTERNAL_SPEAKER, 116, seven);
    mManager->setProfilePortParameter(0, PORT_HEADPHONE, 116, three);
    EXPECT_EQ(mManager->getVolumeLevelerAount(PORT_INTERNAL_SPEAKER), 7);
    EXPECT_EQ(mManager->getVolumeLevelerAount(PORT_USB), 3);
    EXPECT_TRUE(mManager->isMobilityProfileSelected());
    EXPECT_TRUE(mManager->setSelectedProfile(4));
    EXPECT_EQ(mManager->getSelectedProfile(), 4);
    EXPECT_FALSE(mManager->isMobilityProfileSelected());
    Values amount{2};
    mManager->setParameter(3, 115, amount);
    EXPECT_TRUE(mManager->isProfileModified(3));
    EXPECT_TRUE(mManager->resetProfile(3));
    EXPECT_FALSE(mManager->isProfileModified(3));

    const std::vector<std::string> names = mManager->getAvailableTuningDevices(PORT_HEADPHONE);
    EXPECT_EQ(
            std::set<std::string>(names.begin(), names.end()),
            (std::set<std::string>{"default_headphone", "korvi_earbuds_e2", "studio_monitor_hp3"}));
    EXPECT_EQ(mManager->getAvailableTuningDevicesLen(PORT_HEADPHONE), 18 + 17 + 19);
    EXPECT_FALSE(mManager->setSelectedTuning(PORT_HEADPHONE, "soundwave_bt500"));
    EXPECT_EQ(mManager->getAvailableTuningDevicesLen(static_cast<Port>(7)), 0);
    EXPECT_FALSE(mManager->setSelectedTuning(static_cast<Port>(-1), "default_headphone"));
    EXPECT_TRUE(mManager->setSelectedTuning(PORT_HEADPHONE, "studio_monitor_hp3"));
    EXPECT_EQ(mManager->getSelectedTuningName(PORT_HEADPHONE), "studio_monitor_hp3");

    EXPECT_EQ((Values{mManager->getTuningParamDSA(PORT_INTERNAL_SPEAKER),
                      mManager->getTuningParamDHSA(PORT_INTERNAL_SPEAKER),
                      mManager->getTuningParamDFSA(PORT_INTERNAL_SPEAKER),
                      mManager->getTuningParamDSA(PORT_HEADPHONE)}),
              (Values{30, 20, 10, 15}));
    EXPECT_TRUE(mManager->isMonoInternalSpeaker());
    EXPECT_FALSE(mManager->isSpeakerPortraitMode());
}

TEST_F(AxManagerTest, SavesWriteTheirAspectAndReloads) {
    start();
    const std::string leveler =
            "SELECT volume_leveler_amount FROM profile_endpoints WHERE "
            "custom_name='custom' AND profile_id=1 AND endpoint='speaker'";
    const std::string selected = "SELECT value FROM configuration WHERE key='Profile'";
    const std::string before = dbValue(leveler);
    Values nine{9};
    mManager->setParameter(1, 116, nine);
    mManager->setSelectedProfile(2);
    mManager->setAxOn(true);
    EXPECT_EQ(mManager->saveAxProfile(), 0);
    EXPECT_EQ(mManager->saveAxState(), 0);
    EXPECT_EQ(dbValue(selected) + dbValue("SELECT value FROM configuration WHERE key='State'"),
              "2true");
    EXPECT_EQ(dbValue(leveler), before);
    EXPECT_EQ(mManager->saveAxProfileSettings(), 0);
    EXPECT_EQ(dbValue(leveler), "9");
    Values five{5};
    mManager->setParameter(1, 116, five);
    mManager->setSelectedProfile(3);
    EXPECT_EQ(mManager->saveAxStateAndSettings(), 0);
    EXPECT_EQ(dbValue(leveler) + dbValue(selected), "53");
    Values unsaved{1};
    mManager->setParameter(1, 116, unsaved);
    mManager->setSelectedProfile(0);
    mManager->restoreCurrentProfiles();
    EXPECT_EQ(mManager->getParameter(1, 116), Values{5});
    EXPECT_EQ(mManager->getSelectedProfile(), 3);

    LogCapture logs;
    EXPECT_EQ(AxManager::reloadTuningXml(), -2);  // no OEM file yet
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, "AxManager",
                              "Tell AxContextManager to reload tuning XML."));
    mRoot.copyFromData("data/vendor/korvi/wem-extra.xml");
    EXPECT_EQ(AxManager::reloadTuningXml(), 0);
    const std::vector<std::string> names = mManager->getAvailableTuningDevices(PORT_BLUETOOTH);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
              (std::set<std::string>{"default_bluetooth", "soundwave_bt500", "oem_neckband_n7"}));
    EXPECT_EQ(AxManager::getDefaultXmlFormatVersion(), "3.5.0");
}

}  // namespace
}  // namespace korvi::test
