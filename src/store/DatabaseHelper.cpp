#define LOG_TAG "DatabaseHelper"

#include "store/DatabaseHelper.h"

#include <log/log.h>
#include <sqlite3.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "common/DeviceRoot.h"
#include "store/RowCountCache.h"
#include "store/RowKinds.h"
#include "store/SqlStatement.h"
#include "store/TableSchema.h"

namespace korvi {

namespace {

constexpr int kOpenFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;

// The tables in the order the helper keeps their names (and drops them).
constexpr TableType kTablesInNameOrder[] = {
    TABLE_IEQ_PRESETS, TABLE_GEQ_PRESETS, TABLE_PROFILES,      TABLE_PROFILE_ENDPOINTS,
    TABLE_TUNINGS,     TABLE_DEVICE_TUNINGS, TABLE_CONFIGURATION,
};

const TableSchema& schemaOf(int type) {
    return *TableSchema::forType(type);
}

bool isLockedCode(int rc) {
    rc &= 0xff;
    return rc == SQLITE_BUSY || rc == SQLITE_LOCKED;
}

bool isCorruptCode(int rc) {
    rc &= 0xff;
    return rc == SQLITE_CORRUPT || rc == SQLITE_NOTADB;
}

}  // namespace

const char* databaseStateName(DatabaseState state) {
    switch (state) {
        case DatabaseState::kReady: return "ready";
        case DatabaseState::kLocked: return "locked";
        case DatabaseState::kMovedAside: return "moved-aside";
        case DatabaseState::kUnavailable: return "unavailable";
    }
    return "unavailable";
}

// "INSERT INTO <table> VALUES(?,...)", one placeholder per column; built once per process.
const std::string& DatabaseHelper::insertSql(int type) {
    static const std::vector<std::string> kSql = [] {
        std::vector<std::string> all;
        for (int t = 0; t < kTableTypeCount; ++t) {
            const TableSchema& schema = *TableSchema::forType(t);
            std::string sql = "INSERT INTO " + schema.name + " VALUES(?";
            for (size_t i = 0; i < schema.textColumnCount(); ++i) sql += ",?";
            all.push_back(sql + ")");
        }
        return all;
    }();
    return kSql[static_cast<size_t>(type)];
}

DatabaseHelper::DatabaseHelper(const std::string& fileName)
    : mDatabaseDir(kDatabaseDir), mPath(devicePath(mDatabaseDir + fileName)) {
    android::Mutex::Autolock lock(mLock);
    openLocked();
}

DatabaseHelper::~DatabaseHelper() {
    // A transaction still open here is rolled back by SQLite: a batch that was never committed
    // leaves the old content.
    android::Mutex::Autolock lock(mLock);
    closeLocked();
}

void DatabaseHelper::openLocked() {
    if (sqlite3_open_v2(mPath.c_str(), &mDb, kOpenFlags, nullptr) != SQLITE_OK) {
        ALOGE("%s(): cannot open %s: %s", "DatabaseHelper", mPath.c_str(),
              mDb != nullptr ? sqlite3_errmsg(mDb) : "out of memory");
        sqlite3_close_v2(mDb);
        mDb = nullptr;
    }
    // A short-lived reader elsewhere delays a write instead of failing it.
    if (mDb != nullptr) sqlite3_busy_timeout(mDb, mBusyTimeoutMs);
    mRowCounts = std::make_unique<RowCountCache>(mDb);
    mInsertStmts.clear();
    mInsertStmts.resize(kTableTypeCount);
    mQueryStmts.clear();
}

void DatabaseHelper::closeLocked() {
    // The kept statements go before the connection they belong to.
    if (mRowCounts) mRowCounts->close();
    mInsertStmts.clear();
    mQueryStmts.clear();
    if (mDb != nullptr) sqlite3_close_v2(mDb);
    mDb = nullptr;
}

bool DatabaseHelper::isOpen() const {
    android::Mutex::Autolock lock(mLock);
    return mDb != nullptr;
}

void DatabaseHelper::setBusyTimeout(int milliseconds) {
    android::Mutex::Autolock lock(mLock);
    mBusyTimeoutMs = milliseconds;
    if (mDb != nullptr) sqlite3_busy_timeout(mDb, milliseconds);
}

bool DatabaseHelper::checkOpen() const {
    android::Mutex::Autolock lock(mLock);
    return checkOpenLocked();
}

bool DatabaseHelper::checkOpenLocked() const {
    if (mDb == nullptr) {
        ALOGE("the db is not open...");
        return false;
    }
    return true;
}

void DatabaseHelper::logPrepareFailure(const std::string& sql) const {
    ALOGD("failed to prepare SQL : %s", sql.c_str());
    ALOGD("%s(): %s", __func__, sqlite3_errmsg(mDb));
}

int DatabaseHelper::stepToDoneLocked(SqlStatement& stmt, const std::string& sql) {
    const int rc = stmt.step();
    if (rc != SQLITE_DONE) {
        ALOGE("failed to exec SQL: %s", sql.c_str());
        ALOGE("%s(): %s (%d)", "stepToDone", sqlite3_errmsg(mDb), rc);
        // A failed statement may have rolled back a whole transaction: count again.
        mRowCounts->forgetAll();
        return 1;
    }
    return 0;
}

int DatabaseHelper::runSqlLocked(const std::string& sql) {
    if (!checkOpenLocked()) return 1;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        logPrepareFailure(sql);
        return 1;
    }
    return stepToDoneLocked(stmt, sql);
}

int DatabaseHelper::execSQL(const std::string& sql) {
    android::Mutex::Autolock lock(mLock);
    // Free SQL may drop or alter any table: kept queries are prepared again.
    mQueryStmts.clear();
    const int result = runSqlLocked(sql);
    // Free SQL may have changed any table (or rolled a transaction back): count again.
    mRowCounts->forgetAll();
    return result;
}

// ---- the file as a whole ----

DatabaseState DatabaseHelper::checkDatabase() {
    android::Mutex::Autolock lock(mLock);
    if (!checkOpenLocked()) return DatabaseState::kUnavailable;
    std::string problem;
    int rc;
    {
        SqlStatement stmt(mDb, "PRAGMA quick_check");
        rc = stmt.isValid() ? stmt.step() : stmt.prepareResult();
        if (rc == SQLITE_ROW) {
            if (stmt.columnText(0) == "ok") return DatabaseState::kReady;
            problem = "quick_check: " + stmt.columnText(0);
        } else {
            problem = sqlite3_errmsg(mDb);
        }
    }
    if (isLockedCode(rc)) {
        ALOGE("database %s is locked by another connection (%s): left as it is, its content is "
              "unknown", mPath.c_str(), problem.c_str());
        return DatabaseState::kLocked;
    }
    if (rc != SQLITE_ROW && !isCorruptCode(rc)) {
        ALOGE("database %s cannot be checked: %s (%d)", mPath.c_str(), problem.c_str(), rc);
        return DatabaseState::kUnavailable;
    }
    return moveAsideLocked(problem);
}

DatabaseState DatabaseHelper::moveAsideLocked(const std::string& problem) {
    const std::string aside = mPath + kCorruptSuffix;
    closeLocked();
    // A journal belongs to the file it was written for; replayed onto a new file it would do harm.
    for (const char* suffix : {"-journal", "-wal", "-shm"}) std::remove((mPath + suffix).c_str());
    if (std::rename(mPath.c_str(), aside.c_str()) != 0) {
        ALOGE("database %s is corrupt (%s) and cannot be moved aside to %s: %s", mPath.c_str(),
              problem.c_str(), aside.c_str(), strerror(errno));
        return DatabaseState::kUnavailable;
    }
    ALOGE("database %s is corrupt (%s): moved aside to %s; the database is rebuilt from the "
          "factory tuning file and the user's custom values are lost",
          mPath.c_str(), problem.c_str(), aside.c_str());
    openLocked();
    return mDb != nullptr ? DatabaseState::kMovedAside : DatabaseState::kUnavailable;
}

// ---- tables ----

int DatabaseHelper::getRowCount(const std::string& table) {
    android::Mutex::Autolock lock(mLock);
    return getRowCountLocked(table);
}

int DatabaseHelper::getRowCountLocked(const std::string& table) {
    if (!checkOpenLocked()) return 0;
    int count = 0;
    if (mRowCounts->lookup(table, count)) return count;

    const int64_t version = mRowCounts->dataVersion();
    const std::string sql = "SELECT COUNT(*) FROM " + table;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        ALOGE("failed to prepare SQL: %s", sql.c_str());
        return 0;
    }
    if (stmt.step() != SQLITE_ROW) {
        ALOGE("failed to exec SQL: %s", sql.c_str());
        return 0;
    }
    count = static_cast<int>(stmt.columnInt64(0));
    mRowCounts->remember(table, count, version);
    return count;
}

int DatabaseHelper::queryRows(const std::string& sql, const std::vector<std::string>& binds,
                              std::vector<RowData>& rows, int line) {
    android::Mutex::Autolock lock(mLock);
    return queryRowsLocked(sql, binds, rows, line);
}

int DatabaseHelper::queryRowsLocked(const std::string& sql, const std::vector<std::string>& binds,
                                    std::vector<RowData>& rows, int line) {
    if (!checkOpenLocked()) return 1;
    QueryFailure failure;
    if (readRowsLocked(sql, binds, rows, failure)) return 0;
    if (!failure.prepared) {
        ALOGE("failed to prepare sql command: %s, ret = %d, line %d", sql.c_str(), failure.code,
              line);
    } else {
        ALOGE("failed to exec SQL: %s", sql.c_str());
        ALOGE("%s(): %s (%d)", "queryRows", failure.message.c_str(), failure.code);
    }
    return 1;
}

bool DatabaseHelper::readRowsLocked(const std::string& sql, const std::vector<std::string>& binds,
                                    std::vector<RowData>& rows, QueryFailure& failure) {
    int prepareResult = SQLITE_OK;
    SqlStatement* stmt = queryStatementLocked(sql, prepareResult);
    if (stmt == nullptr) {
        failure = {false, prepareResult, std::string()};
        return false;
    }
    for (size_t i = 0; i < binds.size(); ++i) stmt->bindText(static_cast<int>(i) + 1, binds[i]);
    int rc;
    while ((rc = stmt->step()) == SQLITE_ROW) {
        RowData row;
        for (int column = 0; column < stmt->columnCount(); ++column) {
            row.insert_or_assign(stmt->columnName(column), stmt->columnText(column));
        }
        rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) failure = {true, rc, sqlite3_errmsg(mDb)};
    // A kept statement left mid-way would hold the file's read lock until its next use.
    stmt->reset();
    if (rc != SQLITE_DONE) {
        // Not kept after a failure: the next call prepares it afresh against the file as it is.
        mQueryStmts.erase(sql);
        return false;
    }
    return true;
}

SqlStatement* DatabaseHelper::queryStatementLocked(const std::string& sql, int& prepareResult) {
    auto kept = mQueryStmts.find(sql);
    if (kept != mQueryStmts.end()) return kept->second.get();
    auto stmt = std::make_unique<SqlStatement>(mDb, sql);
    prepareResult = stmt->prepareResult();
    if (!stmt->isValid()) return nullptr;
    SqlStatement* prepared = stmt.get();
    mQueryStmts.emplace(sql, std::move(stmt));
    return prepared;
}

int DatabaseHelper::getAllRows(std::vector<RowData>& rows, const std::string& table) {
    return queryRows("SELECT * FROM " + table, {}, rows, __LINE__);
}

std::string DatabaseHelper::buildColumnString(int type) const {
    const TableSchema* schema = TableSchema::forType(type);
    if (schema == nullptr) return " ()";
    std::string columns = " (_id INTEGER";
    for (const std::string& key : schema->keyColumns) columns += ", " + key + " TEXT";
    for (Parameter parameter : schema->parameterColumns) {
        columns += std::string(", ") + kParameterNames[parameter] + " TEXT";
    }
    return columns + ")";
}

int DatabaseHelper::createTable(int type) {
    android::Mutex::Autolock lock(mLock);
    const TableSchema* schema = TableSchema::forType(type);
    if (schema == nullptr) {
        ALOGE("%s(): no table of type %d", __func__, type);
        return 1;
    }
    if (!checkOpenLocked()) return 1;
    // Statements prepared against an earlier table of that name are not reused.
    mInsertStmts[type].reset();
    mQueryStmts.clear();
    if (runSqlLocked("CREATE TABLE " + schema->name + buildColumnString(type)) != 0) return 1;
    mRowCounts->remember(schema->name, 0, mRowCounts->dataVersion());
    return 0;
}

int DatabaseHelper::init() {
    int result = 0;
    for (int type = 0; type < kTableTypeCount; ++type) result |= createTable(type);
    return result;
}

int DatabaseHelper::clear() {
    android::Mutex::Autolock lock(mLock);
    if (!checkOpenLocked()) return 1;
    int result = 0;
    // A table is dropped only when no statement of it is kept: kept queries go first.
    mQueryStmts.clear();
    for (TableType type : kTablesInNameOrder) {
        const std::string& table = schemaOf(type).name;
        mInsertStmts[type].reset();
        if (runSqlLocked("DROP TABLE IF EXISTS " + table) != 0) {
            result = 1;
            continue;
        }
        mRowCounts->forget(table);
    }
    return result;
}

int DatabaseHelper::beginTransaction() {
    android::Mutex::Autolock lock(mLock);
    return runSqlLocked("BEGIN EXCLUSIVE");
}

int DatabaseHelper::commitTransaction() {
    android::Mutex::Autolock lock(mLock);
    if (runSqlLocked("COMMIT") == 0) return 0;
    // A COMMIT that meets a lock leaves the transaction open, and every later write would nest
    // in it and be lost at close: end it here, so that what is reported failed is not in the file
    // and what comes next is written on its own.
    if (mDb != nullptr && !sqlite3_get_autocommit(mDb)) {
        sqlite3_exec(mDb, "ROLLBACK", nullptr, nullptr, nullptr);
        ALOGE("%s(): the transaction was rolled back, none of its writes is in the file", __func__);
    }
    mRowCounts->forgetAll();
    return 1;
}

int DatabaseHelper::deleteRowsLocked(const std::string& table, const std::string& sql,
                                     const std::vector<std::string>& binds) {
    if (!checkOpenLocked()) return 1;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        logPrepareFailure(sql);
        return 1;
    }
    for (size_t i = 0; i < binds.size(); ++i) stmt.bindText(static_cast<int>(i) + 1, binds[i]);
    if (stepToDoneLocked(stmt, sql) != 0) return 1;
    mRowCounts->adjust(table, -sqlite3_changes(mDb));
    return 0;
}

int DatabaseHelper::clearOemTunings() {
    const std::string& table = schemaOf(TABLE_TUNINGS).name;
    const std::string sql =
            "DELETE from " + table + " WHERE custom_name = '" + kOemRowName + "'";
    ALOGD("Delete existing tuning with SQL [%s]", sql.c_str());
    android::Mutex::Autolock lock(mLock);
    return deleteRowsLocked(table, sql, {});
}

int DatabaseHelper::clearOemDeviceTunings() {
    const std::string& table = schemaOf(TABLE_DEVICE_TUNINGS).name;
    const std::string sql =
            "DELETE from " + table + " WHERE custom_name = '" + kOemRowName + "'";
    ALOGD("Delete existing device tuning with SQL [%s]", sql.c_str());
    android::Mutex::Autolock lock(mLock);
    return deleteRowsLocked(table, sql, {});
}

SqlStatement* DatabaseHelper::insertStatementLocked(int type) {
    std::unique_ptr<SqlStatement>& stmt = mInsertStmts[static_cast<size_t>(type)];
    if (!stmt) {
        const std::string& sql = insertSql(type);
        stmt = std::make_unique<SqlStatement>(mDb, sql);
        if (!stmt->isValid()) {
            logPrepareFailure(sql);
            stmt.reset();
        }
    }
    return stmt.get();
}

// ---- configuration table ----

int DatabaseHelper::insertConfigurationValue(const std::string& key, const std::string& value) {
    android::Mutex::Autolock lock(mLock);
    if (mDb == nullptr) {
        ALOGE("db is not connected");
        return 1;
    }
    const std::string& table = schemaOf(TABLE_CONFIGURATION).name;
    const int64_t rowId = getRowCountLocked(table) + 1;
    SqlStatement* stmt = insertStatementLocked(TABLE_CONFIGURATION);
    if (stmt == nullptr) return 1;
    stmt->bindInt64(1, rowId);
    stmt->bindText(2, key);
    stmt->bindText(3, value);
    const int result = stepToDoneLocked(*stmt, insertSql(TABLE_CONFIGURATION));
    stmt->reset();
    if (result != 0) return 1;
    mRowCounts->adjust(table, 1);
    return 0;
}

std::string DatabaseHelper::queryConfigurationValue(const std::string& key) {
    std::vector<RowData> rows;
    queryRows("SELECT value FROM " + schemaOf(TABLE_CONFIGURATION).name + " WHERE key=?", {key},
              rows, __LINE__);
    if (rows.empty()) return std::string();
    auto it = rows.front().find("value");
    return it != rows.front().end() ? it->second : std::string();
}

bool DatabaseHelper::querySfxStatus(const std::string& key) {
    return queryConfigurationValue(key) != "false";
}

std::string DatabaseHelper::querySelectedProfile(const std::string& key) {
    std::string value = queryConfigurationValue(key);
    return value.empty() ? "-1" : value;
}

int DatabaseHelper::updateConfigurationValue(const std::string& key, const std::string& value) {
    android::Mutex::Autolock lock(mLock);
    if (mDb == nullptr) {
        ALOGE("the database is not connected");
        return 1;
    }
    const std::string sql =
            "UPDATE " + schemaOf(TABLE_CONFIGURATION).name + " SET value=? WHERE key=?";
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        logPrepareFailure(sql);
        return 1;
    }
    stmt.bindText(1, value);
    stmt.bindText(2, key);
    if (stepToDoneLocked(stmt, sql) != 0) return 1;
    // Keys are inserted once, when the database is built: a missing row is a database that was
    // not built right, and an update that wrote nothing must not be taken for a done one.
    if (sqlite3_changes(mDb) == 0) {
        ALOGE("%s(): no configuration row for key %s, nothing written", __func__, key.c_str());
        return 1;
    }
    return 0;
}

int DatabaseHelper::updateSfxStatus(const std::string& key, bool on) {
    return updateConfigurationValue(key, on ? "true" : "false");
}

int DatabaseHelper::updateSelectedProfile(const std::string& key, const std::string& value) {
    return updateConfigurationValue(key, value);
}

int DatabaseHelper::updateTuningDevice(const std::string& key, const std::string& value) {
    return updateConfigurationValue(key, value);
}

}  // namespace korvi
