// One prepared SQLite statement with exactly one owner: it is finalized when the owner goes, on
// every path, whatever happened in between. Values are bound by position, never spliced into the
// SQL text, so names with quotes, semicolons or any other byte reach the database unchanged.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

namespace korvi {

class SqlStatement {
public:
    // Prepares sql on db; check isValid() (and prepareResult()) before use.
    SqlStatement(sqlite3* db, const std::string& sql);
    ~SqlStatement();
    SqlStatement(const SqlStatement&) = delete;
    SqlStatement& operator=(const SqlStatement&) = delete;

    bool isValid() const { return mStmt != nullptr; }
    int prepareResult() const { return mPrepareResult; }

    // Positions count from 1, as in sqlite3_bind_*. Each returns the SQLite result code.
    int bindText(int position, const std::string& text);
    int bindInt64(int position, int64_t value);

    // One sqlite3_step: SQLITE_ROW, SQLITE_DONE or an error code.
    int step();
    // Rewinds the statement and drops its bindings so it can run again with new values.
    void reset();

    int columnCount() const;
    const char* columnName(int column) const;
    // The column's text; an SQL NULL reads as the empty text.
    std::string columnText(int column) const;
    int64_t columnInt64(int column) const;

private:
    sqlite3_stmt* mStmt = nullptr;
    int mPrepareResult;
};

}  // namespace korvi
