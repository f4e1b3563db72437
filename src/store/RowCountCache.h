// Exact row counts of the settings tables, kept so that giving a new row "row count + 1" as its id
// costs the same for the ten-thousandth row as for the first. A count is trusted only while every
// change to its table went through the owner, which reports its own inserts and deletes; anything
// else (free SQL, a failed statement that may have rolled a transaction back, a change committed
// by another connection) makes the owner forget the counts or is noticed here, and the next
// lookup counts again.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "store/SqlStatement.h"

namespace korvi {

class RowCountCache {
public:
    explicit RowCountCache(sqlite3* db) : mDb(db) {}
    RowCountCache(const RowCountCache&) = delete;
    RowCountCache& operator=(const RowCountCache&) = delete;

    // True with the count when a still exact count of table is known.
    bool lookup(const std::string& table, int& count);
    // Read before counting a table; handed back to remember() with the count.
    int64_t dataVersion();
    // Keeps the count of one of the seven tables; other names are never kept.
    void remember(const std::string& table, int count, int64_t versionBeforeCount);
    void adjust(const std::string& table, int delta);
    void forget(const std::string& table) { mCounts.erase(table); }
    void forgetAll() { mCounts.clear(); }
    // Finalizes the kept statement; the cache must not be used afterwards.
    void close() { mVersionStmt.reset(); }

private:
    sqlite3* mDb;
    std::map<std::string, int> mCounts;
    // Moves when another connection commits; a move makes every kept count stale.
    int64_t mCountedVersion = 0;
    std::unique_ptr<SqlStatement> mVersionStmt;
};

}  // namespace korvi
