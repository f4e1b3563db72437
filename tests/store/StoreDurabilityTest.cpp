// Writes against a second connection with its own SQLite handle: a reader that holds the file
// briefly delays a write, one that holds it too long makes the write fail and say so, and nothing
// reported done is missing from the file once the store is closed. Locked and corrupt files are
// told apart, and a corrupt one is moved aside.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>

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

constexpr const char* kFile = "wem_sqlite3.db";

// A second connection on its own thread that holds a read transaction from start() until
// release() (or until holdFor has passed).
class Reader {
public:
    Reader(const std::string& path, std::chrono::milliseconds holdFor)
        : mThread([this, path, holdFor] {
              sqlite3* db = nullptr;
              sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
              sqlite3_exec(db, "BEGIN", nullptr, nullptr, nullptr);
              sqlite3_exec(db, "SELECT COUNT(*) FROM profiles", nullptr, nullptr, nullptr);
              mHolding = true;
              const auto until = std::chrono::steady_clock::now() + holdFor;
              while (!mRelease && std::chrono::steady_clock::now() < until) {
                  std::this_thread::sleep_for(std::chrono::milliseconds(5));
              }
              sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr);
              sqlite3_close_v2(db);
          }) {
        while (!mHolding) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ~Reader() { release(); }
    void release() {
        mRelease = true;
        if (mThread.joinable()) mThread.join();
    }

private:
    std::atomic<bool> mHolding{false};
    std::atomic<bool> mRelease{false};
    std::thread mThread;
};

// One profile with its speaker endpoint and GEQ preset, and the configuration keys.
void populate(Provider& provider) {
    ASSERT_EQ(provider.initDatabase(), 0);
    Profile profile(0, "Dynamic", false);
    profile.set(VOLUME_MODELER_ENABLE, {0});
    ASSERT_EQ(provider.create(&profile), 0);
    ProfileEndpoint endpoint(0, SPEAKER, 1);
    endpoint.set(DIALOG_ENHANCER_AMOUNT, {1});
    ASSERT_EQ(provider.create(&endpoint), 0);
    ASSERT_EQ(provider.setDefaultXmlSignature("0123"), 0);
    ASSERT_TRUE(provider.init());
}

// What the file holds of the user's writes, read by a fresh connection after the store closed.
Row storedState(const std::string& path) {
    RawDb raw(path);
    return {raw.value("SELECT volume_modeler_enable FROM profiles WHERE custom_name='custom'"),
            raw.value("SELECT dialog_enhancer_amount FROM profile_endpoints "
                      "WHERE custom_name='custom'"),
            raw.value("SELECT value FROM configuration WHERE key='Profile'"),
            raw.value("SELECT value FROM configuration WHERE key='State'")};
}

// A reader held briefly delays the writes; one held past the busy timeout makes them fail, and
// the writes after it commit on their own, not inside a transaction the failed one left open.
TEST(StoreDurability, ShortReadsDelayWritesAndLongOnesFailThemWithoutLosingLaterOnes) {
    TempDeviceRoot root;
    const std::string path = root.path(std::string("data/vendor/korvi/") + kFile);
    LogCapture logs;
    {
        Provider provider(std::make_unique<DatabaseHelper>(kFile));
        populate(provider);
        Profile* profile = provider.loadProfile(0);
        ProfileEndpoint* endpoint = provider.loadProfileEndpoint(0, SPEAKER);
        ASSERT_NE(endpoint, nullptr);
        profile->set(VOLUME_MODELER_ENABLE, {1});
        {
            Reader reader(path, std::chrono::milliseconds(300));
            EXPECT_EQ(provider.save(profile), 0);
            EXPECT_FALSE(profile->isDirty());
            EXPECT_EQ(provider.setSelectedProfile(5), 0);
        }
        EXPECT_EQ(storedState(path), (Row{"1", "1", "5", "true"}));
        provider.getDatabaseHelper()->setBusyTimeout(50);
        profile->set(VOLUME_MODELER_ENABLE, {2});
        {
            Reader reader(path, std::chrono::seconds(30));
            EXPECT_EQ(provider.save(profile), 1);
            EXPECT_TRUE(profile->isDirty());
            EXPECT_EQ(provider.setSelectedProfile(6), 1);
        }
        EXPECT_EQ(provider.setSfxOn(false), 0);
        endpoint->set(DIALOG_ENHANCER_AMOUNT, {9});
        EXPECT_EQ(provider.save(endpoint), 0);
    }
    EXPECT_EQ(storedState(path), (Row{"1", "9", "5", "false"}));
    EXPECT_TRUE(logs.containsText("DatabaseHelper", "the row is rolled back")) << logs.dump();
}

TEST(StoreDurability, UpdatesOfAMissingKeyAndAFailedCommitAreReported) {
    TempDeviceRoot root;
    const std::string path = root.path(std::string("data/vendor/korvi/") + kFile);
    LogCapture logs;
    {
        DatabaseHelper db(kFile);
        ASSERT_EQ(db.init(), 0);
        EXPECT_EQ(db.updateSelectedProfile("Profile", "3"), 1);
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "DatabaseHelper",
                                  "updateConfigurationValue(): no configuration row for key "
                                  "Profile, nothing written"))
                << logs.dump();
        ASSERT_EQ(db.insertConfigurationValue("Profile", "0"), 0);
        EXPECT_EQ(db.commitTransaction(), 1);  // none is open
        EXPECT_EQ(db.updateSelectedProfile("Profile", "3"), 0);
    }
    EXPECT_EQ(RawDb(path).rows("SELECT _id, key, value FROM configuration"), (std::vector<Row>{{"1", "Profile", "3"}}));
}

void writeBytes(const std::string& path, const std::string& bytes, std::streamoff at = 0) {
    std::fstream out(path, std::ios::in | std::ios::out | std::ios::binary);
    if (!out) out.open(path, std::ios::out | std::ios::binary);
    out.seekp(at);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST(StoreDurability, ALockedFileIsLeftAloneAndACorruptOneIsMovedAsideAndReplaced) {
    TempDeviceRoot root;
    const std::string path = root.path(std::string("data/vendor/korvi/") + kFile);
    const std::string aside = path + ".corrupt";
    {
        Provider provider(std::make_unique<DatabaseHelper>(kFile));
        populate(provider);
    }
    EXPECT_STREQ(databaseStateName(DatabaseState::kLocked), "locked");

    // Locked: another process holds the file; nothing is moved and init does not claim the
    // database has no profiles.
    {
        LogCapture logs;
        RawDb other(path);
        other.exec("BEGIN EXCLUSIVE");
        Provider provider(std::make_unique<DatabaseHelper>(kFile));
        provider.getDatabaseHelper()->setBusyTimeout(20);
        EXPECT_EQ(provider.checkDatabase(), DatabaseState::kLocked);
        // A table that cannot be counted counts as empty: never a made-up row count.
        EXPECT_EQ(provider.getDatabaseHelper()->getRowCount("profiles"), 0);
        EXPECT_FALSE(provider.init());
        EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "KrvDatabaseProvider",
                                  "init(): the profiles cannot be read from the database"));
        EXPECT_FALSE(logs.containsText("KrvDatabaseProvider", "No profiles found"));
        EXPECT_TRUE(logs.containsText("DatabaseHelper",
                                      "is locked by another connection (database is locked)"))
                << logs.dump();
        other.exec("COMMIT");
        EXPECT_EQ(provider.checkDatabase(), DatabaseState::kReady);
        EXPECT_TRUE(provider.init());
        EXPECT_FALSE(std::filesystem::exists(aside));
    }
    {
        // A directory that is gone: the file cannot be opened at all.
        Provider gone(std::make_unique<DatabaseHelper>("no_dir/" + std::string(kFile)));
        EXPECT_EQ(gone.checkDatabase(), DatabaseState::kUnavailable);
    }

    // Corrupt: random bytes, and a real database whose second page was overwritten.
    std::string damaged = readBytes(path);
    ASSERT_GT(damaged.size(), 8192u);
    damaged.replace(4096, 4096, std::string(4096, '\x55'));
    const std::string randomBytes = "not a database, but a file of random bytes\x01\x02\x03";
    for (const std::string& content : {randomBytes, damaged}) {
        std::filesystem::remove(aside);
        std::filesystem::remove(path);
        writeBytes(path, content);
        LogCapture logs;
        Provider provider(std::make_unique<DatabaseHelper>(kFile));
        EXPECT_EQ(provider.checkDatabase(), DatabaseState::kMovedAside);
        EXPECT_EQ(readBytes(aside), content);
        EXPECT_TRUE(logs.containsText(
                "DatabaseHelper", "moved aside to " + aside +
                                          "; the database is rebuilt from the factory tuning "
                                          "file and the user's custom values are lost"))
                << logs.dump();
        // An empty database took its place and is usable at once.
        EXPECT_EQ(provider.getDatabaseHelper()->getRowCount("sqlite_master"), 0);
        EXPECT_EQ(provider.checkDatabase(), DatabaseState::kReady);
        populate(provider);
        EXPECT_EQ(provider.getNumOfProfiles(), 1);
    }
}

}  // namespace
}  // namespace korvi
