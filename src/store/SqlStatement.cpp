#include "store/SqlStatement.h"

namespace korvi {

SqlStatement::SqlStatement(sqlite3* db, const std::string& sql) {
    mPrepareResult = sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()) + 1, &mStmt,
                                        nullptr);
    if (mPrepareResult != SQLITE_OK) {
        // A failed prepare may still hand back a statement; it is finalized here, not leaked.
        sqlite3_finalize(mStmt);
        mStmt = nullptr;
    }
}

SqlStatement::~SqlStatement() {
    sqlite3_finalize(mStmt);  // a no-op for nullptr
}

int SqlStatement::bindText(int position, const std::string& text) {
    return sqlite3_bind_text(mStmt, position, text.data(), static_cast<int>(text.size()),
                             SQLITE_TRANSIENT);
}

int SqlStatement::bindInt64(int position, int64_t value) {
    return sqlite3_bind_int64(mStmt, position, value);
}

int SqlStatement::step() {
    return sqlite3_step(mStmt);
}

void SqlStatement::reset() {
    sqlite3_reset(mStmt);
    sqlite3_clear_bindings(mStmt);
}

int SqlStatement::columnCount() const {
    return sqlite3_column_count(mStmt);
}

const char* SqlStatement::columnName(int column) const {
    const char* name = sqlite3_column_name(mStmt, column);
    return name != nullptr ? name : "";
}

std::string SqlStatement::columnText(int column) const {
    const unsigned char* text = sqlite3_column_text(mStmt, column);
    if (text == nullptr) return std::string();
    return std::string(reinterpret_cast<const char*>(text),
                       static_cast<size_t>(sqlite3_column_bytes(mStmt, column)));
}

int64_t SqlStatement::columnInt64(int column) const {
    return sqlite3_column_int64(mStmt, column);
}

}  // namespace korvi
