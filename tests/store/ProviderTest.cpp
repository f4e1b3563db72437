// The provider over a real database file: default/custom/OEM rows, loads, saves and resets,
// configuration keys, the profile and IEQ counts, and the device-tuning and tuning caches.
#include <gtest/gtest.h>

#include <android/log.h>

#include <filesystem>
#include <memory>

#include "store/DatabaseHelper.h"
#include "store/Provider.h"
#include "store/StoreTestSupport.h"
#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::RawDb;
using test::Row;
using test::TempDeviceRoot;

constexpr const char* kTag = "KrvDatabaseProvider";

std::unique_ptr<Provider> openProvider() {
    return std::make_unique<Provider>(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
}

// Two profiles with three endpoints and a GEQ preset each, three IEQ presets, two tunings and
// three device tunings, written the way start-up writes the factory file.
void populate(Provider& provider) {
    ASSERT_EQ(provider.beginTransaction(), 0);
    ASSERT_EQ(provider.initDatabase(), 0);
    const char* ieqNames[] = {"off", "balanced", "warm"};
    for (int i = 0; i < 3; ++i) {
        IeqPreset ieq(i, ieqNames[i]);
        ieq.set(IEQ_TARGET, {i, i * 10});
        ASSERT_EQ(provider.create(&ieq), 0);
    }
    for (int id = 0; id < 2; ++id) {
        GeqPreset geq(id);
        geq.set(GEQ_GAIN, {id, 1, 2});
        ASSERT_EQ(provider.create(&geq), 0);
    }
    for (int id = 0; id < 2; ++id) {
        Profile profile(id, id == 0 ? "Dynamic" : "Movie", id == 1);
        profile.set(VOLUME_MODELER_ENABLE, {id});
        ASSERT_EQ(provider.create(&profile), 0);
    }
    for (int id = 0; id < 2; ++id) {
        for (Endpoint e : {SPEAKER, HEADPHONE, OTHER}) {
            ProfileEndpoint endpoint(id, e, 1);
            endpoint.set(DIALOG_ENHANCER_AMOUNT, {id * 10 + e});
            ASSERT_EQ(provider.create(&endpoint), 0);
        }
    }
    Tuning speaker("spk", SPEAKER, true), headphone("hp", HEADPHONE, false);
    speaker.set(ORIENTATION, {1});
    headphone.set(ORIENTATION, {2});
    ASSERT_EQ(provider.create(&speaker, Provider::kDefaultName), 0);
    ASSERT_EQ(provider.create(&headphone, Provider::kDefaultName), 0);
    DeviceTuning d1("default_internal_speaker", "internal_speaker", "spk");
    DeviceTuning d2("default_headphone", "headphone", "hp");
    DeviceTuning d3("broken", "headphone", "no_such_tuning");
    for (DeviceTuning* d : {&d1, &d2, &d3}) ASSERT_EQ(provider.create(d, Provider::kDefaultName), 0);
    ASSERT_EQ(provider.setDefaultXmlSignature("0123abcd"), 0);
    ASSERT_EQ(provider.setDefaultXmlFormatVersion("3.3.0"), 0);
    ASSERT_EQ(provider.commitTransaction(), 0);
}

struct ProviderTest : ::testing::Test {
    void SetUp() override {
        provider = openProvider();
        ASSERT_NO_FATAL_FAILURE(populate(*provider));
        raw = std::make_unique<RawDb>(provider->getDatabaseHelper()->getPath());
    }
    // A row without its _id and custom_name, for comparing a custom row with its default row.
    Row contentOf(const std::string& table, const std::string& where, const std::string& kind) {
        std::vector<Row> rows = raw->rows("SELECT * FROM " + table + " WHERE " + where +
                                          " AND custom_name='" + kind + "'");
        EXPECT_EQ(rows.size(), 1u) << table << " " << where << " " << kind;
        return rows.empty() ? Row() : Row(rows[0].begin() + 2, rows[0].end());
    }

    TempDeviceRoot root;
    std::unique_ptr<Provider> provider;
    std::unique_ptr<RawDb> raw;
};

TEST_F(ProviderTest, CreateWritesDefaultAndCustomRowsWithRowCountIds) {
    EXPECT_EQ(raw->rows("SELECT _id, custom_name, profile_id, name FROM profiles"),
              (std::vector<Row>{{"1", "default", "0", "Dynamic"}, {"2", "custom", "0", "Dynamic"},
                                {"3", "default", "1", "Movie"}, {"4", "custom", "1", "Movie"}}));
    EXPECT_EQ(raw->rows("SELECT _id, custom_name, endpoint FROM profile_endpoints WHERE profile_id='1'"),
              (std::vector<Row>{{"7", "default", "speaker"}, {"8", "custom", "speaker"},
                                {"9", "default", "headphone"}, {"10", "custom", "headphone"},
                                {"11", "default", "other"}, {"12", "custom", "other"}}));
    EXPECT_EQ(raw->rows("SELECT _id, custom_name, name FROM ieq_presets"),
              (std::vector<Row>{{"1", "default", "off"}, {"2", "default", "balanced"}, {"3", "default", "warm"}}));
    EXPECT_EQ(raw->count("geq_presets"), 4);
    EXPECT_EQ(raw->rows("SELECT _id, custom_name, name FROM tunings"),
              (std::vector<Row>{{"1", "default", "spk"}, {"2", "default", "hp"}}));

    Profile profile(2, "Voice", false);
    ASSERT_EQ(provider->create(&profile), 0);
    EXPECT_EQ(profile.getId(), 6);  // the custom row's id
    EXPECT_FALSE(profile.isDirty());
    Tuning oem("oem_tuning", OTHER, false);
    ASSERT_EQ(provider->create(&oem, Provider::kOemName), 0);
    EXPECT_EQ(raw->rows("SELECT _id, custom_name FROM tunings WHERE name='oem_tuning'"),
              (std::vector<Row>{{"3", "oem"}}));
}

TEST_F(ProviderTest, InitCountsProfilesAndIeqPresetsOfTheDefaultRows) {
    LogCapture logs;
    ASSERT_TRUE(provider->init());
    EXPECT_EQ(provider->getNumOfProfiles(), 2);
    EXPECT_EQ(provider->getNumOfIeqPresets(), 3);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "init(): Total 2 profiles found"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "init(): Total 3 ieq presets found"));

    // Custom or OEM rows do not count.
    raw->exec("DELETE FROM profiles WHERE custom_name='default'");
    raw->exec("DELETE FROM ieq_presets");
    logs.clear();
    EXPECT_FALSE(provider->init());
    EXPECT_EQ(provider->getNumOfProfiles(), 0);
    EXPECT_EQ(provider->getNumOfIeqPresets(), 0);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "init(): No profiles found from the database"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "init(): No ieq presets found from the database"));
    EXPECT_EQ(provider->loadProfile(0), nullptr);
}

TEST_F(ProviderTest, SaveChangesOnlyTheCustomRowAndResetThenSaveRestoresIt) {
    ASSERT_TRUE(provider->init());
    Profile* profile = provider->loadProfile(1);
    ASSERT_NE(profile, nullptr);
    EXPECT_EQ(provider->loadProfile(1), profile);  // one cached record per profile
    const std::string stored = profile->toString();
    EXPECT_EQ(stored.substr(0, stored.find("custom_drc")), "id=4\nprofileId=1\nname=Movie\nmobility=true\nselectedGeqPreset=1\n");
    EXPECT_FALSE(profile->isDirty());
    ASSERT_TRUE(profile->checkAndUpdate(VOLUME_MODELER_ENABLE, {7}));
    profile->setSelectedGeqPreset(0);
    profile->setName("Film");
    profile->setMobility(false);
    ASSERT_EQ(provider->save(profile), 0);
    EXPECT_FALSE(profile->isDirty());
    EXPECT_EQ(raw->rows("SELECT _id, custom_name, name, is_mobility, selected_geq_preset_id, volume_modeler_enable FROM profiles WHERE profile_id='1' ORDER BY _id"),
              (std::vector<Row>{{"3", "default", "Movie", "1", "1", "1"}, {"4", "custom", "Film", "0", "0", "7"}}));
    EXPECT_EQ(provider->loadDefaultProfile(1)->mValues.at(VOLUME_MODELER_ENABLE), std::vector<int>{1});

    EXPECT_EQ(provider->reset(profile), profile);
    EXPECT_EQ(profile->toString(), stored);  // the default row's values, the custom row's id
    EXPECT_TRUE(profile->isDirty());
    EXPECT_EQ(raw->value("SELECT volume_modeler_enable FROM profiles WHERE _id=4"), "7");  // reset alone writes nothing
    ASSERT_EQ(provider->save(profile), 0);
    EXPECT_EQ(contentOf("profiles", "profile_id='1'", "custom"), contentOf("profiles", "profile_id='1'", "default"));

    // The same for an endpoint and a GEQ preset.
    ProfileEndpoint* headphone = provider->loadProfileEndpoint(1, HEADPHONE);
    ASSERT_NE(headphone, nullptr);
    EXPECT_EQ(headphone->mValues.at(DIALOG_ENHANCER_AMOUNT), std::vector<int>{11});
    headphone->setSelectedIeqPreset(2);
    headphone->set(DIALOG_ENHANCER_AMOUNT, {99});
    ASSERT_EQ(provider->save(headphone), 0);
    EXPECT_EQ(raw->rows("SELECT _id, selected_ieq_preset_id, dialog_enhancer_amount FROM profile_endpoints WHERE profile_id='1' AND endpoint='headphone' ORDER BY _id"),
              (std::vector<Row>{{"9", "1", "11"}, {"10", "2", "99"}}));
    provider->reset(headphone);
    EXPECT_EQ(headphone->getSelectedIeqPreset(), 1);
    EXPECT_EQ(headphone->mValues.at(DIALOG_ENHANCER_AMOUNT), std::vector<int>{11});

    GeqPreset* geq = provider->loadGeqPreset(0);
    ASSERT_NE(geq, nullptr);
    EXPECT_EQ(geq->getId(), 2);
    geq->set(GEQ_GAIN, {-5});
    ASSERT_EQ(provider->save(geq), 0);
    EXPECT_EQ(raw->value("SELECT geq_gain FROM geq_presets WHERE _id=2 AND custom_name='custom'"), "-5");
    EXPECT_EQ(provider->loadDefaultGeqPreset(0)->mValues.at(GEQ_GAIN), (std::vector<int>{0, 1, 2}));
    provider->reset(geq);
    ASSERT_EQ(provider->save(geq), 0);
    EXPECT_EQ(contentOf("geq_presets", "profile_id='0'", "custom"), contentOf("geq_presets", "profile_id='0'", "default"));
}

TEST_F(ProviderTest, EndpointSetsHoldTheStoredEndpointsOnlyAndIeqPresetsAreCached) {
    ASSERT_TRUE(provider->init());
    std::set<ProfileEndpoint*> endpoints = provider->loadProfileEndpoints(0);
    ASSERT_EQ(endpoints.size(), 3u);
    std::set<int> kinds;
    for (ProfileEndpoint* e : endpoints) {
        kinds.insert(e->getEndpoint());
        EXPECT_EQ(e->getProfileId(), 0);
        EXPECT_EQ(e->mValues.at(DIALOG_ENHANCER_AMOUNT), std::vector<int>{e->getEndpoint()});
    }
    EXPECT_EQ(kinds, (std::set<int>{SPEAKER, HEADPHONE, OTHER}));
    std::set<ProfileEndpoint*> defaults = provider->loadDefaultProfileEndpoints(0);
    ASSERT_EQ(defaults.size(), 3u);
    for (ProfileEndpoint* e : defaults) EXPECT_EQ(endpoints.count(e), 0u);  // distinct records

    raw->exec("DELETE FROM profile_endpoints WHERE profile_id='1' AND endpoint='other' AND custom_name='custom'");
    EXPECT_EQ(provider->loadProfileEndpoints(1).size(), 2u);
    EXPECT_EQ(provider->loadProfileEndpoint(1, OTHER), nullptr);
    EXPECT_EQ(provider->loadDefaultProfileEndpoints(1).size(), 3u);
    EXPECT_TRUE(provider->loadProfileEndpoints(2).empty());

    // IEQ presets come from the default rows and are cached.
    IeqPreset* warm = provider->loadIeqPreset(2);
    ASSERT_NE(warm, nullptr);
    EXPECT_EQ(warm->getName(), "warm");
    EXPECT_EQ(warm->getPresetId(), 2);
    EXPECT_EQ(warm->mValues.at(IEQ_ID), std::vector<int>{2});
    EXPECT_EQ(warm->mValues.at(IEQ_TARGET), (std::vector<int>{2, 20}));
    EXPECT_EQ(provider->loadIeqPreset(2), warm);
    EXPECT_EQ(provider->loadIeqPreset(0)->getName(), "off");
    EXPECT_EQ(provider->loadIeqPreset(7), nullptr);
}

// A profile's endpoints come from one read of its rows; each must get the row a query of that
// endpoint alone finds (first in table order, of that profile and kind), a missing one its own
// "Endpoint doesn't exist!", and a table rebuilt by another connection is read anew.
TEST_F(ProviderTest, EndpointLoadsReadEachEndpointsFirstRowOfItsProfileAndKind) {
    ASSERT_TRUE(provider->init());
    ASSERT_EQ(provider->loadProfileEndpoints(0).size(), 3u);
    ASSERT_EQ(provider->loadProfileEndpoints(1).size(), 3u);
    DatabaseHelper* helper = provider->getDatabaseHelper();
    // A later duplicate of profile 0's speaker row, a row of profile "00" and an OEM headphone row.
    raw->exec("INSERT INTO profile_endpoints (_id, custom_name, profile_id, endpoint, "
              "selected_ieq_preset_id, dialog_enhancer_amount) VALUES "
              "(90, 'custom', '0', 'speaker', '2', '77'), (91, 'custom', '00', 'other', '2', '78'), "
              "(92, 'oem', '0', 'headphone', '2', '79')");
    raw->exec("UPDATE profile_endpoints SET dialog_enhancer_amount='5, 6' WHERE _id=6");
    raw->exec("DELETE FROM profile_endpoints WHERE _id=4");  // profile 0's custom headphone
    LogCapture logs;
    std::set<ProfileEndpoint*> endpoints = provider->loadProfileEndpoints(0);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "DatabaseHelper", "Endpoint doesn't exist!"), 1u);
    ASSERT_EQ(endpoints.size(), 3u);  // the headphone record stored at the earlier load stays
    for (Endpoint e : {SPEAKER, OTHER}) {
        ProfileEndpoint alone(0, e, 0);
        ASSERT_EQ(helper->queryEndpointValue("0", endpointName(e), Provider::kCustomName, &alone), 0);
        ProfileEndpoint* loaded = provider->loadProfileEndpoint(0, e);
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(endpoints.count(loaded), 1u);
        EXPECT_EQ(loaded->toString(), alone.toString()) << endpointName(e);
        EXPECT_FALSE(loaded->isDirty());
    }
    EXPECT_EQ(provider->loadProfileEndpoint(0, SPEAKER)->mValues.at(DIALOG_ENHANCER_AMOUNT), std::vector<int>{0});
    EXPECT_EQ(provider->loadProfileEndpoint(0, OTHER)->mValues.at(DIALOG_ENHANCER_AMOUNT), (std::vector<int>{5, 6}));

    // Rebuilt with one row: the next load reads the new table; without it each endpoint fails.
    raw->exec("DROP TABLE profile_endpoints");
    raw->exec("CREATE TABLE profile_endpoints" + helper->buildColumnString(TABLE_PROFILE_ENDPOINTS));
    raw->exec("INSERT INTO profile_endpoints (_id, custom_name, profile_id, endpoint, "
              "selected_ieq_preset_id) VALUES (3, 'default', '1', 'other', '4')");
    logs.clear();
    bool sawOther = false;
    for (ProfileEndpoint* e : provider->loadDefaultProfileEndpoints(1)) {
        if (e->getEndpoint() != OTHER) continue;
        sawOther = true;
        EXPECT_EQ(std::to_string(e->getId()) + "/" + std::to_string(e->getSelectedIeqPreset()), "3/4");
    }
    EXPECT_TRUE(sawOther);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "DatabaseHelper", "Endpoint doesn't exist!"), 2u);
    raw->exec("DROP TABLE profile_endpoints");
    logs.clear();
    EXPECT_EQ(provider->loadProfileEndpoints(1).size(), 3u);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "DatabaseHelper", "Endpoint doesn't exist!"), 3u);
}

TEST_F(ProviderTest, ConfigurationKeys) {
    EXPECT_EQ(raw->rows("SELECT * FROM configuration"),
              (std::vector<Row>{{"1", "signature", "0123abcd"}, {"2", "Profile", "0"},
                                {"3", "State", "true"}, {"4", "version", "3.3.0"}}));
    EXPECT_EQ(provider->getDefaultXmlSignature() + "|" + provider->getDefaultXmlFormatVersion(), "0123abcd|3.3.0");
    EXPECT_EQ(provider->getSelectedProfile(), 0);
    EXPECT_TRUE(provider->isSfxOn());
    ASSERT_EQ(provider->setSelectedProfile(1) | provider->setSfxOn(false) |
                      provider->setDeviceTuning("headphone", "default_headphone"), 0);
    EXPECT_EQ(provider->getSelectedProfile(), 1);
    EXPECT_FALSE(provider->isSfxOn());
    EXPECT_EQ(provider->getDeviceTuning("headphone"), "default_headphone");
    ASSERT_EQ(provider->updateDeviceTuning("headphone", "broken"), 0);
    EXPECT_EQ(provider->getDeviceTuning("headphone"), "broken");
    EXPECT_EQ(raw->rows("SELECT * FROM configuration"),
              (std::vector<Row>{{"1", "signature", "0123abcd"}, {"2", "Profile", "1"}, {"3", "State", "false"},
                                {"4", "version", "3.3.0"}, {"5", "headphone", "broken"}}));

    // A database without the keys, and the remembered on/off state of a rebuild.
    ASSERT_EQ(provider->clear(), 0);
    ASSERT_EQ(provider->initDatabase(), 0);
    EXPECT_EQ(provider->getSelectedProfile(), -1);
    Provider::kSfxStateValue = false;
    ASSERT_EQ(provider->setDefaultXmlSignature("ffff"), 0);
    Provider::kSfxStateValue = true;
    EXPECT_EQ(raw->rows("SELECT * FROM configuration"),
              (std::vector<Row>{{"1", "signature", "ffff"}, {"2", "Profile", "0"}, {"3", "State", "false"}}));
}

TEST_F(ProviderTest, DeviceTuningsAndTuningsAreReadOnceAndReloadedOnRequest) {
    ASSERT_TRUE(provider->init());
    LogCapture logs;
    std::set<DeviceTuning*> headphone = provider->loadDeviceTuningsForPort(PORT_HEADPHONE);
    ASSERT_EQ(headphone.size(), 2u);
    EXPECT_EQ(provider->loadDeviceTuningsForPort(PORT_INTERNAL_SPEAKER).size(), 1u);
    EXPECT_TRUE(provider->loadDeviceTuningsForPort(PORT_USB).empty());
    EXPECT_TRUE(provider->loadDeviceTuningsForPort(static_cast<Port>(6)).empty());  // "other"

    EXPECT_EQ(provider->loadTuningForDevice("nope"), nullptr);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_WARN, kTag, "Cannot find device with name nope in mDeviceTunings"));
    EXPECT_EQ(provider->loadTuningForDevice("broken"), nullptr);  // its tuning has no row

    Tuning* tuning = provider->loadTuningForDevice("default_headphone");
    ASSERT_NE(tuning, nullptr);
    EXPECT_EQ(tuning->getName() + std::to_string(tuning->getEndpoint()), "hp" + std::to_string(HEADPHONE));
    EXPECT_EQ(tuning->mValues.at(ORIENTATION), std::vector<int>{2});
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Load tuning[hp] from cache device[default_headphone], and put it in cached mTunings"));

    // Change the rows behind the provider's back: the caches answer without reading them.
    raw->exec("UPDATE tunings SET orientation='5' WHERE name='hp'");
    raw->exec("INSERT INTO device_tunings VALUES(9, 'oem', 'oem_hp', 'headphone', 'spk')");
    EXPECT_EQ(provider->loadDeviceTuningsForPort(PORT_HEADPHONE), headphone);
    EXPECT_EQ(provider->loadTuningForDevice("default_headphone"), tuning);
    EXPECT_EQ(tuning->mValues.at(ORIENTATION), std::vector<int>{2});
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "Found existing tuning[hp] from cache device[default_headphone]"));
    EXPECT_EQ(provider->loadTuningForDevice("oem_hp"), nullptr);

    logs.clear();
    provider->reloadCachedDeviceTunings();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "Clear cached device tuning Port[internal_speaker]:Device[default_internal_speaker]"));
    EXPECT_EQ(provider->loadDeviceTuningsForPort(PORT_HEADPHONE).size(), 3u);
    Tuning* reloaded = provider->loadTuningForDevice("default_headphone");
    ASSERT_NE(reloaded, nullptr);
    EXPECT_EQ(reloaded->mValues.at(ORIENTATION), std::vector<int>{5});
    Tuning* oem = provider->loadTuningForDevice("oem_hp");
    ASSERT_NE(oem, nullptr);
    EXPECT_EQ(oem->getName(), "spk");
    EXPECT_TRUE(oem->isMono());
}

TEST_F(ProviderTest, AFailedReadLeavesTheCachedRecordAndInitAgainStartsFresh) {
    ASSERT_TRUE(provider->init());
    Profile* profile = provider->loadProfile(0);
    ASSERT_NE(profile, nullptr);
    profile->set(VOLUME_MODELER_ENABLE, {42});
    profile->setDirty(false);
    raw->exec("DELETE FROM profiles WHERE profile_id='0'");
    EXPECT_EQ(provider->reset(profile), profile);
    EXPECT_FALSE(profile->isDirty());
    EXPECT_EQ(provider->loadProfile(0), profile);
    EXPECT_EQ(profile->mValues.at(VOLUME_MODELER_ENABLE), std::vector<int>{42});
    EXPECT_EQ(profile->getName(), "Dynamic");
    // A new init drops the cached records: the failed load leaves a placeholder.
    ASSERT_TRUE(provider->init());
    EXPECT_EQ(provider->loadProfile(0)->toString(), "id=-1\nprofileId=0\nname=\nmobility=false\nselectedGeqPreset=0\n");
}

TEST_F(ProviderTest, ACreateWhoseCustomRowFailsReportsItAndStaysDirty) {
    for (const char* table : {"profiles", "geq_presets"}) {
        raw->exec(std::string("CREATE TRIGGER refuse_") + table + " BEFORE INSERT ON " + table +
                  " WHEN NEW.custom_name='custom' BEGIN SELECT RAISE(ABORT, 'refused'); END");
    }
    Profile profile(5, "Game", false);
    GeqPreset geq(5);
    EXPECT_EQ(provider->create(&profile) + provider->create(&geq), 2);
    EXPECT_TRUE(profile.isDirty() && geq.isDirty());
    EXPECT_EQ(raw->rows("SELECT custom_name FROM profiles WHERE profile_id='5'"), (std::vector<Row>{{"default"}}));
    // A create that goes through leaves the record clean.
    raw->exec("DROP TRIGGER refuse_geq_presets");
    ProfileEndpoint endpoint(6, SPEAKER, 0);
    EXPECT_EQ(provider->create(&geq) + provider->create(&endpoint), 0);
    EXPECT_FALSE(geq.isDirty() || endpoint.isDirty());
}

TEST(ProviderNotOpen, EveryOperationFailsWithoutTouchingAFile) {
    TempDeviceRoot root;
    std::filesystem::remove_all(root.path("data/vendor/korvi"));
    LogCapture logs;
    Provider provider(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
    EXPECT_EQ(provider.initDatabase(), 1);
    EXPECT_FALSE(provider.init());
    EXPECT_EQ(provider.getSelectedProfile(), -1);
    EXPECT_EQ(provider.getDefaultXmlSignature(), "");
    EXPECT_EQ(provider.setDefaultXmlSignature("x"), 1);
    Profile profile(0, "p", false);
    GeqPreset geq(0);
    EXPECT_EQ(provider.create(&profile) + provider.create(&geq) + provider.save(&profile), 3);
    EXPECT_TRUE(profile.isDirty());
    EXPECT_TRUE(provider.loadDeviceTuningsForPort(PORT_USB).empty());
    EXPECT_EQ(provider.loadTuningForDevice("default_usb"), nullptr);
    EXPECT_EQ(provider.loadIeqPreset(0), nullptr);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "DatabaseHelper", "the db is not open..."));
    EXPECT_FALSE(std::filesystem::exists(root.path("data/vendor/korvi")));
}

TEST_F(ProviderTest, APortOutsideTheKnownOnesEndsTheProcess) {
    EXPECT_DEATH(provider->loadDeviceTuningsForPort(static_cast<Port>(7)), "port 7 out of range");
}

}  // namespace
}  // namespace korvi
