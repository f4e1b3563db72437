// The settings database against real files in a temporary device root: schema, configuration
// rows, record rows and their texts, row ids, delete-and-insert updates, OEM deletes, the
// not-open paths, bound values and transactions left open.
#include <gtest/gtest.h>

#include <android/log.h>

#include <filesystem>
#include <memory>

#include "store/DatabaseHelper.h"
#include "store/StoreTestSupport.h"
#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::RawDb;
using test::Row;
using test::TempDeviceRoot;

constexpr const char* kTag = "DatabaseHelper";

struct Fixture : ::testing::Test {
    TempDeviceRoot root;
    std::unique_ptr<DatabaseHelper> db = std::make_unique<DatabaseHelper>("wem_sqlite3.db");
    std::string path = root.path("data/vendor/korvi/wem_sqlite3.db");
};

using DatabaseHelperTest = Fixture;

// The same with the tables created.
struct OpenDatabaseTest : Fixture {
    void SetUp() override { ASSERT_EQ(db->init(), 0); }
};

const std::vector<std::pair<std::string, std::vector<std::string>>> kExpectedTables = {
    {"configuration", {"_id", "key", "value"}},
    {"ieq_presets", {"_id", "custom_name", "preset_id", "name", "ieq_frequency", "ieq_target"}},
    {"geq_presets", {"_id", "custom_name", "profile_id", "geq_frequency", "geq_gain"}},
    {"profiles", {"_id", "custom_name", "profile_id", "name", "is_mobility", "selected_geq_preset_id", "custom_drc_metadata", "mi_adaptive_virtualizer_steering_enable", "mi_dv_leveler_steering_enable", "mi_ieq_steering_enable", "mi_surround_compressor_steering_enable", "reverb_suppression_amount", "reverb_suppression_enable", "volume_modeler_enable"}},
    {"profile_endpoints", {"_id", "custom_name", "profile_id", "endpoint", "selected_ieq_preset_id", "bass_enhancer_enable", "calibration_boost", "dialog_enhancer_amount", "dialog_enhancer_ducking", "dialog_enhancer_enable", "graphic_equalizer_enable", "headphone_virtualizer_steerer_source_distance", "hearing_protection_attenuation_attack_time", "hearing_protection_attenuation_release_time", "hearing_protection_enable", "hearing_protection_rms_attenuation_target", "hearing_protection_rms_averaging_time_win_len", "ieq_amount", "ieq_enable", "mi_virtualizer_binaural_steering_enable", "peak_value", "surround_boost", "surround_decoder_enable", "virtual_bass_enable", "virtual_bass_type", "virtualizer_enable", "virtualizer_start_band", "volmax_boost", "volume_leveler_amount", "volume_leveler_enable", "volume_leveler_in_target", "volume_leveler_out_target"}},
    {"tunings", {"_id", "custom_name", "name", "endpoint", "is_mono", "is_readonly", "audio_optimizer_enable", "audio_optimizer_frequency", "audio_optimizer_gain_l", "audio_optimizer_gain_ls", "audio_optimizer_gain_r", "audio_optimizer_gain_rs", "bass_enhancer_boost", "bass_enhancer_cutoff_frequency", "bass_enhancer_width", "bass_extraction_cutoff_frequency", "bass_extraction_enable", "bass_mbdrc_enable", "bass_mbdrc_tuning", "complex_equalizer_enable", "complex_equalizer_tuning_left", "complex_equalizer_tuning_left_surround", "complex_equalizer_tuning_right", "complex_equalizer_tuning_right_surround", "height_filter_mode", "orientation", "output_channels", "output_mix_matrix", "regulator_distortion_slope", "regulator_enable", "regulator_frequency", "regulator_isolated_band", "regulator_overdrive", "regulator_sibilance_suppress_amounts_left", "regulator_sibilance_suppress_amounts_left_surround", "regulator_sibilance_suppress_amounts_right", "regulator_sibilance_suppress_amounts_right_surround", "regulator_sibilance_suppress_enable", "regulator_speaker_dist_enable", "regulator_stress_amount", "regulator_threshold_high", "regulator_threshold_low", "regulator_timbre_preservation", "virtual_bass_blend_linear_gain", "virtual_bass_compressor_tuning", "virtual_bass_harmgains", "virtual_bass_hybgains", "virtual_bass_mix_frequency", "virtual_bass_mix_freq_high", "virtual_bass_mix_freq_low", "virtual_bass_mode", "virtual_bass_overall_gain", "virtual_bass_rolloff_gain", "virtual_bass_slope_gain", "virtual_bass_src_freq_high", "virtual_bass_src_freq_low", "virtual_bass_subgains", "virtualizer_front_speaker_angle", "virtualizer_height_speaker_angle", "virtualizer_surround_speaker_angle", "volume_leveler_compressor_enable", "volume_modeler_calibration"}},
    {"device_tunings", {"_id", "custom_name", "device", "port", "tuning_id"}},
};

TEST_F(DatabaseHelperTest, InitCreatesTheSevenTablesExactlyAsTheSchemaSaysAndASecondInitFails) {
    ASSERT_TRUE(db->isOpen());
    EXPECT_EQ(db->getPath(), path);
    EXPECT_EQ(db->buildColumnString(TABLE_CONFIGURATION), " (_id INTEGER, key TEXT, value TEXT)");
    EXPECT_EQ(db->buildColumnString(7), " ()");
    EXPECT_EQ(db->buildColumnString(-1), " ()");
    EXPECT_EQ(db->getRowCount("sqlite_master"), 0);
    ASSERT_EQ(db->init(), 0);
    EXPECT_EQ(db->getRowCount("sqlite_master"), 7);  // only the seven tables' counts are kept
    ASSERT_TRUE(std::filesystem::exists(path));

    RawDb raw(path);
    // Tables in creation order, no index of any kind.
    std::vector<Row> tables = raw.rows("SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid");
    ASSERT_EQ(tables.size(), kExpectedTables.size());
    EXPECT_EQ(raw.value("SELECT COUNT(*) FROM sqlite_master WHERE type='index'"), "0");
    for (size_t t = 0; t < kExpectedTables.size(); ++t) {
        const auto& [name, columns] = kExpectedTables[t];
        EXPECT_EQ(tables[t][0], name);
        std::vector<std::string> expected;
        for (const std::string& column : columns) expected.push_back(column + (column == "_id" ? " INTEGER" : " TEXT"));
        EXPECT_EQ(raw.columns(name), expected) << name;  // no column is a primary key either
        EXPECT_EQ(db->getRowCount(name), 0);
    }

    ASSERT_EQ(db->insertConfigurationValue("k", "v"), 0);
    LogCapture logs;
    EXPECT_EQ(db->init(), 1);
    for (const auto& [name, columns] : kExpectedTables) {
        EXPECT_TRUE(logs.containsText(kTag, "failed to prepare SQL : CREATE TABLE " + name + " (")) << name;
    }
    EXPECT_EQ(raw.rows("SELECT * FROM configuration"), (std::vector<Row>{{"1", "k", "v"}}));
}

TEST_F(OpenDatabaseTest, ConfigurationRowsTakeRowCountPlusOneAndStoreTheirTexts) {
    EXPECT_EQ(db->querySelectedProfile("Profile"), "-1");
    EXPECT_EQ(db->queryConfigurationValue("Profile"), "");
    EXPECT_TRUE(db->querySfxStatus("State"));  // a missing key counts as on
    ASSERT_EQ(db->insertConfigurationValue("signature", "abc"), 0);
    ASSERT_EQ(db->insertConfigurationValue("Profile", "2"), 0);
    ASSERT_EQ(db->insertConfigurationValue("State", "true"), 0);
    EXPECT_EQ(db->updateSfxStatus("State", false), 0);
    EXPECT_FALSE(db->querySfxStatus("State"));
    EXPECT_EQ(db->updateSelectedProfile("Profile", "3"), 0);
    EXPECT_EQ(db->updateTuningDevice("signature", "def"), 0);
    EXPECT_EQ(db->querySelectedProfile("Profile"), "3");

    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT _id, key, value, typeof(_id), typeof(value) FROM configuration"),
              (std::vector<Row>{{"1", "signature", "def", "integer", "text"},
                                {"2", "Profile", "3", "integer", "text"},
                                {"3", "State", "false", "integer", "text"}}));
    EXPECT_EQ(db->updateSfxStatus("State", true), 0);
    EXPECT_EQ(raw.value("SELECT value FROM configuration WHERE key='State'"), "true");
    std::vector<RowData> rows;
    ASSERT_EQ(db->getAllRows(rows, "configuration"), 0);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[1], (RowData{{"_id", "2"}, {"key", "Profile"}, {"value", "3"}}));
}

TEST_F(OpenDatabaseTest, RecordRowsHoldKeyTextsAndCommaSeparatedValuesInSchemaOrder) {
    Profile profile(4, "Movie", true);
    profile.setSelectedGeqPreset(9);
    profile.set(REVERB_SUPPRESSION_AMOUNT, {1, -2, 3});
    profile.set(CUSTOM_DRC_METADATA, {});
    ASSERT_EQ(db->insertValue(&profile, "custom", -1), 0);
    ProfileEndpoint endpoint(4, HEADPHONE, 2);
    endpoint.set(IEQ_ENABLE, {0});
    ASSERT_EQ(db->insertValue(&endpoint, "default", -1), 0);
    Tuning tuning("spk", OTHER, false);
    tuning.set(OUTPUT_MIX_MATRIX, {-7, 8});
    ASSERT_EQ(db->insertValue(&tuning, "oem"), 0);
    IeqPreset ieq(3, "warm");
    ieq.set(IEQ_TARGET, {10, 20});
    ASSERT_EQ(db->insertValue(&ieq, "default"), 0);
    GeqPreset geq(4);
    geq.set(GEQ_GAIN, {0, -3});
    ASSERT_EQ(db->insertValue(&geq, "custom", -1), 0);
    DeviceTuning device("dev1", "usb", "spk");
    ASSERT_EQ(db->insertValue(&device, "default"), 0);

    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT * FROM profiles"),
              (std::vector<Row>{{"1", "custom", "4", "Movie", "1", "9", "", "", "", "", "", "1,-2,3", "", ""}}));
    Row endpointRow = raw.rows("SELECT * FROM profile_endpoints")[0];
    EXPECT_EQ(Row(endpointRow.begin(), endpointRow.begin() + 5), (Row{"1", "default", "4", "headphone", "2"}));
    EXPECT_EQ(raw.value("SELECT ieq_enable FROM profile_endpoints"), "0");
    EXPECT_EQ(raw.value("SELECT virtual_bass_type FROM profile_endpoints"), "");
    Row tuningRow = raw.rows("SELECT * FROM tunings")[0];
    EXPECT_EQ(Row(tuningRow.begin(), tuningRow.begin() + 6), (Row{"1", "oem", "spk", "other", "0", "1"}));
    EXPECT_EQ(raw.value("SELECT output_mix_matrix FROM tunings"), "-7,8");
    EXPECT_EQ(raw.rows("SELECT * FROM ieq_presets"), (std::vector<Row>{{"1", "default", "3", "warm", "", "10,20"}}));
    EXPECT_EQ(raw.rows("SELECT * FROM geq_presets"), (std::vector<Row>{{"1", "custom", "4", "", "0,-3"}}));
    EXPECT_EQ(raw.rows("SELECT * FROM device_tunings"), (std::vector<Row>{{"1", "default", "dev1", "usb", "spk"}}));
    EXPECT_EQ(raw.value("SELECT typeof(_id) FROM tunings"), "integer");

    // Each record learnt its row id, except the device tuning.
    EXPECT_EQ(profile.getId(), 1);
    EXPECT_EQ(tuning.getId(), 1);
    EXPECT_EQ(ieq.getId(), 1);
    EXPECT_EQ(device.getId(), -1);
}

TEST_F(OpenDatabaseTest, RowIdsBelowOneBecomeRowCountPlusOneAndAreWrittenBack) {
    GeqPreset filler(0);
    ASSERT_EQ(db->insertValue(&filler, "default", -1), 0);
    EXPECT_EQ(filler.getId(), 1);
    GeqPreset zero(10);
    ASSERT_EQ(db->insertValue(&zero, "custom", 0), 0);
    EXPECT_EQ(zero.getId(), 2);
    GeqPreset given(11);
    ASSERT_EQ(db->insertValue(&given, "custom", 40), 0);  // not what the row count would give
    EXPECT_EQ(given.getId(), -1);  // a given row id is not written back
    GeqPreset next(12);
    ASSERT_EQ(db->insertValue(&next, "custom", -1), 0);
    EXPECT_EQ(next.getId(), 4);
    GeqPreset one(13);
    ASSERT_EQ(db->insertValue(&one, "custom", 1), 0);  // 1 is a given row id too
    EXPECT_EQ(one.getId(), -1);
    DeviceTuning device(33, "d", "usb", "t");
    ASSERT_EQ(db->insertValue(&device, "default"), 0);  // its own id 33 is used as given
    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT _id, profile_id FROM geq_presets ORDER BY _id, profile_id"),
              (std::vector<Row>{{"1", "0"}, {"1", "13"}, {"2", "10"}, {"4", "12"}, {"40", "11"}}));
    EXPECT_EQ(raw.value("SELECT _id FROM device_tunings"), "33");
}

TEST_F(OpenDatabaseTest, QueriesReadRowsBackAndMissingRowsLeaveTheRecordUnchanged) {
    Profile stored(2, "Music", true);
    stored.setSelectedGeqPreset(5);
    stored.set(VOLUME_MODELER_ENABLE, {1});
    ASSERT_EQ(db->insertValue(&stored, "default", -1), 0);
    IeqPreset storedIeq(1, "balanced");
    storedIeq.set(IEQ_FREQUENCY, {100, 200});
    ASSERT_EQ(db->insertValue(&storedIeq, "default"), 0);
    DeviceTuning a("a", "usb", "hp"), b("b", "usb", "hp"), c("c", "hdmi", "hp");
    ASSERT_EQ(db->insertValue(&a, "default") | db->insertValue(&b, "oem") | db->insertValue(&c, "default"), 0);

    // Every column of the row comes back, an empty text as an empty list.
    Profile profile(2, "", false);
    ASSERT_EQ(db->queryProfileValue("2", "default", &profile), 0);
    EXPECT_EQ(profile.toString(), "id=1\nprofileId=2\nname=Music\nmobility=true\nselectedGeqPreset=5\n"
                                  "custom_drc_metadata=\nmi_adaptive_virtualizer_steering_enable=\n"
                                  "mi_dv_leveler_steering_enable=\nmi_ieq_steering_enable=\n"
                                  "mi_surround_compressor_steering_enable=\nreverb_suppression_amount=\n"
                                  "reverb_suppression_enable=\nvolume_modeler_enable=1,\n");

    // Lists written by hand with blanks read back the same.
    RawDb(path).exec("UPDATE profiles SET reverb_suppression_amount='1, -2,3' WHERE profile_id='2'");
    ASSERT_EQ(db->queryProfileValue("2", "default", &profile), 0);
    EXPECT_EQ(profile.mValues.at(REVERB_SUPPRESSION_AMOUNT), (std::vector<int>{1, -2, 3}));

    LogCapture logs;
    IeqPreset ieq(1, "");
    ASSERT_EQ(db->queryIeqValue("1", "default", &ieq), 0);
    EXPECT_EQ(ieq.toString(), "id=1\npresetId=1\nname=balanced\nieq_frequency=100,200,\nieq_target=\n");
    EXPECT_EQ(ieq.mValues.at(IEQ_ID), std::vector<int>{1});
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag, "ieqId: 1, name: balanced"));

    std::vector<std::unique_ptr<DeviceTuning>> devices;
    ASSERT_EQ(db->queryDeviceTunings("usb", devices), 0);
    ASSERT_EQ(devices.size(), 2u);
    EXPECT_EQ(devices[0]->toString() + "|" + devices[1]->toString(),
              "id=1\ndevice=a\nport=usb\ntuning=hp|id=2\ndevice=b\nport=usb\ntuning=hp");

    std::vector<std::string> names;
    ASSERT_EQ(db->queryProfileNames(names, "default") | db->queryIeqPresetNames(names, "custom"), 0);
    EXPECT_EQ(names, std::vector<std::string>{"Music"});

    // Wrong key or wrong row kind: an error line, the record untouched.
    Profile missing(2, "keep", false);
    GeqPreset geq(2);
    ProfileEndpoint noEndpoint(2, OTHER, 0);
    Tuning noTuning("none", SPEAKER, false);
    IeqPreset noIeq(9, "x");
    EXPECT_EQ(db->queryProfileValue("2", "custom", &missing) + db->queryGeqValue("2", "default", &geq) +
              db->queryEndpointValue("2", "other", "custom", &noEndpoint) + db->queryTuning("none", &noTuning) +
              db->queryIeqValue("9", "default", &noIeq), 5);
    EXPECT_EQ(missing.toString() + noIeq.toString(), "id=-1\nprofileId=2\nname=keep\nmobility=false\nselectedGeqPreset=2\n"
                                                     "id=-1\npresetId=9\nname=x\n");
    for (const char* message : {"Profile doesn't exist!", "GeqPreset doesn't exist!", "Endpoint doesn't exist!",
                                "Tuning doesn't exist!", "IeqPreset doesn't exist!"}) {
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, message)) << message;
    }
}

TEST_F(OpenDatabaseTest, NullRecordsAreRefusedWithTheirMessages) {
    LogCapture logs;
    EXPECT_EQ(db->insertValue(static_cast<IeqPreset*>(nullptr), "default"), 1);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "invalide value"));
    EXPECT_EQ(db->insertValue(static_cast<Profile*>(nullptr), "default", -1), 1);
    EXPECT_EQ(db->insertValue(static_cast<Tuning*>(nullptr), "default"), 1);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "invalid value"), 2u);
    RawDb raw(path);
    EXPECT_EQ(raw.count("ieq_presets") + raw.count("profiles") + raw.count("tunings"), 0);
}

TEST_F(OpenDatabaseTest, UpdatesRewriteTheRowKeepingItsIdAndWarnOnDefaultRows) {
    Profile profile(1, "Game", false);
    ASSERT_EQ(db->insertValue(&profile, "default", -1), 0);
    ASSERT_EQ(db->insertValue(&profile, "custom", -1), 0);
    ProfileEndpoint speaker(1, SPEAKER, 0), headphone(1, HEADPHONE, 0);
    ASSERT_EQ(db->insertValue(&speaker, "custom", -1) | db->insertValue(&headphone, "custom", -1), 0);
    GeqPreset geq(1);
    ASSERT_EQ(db->insertValue(&geq, "custom", -1), 0);
    ASSERT_EQ(profile.getId(), 2);

    LogCapture logs;
    profile.set(REVERB_SUPPRESSION_ENABLE, {1});
    profile.setName("Game2");
    ASSERT_EQ(db->updateProfileValue(&profile, "custom"), 0);
    speaker.setSelectedIeqPreset(4);
    ASSERT_EQ(db->updateProfileEndpointValue(&speaker, "custom"), 0);
    geq.set(GEQ_GAIN, {6});
    ASSERT_EQ(db->updateGeqValue(&geq, "custom"), 0);
    EXPECT_FALSE(logs.containsText(kTag, "the default value can't be updated"));

    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT _id, custom_name, name, reverb_suppression_enable FROM profiles ORDER BY _id"),
              (std::vector<Row>{{"1", "default", "Game", ""}, {"2", "custom", "Game2", "1"}}));
    EXPECT_EQ(raw.rows("SELECT _id, endpoint, selected_ieq_preset_id FROM profile_endpoints ORDER BY _id"),
              (std::vector<Row>{{"1", "speaker", "4"}, {"2", "headphone", "0"}}));
    EXPECT_EQ(raw.rows("SELECT _id, geq_gain FROM geq_presets"), (std::vector<Row>{{"1", "6"}}));

    // A default row is rewritten all the same; the message is only a warning.
    Profile factory(1, "Factory", false);
    ASSERT_EQ(db->queryProfileValue("1", "default", &factory), 0);
    factory.setName("Changed");
    EXPECT_EQ(db->updateProfileValue(&factory, "default"), 0);
    std::vector<std::string> warnings;  // error lines ending in a source line number
    for (const auto& line : logs.linesWithTag(kTag)) {
        if (line.priority == ANDROID_LOG_ERROR && line.message.rfind("the default value can't be updated, ", 0) == 0) warnings.push_back(line.message.substr(36));
    }
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_GT(std::stoi(warnings[0]), 0);
    EXPECT_EQ(raw.rows("SELECT _id, name FROM profiles WHERE custom_name='default'"),
              (std::vector<Row>{{"1", "Changed"}}));
    EXPECT_EQ(db->getRowCount("profiles"), 2);
}

TEST_F(OpenDatabaseTest, OemDeletesRemoveOnlyOemRowsAndLogTheirStatement) {
    Tuning t1("t1", SPEAKER, false), t2("t2", SPEAKER, false), t3("t3", SPEAKER, false);
    ASSERT_EQ(db->insertValue(&t1, "default") | db->insertValue(&t2, "oem") | db->insertValue(&t3, "oem"), 0);
    DeviceTuning d1("d1", "usb", "t1"), d2("d2", "usb", "t2");
    ASSERT_EQ(db->insertValue(&d1, "oem") | db->insertValue(&d2, "default"), 0);
    LogCapture logs;
    ASSERT_EQ(db->clearOemTunings(), 0);
    ASSERT_EQ(db->clearOemDeviceTunings(), 0);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Delete existing tuning with SQL [DELETE from tunings WHERE custom_name = 'oem']"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "Delete existing device tuning with SQL [DELETE from device_tunings WHERE custom_name = 'oem']"));
    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT name FROM tunings"), (std::vector<Row>{{"t1"}}));
    EXPECT_EQ(raw.rows("SELECT device FROM device_tunings"), (std::vector<Row>{{"d2"}}));
}

TEST(DatabaseHelperNotOpen, EveryOperationReportsTheClosedDatabase) {
    TempDeviceRoot root;
    std::filesystem::remove_all(root.path("data/vendor/korvi"));
    LogCapture logs;
    DatabaseHelper db("wem_sqlite3.db");
    EXPECT_FALSE(db.isOpen());
    EXPECT_FALSE(std::filesystem::exists(root.path("data/vendor/korvi/wem_sqlite3.db")));
    logs.clear();
    EXPECT_EQ(db.init(), 1);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "the db is not open..."), 7u);
    Profile profile(0, "p", false);
    std::vector<std::string> names;
    EXPECT_EQ(db.execSQL("SELECT 1") + db.clear() + db.beginTransaction() + db.commitTransaction() +
              db.clearOemTunings() + db.insertValue(&profile, "default", -1) +
              db.queryProfileValue("0", "default", &profile) + db.queryProfileNames(names, "default"), 8);
    EXPECT_EQ(db.getRowCount("tunings"), 0);
    EXPECT_EQ(profile.getId(), -1);
    EXPECT_EQ(db.querySelectedProfile("Profile"), "-1");
    logs.clear();
    EXPECT_EQ(db.insertConfigurationValue("k", "v") + db.updateSfxStatus("State", true) +
              db.updateSelectedProfile("Profile", "1") + db.updateTuningDevice("usb", "x"), 4);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "db is not connected"));
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, kTag, "the database is not connected"), 3u);
}

TEST_F(DatabaseHelperTest, StatementsThatFailAreLoggedWithTheirSql) {
    LogCapture logs;
    Tuning tuning("t", SPEAKER, false);
    EXPECT_EQ(db->insertValue(&tuning, "default"), 1);  // no tables yet
    EXPECT_TRUE(logs.containsText(kTag, "failed to prepare SQL : INSERT INTO tunings VALUES(?,?,"));
    EXPECT_EQ(tuning.getId(), -1);
    EXPECT_EQ(db->getRowCount("tunings"), 0);
    EXPECT_TRUE(logs.containsText(kTag, "failed to prepare SQL: SELECT COUNT(*) FROM tunings"));
    EXPECT_EQ(db->queryTuning("t", &tuning), 1);
    EXPECT_TRUE(logs.containsText(kTag, "failed to prepare sql command: SELECT * FROM tunings WHERE name=?, ret = 1, line "));
    EXPECT_EQ(db->commitTransaction(), 1);  // no transaction is open
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "failed to exec SQL: COMMIT"));
    std::vector<RowData> rows;
    EXPECT_EQ(db->getAllRows(rows, "tunings"), 1);
    EXPECT_EQ(db->insertConfigurationValue("k", "v"), 1);
    EXPECT_EQ(db->updateSfxStatus("State", true), 1);
    EXPECT_TRUE(logs.containsText(kTag, "UPDATE configuration SET value=? WHERE key=?")) << logs.dump();
}

TEST_F(OpenDatabaseTest, AStepThatFailsIsLoggedAndReported) {
    RawDb raw(path);
    raw.exec("DROP TABLE tunings");
    raw.exec("CREATE VIEW tunings AS SELECT abs(-9223372036854775807 - 1) AS name");  // overflows when read
    LogCapture logs;
    std::vector<RowData> rows;
    EXPECT_EQ(db->getAllRows(rows, "tunings"), 1);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "failed to exec SQL: SELECT * FROM tunings")) << logs.dump();
}

}  // namespace
}  // namespace korvi
