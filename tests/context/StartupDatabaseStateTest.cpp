// Start-up over a settings database that another process holds locked, or that is corrupt: the
// first must not be taken for an empty database (no rebuild over the user's rows, no context),
// the second is moved aside and rebuilt so the service comes up.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <string>

#include "context/AxContextManager.h"
#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"

namespace korvi {
namespace {

constexpr const char* kDb = "data/vendor/korvi/wem_sqlite3.db";

class StartupDatabaseStateTest : public ::testing::Test {
protected:
    void SetUp() override {
        mRoot.write("sys/kernel/smartpa/smartpa_type", "none\n");
        mRoot.copyFromData("vendor/etc/korvi/wem-default.xml");
        ASSERT_NE(startUp(), nullptr) << "the first start-up builds the database";
    }
    void TearDown() override { AxContextManager::getInstance().release(); }

    AxContext* startUp() {
        AxContextManager& manager = AxContextManager::getInstance();
        manager.release();
        AxContextManager::init_smartpa_type();
        manager.init();
        return manager.getAxContext();
    }
    std::string signature() {
        sqlite3* db = nullptr;
        sqlite3_open_v2(mRoot.path(kDb).c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
        sqlite3_stmt* stmt = nullptr;
        std::string value;
        if (sqlite3_prepare_v2(db, "SELECT value FROM configuration WHERE key = 'signature'", -1,
                               &stmt, nullptr) == SQLITE_OK &&
            sqlite3_step(stmt) == SQLITE_ROW) {
            value = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        }
        sqlite3_finalize(stmt);
        sqlite3_close_v2(db);
        return value;
    }

    test::TempDeviceRoot mRoot;
};

TEST_F(StartupDatabaseStateTest, LockedDatabaseLeavesNoContextAndIsNotRebuilt) {
    const std::string built = signature();
    ASSERT_EQ(built.size(), 32u);
    AxContextManager::getInstance().release();
    // Another process changes the factory file and holds the database locked past the timeout.
    std::ofstream(mRoot.path("vendor/etc/korvi/wem-default.xml"), std::ios::app) << "\n";
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(mRoot.path(kDb).c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    test::LogCapture logs;
    EXPECT_EQ(startUp(), nullptr);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_ERROR, "AxContextManager",
                              "Settings database is locked: the service starts without a context"))
            << logs.dump();
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_EQ(signature(), built) << "a locked database must not be rebuilt";
    EXPECT_FALSE(mRoot.exists(std::string(kDb) + ".corrupt"));
}

TEST_F(StartupDatabaseStateTest, CorruptDatabaseIsMovedAsideAndRebuilt) {
    const std::string built = signature();
    AxContextManager::getInstance().release();
    const std::string garbage(8192, '\x5a');
    mRoot.write(kDb, garbage);
    test::LogCapture logs;
    EXPECT_NE(startUp(), nullptr) << logs.dump();
    EXPECT_EQ(mRoot.read(std::string(kDb) + ".corrupt"), garbage);
    EXPECT_EQ(signature(), built);
    EXPECT_TRUE(logs.containsText("DatabaseHelper", "the user's custom values are lost"))
            << logs.dump();
}

}  // namespace
}  // namespace korvi
