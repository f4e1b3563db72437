// The service as clients meet it, over a temporary device root with the bundled tuning files and
// a real database: answers before initialisation, registration and notifications, request events
// with exactly the persistence each one does, query layouts, integer queries, tuning devices.
// Requests, queries and answers sit in heap blocks of exactly their size (see ServiceFixture.h).
#include <gtest/gtest.h>

#include <cutils/properties.h>
#include <fcntl.h>
#include <unistd.h>

#include "ServiceFixture.h"
#include "support/LogCapture.h"

namespace korvi::test {
namespace {

constexpr const char* kTag = "KorviManagerService";
constexpr uint32_t code(const char (&text)[5]) {
    return uint32_t(text[0]) << 24 | uint32_t(text[1]) << 16 | uint32_t(text[2]) << 8 | text[3];
}
// Clients send 0x43484354 for "TCHC" (its letters read "CHCT"); the number is what counts.
constexpr uint32_t kTchc = 0x43484354;
constexpr Parameter kSteerer = HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE;  // client id 113

TEST_F(ServiceTest, BeforeInitialisationWritesAnswerMinus19AndQueriesTheirOwnValues) {
    property_set("persist.vendor.audio.scenario", "");
    LogCapture logs;
    sp<KorviManagerService> service = new KorviManagerService();
    EXPECT_EQ(4, property_get_int32("persist.vendor.audio.scenario", -1));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag, "onFirstRef "));
    property_set("persist.vendor.audio.scenario", "1");
    sp<KorviManagerService> second = new KorviManagerService();
    EXPECT_EQ(1, property_get_int32("persist.vendor.audio.scenario", -1));

    uint8_t bytes[8] = {0, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_EQ(-19, service->setSfxParam(bytes, sizeof(bytes)));
    EXPECT_EQ(-19, service->getSfxParam(bytes, 4, bytes + 4, 4));
    EXPECT_EQ(1, bytes[4]);
    EXPECT_EQ(-19, service->getAvailableTuningDevicesLen(0));
    EXPECT_EQ(-19, service->setSelectedTuningDevice(0, bytes, 1));
    const std::vector<std::pair<uint32_t, long>> answers = {
            {code("DCCP"), 0}, {code("DEAM"), 0}, {code("DFSA"), -1}, {code("DHSA"), -1},
            {code("DDSA"), -1}, {code("DVLA"), 0}, {code("SFXO"), 0}, {kTchc, 2},
            {code("LCTM"), -1000}, {code("LCTP"), -1}, {code("APMO"), 0}, {code("GDEA"), 0},
            {code("DTFV"), -19}, {code("SPKM"), 0}, {code("SPKP"), 0}, {code("TCHC"), -1},
            {code("ADEV"), 2}};
    for (const auto& [id, answer] : answers) EXPECT_EQ(answer, service->getIntParam(id)) << id;
    EXPECT_GE(service->getIntParam(code("LCTM")), 0);  // ADEV recorded the time of the call

    // Without a service state a registration initialises nothing, but the client is kept.
    AxContextManager::getInstance().release();
    sp<RecordingClient> client = new RecordingClient(5);
    EXPECT_EQ(0, service->registerClient(client, 1, 5));
    EXPECT_FALSE(service->isInitialised());
    EXPECT_EQ(-19, service->setSfxParam(bytes, sizeof(bytes)));
    EXPECT_EQ(1, service->getIntParam(code("DCCP")));
    EXPECT_TRUE(client->waitFor(1));
    service->unregisterClient(client, 1, 5);
}

TEST_F(ServiceTest, ClientsAreNotifiedInUidOrderCountedByTypeAndRemovedOnUnregisterOrDeath) {
    startService();
    Journal journal;
    LogCapture logs;
    sp<RecordingClient> ordinary = addClient(20, 5, &journal);
    sp<RecordingClient> decoder = addClient(10, 3, &journal);
    sp<RecordingClient> game = addClient(30, 7, &journal);
    sp<RecordingClient> secondGame = addClient(40, 7, &journal);
    sp<RecordingClient> sameUid = new RecordingClient(20, &journal);
    EXPECT_EQ(0, registerClient(sameUid, 4, 20));
    EXPECT_EQ(-22, registerClient(nullptr, 5, 50));
    EXPECT_EQ(4, mService->getIntParam(code("LCTP")));  // the last decoder type, even for a kept uid
    sync();

    for (auto [priority, line] : {std::pair{ANDROID_LOG_WARN, "register uid already existing 0x14"},
                                  {ANDROID_LOG_WARN, "registerClient got NULL client"},
                                  {ANDROID_LOG_DEBUG, "Last registered codec type is 4"},
                                  {ANDROID_LOG_DEBUG, "Game SFX registered"},
                                  {ANDROID_LOG_DEBUG, "registerClient(type = 5, uid = 20) entry"},
                                  {ANDROID_LOG_DEBUG, "registerClient(type = 5, uid = 20) exit"}}) {
        EXPECT_TRUE(logs.contains(priority, kTag, line)) << line;
    }
    // The second registration of uid 20 kept the first callback and still refreshed everyone:
    // six registrations from the first of uid 20 on, the probe's last one included.
    EXPECT_TRUE(sameUid->updates().empty());
    EXPECT_EQ(std::vector<Bytes>(6, words({-1, 0})), ordinary->updates());
    EXPECT_EQ(1, mService->getIntParam(code("DCCP")));
    EXPECT_EQ(1, mService->getIntParam(code("GDEA")));

    // A reload tells every client with an empty payload, in uid order, on the caller's thread;
    // a failing client is logged and the others still hear of it. Other ids do nothing.
    mRoot.copyFromData("data/vendor/korvi/wem-extra.xml");
    decoder->failing = true;
    journal.clear();
    mService->setIntParam(code("RLTX"), 0);
    mService->setIntParam(code("RLTF"), 0);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Notify clients that SFX params changed after reload tuning file."));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "Call client failed on 10"));
    EXPECT_EQ((Journal{{10, {}}, {20, {}}, {30, {}}, {40, {}}}), journal);

    // A decoder leaving lowers the count (the probe is one too); of two game clients, the first
    // leaving keeps the flag, the second clears it; an unknown uid is an error.
    logs.clear();
    EXPECT_EQ(0, mService->unregisterClient(decoder, 3, 10));
    EXPECT_EQ(1, mService->getIntParam(code("DCCP")));
    EXPECT_EQ(0, mService->unregisterClient(game, 7, 30));
    EXPECT_EQ(1, mService->getIntParam(code("GDEA")));
    EXPECT_EQ(0, mService->unregisterClient(secondGame, 7, 40));
    EXPECT_EQ(0, mService->getIntParam(code("GDEA")));
    EXPECT_EQ(-22, mService->unregisterClient(game, 7, 30));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "Game SFX registered status: 1"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "Game SFX registered status: 0"));
    EXPECT_TRUE(logs.containsText(kTag, "uid 30 does not exist in Korvi Server"));

    // A client that dies is dropped and hears nothing more; a dying decoder lowers the count.
    ordinary->notifyDeath();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "binderDied : client uid 20"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "removeNotificationClient(uid = 20) exit"));
    mService->setIntParam(code("RLTF"), 0);
    EXPECT_EQ(7u, ordinary->updates().size());  // six refreshes and the first reload
    mRegistered.clear();
    mProbe->notifyDeath();
    EXPECT_EQ(0, mService->getIntParam(code("DCCP")));
}

TEST_F(ServiceTest, OnlyAnOrdinaryClientsDepartureSavesTheWorkingCopy) {
    // (client type, whether it dies rather than leaves, whether the change is then on disk)
    for (auto [type, dies, saved] : {std::tuple{5, false, true}, {2, false, false}, {5, true, false},
                                     {7, false, false}}) {
        SCOPED_TRACE(std::to_string(type) + (dies ? " dies" : " leaves"));
        dropDatabase();
        startService();
        sp<RecordingClient> client = addClient(60, type);
        send(request(1, {1, 113, 0, 9}));
        sync();
        ASSERT_EQ(std::vector<int>{9}, mContext->getProfileParameter(1, SPEAKER, kSteerer));
        if (dies) {
            client->notifyDeath();
        } else {
            mService->unregisterClient(client, type, 60);
        }
        mRegistered.clear();
        stopService();
        EXPECT_EQ(saved, restart()->getProfileParameter(1, SPEAKER, kSteerer) == std::vector<int>{9});
    }
}

TEST_F(ServiceTest, RequestEventsChangeStateAndPersistExactlyWhatEachOneSaves) {
    startService();
    const int profiles = mContext->getNumOfProfiles();
    const bool wasOn = mContext->getSfxOn();
    const std::vector<int> speakerLeveler = mContext->getProfileParameter(1, SPEAKER, VOLUME_LEVELER_ENABLE);
    LogCapture logs;
    Bytes setWithTail = request(1, {1, 113, 0, 100});
    setWithTail.insert(setWithTail.end(), {1, 2, 3});  // a partial word is not a value
    send(request(0, {wasOn ? 0 : 1}));     // on/off: saved at once
    send(setWithTail);                     // clamped to 64 in every endpoint
    send(request(2, {1, 3, 103, 0, !speakerLeveler[0]}));  // headphone port: that endpoint only
    send(request(10, {profiles}));         // past the last profile: nothing
    send(request(10, {2}));                // selected and saved
    send({1, 0, 0, 0, 10, 0, 0, 0});       // event written backwards: ignored
    send(request(13, {1}));                // past the last event: ignored
    send(request(11, {0}));                // reserved: ignored
    send(request(1, {1, 113}));            // header cut: one error line
    send(request(2, {1, 3, 103}));         // likewise
    send({0, 0});                          // no event word: one error line
    sync();

    EXPECT_EQ(!wasOn, mContext->getSfxOn());
    EXPECT_EQ(2, mContext->getSelectedProfile());
    EXPECT_EQ(std::vector<int>{64}, mContext->getProfileParameter(1, OTHER, kSteerer));
    EXPECT_EQ(std::vector<int>{!speakerLeveler[0]},
              mContext->getProfileParameter(1, HEADPHONE, VOLUME_LEVELER_ENABLE));
    EXPECT_EQ(speakerLeveler, mContext->getProfileParameter(1, SPEAKER, VOLUME_LEVELER_ENABLE));
    for (const char* line : {"send para event 0x1", "send para event 0xa000000", "set profile 2",
                             "set profile 5", "send para event 0xd000000"}) {
        EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, line)) << line;
    }
    for (const char* line : {"parseAndSendParam: request of 12 bytes is too short for event 1",
                             "parseAndSendParam: request of 16 bytes is too short for event 2",
                             "parseAndSendParam: request of 2 bytes has no event word"}) {
        EXPECT_EQ(1u, logs.count(ANDROID_LOG_ERROR, kTag, line)) << line;
    }

    // On disk: the on/off state and the selection; the parameters only after event 9.
    stopService();
    AxContext* restarted = restart();
    EXPECT_EQ(!wasOn, restarted->getSfxOn());
    EXPECT_EQ(2, restarted->getSelectedProfile());
    EXPECT_NE(std::vector<int>{64}, restarted->getProfileParameter(1, OTHER, kSteerer));
    newService();
    send(request(1, {1, 113, 0, 100}));
    send(request(9, {}));
    sync();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "save settings"));
    stopService();
    EXPECT_EQ(std::vector<int>{64}, restart()->getProfileParameter(1, OTHER, kSteerer));
}

TEST_F(ServiceTest, QueriesAnswerTheirLayoutsWithinTheClientsBuffer) {
    startService();
    LogCapture logs;
    const int profiles = mContext->getNumOfProfiles();
    auto modified = [&](int profile) { return query(request(11, {profile})); };
    EXPECT_EQ(words({0}), modified(1));
    send(request(1, {2, 113, 0, 40}));
    send(request(2, {2, 0, 116, 0, 7}));  // leveler amount: speaker endpoint
    send(request(2, {2, 3, 116, 0, 3}));  // and headphone endpoint
    send(request(1, {1, 107, 0, 3}));
    sync();
    EXPECT_EQ(words({1}), modified(1));
    send(request(12, {profiles}));  // past the last profile: nothing
    sync();
    EXPECT_EQ(words({1}), modified(1));
    send(request(12, {1}));
    sync();
    EXPECT_EQ(words({0}), modified(1));

    const Bytes untouched(4, 0xee);
    EXPECT_EQ(words({mContext->getSfxOn() ? 1 : 0}), query(request(0, {})));
    EXPECT_EQ(words({40}), query(request(1, {113, 2})));
    Bytes portQuery = request(2, {116});
    portQuery.push_back(0x20);  // profile in the high four bits, port in the low four
    EXPECT_EQ(words({7}), query(portQuery));
    portQuery.back() = 0x23;
    EXPECT_EQ(words({3}), query(portQuery));
    EXPECT_EQ(words({profiles}), query(request(3, {})));
    EXPECT_EQ(words({mContext->getNumOfIeqPresets()}), query(request(4, {})));
    EXPECT_EQ(words({mContext->getSelectedProfile()}), query(request(10, {})));
    EXPECT_EQ(words({0}), query(request(13, {})));  // the speaker tuning is not mono
    for (uint8_t silent : {5, 6, 7, 8, 9, 12, 14}) {
        EXPECT_EQ(untouched, query(request(silent, {}))) << int(silent);
    }
    EXPECT_EQ(untouched, query({0, 1, 0, 0}));
    EXPECT_EQ(untouched, modified(profiles));
    EXPECT_EQ(untouched, modified(-1));

    // The 20 GEQ gains need 80 bytes; a single value four.
    EXPECT_NE(Bytes(80, 0xee), query(request(1, {110, 2}), 80));
    EXPECT_EQ(Bytes(79, 0xee), query(request(1, {110, 2}), 79));
    EXPECT_EQ(Bytes(3, 0xee), query(request(3, {}), 3));
    EXPECT_EQ(2u, logs.count(ANDROID_LOG_ERROR, kTag,
                             "packAndReceiveParam : Invalid output length, not enough buffer!"));
    EXPECT_EQ(untouched, query({0, 0, 0}));
    EXPECT_EQ(untouched, query(request(1, {110})));
    EXPECT_EQ(untouched, query(request(11, {})));
    EXPECT_EQ(3u, logs.count(ANDROID_LOG_ERROR, kTag, "packAndReceiveParam : Invalid input length!"));
}

TEST_F(ServiceTest, IntegerQueriesReadTheActivePortOfTheSelectedProfile) {
    startService();
    const int selected = mContext->getSelectedProfile();
    send(request(2, {selected, 0, 108, 0, 11}));  // dialog-enhancer amount, speaker endpoint
    send(request(2, {selected, 0, 116, 0, 6}));   // leveler amount
    send(request(2, {selected, 3, 108, 0, 2}));   // another port: not the active device's
    sync();
    auto first = [&](Parameter parameter) {
        const std::vector<int>& values = mContext->getSelectedTuningParameter(PORT_INTERNAL_SPEAKER, parameter);
        return values.empty() ? 0 : values[0];
    };
    EXPECT_EQ(11, mService->getIntParam(code("DEAM")));
    EXPECT_EQ(6, mService->getIntParam(code("DVLA")));
    EXPECT_EQ(first(VIRTUALIZER_FRONT_SPEAKER_ANGLE), mService->getIntParam(code("DFSA")));
    EXPECT_EQ(first(VIRTUALIZER_HEIGHT_SPEAKER_ANGLE), mService->getIntParam(code("DHSA")));
    EXPECT_EQ(first(VIRTUALIZER_SURROUND_SPEAKER_ANGLE), mService->getIntParam(code("DDSA")));
    EXPECT_EQ(first(ORIENTATION) == 0 ? 1 : 0, mService->getIntParam(code("SPKP")));
    EXPECT_EQ(0, mService->getIntParam(code("SPKM")));
    EXPECT_EQ(mContext->getSfxOn() ? 1 : 0, mService->getIntParam(code("SFXO")));
    EXPECT_EQ(mContext->getProfile(selected)->isMobility() ? 1 : 0, mService->getIntParam(code("APMO")));
    EXPECT_EQ(2, mService->getIntParam(kTchc));
    EXPECT_EQ(2, mService->getActiveDevice());

    // "DTFV": the factory file's format version as major × 1,000,000 + minor × 1,000 + patch.
    // (major, minor and maintenance attributes; answer; error line)
    for (auto [version, expected, message] :
         {std::tuple<std::string, long, const char*>{R"("3" minor="5" maintenance="0")", 3005000, nullptr},
          {R"("999" minor="5" maintenance="7")", 999005007, nullptr},
          {R"("3" minor="1000" maintenance="0")", -22, "XML version 3.1000.0 is invalid!"},
          {R"("3a" minor="5" maintenance="0")", -22, "XML version 3a.5.0 is not in Major.Minor.Maintain format!"},
          {R"("1.2" minor="5" maintenance="0")", -22,
           "XML version 1.2.5.0 is not in Major.Minor.Maintain format!"}}) {
        SCOPED_TRACE(version);
        stopService();
        dropDatabase();
        startService({{R"(<format_version major="3" minor="5" maintenance="0")", "<format_version major=" + version}});
        LogCapture logs;
        EXPECT_EQ(expected, mService->getIntParam(code("DTFV")));
        EXPECT_TRUE(message == nullptr || logs.contains(ANDROID_LOG_ERROR, kTag, message)) << logs.dump();
    }
}

TEST_F(ServiceTest, TuningDevicesArePackedListedAndSelectedThroughTheHandler) {
    startService();
    LogCapture logs;
    std::vector<std::string> names = mContext->getAvailableTuningDevice(PORT_HEADPHONE);
    ASSERT_GE(names.size(), 2u);
    std::string packed;
    for (const std::string& name : names) packed.append(name.c_str(), name.size() + 1);
    ASSERT_EQ(static_cast<int>(packed.size()), mService->getAvailableTuningDevicesLen(3));
    std::vector<char> exact(packed.size(), 'x');
    EXPECT_EQ(0, mService->getAvailableTuningDevices(3, exact.data(), exact.size()));
    EXPECT_EQ(packed, std::string(exact.begin(), exact.end()));
    std::vector<char> shortBy1(packed.size() - 1, 'x');
    EXPECT_EQ(-22, mService->getAvailableTuningDevices(3, shortBy1.data(), shortBy1.size()));
    EXPECT_EQ(std::string(shortBy1.size(), 'x'), std::string(shortBy1.begin(), shortBy1.end()));
    EXPECT_EQ(-22, mService->getAvailableTuningDevicesLen(6));
    EXPECT_EQ("", mService->getSelectedTuningDevice(-1));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
            "getAvailableTuningDevices not enough buffer for transferring device name lists for port 3"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "getAvailableTuningDevicesLen invalid port number, 6"));

    // The name travels without a terminating zero; an unknown name changes nothing.
    std::string chosen = names.back() == mService->getSelectedTuningDevice(3) ? names.front() : names.back();
    std::string unknown = "no such device";
    EXPECT_EQ(0, mService->setSelectedTuningDevice(3, chosen.data(), chosen.size()));
    sync();
    EXPECT_EQ(chosen, mService->getSelectedTuningDevice(3));
    EXPECT_EQ(0, mService->setSelectedTuningDevice(3, unknown.data(), unknown.size()));
    EXPECT_EQ(-22, mService->setSelectedTuningDevice(7, unknown.data(), unknown.size()));
    sync();
    EXPECT_EQ(chosen, mService->getSelectedTuningDevice(3));
}

TEST_F(ServiceTest, DeniedDumpWritesNothingAndStoreCallsReachTheSharedStore) {
    startService();
    int fds[2];
    ASSERT_EQ(0, pipe(fds));
    mService->dumpPermissionDenial(fds[1]);
    ASSERT_EQ(0, fcntl(fds[0], F_SETFL, O_NONBLOCK));
    char first = 0;
    EXPECT_EQ(-1, read(fds[0], &first, 1));  // nothing was written
    close(fds[0]);
    close(fds[1]);

    android::SfxParamStore::getInstance().clear();
    const int values[2] = {7, -7};
    EXPECT_EQ(0, mService->setParam(0x4, 0x41424344, values, 2));
    EXPECT_EQ(0, mService->commitChange());
    android::KeyedVector<uint32_t, android::SfxParamCache*> params;
    int version = 0;
    EXPECT_EQ(0, mService->getStoredParams(&params, false, &version));
    EXPECT_EQ(1, version);
    ASSERT_EQ(1u, params.size());
    EXPECT_EQ(0x4u, params.keyAt(0));
    android::SfxParamStore::releaseStoredParams(&params);
}

}  // namespace
}  // namespace korvi::test
