// Values from files and clients reach the database only as bound values; row ids stay exactly
// "row count + 1 at insert time" whatever happened to the table; a batch that is never committed
// leaves the old content.
#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "store/DatabaseHelper.h"
#include "store/Provider.h"
#include "store/StoreTestSupport.h"
#include "support/TempDeviceRoot.h"

namespace korvi {
namespace {

using test::RawDb;
using test::Row;
using test::TempDeviceRoot;

const std::vector<std::string> kHostileNames = {
    "it's", "say \"hi\"", "a;b", "line1\nline2", "Müsik ♫ 音楽", "x'); DROP TABLE profiles; --",
    "'", "%s%n", "",
};

TEST(StoreSafety, HostileNamesAreStoredAsTextAndLoadBackUnchanged) {
    TempDeviceRoot root;
    Provider provider(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
    ASSERT_EQ(provider.initDatabase(), 0);
    for (size_t i = 0; i < kHostileNames.size(); ++i) {
        Profile profile(static_cast<int>(i), kHostileNames[i], false);
        ASSERT_EQ(provider.create(&profile), 0) << i;
        IeqPreset ieq(static_cast<int>(i), kHostileNames[i]);
        ASSERT_EQ(provider.create(&ieq), 0);
        Tuning tuning(kHostileNames[i], SPEAKER, false);
        tuning.set(ORIENTATION, {static_cast<int>(i)});
        ASSERT_EQ(provider.create(&tuning, Provider::kOemName), 0);
        DeviceTuning device(kHostileNames[i], "usb", kHostileNames[i]);
        ASSERT_EQ(provider.create(&device, Provider::kDefaultName), 0);
        ASSERT_EQ(provider.setDeviceTuning(kHostileNames[i], kHostileNames[i]), 0);
    }
    ASSERT_TRUE(provider.init());

    RawDb raw(root.path("data/vendor/korvi/wem_sqlite3.db"));
    std::vector<Row> expected;
    for (const std::string& name : kHostileNames) expected.push_back({name});
    EXPECT_EQ(raw.rows("SELECT name FROM profiles WHERE custom_name='custom' ORDER BY _id"), expected);
    EXPECT_EQ(raw.value("SELECT COUNT(*) FROM sqlite_master WHERE type='table'"), "7");
    EXPECT_EQ(provider.loadDeviceTuningsForPort(PORT_USB).size(), kHostileNames.size());
    for (size_t i = 0; i < kHostileNames.size(); ++i) {
        Profile* profile = provider.loadProfile(static_cast<int>(i));
        IeqPreset* ieq = provider.loadIeqPreset(static_cast<int>(i));
        Tuning* tuning = provider.loadTuningForDevice(kHostileNames[i]);
        ASSERT_TRUE(profile && ieq && tuning) << i;
        EXPECT_EQ(profile->getName() + "|" + ieq->getName() + "|" + tuning->getName() + "|" +
                          provider.getDeviceTuning(kHostileNames[i]),
                  kHostileNames[i] + "|" + kHostileNames[i] + "|" + kHostileNames[i] + "|" + kHostileNames[i]);
        EXPECT_EQ(tuning->mValues.at(ORIENTATION), std::vector<int>{static_cast<int>(i)});
    }
    // A hostile key matches only itself: there is no such row, so the update reports failure.
    EXPECT_EQ(provider.getDeviceTuning("x' OR '1'='1"), "");
    EXPECT_EQ(provider.updateDeviceTuning("x' OR '1'='1", "owned"), 1);
    EXPECT_EQ(raw.value("SELECT COUNT(*) FROM configuration WHERE value='owned'"), "0");
}

// A helper on a fresh database with its tables, and a second connection to the same file.
struct StoreSafetyDb : ::testing::Test {
    void SetUp() override {
        ASSERT_EQ(db.init(), 0);
        rawDb = std::make_unique<RawDb>(db.getPath());
    }
    TempDeviceRoot root;
    DatabaseHelper db{"wem_sqlite3.db"};
    std::unique_ptr<RawDb> rawDb;
    RawDb& raw() { return *rawDb; }
};

// Inserts one tuning with row id -1 and checks that it got the table's true row count + 1, as a
// second connection counts it.
void expectNextIdIsCountPlusOne(DatabaseHelper& db, RawDb& raw, const char* step) {
    const int before = raw.count("tunings");
    Tuning tuning(std::string("probe ") + step, SPEAKER, false);
    ASSERT_EQ(db.insertValue(&tuning, Provider::kOemName), 0) << step;
    EXPECT_EQ(tuning.getId(), before + 1) << step;
    EXPECT_EQ(raw.value("SELECT MAX(_id) FROM tunings WHERE name='probe " + std::string(step) + "'"),
              std::to_string(before + 1)) << step;
    EXPECT_EQ(db.getRowCount("tunings"), before + 1) << step;
}

TEST_F(StoreSafetyDb, RowIdsStayRowCountPlusOneThroughEveryKindOfChange) {
    ASSERT_EQ(db.beginTransaction(), 0);
    for (int i = 0; i < 20; ++i) {
        Tuning tuning("t" + std::to_string(i), SPEAKER, false);
        ASSERT_EQ(db.insertValue(&tuning, i % 2 ? Provider::kOemName : Provider::kDefaultName), 0);
        ASSERT_EQ(tuning.getId(), i + 1);
    }
    ASSERT_EQ(db.commitTransaction(), 0);
    expectNextIdIsCountPlusOne(db, raw(), "inserts");

    ASSERT_EQ(db.clearOemTunings(), 0);  // 11 OEM rows go
    ASSERT_EQ(raw().count("tunings"), 10);
    expectNextIdIsCountPlusOne(db, raw(), "oem delete");

    ASSERT_EQ(db.execSQL("DELETE FROM tunings WHERE name LIKE 't1%'"), 0);
    expectNextIdIsCountPlusOne(db, raw(), "free sql");

    // A transaction rolled back takes its inserts with it; so must the count.
    ASSERT_EQ(db.beginTransaction(), 0);
    for (int i = 0; i < 5; ++i) {
        Tuning tuning("rolled back", SPEAKER, false);
        ASSERT_EQ(db.insertValue(&tuning, Provider::kDefaultName), 0);
    }
    ASSERT_EQ(db.execSQL("ROLLBACK"), 0);
    EXPECT_EQ(raw().value("SELECT COUNT(*) FROM tunings WHERE name='rolled back'"), "0");
    expectNextIdIsCountPlusOne(db, raw(), "rollback");

    // Another writer on the same file.
    raw().exec("INSERT INTO tunings (_id, name) VALUES (100, 'elsewhere'), (101, 'elsewhere')");
    expectNextIdIsCountPlusOne(db, raw(), "other connection");

    ASSERT_EQ(db.clear(), 0);
    ASSERT_EQ(db.init(), 0);
    expectNextIdIsCountPlusOne(db, raw(), "clear");
    EXPECT_EQ(raw().count("tunings"), 1);
}

// A connection that has counted one table counts every other one before its first insert there.
TEST_F(StoreSafetyDb, EachTableIsCountedOnItsOwn) {
    raw().exec("INSERT INTO profiles (_id, name) VALUES (1, 'a'), (2, 'b')");
    DatabaseHelper fresh("wem_sqlite3.db");
    Tuning tuning("t", SPEAKER, false);
    ASSERT_EQ(fresh.insertValue(&tuning, Provider::kOemName), 0);
    EXPECT_EQ(tuning.getId(), 1);
    Profile profile(0, "c", false);
    ASSERT_EQ(fresh.insertValue(&profile, Provider::kCustomName, -1), 0);
    EXPECT_EQ(profile.getId(), 3);
}

TEST_F(StoreSafetyDb, InsertsFromTwoThreadsGetDistinctIdsAndIntactRows) {
    constexpr int kPerThread = 300;
    ASSERT_EQ(db.beginTransaction(), 0);
    auto insertMany = [this](int thread) {
        for (int i = 0; i < kPerThread; ++i) {
            Tuning tuning("t" + std::to_string(thread) + "_" + std::to_string(i), SPEAKER, thread == 1);
            tuning.set(OUTPUT_MIX_MATRIX, {thread, i, thread * 1000 + i});
            EXPECT_EQ(db.insertValue(&tuning, Provider::kDefaultName), 0);
            if (i % 50 == 0) {
                Profile profile(thread * 1000 + i, "p", false);
                EXPECT_EQ(db.insertValue(&profile, Provider::kCustomName, -1), 0);
                EXPECT_EQ(db.updateProfileValue(&profile, Provider::kCustomName), 0);
            }
        }
    };
    std::thread first(insertMany, 0), second(insertMany, 1);
    first.join();
    second.join();
    ASSERT_EQ(db.commitTransaction(), 0);

    EXPECT_EQ(raw().count("tunings"), 2 * kPerThread);
    EXPECT_EQ(raw().value("SELECT COUNT(DISTINCT _id) FROM tunings"), std::to_string(2 * kPerThread));
    EXPECT_EQ(raw().value("SELECT MIN(_id) || '-' || MAX(_id) FROM tunings"), "1-" + std::to_string(2 * kPerThread));
    // Every row holds its own record's texts, none mixed with another's.
    for (const Row& row : raw().rows("SELECT name, is_mono, output_mix_matrix FROM tunings")) {
        const int thread = row[0][1] - '0';
        const int i = std::stoi(row[0].substr(3));
        EXPECT_EQ(row[1], thread == 1 ? "1" : "0") << row[0];
        EXPECT_EQ(row[2], std::to_string(thread) + "," + std::to_string(i) + "," +
                                  std::to_string(thread * 1000 + i)) << row[0];
    }
    EXPECT_EQ(raw().value("SELECT COUNT(DISTINCT _id) FROM profiles"), std::to_string(2 * kPerThread / 50));
}

TEST_F(StoreSafetyDb, ARewriteWhoseInsertFailsKeepsTheOldRow) {
    Profile profile(0, "kept", false);
    ASSERT_EQ(db.insertValue(&profile, Provider::kCustomName, -1), 0);
    // The file refuses the insert half of the rewrite, after its delete went through.
    raw().exec("CREATE TRIGGER refuse BEFORE INSERT ON profiles WHEN NEW.name = 'boom' "
             "BEGIN SELECT RAISE(ABORT, 'refused'); END");
    profile.setName("boom");
    EXPECT_EQ(db.updateProfileValue(&profile, Provider::kCustomName), 1);
    EXPECT_EQ(raw().rows("SELECT _id, name FROM profiles"), (std::vector<Row>{{"1", "kept"}}));
    Profile next(1, "next", false);
    ASSERT_EQ(db.insertValue(&next, Provider::kCustomName, -1), 0);
    EXPECT_EQ(next.getId(), 2);

    // The same inside an open transaction: the transaction goes on and commits the rest.
    ASSERT_EQ(db.beginTransaction(), 0);
    Profile inside(2, "inside", false);
    ASSERT_EQ(db.insertValue(&inside, Provider::kCustomName, -1), 0);
    EXPECT_EQ(db.updateProfileValue(&profile, Provider::kCustomName), 1);
    ASSERT_EQ(db.commitTransaction(), 0);
    EXPECT_EQ(raw().rows("SELECT _id, name FROM profiles ORDER BY _id"),
              (std::vector<Row>{{"1", "kept"}, {"2", "next"}, {"3", "inside"}}));
}

TEST(StoreSafety, ABatchNeverCommittedLeavesTheOldContent) {
    TempDeviceRoot root;
    const std::string path = root.path("data/vendor/korvi/wem_sqlite3.db");
    {
        Provider provider(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
        ASSERT_EQ(provider.initDatabase(), 0);
        Profile profile(0, "Old", false);
        ASSERT_EQ(provider.create(&profile), 0);
        ASSERT_EQ(provider.setDefaultXmlSignature("old-signature"), 0);
    }
    {
        // The rebuild as start-up runs it, cut off before its commit (the process dies).
        Provider provider(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
        ASSERT_EQ(provider.beginTransaction(), 0);
        ASSERT_EQ(provider.clear(), 0);
        ASSERT_EQ(provider.initDatabase(), 0);
        for (int i = 0; i < 3; ++i) {
            Profile profile(i, "New", true);
            ASSERT_EQ(provider.create(&profile), 0);
        }
        ASSERT_EQ(provider.setDefaultXmlSignature("new-signature"), 0);
    }
    Provider provider(std::make_unique<DatabaseHelper>("wem_sqlite3.db"));
    EXPECT_EQ(provider.getDefaultXmlSignature(), "old-signature");
    RawDb raw(path);
    EXPECT_EQ(raw.rows("SELECT _id, custom_name, name FROM profiles"),
              (std::vector<Row>{{"1", "default", "Old"}, {"2", "custom", "Old"}}));
    Profile next(1, "Next", false);
    ASSERT_EQ(provider.create(&next), 0);
    EXPECT_EQ(next.getId(), 4);
}

}  // namespace
}  // namespace korvi
