#define LOG_TAG "DatabaseHelper"

#include "store/RowRewrite.h"

#include <log/log.h>
#include <sqlite3.h>

namespace korvi {

namespace {

int exec(sqlite3* db, const char* sql) {
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr);
}

}  // namespace

// A savepoint nests in an open transaction and opens one of its own otherwise.
RowRewrite::RowRewrite(sqlite3* db) : mDb(db) {
    mOutermost = sqlite3_get_autocommit(mDb) != 0;
    mActive = exec(mDb, "SAVEPOINT rewrite_row") == SQLITE_OK;
}

RowRewrite::~RowRewrite() {
    if (mActive) rollBack();
}

int RowRewrite::commit() {
    if (!mActive) return 1;
    if (exec(mDb, "RELEASE rewrite_row") == SQLITE_OK) {
        mActive = false;
        return 0;
    }
    ALOGE("failed to exec SQL: RELEASE rewrite_row");
    ALOGE("%s(): %s, the row is rolled back", __func__, sqlite3_errmsg(mDb));
    rollBack();
    return 1;
}

void RowRewrite::rollBack() {
    mActive = false;
    if (mOutermost) {
        // The savepoint is the transaction: end it as a whole. A release that met a lock leaves
        // it open, and every later write would nest in it and be lost when the file is closed.
        if (!sqlite3_get_autocommit(mDb)) exec(mDb, "ROLLBACK");
        return;
    }
    exec(mDb, "ROLLBACK TO rewrite_row");
    exec(mDb, "RELEASE rewrite_row");
}

}  // namespace korvi
