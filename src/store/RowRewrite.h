// Makes the delete and the insert of one row rewrite stand or fall together, inside a caller's
// transaction or on its own: a crash or a failure in between must not lose the user's row.
// Without a successful commit() the rewrite is rolled back when the object goes.
#pragma once

struct sqlite3;

namespace korvi {

class RowRewrite {
public:
    explicit RowRewrite(sqlite3* db);
    ~RowRewrite();
    RowRewrite(const RowRewrite&) = delete;
    RowRewrite& operator=(const RowRewrite&) = delete;

    // False when the savepoint could not be opened; nothing may be changed then.
    bool isActive() const { return mActive; }
    // 0 when the rewrite is in the file (or, inside a caller's transaction, part of it). 1 when
    // releasing the savepoint failed: on its own that release is the commit, and it fails when
    // another connection keeps reading past the busy timeout; the rewrite is rolled back then.
    int commit();

private:
    void rollBack();

    sqlite3* mDb;
    // Whether the savepoint opened the transaction (no caller's transaction was open).
    bool mOutermost = false;
    bool mActive = false;
};

}  // namespace korvi
