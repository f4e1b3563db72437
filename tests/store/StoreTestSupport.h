// Helpers of the settings-store tests: a second, plain SQLite connection that reads (or, to play
// another writer, changes) the database file behind the code's back, and record builders.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "store/TableSchema.h"

namespace korvi::test {

using Row = std::vector<std::string>;

class RawDb {
public:
    explicit RawDb(const std::string& path) {
        if (sqlite3_open_v2(path.c_str(), &mDb, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << "cannot open " << path;
        }
    }
    ~RawDb() { sqlite3_close_v2(mDb); }
    RawDb(const RawDb&) = delete;
    RawDb& operator=(const RawDb&) = delete;

    // Every row of a query, each column as text ("<null>" for SQL NULL).
    std::vector<Row> rows(const std::string& sql) const {
        std::vector<Row> result;
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(mDb, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << "prepare failed: " << sql << ": " << sqlite3_errmsg(mDb);
            sqlite3_finalize(stmt);
            return result;
        }
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            Row row;
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                const unsigned char* text = sqlite3_column_text(stmt, i);
                row.push_back(text ? reinterpret_cast<const char*>(text) : "<null>");
            }
            result.push_back(row);
        }
        sqlite3_finalize(stmt);
        return result;
    }

    std::string value(const std::string& sql) const {
        std::vector<Row> r = rows(sql);
        return r.empty() || r[0].empty() ? "<none>" : r[0][0];
    }

    int count(const std::string& table) const { return std::stoi(value("SELECT COUNT(*) FROM " + table)); }

    void exec(const std::string& sql) const {
        char* error = nullptr;
        if (sqlite3_exec(mDb, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << (error ? error : "?");
        }
        sqlite3_free(error);
    }

    // Column names of a table as PRAGMA table_info lists them, "name TYPE pk" each.
    std::vector<std::string> columns(const std::string& table) const {
        std::vector<std::string> result;
        for (const Row& row : rows("PRAGMA table_info(" + table + ")")) {
            result.push_back(row[1] + " " + row[2] + (row[5] != "0" ? " pk" : ""));
        }
        return result;
    }

private:
    sqlite3* mDb = nullptr;
};

}  // namespace korvi::test
