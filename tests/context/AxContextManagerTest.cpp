// Start-up over a real device root: the amplifier type and the factory file it picks, the file's
// signature, the rebuild (only when the signature changed, keeping the on/off state, every port
// back on its "default_" device, the OEM merge with its drop rules), the OEM reload at run time,
// and the start-ups that must leave no context. The database is checked through a second SQLite
// connection.
#include <gtest/gtest.h>

#include <android/log.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "context/AxContext.h"
#include "context/AxContextManager.h"
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

constexpr const char* kTag = "AxContextManager";
constexpr const char* kFactory = "vendor/etc/korvi/wem-default.xml";
constexpr const char* kFs19xx = "vendor/etc/korvi/wem-fs19xx.xml";
constexpr const char* kOem = "data/vendor/korvi/wem-extra.xml";
constexpr const char* kTypeFile = "sys/kernel/smartpa/smartpa_type";
constexpr const char* kDb = "data/vendor/korvi/wem_sqlite3.db";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

class AxContextManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        // A process starts with the effect on; an earlier test's rebuild may have stored off.
        Provider::kSfxStateValue = true;
        mRoot.write(kTypeFile, "none\n");
        mRoot.copyFromData(kFactory);
        mRoot.copyFromData(kOem);
    }
    void TearDown() override { AxContextManager::getInstance().release(); }

    // One start-up, as a fresh process would run it.
    AxContextManager& startUp() {
        if (!AxContextManager::hasInstance()) return AxContextManager::getInstance();
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        return manager;
    }

    std::string config(const std::string& key) const {
        RawDb db(mRoot.path(kDb));
        return db.value("SELECT value FROM configuration WHERE key = '" + key + "'");
    }
    std::vector<Row> oemRows() const {
        RawDb db(mRoot.path(kDb));
        std::vector<Row> rows =
            db.rows("SELECT 'tuning', name FROM tunings WHERE custom_name = 'oem' ORDER BY name");
        for (const Row& row :
             db.rows("SELECT device, port FROM device_tunings WHERE custom_name = 'oem' ORDER BY device")) {
            rows.push_back(row);
        }
        return rows;
    }
    std::string fileBytes(const std::string& relative) const { return mRoot.read(relative); }

    TempDeviceRoot mRoot;
};

const std::vector<Row> kMergedOemRows = {
    {"tuning", "oem_neckband_n7"},
    {"oem_neckband_n7", "bluetooth"},
    {"oem_neckband_n7_usb", "usb"},
};

TEST_F(AxContextManagerTest, AmplifierTypeFileSetsTheTypeAndTheFactoryFile) {
    struct Case {
        const char* content;  // nullptr: no file; "<dir>": a directory where the file should be
        int result;
        int type;
        const char* log;  // the expected line, "" for none
    };
    const std::string typePath = mRoot.path(kTypeFile);
    const Case kCases[] = {
        {"fs19xx\n", 0, 2, "find: fs19xx \n"},
        {"tfa98xx\n", 0, 2, ""},  // unknown: the type stays
        {"aw882xx", 0, 1, "find: aw882xx \n"},
        {"none\n", 0, 0, "find: none \n"},
        {"fs19xx-rev2", 0, 2, "find: fs19xx \n"},  // only the start counts
        {nullptr, -119, 2, ""},
        {"<dir>", -22, 2, ""},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.content ? c.content : "(missing)");
        std::filesystem::remove_all(typePath);
        if (c.content == nullptr) {
        } else if (std::string(c.content) == "<dir>") {
            std::filesystem::create_directories(typePath);
        } else {
            mRoot.write(kTypeFile, c.content);
        }
        LogCapture logs;
        EXPECT_EQ(AxContextManager::init_smartpa_type(), c.result);
        EXPECT_EQ(AxContextManager::get_smartpa_type(), c.type);
        std::vector<std::string> lines;
        for (const auto& line : logs.linesWithTag(kTag)) lines.push_back(line.message);
        std::vector<std::string> expected;
        if (*c.log != '\0') expected.push_back(c.log);
        if (c.result == -119) expected.push_back("fopen " + typePath + " failed!");
        if (c.result == -22) expected.push_back("bytes_read open " + typePath + " failed!");
        EXPECT_EQ(lines, expected);
    }

    // fs19xx amplifiers read their own file; the others the default file, which is missing here.
    std::filesystem::remove_all(typePath);
    std::filesystem::remove(mRoot.path(kFactory));
    mRoot.copyFromData(kFs19xx);
    mRoot.write(kTypeFile, "aw882xx\n");
    {
        LogCapture logs;
        EXPECT_EQ(startUp().getAxContext(), nullptr);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag, "smartpa_type: 1"));
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "Default XML Tuning file doesn't exist!!"));
        EXPECT_FALSE(mRoot.exists(kDb)) << "no store is opened without a factory file";
        EXPECT_EQ(AxContextManager::getInstance().loadOemTuning(), AxContextManager::kNotInitialized);
    }
    mRoot.write(kTypeFile, "fs19xx\n");
    ASSERT_NE(startUp().getAxContext(), nullptr);
    EXPECT_EQ(config("signature"), AxContextManager::getSignature(mRoot.path(kFs19xx)));
}

TEST_F(AxContextManagerTest, SignatureIsTheLowerCaseMd5OfTheWholeFile) {
    LogCapture logs;
    EXPECT_EQ(AxContextManager::getSignature(mRoot.write("a.txt", "abc")),
              "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, kTag,
                              "getSignature(): XML file md5sum 900150983cd24fb0d6963f7d28e17f72"));
    EXPECT_EQ(AxContextManager::getSignature(mRoot.write("empty.txt", "")),
              "d41d8cd98f00b204e9800998ecf8427e");
    // 70000 bytes: more than one page of the mapping.
    EXPECT_EQ(AxContextManager::getSignature(mRoot.write("big.txt", std::string(70000, 'k'))),
              "6ba549f5390fac497195b1be7d96a3a8");
    EXPECT_EQ(AxContextManager::getSignature(mRoot.path("missing.xml")), "");
}

TEST_F(AxContextManagerTest, FirstStartBuildsTheDatabaseAndMergesTheOemFile) {
    LogCapture logs;
    AxContextManager& manager = startUp();
    AxContext* context = manager.getAxContext();
    ASSERT_NE(context, nullptr);

    RawDb db(mRoot.path(kDb));
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
    std::vector<Row> expectedConfig = {
        {"Profile", "0"},
        {"State", "true"},
        {"bluetooth", "default_bluetooth"},
        {"hdmi", "default_hdmi"},
        {"headphone", "default_headphone"},
        {"internal_speaker", "default_internal_speaker"},
        {"miracast", "default_miracast"},
        {"signature", AxContextManager::getSignature(mRoot.path(kFactory))},
        {"usb", "default_usb"},
        {"version", "3.5.0"},
    };
    EXPECT_EQ(db.rows("SELECT key, value FROM configuration ORDER BY key"), expectedConfig);
    EXPECT_EQ(manager.getDefaultXmlFormatVersion(), "3.5.0");
    EXPECT_EQ(db.count("profiles"), 10) << "a default and a custom row per profile";
    EXPECT_EQ(db.value("SELECT COUNT(*) FROM tunings WHERE custom_name = 'default'"), "9");
    // The OEM tuning named like a factory one is dropped, and so is the device that uses it.
    EXPECT_EQ(oemRows(), kMergedOemRows);

    // The merge runs after the rebuild's rows and before the closing line; within the merge the
    // records come in set order, which carries no meaning.
    const std::vector<std::string> merge = {
        "Add OEM Tuning oem_neckband_n7",
        "Drop OEM Device Tuning with tuning.name [earbuds_e2] (duplicate in default xml)",
        "Found OEM tuning [earbuds_e2] already exists in the default tuning XML, drop it.",
    };
    std::vector<std::string> expected = {"Tuning XML file has been updated"};
    expected.insert(expected.end(), merge.begin(), merge.end());
    expected.push_back("Tell database to reload cached device tunings.");
    expected.push_back("Load OEM tuning XML after default tuning XML is reloaded");
    std::vector<std::string> seen;
    for (const auto& line : logs.linesWithTag(kTag)) {
        if (std::find(expected.begin(), expected.end(), line.message) != expected.end()) {
            seen.push_back(line.message);
        }
    }
    ASSERT_EQ(seen.size(), expected.size()) << logs.dump();
    std::sort(seen.begin() + 1, seen.begin() + 1 + merge.size());
    EXPECT_EQ(seen, expected) << logs.dump();
    EXPECT_FALSE(logs.containsText(kTag, "rolling it back"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_INFO, kTag,
                              "Add OEM Device Tuning Port[bluetooth] : Device[oem_neckband_n7] "
                              "with tuning.name [oem_neckband_n7]"));

    // The context starts on the rebuilt state and offers the merged OEM device.
    EXPECT_EQ(context->getSelectedTuningDevice(PORT_HEADPHONE), "default_headphone");
    const auto bluetooth = context->getAvailableTuningDevice(PORT_BLUETOOTH);
    EXPECT_NE(std::find(bluetooth.begin(), bluetooth.end(), "oem_neckband_n7"), bluetooth.end());
    manager.release();
    EXPECT_EQ(manager.getAxContext(), nullptr);
}

TEST_F(AxContextManagerTest, OnlyAChangedSignatureRebuildsAndTheRebuildKeepsTheOnOffState) {
    startUp();
    AxContextManager::getInstance().release();
    {
        // The user's state: effect off, another profile, another headphone device, a changed
        // custom row.
        RawDb db(mRoot.path(kDb));
        db.exec("UPDATE configuration SET value = 'false' WHERE key = 'State'");
        db.exec("UPDATE configuration SET value = '2' WHERE key = 'Profile'");
        db.exec("UPDATE configuration SET value = 'korvi_earbuds_e2' WHERE key = 'headphone'");
        db.exec("UPDATE profiles SET volume_modeler_enable = '7' WHERE custom_name = 'custom'");
    }
    const std::string before = fileBytes(kDb);

    {
        LogCapture logs;
        AxContext* context = startUp().getAxContext();
        ASSERT_NE(context, nullptr);
        EXPECT_EQ(fileBytes(kDb), before) << "an unchanged factory file writes nothing";
        EXPECT_FALSE(logs.containsText(kTag, "Tuning XML file has been updated"));
        EXPECT_FALSE(logs.containsText(kTag, "OEM")) << logs.dump();
        EXPECT_FALSE(context->getSfxOn());
        EXPECT_EQ(context->getSelectedProfile(), 2);
        EXPECT_EQ(context->getSelectedTuningDevice(PORT_HEADPHONE), "korvi_earbuds_e2");
    }

    // One byte of the factory file changes: a rebuild from the file, the user's on/off choice kept.
    const std::string xml = fileBytes(kFactory);
    mRoot.write(kFactory, replaced(xml, "four-speaker", "Four-speaker"));
    AxContext* context = startUp().getAxContext();
    ASSERT_NE(context, nullptr);
    RawDb db(mRoot.path(kDb));
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(config("signature"), AxContextManager::getSignature(mRoot.path(kFactory)));
    EXPECT_EQ(config("State"), "false");
    EXPECT_EQ(config("Profile"), "0");
    for (Port port : AxContext::kSupportedPorts) {
        EXPECT_EQ(config(kPortNames[port]), std::string("default_") + kPortNames[port]);
        EXPECT_EQ(context->getSelectedTuningDevice(port), std::string("default_") + kPortNames[port]);
    }
    EXPECT_EQ(db.value("SELECT COUNT(*) FROM profiles WHERE volume_modeler_enable = '7'"), "0");
    EXPECT_EQ(db.value("SELECT COUNT(*) FROM configuration"), "10") << "one row per key";
    EXPECT_EQ(oemRows(), kMergedOemRows);
    EXPECT_FALSE(context->getSfxOn());
}

TEST_F(AxContextManagerTest, AFactoryFileThatCannotBeReadKeepsTheOldDatabase) {
    startUp();
    const std::string signature = config("signature");
    mRoot.write(kFactory, "<korvi_tuning><format_version major=");
    LogCapture logs;
    AxContext* context = startUp().getAxContext();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "XML parses error!!"));
    ASSERT_NE(context, nullptr) << "start-up goes on with the old database";
    EXPECT_EQ(config("signature"), signature);
    EXPECT_EQ(context->getSelectedTuningDevice(PORT_INTERNAL_SPEAKER), "default_internal_speaker");
}

TEST_F(AxContextManagerTest, AFactoryFileWithoutProfilesLeavesNoContext) {
    mRoot.write(kFactory,
                "<?xml version=\"1.0\"?>\n<korvi_tuning>\n"
                "    <format_version major=\"3\" minor=\"5\" maintenance=\"0\"/>\n"
                "</korvi_tuning>\n");
    LogCapture logs;
    AxContextManager& manager = startUp();
    EXPECT_EQ(manager.getAxContext(), nullptr);
    EXPECT_TRUE(logs.containsText("KrvDatabaseProvider", "No profiles found from the database"));
    EXPECT_EQ(manager.loadOemTuning(), AxContextManager::kNotInitialized);
}

TEST_F(AxContextManagerTest, OemReloadResultsAndDropRules) {
    const std::string oemXml = fileBytes(kOem);
    std::filesystem::remove(mRoot.path(kOem));
    AxContextManager& manager = startUp();
    AxContext* context = manager.getAxContext();
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(oemRows(), std::vector<Row>{});

    {
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), -2);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "OEM Tuning XML doesn't exist!"));
    }

    // An OEM device named like a factory device is dropped even though its tuning was accepted.
    mRoot.write(kOem, replaced(oemXml, "\"oem_neckband_n7_usb\"", "\"pocket_dac_u1\""));
    {
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), 0);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                                  "Found OEM device ID [pocket_dac_u1] already exists in the "
                                  "default tuning XML, drop it."));
    }
    EXPECT_EQ(oemRows(), (std::vector<Row>{{"tuning", "oem_neckband_n7"}, {"oem_neckband_n7", "bluetooth"}}));
    auto bluetooth = context->getAvailableTuningDevice(PORT_BLUETOOTH);
    EXPECT_NE(std::find(bluetooth.begin(), bluetooth.end(), "oem_neckband_n7"), bluetooth.end())
        << "the context re-reads the ports after a merge";

    // A second merge replaces the rows of the first.
    mRoot.write(kOem, oemXml);
    EXPECT_EQ(manager.loadOemTuning(), 0);
    EXPECT_EQ(oemRows(), kMergedOemRows);

    // Rejected files change nothing.
    mRoot.write(kOem, replaced(oemXml, "minor=\"5\"", "minor=\"4\""));
    {
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), -22);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                                  "OEM tuning format V=3.4.0 is not consistent with current "
                                  "V=3.5.0, abort loading OEM tuning XML."));
    }
    mRoot.write(kOem, "<korvi_tuning>");
    {
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), -22);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "OEM Tuning XML parses error!"));
    }
    EXPECT_EQ(oemRows(), kMergedOemRows);

    // A factory file that no longer parses offers no names to drop against: the whole OEM file
    // goes in, and nothing reads past the missing factory records.
    mRoot.write(kOem, oemXml);
    mRoot.write(kFactory, "<korvi_tuning>");
    EXPECT_EQ(manager.loadOemTuning(), 0);
    EXPECT_EQ(oemRows(), (std::vector<Row>{{"tuning", "earbuds_e2"},
                                           {"tuning", "oem_neckband_n7"},
                                           {"korvi_earbuds_e2_plus", "headphone"},
                                           {"oem_neckband_n7", "bluetooth"},
                                           {"oem_neckband_n7_usb", "usb"}}));

    // A merge makes every port choose again: a device that vanished gives way to the default.
    ASSERT_TRUE(context->setSelectedTuning(PORT_BLUETOOTH, "oem_neckband_n7", false));
    mRoot.write(kOem, replaced(oemXml, "id=\"oem_neckband_n7\"", "id=\"oem_neckband_n8\""));
    EXPECT_EQ(manager.loadOemTuning(), 0);
    EXPECT_EQ(context->getSelectedTuningDevice(PORT_BLUETOOTH), "default_bluetooth");
    RawDb db(mRoot.path(kDb));
    EXPECT_EQ(db.value("PRAGMA integrity_check"), "ok");
}

TEST_F(AxContextManagerTest, WritesThatFailAreRolledBackAndReported) {
    AxContextManager& manager = startUp();
    AxContext* context = manager.getAxContext();
    ASSERT_NE(context, nullptr);
    // An OEM merge whose device rows cannot be written keeps the earlier OEM rows whole.
    RawDb(mRoot.path(kDb)).exec(
        "CREATE TRIGGER no_oem BEFORE INSERT ON device_tunings WHEN NEW.custom_name = 'oem' "
        "BEGIN SELECT RAISE(ABORT, 'no room'); END");
    {
        LogCapture logs;
        EXPECT_EQ(manager.loadOemTuning(), AxContextManager::kOemWriteFailed);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                                  "Merging the OEM tuning XML failed to reach the database, rolling it back"));
    }
    EXPECT_EQ(oemRows(), kMergedOemRows);
    ASSERT_NE(context->getSelectedTuning(PORT_BLUETOOTH), nullptr);
    EXPECT_EQ(context->getSelectedTuning(PORT_BLUETOOTH)->getName(), "headphone_bluetooth");
    manager.release();

    const std::string signature = config("signature");
    mRoot.write(kFactory, replaced(fileBytes(kFactory), "four-speaker", "Four-speaker"));
    // Another connection reads, so the rebuild cannot even start.
    {
        RawDb reader(mRoot.path(kDb));
        reader.exec("BEGIN");
        EXPECT_EQ(reader.value("SELECT value FROM configuration WHERE key = 'signature'"), signature);
        LogCapture logs;
        EXPECT_NE(startUp().getAxContext(), nullptr) << "the old database still serves";
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag, "Cannot start rebuilding the database"));
        reader.exec("COMMIT");
    }
    // A rebuild that fails half-way (a view where a table should be cannot be dropped as one)
    // leaves the old rows, not the half-cleared database.
    RawDb(mRoot.path(kDb)).exec("DROP TABLE device_tunings; CREATE VIEW device_tunings AS SELECT 1");
    {
        LogCapture logs;
        EXPECT_NE(startUp().getAxContext(), nullptr) << logs.dump();
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, kTag,
                                  "Rebuilding the database failed to reach the database, rolling it back"));
    }
    EXPECT_EQ(config("signature"), signature);
    EXPECT_EQ(RawDb(mRoot.path(kDb)).count("profiles"), 10);
}

}  // namespace
}  // namespace korvi
