// The only code that talks SQL. It owns one connection to the settings database
// ("/data/vendor/korvi/<file>" below the device root), knows the seven tables and offers row-level
// operations in terms of the parameter records, plus the key/value configuration table.
//
// Results follow one rule: 0 for success, 1 for failure; failures are logged under the tag
// "DatabaseHelper". Every value that comes from a record, a file or a client is bound to its
// statement, never spliced into SQL text; only the fixed table and column names are.
//
// A write reported as done is in the file: every statement that ends a transaction or a savepoint
// is checked, and a failed one is rolled back and reported. The connection waits up to
// kBusyTimeoutMs for another connection's lock before a statement gives up with "database is
// locked".
//
// Thread safety: every public operation takes mLock; the functions named ...Locked expect it held.
#pragma once

#include <utils/Mutex.h>

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "model/Endpoint.h"
#include "store/DatabaseState.h"

struct sqlite3;

namespace korvi {

class DeviceTuning;
class GeqPreset;
class IeqPreset;
class ParameterValues;
class Profile;
class ProfileEndpoint;
class RowCountCache;
class SqlStatement;
class Tuning;

// One result row: column name -> column text.
using RowData = std::map<std::string, std::string>;

class DatabaseHelper {
public:
    static constexpr const char* kDatabaseDir = "/data/vendor/korvi/";
    // The suffix a corrupt file gets when it is moved aside.
    static constexpr const char* kCorruptSuffix = ".corrupt";
    static constexpr int kBusyTimeoutMs = 2000;

    // Opens (creating it when missing) the file fileName in the database directory. When that
    // fails the helper stays usable but every operation reports that the database is not open.
    explicit DatabaseHelper(const std::string& fileName);
    virtual ~DatabaseHelper();
    DatabaseHelper(const DatabaseHelper&) = delete;
    DatabaseHelper& operator=(const DatabaseHelper&) = delete;

    bool isOpen() const;
    // The database file on this machine (below the device root).
    const std::string& getPath() const { return mPath; }
    // How long a statement waits for another connection's lock; kBusyTimeoutMs by default.
    void setBusyTimeout(int milliseconds);

    // Tells a readable file from a locked and a corrupt one (see DatabaseState). A corrupt file
    // is moved aside as getPath() + kCorruptSuffix and an empty database is opened in its place.
    DatabaseState checkDatabase();

    // Runs one statement of fixed text: success only when it runs to completion.
    int execSQL(const std::string& sql);
    // Rows of a table, 0 when the table cannot be read. Exact, and cheap after the first call:
    // kept per table across this helper's own inserts and deletes, recounted after anything
    // else (free SQL, a failed statement, a change committed by another connection).
    int getRowCount(const std::string& table);
    int getAllRows(std::vector<RowData>& rows, const std::string& table);
    // " (" + the column definitions + ")"; " ()" for a type outside 0 to 6 (a TableType).
    std::string buildColumnString(int type) const;
    // No existence guard: creating a table that exists fails and is only logged.
    int createTable(int type);
    // Creates the seven tables; 1 when any of them could not be created.
    int init();
    // Drops every table.
    int clear();
    int beginTransaction();
    // A COMMIT that fails (another connection still reads the file after the busy timeout) rolls
    // the whole transaction back and reports 1: nothing of it is in the file then.
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
    // The updates report 1 when the key has no row: nothing was written then.
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
    // queryEndpointValue for every endpoint of a profile (records and found indexed by Endpoint;
    // a null record counts as not found), with the same results and messages, but reading the
    // profile's rows in one pass over the table instead of one query per endpoint.
    void queryEndpointValues(const std::string& profileId, const std::string& customName,
                             const std::array<ProfileEndpoint*, kEndpointCount>& records,
                             std::array<bool, kEndpointCount>& found);
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
    // One row to insert: the table (a TableType), the key column texts after custom_name, the
    // record whose parameter columns are written (nullptr: all empty) and the record that learns
    // a new row id (nullptr: none).
    struct RowInsert {
        int type;
        std::vector<std::string> keyTexts;
        const ParameterValues* values;
        int64_t rowId;
        ParameterValues* writeBack;
    };

    static RowInsert rowOf(IeqPreset* preset);
    static RowInsert rowOf(GeqPreset* preset, int64_t rowId);
    static RowInsert rowOf(Profile* profile, int64_t rowId);
    static RowInsert rowOf(ProfileEndpoint* endpoint, int64_t rowId);
    static const std::string& insertSql(int type);
    void openLocked() REQUIRES(mLock);
    DatabaseState moveAsideLocked(const std::string& problem) REQUIRES(mLock);
    void closeLocked() REQUIRES(mLock);
    bool checkOpen() const EXCLUDES(mLock);
    bool checkOpenLocked() const REQUIRES(mLock);
    void logPrepareFailure(const std::string& sql) const REQUIRES(mLock);
    int runSqlLocked(const std::string& sql) REQUIRES(mLock);
    int stepToDoneLocked(SqlStatement& stmt, const std::string& sql) REQUIRES(mLock);
    int getRowCountLocked(const std::string& table) REQUIRES(mLock);
    int updateConfigurationValue(const std::string& key, const std::string& value)
            EXCLUDES(mLock);
    // The prepared INSERT of a table, kept for the next row; nullptr when it cannot be prepared.
    SqlStatement* insertStatementLocked(int type) REQUIRES(mLock);
    // The prepared statement of a query text, kept for the next call; nullptr (nothing kept)
    // when it cannot be prepared, with the prepare result in prepareResult.
    SqlStatement* queryStatementLocked(const std::string& sql, int& prepareResult)
            REQUIRES(mLock);
    int insertRow(const RowInsert& row, const std::string& customName) EXCLUDES(mLock);
    int insertRowLocked(const RowInsert& row, const std::string& customName) REQUIRES(mLock);
    // Deletes the rows of one profile (and whatever extraWhere adds) under customName and
    // inserts the record again, both or neither.
    int rewriteRow(const RowInsert& row, const std::string& customName,
                   const std::string& extraWhere, const std::vector<std::string>& binds)
            EXCLUDES(mLock);
    int deleteRowsLocked(const std::string& table, const std::string& sql,
                         const std::vector<std::string>& binds) REQUIRES(mLock);
    // Runs a SELECT with bound values and hands every row over as RowData; 1 when the statement
    // cannot be prepared or does not run to its end.
    int queryRows(const std::string& sql, const std::vector<std::string>& binds,
                  std::vector<RowData>& rows, int line) EXCLUDES(mLock);
    int queryRowsLocked(const std::string& sql, const std::vector<std::string>& binds,
                        std::vector<RowData>& rows, int line) REQUIRES(mLock);
    // Why a query did not run to its end: not prepared (code: the prepare result) or a failed
    // step (code and message of the step).
    struct QueryFailure {
        bool prepared = false;
        int code = 0;
        std::string message;
    };
    // queryRowsLocked without its log lines: true when the query ran to its end.
    bool readRowsLocked(const std::string& sql, const std::vector<std::string>& binds,
                        std::vector<RowData>& rows, QueryFailure& failure) REQUIRES(mLock);
    int queryNames(int type, std::vector<std::string>& names, const std::string& customName,
                   int line);
    int querySingleRow(int type, const std::string& where, const std::vector<std::string>& binds,
                       RowData& row, int line);

    const std::string mDatabaseDir;
    const std::string mPath;

    // SQLite serialises each call, but not a count followed by an insert, nor the binds and the
    // step of a kept statement, nor closing and reopening the file: this lock does.
    mutable android::Mutex mLock;
    sqlite3* mDb GUARDED_BY(mLock) = nullptr;
    int mBusyTimeoutMs GUARDED_BY(mLock) = kBusyTimeoutMs;
    // Keeps row ids "row count + 1" without counting the table for every insert.
    std::unique_ptr<RowCountCache> mRowCounts GUARDED_BY(mLock);
    // A rebuild inserts thousands of rows: each table's INSERT is prepared once and reused.
    std::vector<std::unique_ptr<SqlStatement>> mInsertStmts GUARDED_BY(mLock);
    // Start-up reads hundreds of rows through a handful of SELECTs: each is prepared once, by
    // its text, and reset after every use so that no kept statement holds the file.
    std::map<std::string, std::unique_ptr<SqlStatement>> mQueryStmts GUARDED_BY(mLock);
};

}  // namespace korvi
