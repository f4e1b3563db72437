// The seven tables of the settings database and their columns, in the order the file holds them.
// Every table starts with the INTEGER column "_id"; every other column is TEXT. The record tables
// continue with "custom_name" (which kind of row: factory default, user custom or OEM), the record's
// key columns, and then one column per parameter the record stores, in parameter order.
#pragma once

#include <string>
#include <vector>

#include "model/Parameter.h"

namespace korvi {

// Selects a table and its column list; the numbers are fixed.
enum TableType {
    TABLE_CONFIGURATION = 0,
    TABLE_IEQ_PRESETS = 1,
    TABLE_GEQ_PRESETS = 2,
    TABLE_PROFILES = 3,
    TABLE_PROFILE_ENDPOINTS = 4,
    TABLE_TUNINGS = 5,
    TABLE_DEVICE_TUNINGS = 6,
};

inline constexpr int kTableTypeCount = 7;

struct TableSchema {
    std::string name;
    // The TEXT columns that follow "_id" and precede the parameter columns.
    std::vector<std::string> keyColumns;
    std::vector<Parameter> parameterColumns;

    // Columns after "_id": the key columns and then the parameter columns.
    size_t textColumnCount() const { return keyColumns.size() + parameterColumns.size(); }

    // The schema of a table type; nullptr for a value outside 0 to 6.
    static const TableSchema* forType(int type);
};

}  // namespace korvi
