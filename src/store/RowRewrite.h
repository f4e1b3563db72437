// Makes the delete and the insert of one row rewrite stand or fall together, inside a caller's
// transaction or on its own: a crash or a failure in between must not lose the user's row.
// Without commit() the rewrite is rolled back when the object goes.
#pragma once

#include <sqlite3.h>

namespace korvi {

class RowRewrite {
public:
    explicit RowRewrite(sqlite3* db);
    ~RowRewrite();
    RowRewrite(const RowRewrite&) = delete;
    RowRewrite& operator=(const RowRewrite&) = delete;

    // False when the savepoint could not be opened; nothing may be changed then.
    bool isActive() const { return mActive; }
    void commit() { mCommitted = true; }

private:
    sqlite3* mDb;
    bool mActive = false;
    bool mCommitted = false;
};

}  // namespace korvi
