// Start-up over a real device root: the amplifier type and the factory file it picks, the file's
// signature, the rebuild (only when the signature changed, keeping the on/off state, every port
// back on its "default_" device, the OEM merge with its drop rules), the OEM reload at run time,
// and the start-ups that must leave no context. The database is read through a second connection.
#include <gtest/gtest.h>

#include <android/log.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "context/AxContextManager.h"
#include "context/ContextTestSupport.h"

namespace korvi {
namespace {

using namespace test;
using Rows = std::vector<Row>;

constexpr const char* kTag = "AxContextManager";
constexpr const char* kFactory = "vendor/etc/korvi/wem-default.xml";
constexpr const char* kOem = "data/vendor/korvi/wem-extra.xml";
constexpr const char* kTypeFile = "sys/kernel/smartpa/smartpa_type";
constexpr const char* kDb = "data/vendor/korvi/wem_sqlite3.db";
const Rows kMergedOemRows = {
    {"tuning", "oem_neckband_n7"}, {"oem_neckband_n7", "bluetooth"}, {"oem_neckband_n7_usb", "usb"}};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

class AxContextManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        Provider::kSfxStateValue = true;  // a process starts with the effect on
        mRoot.write(kTypeFile, "none\n");
        mRoot.copyFromData(kFactory);
        mRoot.copyFromData(kOem);
    }
    void TearDown() override { AxContextManager::getInstance().release(); }

    // One start-up, as a fresh process would run it.
    AxContext* startUp() {
        if (!AxContextManager::hasInstance()) return AxContextManager::getInstance().getAxContext();
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        return manager.getAxContext();
    }
    std::string config(const std::string& key) const {
        return RawDb(mRoot.path(kDb)).value("SELECT value FROM configuration WHERE key='" + key + "'");
    }
    Rows oemRows() const {
        return RawDb(mRoot.path(kDb))
            .rows("SELECT * FROM (SELECT 'tuning', name FROM tunings WHERE custom_name='oem' ORDER "
                  "BY name) UNION ALL SELECT * FROM (SELECT device, port FROM device_tunings "
                  "WHERE custom_name='oem' ORDER BY device)");
    }

    TempDeviceRoot mRoot;
};

TEST_F(AxContextManagerTest, AmplifierTypeFileSetsTheTypeAndTheFactoryFile) {
    const std::string typePath = mRoot.path(kTypeFile);
    const struct {
        const char* content;  // nullptr: no file; "<dir>": a directory in its place
        int result, type;
        Events log;
    } kCases[] = {
        {"fs19xx\n", 0, 2, {"I find: fs19xx \n"}},
        {"tfa98xx\n", 0, 2, {}},  // unknown: the type stays
        {"aw882xx", 0, 1, {"I find: aw882xx \n"}},
        {"none\n", 0, 0, {"I find: none \n"}},
        {"fs19xx-rev2", 0, 2, {"I find: fs19xx \n"}},  // only the start counts
        {nullptr, -119, 2, {"E fopen " + typePath + " failed!"}},
        {"<dir>", -22, 2, {"E bytes_read open " + typePath + " failed!"}},
    };
    auto openFiles = [] {
        auto it = std::filesystem::directory_iterator("/proc/self/fd");
        return std::distance(begin(it), end(it));
    };
    const auto filesBefore = openFiles();
    for (const auto& c : kCases) {
        std::filesystem::remove_all(typePath);
        if (c.content != nullptr && std::string(c.content) == "<dir>") {
            std::filesystem::create_directories(typePath);
        } else if (c.content != nullptr) {
            mRoot.write(kTypeFile, c.content);
        }
        LogCapture logs;
        const int result = AxContextManager::init_smartpa_type();
        EXPECT_EQ(Values({result, AxContextManager::get_smartpa_type()}), Values({c.result, c.type}));
        EXPECT_EQ(logLines(logs, kTag), c.log);
    }
    EXPECT_EQ(openFiles(), filesBefore) << "the type file is closed again";
    // fs19xx amplifiers read their own file; the others the default file, missing here.
    std::filesystem::remove_all(typePath);
    std::filesystem::remove(mRoot.path(kFactory));
    const std::string fs19xx = mRoot.copyFromData("vendor/etc/korvi/wem-fs19xx.xml");
    mRoot.write(kTypeFile, "aw882xx\n");
    {
        LogCapture logs;
        EXPECT_EQ(startUp(), nullptr);
        EXPECT_EQ(logLines(logs, kTag),
                  (Events{"I find: aw882xx \n", "I smartpa_type: 1",
                          "E Default XML Tuning file doesn't exist!!"}));
        EXPECT_FALSE(mRoot.exists(kDb)) << "no store is opened without a factory file";
        EXPECT_EQ(AxContextManager::getInstance().loadOemTuning(), AxContextManager::kNotInitialized);
    }
    mRoot.write(kTypeFile, "fs19xx\n");
    ASSERT_NE(startUp(), nullptr);
    EXPECT_EQ(config("signature"), AxContextManager::getSignature(fs19xx));
}

TEST_F(AxContextManagerTest, SignatureIsTheLowerCaseMd5OfTheWholeFile) {
    LogCapture logs;
    const Events signatures = {AxContextManager::getSignature(mRoot.write("a.txt", "abc")),
                               AxContextManager::getSignature(mRoot.write("empty.txt", "")),
                               // more than one page of the mapping
                               AxContextManager::getSignature(
                                   mRoot.write("big.txt", std::string(70000, 'k'))),
                               AxContextManager::getSignature(mRoot.path("missing.xml"))};
    EXPECT_EQ(signatures, (Events{"900150983cd24fb0d6963f7d28e17f72",
                                  "d41d8cd98f00b204e9800998ecf8427e",
                                  "6ba549f5390fac497195b1be7d96a3a8", ""}));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "getSignature(): XML file md5sum 900150983cd24fb0d6963f7d28e17f72"));
}

TEST_F(AxContextManagerTest, FirstStartBuildsTheDatabaseAndMergesTheOemFile) {
    LogCapture logs;
    AxContext* context = startUp();
    ASSERT_NE(context, nullptr);
    RawDb db(mRoot.path(kDb));
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
    const Rows expectedConfig = {
        {"Profile", "0"}, {"State", "true"}, {"bluetooth", "default_bluetooth"},
        {"hdmi", "default_hdmi"}, {"headphone", "default_headphone"},
        {"internal_speaker", "default_internal_speaker"}, {"miracast", "default_miracast"},
        {"signature", AxContextManager::getSignature(mRoot.path(kFactory))},
        {"usb", "default_usb"}, {"version", "3.5.0"}};
    EXPECT_EQ(db.rows("SELECT key, value FROM configuration ORDER BY key"), expectedConfig);
    EXPECT_EQ(AxContextManager::getInstance().getDefaultXmlFormatVersion(), "3.5.0");
    EXPECT_EQ(db.rows("SELECT custom_name, COUNT(*) FROM profiles GROUP BY 1 UNION ALL SELECT "
                      "custom_name, COUNT(*) FROM tunings GROUP BY 1"),
              (Rows{{"custom", "5"}, {"default", "5"}, {"default", "9"}, {"oem", "1"}}));
    // The OEM tuning named like a factory one is dropped, and so is the device that uses it.
    EXPECT_EQ(oemRows(), kMergedOemRows);

    // The merge runs inside the rebuild, before its closing lines; within the merge the records
    // come in set order, which carries no meaning, so its lines are compared sorted.
    const Events lines = logLines(logs, kTag);
    const auto from = std::find(lines.begin(), lines.end(), "D Tuning XML file has been updated");
    const auto to =
        std::find(lines.begin(), lines.end(), "D Tell database to reload cached device tunings.");
    ASSERT_TRUE(from < to && to + 1 < lines.end()) << logs.dump();
    Events merge;
    std::copy_if(from, to, std::back_inserter(merge), [](auto& l) { return l[0] != 'D'; });
    std::sort(merge.begin(), merge.end());
    EXPECT_EQ(merge,
              (Events{"E Drop OEM Device Tuning with tuning.name [earbuds_e2] (duplicate in "
                      "default xml)",
                      "E Found OEM tuning [earbuds_e2] already exists in the default tuning XML, "
                      "drop it.",
                      "I Add OEM Device Tuning Port[bluetooth] : Device[oem_neckband_n7] with "
                      "tuning.name [oem_neckband_n7]",
                      "I Add OEM Device Tuning Port[usb] : Device[oem_neckband_n7_usb] with "
                      "tuning.name [oem_neckband_n7]",
                      "I Add OEM Tuning oem_neckband_n7"}));
    EXPECT_EQ(to[1], "I Load OEM tuning XML after default tuning XML is reloaded");

    // The context starts on the rebuilt state and offers the merged OEM device.
    EXPECT_EQ(context->getSelectedTuningDevice(PORT_HEADPHONE), "default_headphone");
    const Events bluetooth = context->getAvailableTuningDevice(PORT_BLUETOOTH);
    EXPECT_EQ(std::count(bluetooth.begin(), bluetooth.end(), "oem_neckband_n7"), 1);
    AxContextManager::getInstance().release();
    EXPECT_EQ(AxContextManager::getInstance().getAxContext(), nullptr);
}

TEST_F(AxContextManagerTest, OnlyAChangedSignatureRebuildsAndTheRebuildKeepsTheOnOffState) {
    startUp();
    AxContextManager::getInstance().release();
    RawDb(mRoot.path(kDb))
        .exec("UPDATE configuration SET value='false' WHERE key='State'; UPDATE configuration "
              "SET value='2' WHERE key='Profile'; UPDATE configuration SET "
              "value='korvi_earbuds_e2' WHERE key='headphone'; UPDATE profiles SET "
              "volume_modeler_enable='7' WHERE custom_name='custom'");
    const std::string before = mRoot.read(kDb);
    const std::string md5 = AxContextManager::getSignature(mRoot.path(kFactory));
    auto state = [](AxContext* c) {
        return Events{std::to_string(c->getSfxOn()), std::to_string(c->getSelectedProfile()),
                      c->getSelectedTuningDevice(PORT_HEADPHONE)};
    };
    {
        LogCapture logs;
        AxContext* context = startUp();
        ASSERT_NE(context, nullptr);
        EXPECT_EQ(mRoot.read(kDb), before) << "an unchanged factory file writes nothing";
        EXPECT_EQ(logLines(logs, kTag), (Events{"I find: none \n", "I smartpa_type: 0",
                                                "D getSignature(): XML file md5sum " + md5}));
        EXPECT_EQ(state(context), (Events{"0", "2", "korvi_earbuds_e2"}));
    }
    // The factory file changes (profile 0's speaker turns IEQ off): a rebuild from the file, the
    // on/off choice kept, and an endpoint with IEQ off keeps no IEQ preset selected.
    mRoot.write(kFactory, replaced(mRoot.read(kFactory), "<ieq-enable value=\"true\"/>",
                                   "<ieq-enable value=\"false\"/>"));
    AxContext* context = startUp();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(state(context), (Events{"0", "0", "default_headphone"}));
    RawDb db(mRoot.path(kDb));
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
    Rows expectedConfig = {{"Profile", "0"}, {"State", "false"}};
    for (Port port : AxContext::kSupportedPorts) {
        expectedConfig.push_back({kPortNames[port], std::string("default_") + kPortNames[port]});
        EXPECT_EQ(context->getSelectedTuningDevice(port), expectedConfig.back()[1]);
    }
    expectedConfig.push_back({"signature", AxContextManager::getSignature(mRoot.path(kFactory))});
    expectedConfig.push_back({"version", "3.5.0"});
    std::sort(expectedConfig.begin(), expectedConfig.end());
    EXPECT_EQ(db.rows("SELECT key, value FROM configuration ORDER BY key"), expectedConfig);
    EXPECT_EQ(db.value("SELECT COUNT(*) FROM profiles WHERE volume_modeler_enable='7'"), "0");
    EXPECT_EQ(db.rows("SELECT custom_name, selected_ieq_preset_id FROM profile_endpoints WHERE "
                      "profile_id=0 AND endpoint='speaker' ORDER BY 1"),
              (Rows{{"custom", "0"}, {"default", "0"}}));
    EXPECT_EQ(oemRows(), kMergedOemRows);
}

TEST_F(AxContextManagerTest, FactoryFilesThatCannotBeUsed) {
    startUp();
    const std::string signature = config("signature");
    mRoot.write(kFactory, "<korvi_tuning><format_version major=");
    {
        LogCapture logs;
        AxContext* context = startUp();
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "XML parses error!!"));
        ASSERT_NE(context, nullptr) << "start-up goes on with the old database";
        EXPECT_EQ(config("signature"), signature);
    }
    std::filesystem::remove(mRoot.path(kDb));
    mRoot.write(kFactory,
                "<?xml version=\"1.0\"?>\n<korvi_tuning>\n    <format_version major=\"3\" "
                "minor=\"5\" maintenance=\"0\"/>\n</korvi_tuning>\n");
    LogCapture logs;
    EXPECT_EQ(startUp(), nullptr) << "a database without profiles leaves no context";
    EXPECT_TRUE(logs.containsText("KrvDatabaseProvider", "No profiles found from the database"));
    EXPECT_EQ(AxContextManager::getInstance().loadOemTuning(), AxContextManager::kNotInitialized);
}

TEST_F(AxContextManagerTest, OemReloadResultsAndDropRules) {
    const std::string oemXml = mRoot.read(kOem);
    std::filesystem::remove(mRoot.path(kOem));
    AxContext* context = startUp();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(oemRows(), Rows{});
    AxContextManager& manager = AxContextManager::getInstance();
    const std::string usbRenamed = replaced(oemXml, "\"oem_neckband_n7_usb\"", "\"pocket_dac_u1\"");
    const struct {
        std::string xml;  // "": no file
        int result;
        std::string error;  // "" when none
        Rows rows;
    } kSteps[] = {
        {"", -2, "OEM Tuning XML doesn't exist!", {}},
        // An OEM device named like a factory device is dropped though its tuning was accepted.
        {usbRenamed, 0,
         "Found OEM device ID [pocket_dac_u1] already exists in the default tuning XML, drop it.",
         {kMergedOemRows[0], kMergedOemRows[1]}},
        {oemXml, 0, "", kMergedOemRows},  // a second merge replaces the rows of the first
        {replaced(oemXml, "minor=\"5\"", "minor=\"4\""), -22,
         "OEM tuning format V=3.4.0 is not consistent with current V=3.5.0, abort loading OEM "
         "tuning XML.",
         kMergedOemRows},
        {"<korvi_tuning>", -22, "OEM Tuning XML parses error!", kMergedOemRows},
    };
    for (const auto& step : kSteps) {
        if (!step.xml.empty()) mRoot.write(kOem, step.xml);
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), step.result) << step.error;
        EXPECT_EQ(logs.contains(ANDROID_LOG_ERROR, kTag, step.error), !step.error.empty());
        EXPECT_EQ(oemRows(), step.rows);
        const Events bluetooth = context->getAvailableTuningDevice(PORT_BLUETOOTH);
        EXPECT_EQ(std::count(bluetooth.begin(), bluetooth.end(), "oem_neckband_n7"),
                  step.rows.empty() ? 0 : 1) << "the context re-reads the ports after a merge";
    }
    // A factory file that no longer parses offers no names to drop against: the whole OEM file
    // goes in, and nothing reads past the missing factory records.
    mRoot.write(kOem, oemXml);
    mRoot.write(kFactory, "<korvi_tuning>");
    EXPECT_EQ(manager.loadOemTuning(), 0);
    EXPECT_EQ(oemRows(), (Rows{{"tuning", "earbuds_e2"}, {"tuning", "oem_neckband_n7"},
                               {"korvi_earbuds_e2_plus", "headphone"},
                               {"oem_neckband_n7", "bluetooth"}, {"oem_neckband_n7_usb", "usb"}}));
    // A merge makes every port choose again: a device that vanished gives way to the default.
    ASSERT_TRUE(context->setSelectedTuning(PORT_BLUETOOTH, "oem_neckband_n7", false));
    mRoot.write(kOem, replaced(oemXml, "id=\"oem_neckband_n7\"", "id=\"oem_neckband_n8\""));
    EXPECT_EQ(manager.loadOemTuning(), 0);
    EXPECT_EQ(context->getSelectedTuningDevice(PORT_BLUETOOTH), "default_bluetooth");
    EXPECT_EQ(RawDb(mRoot.path(kDb)).value("PRAGMA integrity_check"), "ok");
}

TEST_F(AxContextManagerTest, WritesThatFailAreRolledBackAndReported) {
    AxContext* context = startUp();
    ASSERT_NE(context, nullptr);
    // An OEM merge whose device rows cannot be written keeps the earlier OEM rows whole.
    RawDb(mRoot.path(kDb))
        .exec("CREATE TRIGGER no_oem BEFORE INSERT ON device_tunings WHEN NEW.custom_name='oem' "
              "BEGIN SELECT RAISE(ABORT, 'no room'); END");
    LogCapture logs;
    EXPECT_EQ(AxContextManager::getInstance().loadOemTuning(), AxContextManager::kOemWriteFailed);
    EXPECT_EQ(oemRows(), kMergedOemRows);
    EXPECT_EQ(context->getSelectedTuning(PORT_BLUETOOTH)->getName(), "headphone_bluetooth");
    const Events bluetooth = context->getAvailableTuningDevice(PORT_BLUETOOTH);
    EXPECT_EQ(std::count(bluetooth.begin(), bluetooth.end(), "oem_neckband_n7"), 1)
        << "the cached devices follow the rows that stayed";

    const std::string signature = config("signature");
    mRoot.write(kFactory, replaced(mRoot.read(kFactory), "four-speaker", "Four-speaker"));
    {
        RawDb reader(mRoot.path(kDb));  // another connection reads: the rebuild cannot start
        reader.exec("BEGIN");
        EXPECT_EQ(reader.value("SELECT value FROM configuration WHERE key='signature'"), signature);
        EXPECT_NE(startUp(), nullptr) << "the old database still serves";
        reader.exec("COMMIT");
    }
    // A rebuild that fails half-way (a view where a table should be cannot be dropped as one)
    // leaves the old rows, not the half-cleared database.
    RawDb(mRoot.path(kDb)).exec("DROP TABLE device_tunings; CREATE VIEW device_tunings AS SELECT 1");
    EXPECT_NE(startUp(), nullptr);
    // (A rebuild that cannot start rolls back too, which leaves the database as it was.)
    const std::string rebuild = "E Rebuilding the database failed to reach the database, rolling it back";
    const Events errors = {"E Merging the OEM tuning XML failed to reach the database, rolling it back",
                           "E Cannot start rebuilding the database", rebuild, rebuild};
    Events seen;
    for (const std::string& line : logLines(logs, kTag)) {
        if (line.find("database") != std::string::npos) seen.push_back(line);
    }
    EXPECT_EQ(seen, errors);
    EXPECT_EQ(config("signature"), signature);
    EXPECT_EQ(RawDb(mRoot.path(kDb)).count("profiles"), 10);
}

}  // namespace
}  // namespace korvi
