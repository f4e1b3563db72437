#include "store/RowRewrite.h"

namespace korvi {

// A savepoint nests in an open transaction and opens one of its own otherwise.
RowRewrite::RowRewrite(sqlite3* db) : mDb(db) {
    mActive = sqlite3_exec(mDb, "SAVEPOINT rewrite_row", nullptr, nullptr, nullptr) == SQLITE_OK;
}

RowRewrite::~RowRewrite() {
    if (!mActive) return;
    if (!mCommitted) sqlite3_exec(mDb, "ROLLBACK TO rewrite_row", nullptr, nullptr, nullptr);
    sqlite3_exec(mDb, "RELEASE rewrite_row", nullptr, nullptr, nullptr);
}

}  // namespace korvi
