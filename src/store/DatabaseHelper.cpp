#define LOG_TAG "DatabaseHelper"

#include "store/DatabaseHelper.h"

#include <log/log.h>

#include <cstdlib>
#include <mutex>

#include "common/DeviceRoot.h"
#include "common/IntText.h"
#include "store/Provider.h"
#include "store/RowCountCache.h"
#include "store/RowRewrite.h"
#include "store/SqlStatement.h"

namespace korvi {

namespace {

constexpr int kOpenFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;

// The tables in the order the helper keeps their names (and drops them).
constexpr TableType kTablesInNameOrder[] = {
    TABLE_IEQ_PRESETS, TABLE_GEQ_PRESETS, TABLE_PROFILES,      TABLE_PROFILE_ENDPOINTS,
    TABLE_TUNINGS,     TABLE_DEVICE_TUNINGS, TABLE_CONFIGURATION,
};

const std::string& textOf(const RowData& row, const char* column) {
    static const std::string kEmpty;
    auto it = row.find(column);
    return it != row.end() ? it->second : kEmpty;
}

int64_t int64Of(const std::string& text) {
    return std::strtoll(text.c_str(), nullptr, 10);
}

const char* boolText(bool value) {
    return value ? "1" : "0";
}

bool boolOf(const std::string& text) {
    return string2Int(text) != 0;
}

const TableSchema& schemaOf(TableType type) {
    return *TableSchema::forType(type);
}

// "INSERT INTO <table> VALUES(?,...)", one placeholder per column; built once per process.
const std::string& insertSql(TableType type) {
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

}  // namespace

DatabaseHelper::DatabaseHelper(const std::string& fileName)
    : mDatabaseDir(kDatabaseDir), mPath(devicePath(mDatabaseDir + fileName)) {
    if (sqlite3_open_v2(mPath.c_str(), &mDb, kOpenFlags, nullptr) != SQLITE_OK) {
        ALOGE("%s(): cannot open %s: %s", __func__, mPath.c_str(),
              mDb != nullptr ? sqlite3_errmsg(mDb) : "out of memory");
        sqlite3_close_v2(mDb);
        mDb = nullptr;
    }
    mRowCounts = std::make_unique<RowCountCache>(mDb);
    for (int i = 0; i < kParameterCount; ++i) {
        mParameterNames.emplace(kParameterNames[i], static_cast<Parameter>(i));
    }
}

DatabaseHelper::~DatabaseHelper() {
    // The cached statement goes before the connection it belongs to. A transaction still open
    // here is rolled back by SQLite: a batch that was never committed leaves the old content.
    mRowCounts->close();
    for (auto& stmt : mInsertStmts) stmt.reset();
    if (mDb != nullptr) sqlite3_close_v2(mDb);
}

bool DatabaseHelper::checkOpen() const {
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

int DatabaseHelper::stepToDone(SqlStatement& stmt, const std::string& sql) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    const int rc = stmt.step();
    if (rc != SQLITE_DONE) {
        ALOGE("failed to exec SQL: %s", sql.c_str());
        ALOGE("%s(): %s (%d)", __func__, sqlite3_errmsg(mDb), rc);
        // A failed statement may have rolled back a whole transaction: count again.
        mRowCounts->forgetAll();
        return 1;
    }
    return 0;
}

int DatabaseHelper::runSql(const std::string& sql) {
    if (!checkOpen()) return 1;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        logPrepareFailure(sql);
        return 1;
    }
    return stepToDone(stmt, sql);
}

int DatabaseHelper::execSQL(const std::string& sql) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    const int result = runSql(sql);
    // Free SQL may have changed any table (or rolled a transaction back): count again.
    mRowCounts->forgetAll();
    return result;
}

int DatabaseHelper::getRowCount(const std::string& table) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    if (!checkOpen()) return 0;
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
    if (!checkOpen()) return 1;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        ALOGE("failed to prepare sql command: %s, ret = %d, line %d", sql.c_str(),
              stmt.prepareResult(), line);
        return 1;
    }
    for (size_t i = 0; i < binds.size(); ++i) stmt.bindText(static_cast<int>(i) + 1, binds[i]);
    int rc;
    while ((rc = stmt.step()) == SQLITE_ROW) {
        RowData row;
        for (int column = 0; column < stmt.columnCount(); ++column) {
            row[stmt.columnName(column)] = stmt.columnText(column);
        }
        rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        ALOGE("failed to exec SQL: %s", sql.c_str());
        ALOGE("%s(): %s (%d)", __func__, sqlite3_errmsg(mDb), rc);
        return 1;
    }
    return 0;
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
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    const TableSchema* schema = TableSchema::forType(type);
    if (schema == nullptr) {
        ALOGE("%s(): no table of type %d", __func__, type);
        return 1;
    }
    // Statements prepared against an earlier table of that name are not reused.
    mInsertStmts[type].reset();
    if (runSql("CREATE TABLE " + schema->name + buildColumnString(type)) != 0) return 1;
    mRowCounts->remember(schema->name, 0, mRowCounts->dataVersion());
    return 0;
}

int DatabaseHelper::init() {
    int result = 0;
    for (int type = 0; type < kTableTypeCount; ++type) result |= createTable(type);
    return result;
}

int DatabaseHelper::clear() {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    int result = 0;
    for (TableType type : kTablesInNameOrder) {
        const std::string& table = schemaOf(type).name;
        mInsertStmts[type].reset();
        if (runSql("DROP TABLE IF EXISTS " + table) != 0) {
            result = 1;
            continue;
        }
        mRowCounts->forget(table);
    }
    return result;
}

int DatabaseHelper::beginTransaction() {
    return runSql("BEGIN EXCLUSIVE");
}

int DatabaseHelper::commitTransaction() {
    return runSql("COMMIT");
}

int DatabaseHelper::deleteRows(const TableSchema& schema, const std::string& sql,
                               const std::vector<std::string>& binds) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    if (!checkOpen()) return 1;
    SqlStatement stmt(mDb, sql);
    if (!stmt.isValid()) {
        logPrepareFailure(sql);
        return 1;
    }
    for (size_t i = 0; i < binds.size(); ++i) stmt.bindText(static_cast<int>(i) + 1, binds[i]);
    if (stepToDone(stmt, sql) != 0) return 1;
    mRowCounts->adjust(schema.name, -sqlite3_changes(mDb));
    return 0;
}

int DatabaseHelper::clearOemTunings() {
    const TableSchema& schema = schemaOf(TABLE_TUNINGS);
    const std::string sql = "DELETE from " + schema.name + " WHERE custom_name = '" +
                            Provider::kOemName + "'";
    ALOGD("Delete existing tuning with SQL [%s]", sql.c_str());
    return deleteRows(schema, sql, {});
}

int DatabaseHelper::clearOemDeviceTunings() {
    const TableSchema& schema = schemaOf(TABLE_DEVICE_TUNINGS);
    const std::string sql = "DELETE from " + schema.name + " WHERE custom_name = '" +
                            Provider::kOemName + "'";
    ALOGD("Delete existing device tuning with SQL [%s]", sql.c_str());
    return deleteRows(schema, sql, {});
}

SqlStatement* DatabaseHelper::insertStatement(TableType type) {
    std::unique_ptr<SqlStatement>& stmt = mInsertStmts[type];
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
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    if (mDb == nullptr) {
        ALOGE("db is not connected");
        return 1;
    }
    const std::string& table = schemaOf(TABLE_CONFIGURATION).name;
    const int64_t rowId = getRowCount(table) + 1;
    SqlStatement* stmt = insertStatement(TABLE_CONFIGURATION);
    if (stmt == nullptr) return 1;
    stmt->bindInt64(1, rowId);
    stmt->bindText(2, key);
    stmt->bindText(3, value);
    const int result = stepToDone(*stmt, insertSql(TABLE_CONFIGURATION));
    stmt->reset();
    if (result != 0) return 1;
    mRowCounts->adjust(table, 1);
    return 0;
}

std::string DatabaseHelper::queryConfigurationValue(const std::string& key) {
    std::vector<RowData> rows;
    queryRows("SELECT value FROM " + schemaOf(TABLE_CONFIGURATION).name + " WHERE key=?", {key},
              rows, __LINE__);
    return rows.empty() ? std::string() : textOf(rows.front(), "value");
}

bool DatabaseHelper::querySfxStatus(const std::string& key) {
    return queryConfigurationValue(key) != "false";
}

std::string DatabaseHelper::querySelectedProfile(const std::string& key) {
    std::string value = queryConfigurationValue(key);
    return value.empty() ? "-1" : value;
}

int DatabaseHelper::updateConfigurationValue(const std::string& key, const std::string& value) {
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
    return stepToDone(stmt, sql);
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

// ---- record rows ----

int DatabaseHelper::executeInsertCommand(TableType type, const std::vector<std::string>& keyTexts,
                                         const ParameterValues* values,
                                         const std::string& customName, int64_t rowId,
                                         ParameterValues* writeBack) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    const TableSchema& schema = schemaOf(type);
    LOG_ALWAYS_FATAL_IF(keyTexts.size() + 1 != schema.keyColumns.size(),
                        "%s: %zu key texts for table %s", __func__, keyTexts.size(),
                        schema.name.c_str());
    if (!checkOpen()) return 1;
    // Row ids stay "row count + 1 at insert time"; 0 is treated like -1 on purpose.
    const int64_t id = rowId >= 1 ? rowId : getRowCount(schema.name) + 1;

    SqlStatement* stmt = insertStatement(type);
    if (stmt == nullptr) return 1;
    int position = 1;
    stmt->bindInt64(position++, id);
    stmt->bindText(position++, customName);
    for (const std::string& key : keyTexts) stmt->bindText(position++, key);
    for (Parameter parameter : schema.parameterColumns) {
        // An absent parameter is stored as the empty text; reading never inserts into the map.
        std::string text;
        if (values != nullptr) {
            auto it = values->mValues.find(parameter);
            if (it != values->mValues.end()) text = intVector2String(it->second);
        }
        stmt->bindText(position++, text);
    }
    const int result = stepToDone(*stmt, insertSql(type));
    stmt->reset();  // a kept statement must not hold the table between rows
    if (result != 0) return 1;
    mRowCounts->adjust(schema.name, 1);
    if (writeBack != nullptr && rowId < 1) writeBack->setId(id);
    return 0;
}

int DatabaseHelper::insertValue(IeqPreset* preset, const std::string& customName) {
    if (preset == nullptr) {
        ALOGE("invalide value");
        return 1;
    }
    return executeInsertCommand(TABLE_IEQ_PRESETS, {int2String(preset->getPresetId()), preset->getName()},
                                preset, customName, preset->getId(), preset);
}

int DatabaseHelper::insertValue(GeqPreset* preset, const std::string& customName, int64_t rowId) {
    if (preset == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return executeInsertCommand(TABLE_GEQ_PRESETS, {int2String(preset->getProfileId())}, preset,
                                customName, rowId, preset);
}

int DatabaseHelper::insertValue(Profile* profile, const std::string& customName, int64_t rowId) {
    if (profile == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return executeInsertCommand(TABLE_PROFILES,
                                {int2String(profile->getProfileId()), profile->getName(),
                                 boolText(profile->isMobility()),
                                 int2String(profile->getSelectedGeqPreset())},
                                profile, customName, rowId, profile);
}

int DatabaseHelper::insertValue(ProfileEndpoint* endpoint, const std::string& customName,
                                int64_t rowId) {
    if (endpoint == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return executeInsertCommand(TABLE_PROFILE_ENDPOINTS,
                                {int2String(endpoint->getProfileId()),
                                 endpointName(endpoint->getEndpoint()),
                                 int2String(endpoint->getSelectedIeqPreset())},
                                endpoint, customName, rowId, endpoint);
}

int DatabaseHelper::insertValue(Tuning* tuning, const std::string& customName) {
    if (tuning == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return executeInsertCommand(TABLE_TUNINGS,
                                {tuning->getName(), endpointName(tuning->getEndpoint()),
                                 boolText(tuning->isMono()), boolText(tuning->isReadonly())},
                                tuning, customName, tuning->getId(), tuning);
}

int DatabaseHelper::insertValue(DeviceTuning* deviceTuning, const std::string& customName) {
    if (deviceTuning == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    // A device tuning does not learn its row id.
    return executeInsertCommand(TABLE_DEVICE_TUNINGS,
                                {deviceTuning->getDevice(), deviceTuning->getPort(),
                                 deviceTuning->getTuning()},
                                nullptr, customName, deviceTuning->getId(), nullptr);
}

int DatabaseHelper::queryNames(TableType type, std::vector<std::string>& names,
                               const std::string& customName, int line) {
    std::vector<RowData> rows;
    const int result = queryRows("SELECT * FROM " + schemaOf(type).name + " WHERE custom_name=?",
                                 {customName}, rows, line);
    for (const RowData& row : rows) names.push_back(textOf(row, "name"));
    return result;
}

int DatabaseHelper::queryIeqPresetNames(std::vector<std::string>& names,
                                        const std::string& customName) {
    return queryNames(TABLE_IEQ_PRESETS, names, customName, __LINE__);
}

int DatabaseHelper::queryProfileNames(std::vector<std::string>& names,
                                      const std::string& customName) {
    return queryNames(TABLE_PROFILES, names, customName, __LINE__);
}

int DatabaseHelper::querySingleRow(TableType type, const std::string& where,
                                   const std::vector<std::string>& binds, RowData& row, int line) {
    std::vector<RowData> rows;
    queryRows("SELECT * FROM " + schemaOf(type).name + where, binds, rows, line);
    if (rows.empty()) return 1;
    row = std::move(rows.front());
    return 0;
}

std::map<Parameter, std::vector<int>> DatabaseHelper::valuesOf(const RowData& row) const {
    std::map<Parameter, std::vector<int>> values;
    for (const auto& [column, text] : row) {
        auto it = mParameterNames.find(column);
        if (it == mParameterNames.end()) continue;  // a key column, read by name
        std::vector<int>& list = values[it->second];
        string2IntVector(text, list);
    }
    return values;
}

int DatabaseHelper::queryIeqValue(const std::string& presetId, const std::string& customName,
                                  IeqPreset* preset) {
    if (!checkOpen()) return 1;
    RowData row;
    if (preset == nullptr ||
        querySingleRow(TABLE_IEQ_PRESETS, " WHERE preset_id=? AND custom_name=?",
                       {presetId, customName}, row, __LINE__) != 0) {
        ALOGE("IeqPreset doesn't exist!");
        return 1;
    }
    ALOGD("ieqId: %s, name: %s", presetId.c_str(), textOf(row, "name").c_str());
    preset->setId(int64Of(textOf(row, "_id")));
    preset->setName(textOf(row, "name"));
    // The preset's own id stays among its values: it has no column of its own.
    std::map<Parameter, std::vector<int>> values = valuesOf(row);
    values[IEQ_ID] = {preset->getPresetId()};
    preset->mValues = std::move(values);
    return 0;
}

int DatabaseHelper::queryGeqValue(const std::string& profileId, const std::string& customName,
                                  GeqPreset* preset) {
    if (!checkOpen()) return 1;
    RowData row;
    if (preset == nullptr ||
        querySingleRow(TABLE_GEQ_PRESETS, " WHERE profile_id=? AND custom_name=?",
                       {profileId, customName}, row, __LINE__) != 0) {
        ALOGE("GeqPreset doesn't exist!");
        return 1;
    }
    preset->setId(int64Of(textOf(row, "_id")));
    preset->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryProfileValue(const std::string& profileId, const std::string& customName,
                                      Profile* profile) {
    if (!checkOpen()) return 1;
    RowData row;
    if (profile == nullptr ||
        querySingleRow(TABLE_PROFILES, " WHERE profile_id=? AND custom_name=?",
                       {profileId, customName}, row, __LINE__) != 0) {
        ALOGE("Profile doesn't exist!");
        return 1;
    }
    profile->setId(int64Of(textOf(row, "_id")));
    profile->setName(textOf(row, "name"));
    profile->setMobility(boolOf(textOf(row, "is_mobility")));
    profile->setSelectedGeqPreset(string2Int(textOf(row, "selected_geq_preset_id")));
    profile->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryEndpointValue(const std::string& profileId, const std::string& endpoint,
                                       const std::string& customName,
                                       ProfileEndpoint* endpointRecord) {
    if (!checkOpen()) return 1;
    RowData row;
    if (endpointRecord == nullptr ||
        querySingleRow(TABLE_PROFILE_ENDPOINTS,
                       " WHERE profile_id=? AND endpoint=? AND custom_name=?",
                       {profileId, endpoint, customName}, row, __LINE__) != 0) {
        ALOGE("Endpoint doesn't exist!");
        return 1;
    }
    endpointRecord->setId(int64Of(textOf(row, "_id")));
    endpointRecord->setSelectedIeqPreset(string2Int(textOf(row, "selected_ieq_preset_id")));
    endpointRecord->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryTuning(const std::string& name, Tuning* tuning) {
    if (!checkOpen()) return 1;
    RowData row;
    if (tuning == nullptr ||
        querySingleRow(TABLE_TUNINGS, " WHERE name=?", {name}, row, __LINE__) != 0) {
        ALOGE("Tuning doesn't exist!");
        return 1;
    }
    tuning->setEndpoint(textOf(row, "endpoint"));
    tuning->setMono(boolOf(textOf(row, "is_mono")));
    tuning->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryDeviceTunings(const std::string& port,
                                       std::vector<std::unique_ptr<DeviceTuning>>& deviceTunings) {
    std::vector<RowData> rows;
    int result = queryRows("SELECT * FROM " + schemaOf(TABLE_DEVICE_TUNINGS).name +
                                   " WHERE port=?",
                           {port}, rows, __LINE__);
    for (const RowData& row : rows) {
        deviceTunings.push_back(std::make_unique<DeviceTuning>(
                int64Of(textOf(row, "_id")), textOf(row, "device"), textOf(row, "port"),
                textOf(row, "tuning_id")));
    }
    return result;
}

// ---- delete-and-insert updates ----

int DatabaseHelper::rewriteRow(TableType type, const std::string& customName,
                               const std::string& extraWhere, std::vector<std::string> binds,
                               const std::function<int()>& insert) {
    std::lock_guard<std::recursive_mutex> guard(mCacheLock);
    if (customName == Provider::kDefaultName) {
        ALOGE("the default value can't be updated, %d", __LINE__);
    }
    if (!checkOpen()) return 1;
    const TableSchema& schema = schemaOf(type);
    RowRewrite rewrite(mDb);
    if (rewrite.isActive() &&
        deleteRows(schema,
                   "DELETE FROM " + schema.name + " WHERE custom_name=? AND profile_id=?" +
                           extraWhere,
                   binds) == 0 &&
        insert() == 0) {
        rewrite.commit();
        return 0;
    }
    mRowCounts->forgetAll();  // the rewrite was rolled back
    return 1;
}

int DatabaseHelper::updateGeqValue(GeqPreset* preset, const std::string& customName) {
    if (preset == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(TABLE_GEQ_PRESETS, customName, "",
                      {customName, int2String(preset->getProfileId())},
                      [&] { return insertValue(preset, customName, preset->getId()); });
}

int DatabaseHelper::updateProfileValue(Profile* profile, const std::string& customName) {
    if (profile == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(TABLE_PROFILES, customName, "",
                      {customName, int2String(profile->getProfileId())},
                      [&] { return insertValue(profile, customName, profile->getId()); });
}

int DatabaseHelper::updateProfileEndpointValue(ProfileEndpoint* endpoint,
                                               const std::string& customName) {
    if (endpoint == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(TABLE_PROFILE_ENDPOINTS, customName, " AND endpoint=?",
                      {customName, int2String(endpoint->getProfileId()),
                       endpointName(endpoint->getEndpoint())},
                      [&] { return insertValue(endpoint, customName, endpoint->getId()); });
}

}  // namespace korvi
