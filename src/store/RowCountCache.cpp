#include "store/RowCountCache.h"

#include "store/TableSchema.h"

namespace korvi {

namespace {

bool isSettingsTable(const std::string& table) {
    for (int type = 0; type < kTableTypeCount; ++type) {
        if (TableSchema::forType(type)->name == table) return true;
    }
    return false;
}

}  // namespace

int64_t RowCountCache::dataVersion() {
    if (!mVersionStmt) mVersionStmt = std::make_unique<SqlStatement>(mDb, "PRAGMA data_version");
    if (!mVersionStmt->isValid()) return -1;
    int64_t version = -1;
    if (mVersionStmt->step() == SQLITE_ROW) version = mVersionStmt->columnInt64(0);
    mVersionStmt->reset();
    return version;
}

bool RowCountCache::lookup(const std::string& table, int& count) {
    if (mCounts.empty()) return false;
    if (dataVersion() != mCountedVersion) {
        mCounts.clear();
        return false;
    }
    auto it = mCounts.find(table);
    if (it == mCounts.end()) return false;
    count = it->second;
    return true;
}

void RowCountCache::remember(const std::string& table, int count, int64_t versionBeforeCount) {
    if (!isSettingsTable(table)) return;
    if (mCounts.empty()) {
        mCountedVersion = versionBeforeCount;
    } else if (versionBeforeCount != mCountedVersion) {
        // Another connection committed since the kept counts were taken.
        mCounts.clear();
        mCountedVersion = versionBeforeCount;
    }
    mCounts[table] = count;
}

void RowCountCache::adjust(const std::string& table, int delta) {
    auto it = mCounts.find(table);
    if (it != mCounts.end()) it->second += delta;
}

}  // namespace korvi
