// The only code that talks SQL. It owns one connection to the settings database
// ("/data/vendor/korvi/<file>" below the device root), knows the seven tables and offers row-level
// operations in terms of the parameter records, plus the key/value configuration table.
//
// Results follow one rule: 0 for success, 1 for failure; failures are logged under the tag
// "DatabaseHelper". Every value that comes from a record, a file or a client is bound to its
// statement, never spliced into SQL text; only the fixed table and column names are.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Parameter.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "store/TableSchema.h"

namespace korvi {

class RowCountCache;
class SqlStatement;

// One result row: column name -> column text.
using RowData = std::map<std::string, std::string>;

class DatabaseHelper {
public:
    static constexpr const char* kDatabaseDir = "/data/vendor/korvi/";

    // Opens (creating it when missing) the file fileName in the database directory. When that
    // fails the helper stays usable but every operation reports that the database is not open.
    explicit DatabaseHelper(const std::string& fileName);
    virtual ~DatabaseHelper();
    DatabaseHelper(const DatabaseHelper&) = delete;
    DatabaseHelper& operator=(const DatabaseHelper&) = delete;

    bool isOpen() const { return mDb != nullptr; }
    // The database file on this machine (below the device root).
    const std::string& getPath() const { return mPath; }

    // Runs one statement of fixed text: success only when it runs to completion.
    int execSQL(const std::string& sql);
    // Rows of a table, 0 when the table cannot be read. Exact, and cheap after the first call:
    // kept per table across this helper's own inserts and deletes, recounted after anything
    // else (free SQL, a failed statement, a change committed by another connection).
    int getRowCount(const std::string& table);
    int getAllRows(std::vector<RowData>& rows, const std::string& table);
    // " (" + the column definitions + ")"; " ()" for a type outside 0 to 6.
    std::string buildColumnString(int type) const;
    // No existence guard: creating a table that exists fails and is only logged.
    int createTable(int type);
    // Creates the seven tables; 1 when any of them could not be created.
    int init();
    // Drops every table.
    int clear();
    int beginTransaction();
    int commitTransaction();
    // Deletes the rows added from the OEM tuning file.
    int clearOemTunings();
    int clearOemDeviceTunings();

    // The configuration table. Inserts do not look for an existing key.
    int insertConfigurationValue(const std::string& key, const std::string& value);
    // The value of key, empty when there is none.
    std::string queryConfigurationValue(const std::string& key);
    // On unless the stored value is "false" (a missing key counts as on).
    bool querySfxStatus(const std::string& key);
    int updateSfxStatus(const std::string& key, bool on);
    // The value of key, "-1" when it is empty or missing.
    std::string querySelectedProfile(const std::string& key);
    int updateSelectedProfile(const std::string& key, const std::string& value);
    int updateTuningDevice(const std::string& key, const std::string& value);

    // Inserts one row for the record under customName. A row id of 0 or less is replaced by the
    // table's row count + 1, which is also written back into the record (device tunings keep
    // theirs). The records without a row id argument use the record's own id.
    int insertValue(IeqPreset* preset, const std::string& customName);
    int insertValue(GeqPreset* preset, const std::string& customName, int64_t rowId);
    int insertValue(Profile* profile, const std::string& customName, int64_t rowId);
    int insertValue(ProfileEndpoint* endpoint, const std::string& customName, int64_t rowId);
    int insertValue(Tuning* tuning, const std::string& customName);
    int insertValue(DeviceTuning* deviceTuning, const std::string& customName);

    // Names of the rows of one kind, in row order.
    int queryIeqPresetNames(std::vector<std::string>& names, const std::string& customName);
    int queryProfileNames(std::vector<std::string>& names, const std::string& customName);

    // Fill the record from the matching row and return 0; without one they log "... doesn't
    // exist!", leave the record unchanged and return 1. The record's values are replaced by the
    // row's parameter columns (an empty text gives an empty list).
    int queryIeqValue(const std::string& presetId, const std::string& customName, IeqPreset* preset);
    int queryGeqValue(const std::string& profileId, const std::string& customName, GeqPreset* preset);
    int queryProfileValue(const std::string& profileId, const std::string& customName,
                          Profile* profile);
    int queryEndpointValue(const std::string& profileId, const std::string& endpoint,
                           const std::string& customName, ProfileEndpoint* endpointRecord);
    int queryTuning(const std::string& name, Tuning* tuning);
    // One new record per row of the port, in row order; the caller owns them.
    int queryDeviceTunings(const std::string& port,
                           std::vector<std::unique_ptr<DeviceTuning>>& deviceTunings);

    // Rewrite the record's row under customName by deleting and inserting it again; the new row
    // keeps the record's row id. Rewriting a "default" row is logged as an error but done all
    // the same: keeping factory rows unchanged is the callers' duty.
    int updateGeqValue(GeqPreset* preset, const std::string& customName);
    int updateProfileValue(Profile* profile, const std::string& customName);
    int updateProfileEndpointValue(ProfileEndpoint* endpoint, const std::string& customName);

private:
    bool checkOpen() const;
    void logPrepareFailure(const std::string& sql) const;
    int runSql(const std::string& sql);
    int stepToDone(SqlStatement& stmt, const std::string& sql);
    int updateConfigurationValue(const std::string& key, const std::string& value);
    // The prepared INSERT of a table, kept for the next row; nullptr when it cannot be prepared.
    SqlStatement* insertStatement(TableType type);
    int executeInsertCommand(TableType type, const std::vector<std::string>& keyTexts,
                             const ParameterValues* values, const std::string& customName,
                             int64_t rowId, ParameterValues* writeBack);
    // Deletes the rows of one profile (and whatever extraWhere adds) under customName and
    // inserts the record again, both or neither.
    int rewriteRow(TableType type, const std::string& customName, const std::string& extraWhere,
                   std::vector<std::string> binds, const std::function<int()>& insert);
    int deleteRows(const TableSchema& schema, const std::string& sql,
                   const std::vector<std::string>& binds);
    // Runs a SELECT with bound values and hands every row over as RowData; 1 when the statement
    // cannot be prepared.
    int queryRows(const std::string& sql, const std::vector<std::string>& binds,
                  std::vector<RowData>& rows, int line);
    int queryNames(TableType type, std::vector<std::string>& names, const std::string& customName,
                   int line);
    int querySingleRow(TableType type, const std::string& where,
                       const std::vector<std::string>& binds, RowData& row, int line);
    std::map<Parameter, std::vector<int>> valuesOf(const RowData& row) const;

    std::string mDatabaseDir;
    std::string mPath;
    std::map<std::string, Parameter> mParameterNames;
    sqlite3* mDb = nullptr;

    // SQLite serialises each call, but not a count followed by an insert, nor the binds and the
    // step of a kept statement: this lock does, for the state the helper keeps itself.
    std::recursive_mutex mCacheLock;
    // Keeps row ids "row count + 1" without counting the table for every insert.
    std::unique_ptr<RowCountCache> mRowCounts;
    // A rebuild inserts thousands of rows: each table's INSERT is prepared once and reused.
    std::unique_ptr<SqlStatement> mInsertStmts[kTableTypeCount];
};

}  // namespace korvi
