#define LOG_TAG "DatabaseHelper"
// The record rows of the settings database: inserting, reading and rewriting the rows of the
// parameter records.

#include <log/log.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>

#include "common/IntText.h"
#include "model/DeviceTuning.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"
#include "store/DatabaseHelper.h"
#include "store/RowCountCache.h"
#include "store/RowKinds.h"
#include "store/RowRewrite.h"
#include "store/SqlStatement.h"
#include "store/TableSchema.h"

namespace korvi {

namespace {

const TableSchema& schemaOf(int type) {
    return *TableSchema::forType(type);
}

const std::string& textOf(const RowData& row, const char* column) {
    static const std::string kEmpty;
    auto it = row.find(column);
    return it != row.end() ? it->second : kEmpty;
}

int64_t int64Of(const std::string& text) {
    return std::strtoll(text.c_str(), nullptr, 10);
}

bool boolOf(const std::string& text) {
    return string2Int(text) != 0;
}

// The parameter columns of a row, found by their catalogue names; key columns are read by name.
std::map<Parameter, std::vector<int>> valuesOf(const RowData& row) {
    static const std::map<std::string, Parameter> kParameterByName = [] {
        std::map<std::string, Parameter> names;
        for (int i = 0; i < kParameterCount; ++i) {
            names.emplace(kParameterNames[i], static_cast<Parameter>(i));
        }
        return names;
    }();
    // Both maps are ordered by name: one merging walk finds the parameter columns without a
    // lookup per column.
    std::map<Parameter, std::vector<int>> values;
    auto parameter = kParameterByName.begin();
    for (const auto& [column, text] : row) {
        while (parameter != kParameterByName.end() && parameter->first < column) ++parameter;
        if (parameter == kParameterByName.end()) break;
        if (parameter->first != column) continue;
        std::vector<int>& list = values.emplace_hint(values.end(), parameter->second,
                                                     std::vector<int>())->second;
        if (!text.empty()) list.reserve(std::count(text.begin(), text.end(), ',') + 1);
        string2IntVector(text, list);
    }
    return values;
}

}  // namespace

// ---- record rows ----

int DatabaseHelper::insertRow(const RowInsert& row, const std::string& customName) {
    android::Mutex::Autolock lock(mLock);
    return insertRowLocked(row, customName);
}

int DatabaseHelper::insertRowLocked(const RowInsert& row, const std::string& customName) {
    const TableSchema& schema = schemaOf(row.type);
    LOG_ALWAYS_FATAL_IF(row.keyTexts.size() + 1 != schema.keyColumns.size(),
                        "%s: %zu key texts for table %s", "executeInsertCommand", row.keyTexts.size(),
                        schema.name.c_str());
    if (!checkOpenLocked()) return 1;
    // Row ids stay "row count + 1 at insert time"; 0 is treated like -1 on purpose.
    const int64_t id = row.rowId >= 1 ? row.rowId : getRowCountLocked(schema.name) + 1;

    SqlStatement* stmt = insertStatementLocked(row.type);
    if (stmt == nullptr) return 1;
    int position = 1;
    stmt->bindInt64(position++, id);
    stmt->bindText(position++, customName);
    for (const std::string& key : row.keyTexts) stmt->bindText(position++, key);
    for (Parameter parameter : schema.parameterColumns) {
        // An absent parameter is stored as the empty text; reading never inserts into the map.
        std::string text;
        if (row.values != nullptr) {
            auto it = row.values->mValues.find(parameter);
            if (it != row.values->mValues.end()) text = intVector2String(it->second);
        }
        stmt->bindText(position++, text);
    }
    const int result = stepToDoneLocked(*stmt, insertSql(row.type));
    stmt->reset();  // a kept statement must not hold the table between rows
    if (result != 0) return 1;
    mRowCounts->adjust(schema.name, 1);
    if (row.writeBack != nullptr && row.rowId < 1) row.writeBack->setId(id);
    return 0;
}

namespace {

const char* boolText(bool value) {
    return value ? "1" : "0";
}

}  // namespace

DatabaseHelper::RowInsert DatabaseHelper::rowOf(IeqPreset* preset) {
    return {TABLE_IEQ_PRESETS, {int2String(preset->getPresetId()), preset->getName()}, preset,
            preset->getId(), preset};
}

DatabaseHelper::RowInsert DatabaseHelper::rowOf(GeqPreset* preset, int64_t rowId) {
    return {TABLE_GEQ_PRESETS, {int2String(preset->getProfileId())}, preset, rowId, preset};
}

DatabaseHelper::RowInsert DatabaseHelper::rowOf(Profile* profile, int64_t rowId) {
    return {TABLE_PROFILES,
            {int2String(profile->getProfileId()), profile->getName(),
             boolText(profile->isMobility()), int2String(profile->getSelectedGeqPreset())},
            profile, rowId, profile};
}

DatabaseHelper::RowInsert DatabaseHelper::rowOf(ProfileEndpoint* endpoint, int64_t rowId) {
    return {TABLE_PROFILE_ENDPOINTS,
            {int2String(endpoint->getProfileId()), endpointName(endpoint->getEndpoint()),
             int2String(endpoint->getSelectedIeqPreset())},
            endpoint, rowId, endpoint};
}

int DatabaseHelper::insertValue(IeqPreset* preset, const std::string& customName) {
    if (preset == nullptr) {
        // Spelt so on purpose: log readers and tests search for this exact message.
        ALOGE("invalide value");
        return 1;
    }
    return insertRow(rowOf(preset), customName);
}

int DatabaseHelper::insertValue(GeqPreset* preset, const std::string& customName, int64_t rowId) {
    if (preset == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return insertRow(rowOf(preset, rowId), customName);
}

int DatabaseHelper::insertValue(Profile* profile, const std::string& customName, int64_t rowId) {
    if (profile == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return insertRow(rowOf(profile, rowId), customName);
}

int DatabaseHelper::insertValue(ProfileEndpoint* endpoint, const std::string& customName,
                                int64_t rowId) {
    if (endpoint == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return insertRow(rowOf(endpoint, rowId), customName);
}

int DatabaseHelper::insertValue(Tuning* tuning, const std::string& customName) {
    if (tuning == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return insertRow({TABLE_TUNINGS,
                      {tuning->getName(), endpointName(tuning->getEndpoint()),
                       boolText(tuning->isMono()), boolText(tuning->isReadonly())},
                      tuning, tuning->getId(), tuning},
                     customName);
}

int DatabaseHelper::insertValue(DeviceTuning* deviceTuning, const std::string& customName) {
    if (deviceTuning == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    // A device tuning does not learn its row id.
    return insertRow({TABLE_DEVICE_TUNINGS,
                      {deviceTuning->getDevice(), deviceTuning->getPort(),
                       deviceTuning->getTuning()},
                      nullptr, deviceTuning->getId(), nullptr},
                     customName);
}

int DatabaseHelper::queryNames(int type, std::vector<std::string>& names,
                               const std::string& customName, int line) {
    std::vector<RowData> rows;
    const int result = queryRows("SELECT * FROM " + schemaOf(type).name + " WHERE custom_name=?",
                                 {customName}, rows, line);
    for (const RowData& row : rows) names.push_back(textOf(row, "name"));
    return result;
}

int DatabaseHelper::queryIeqPresetNames(std::vector<std::string>& names,
                                        const std::string& customName) {
    return queryNames(TABLE_IEQ_PRESETS, names, customName, __LINE__);
}

int DatabaseHelper::queryProfileNames(std::vector<std::string>& names,
                                      const std::string& customName) {
    return queryNames(TABLE_PROFILES, names, customName, __LINE__);
}

int DatabaseHelper::querySingleRow(int type, const std::string& where,
                                   const std::vector<std::string>& binds, RowData& row, int line) {
    std::vector<RowData> rows;
    queryRows("SELECT * FROM " + schemaOf(type).name + where, binds, rows, line);
    if (rows.empty()) return 1;
    row = std::move(rows.front());
    return 0;
}

int DatabaseHelper::queryIeqValue(const std::string& presetId, const std::string& customName,
                                  IeqPreset* preset) {
    if (!checkOpen()) return 1;
    RowData row;
    if (preset == nullptr ||
        querySingleRow(TABLE_IEQ_PRESETS, " WHERE preset_id=? AND custom_name=?",
                       {presetId, customName}, row, __LINE__) != 0) {
        ALOGE("IeqPreset doesn't exist!");
        return 1;
    }
    ALOGD("ieqId: %s, name: %s", presetId.c_str(), textOf(row, "name").c_str());
    preset->setId(int64Of(textOf(row, "_id")));
    preset->setName(textOf(row, "name"));
    // The preset's own id stays among its values: it has no column of its own.
    std::map<Parameter, std::vector<int>> values = valuesOf(row);
    values[IEQ_ID] = {preset->getPresetId()};
    preset->mValues = std::move(values);
    return 0;
}

int DatabaseHelper::queryGeqValue(const std::string& profileId, const std::string& customName,
                                  GeqPreset* preset) {
    if (!checkOpen()) return 1;
    RowData row;
    if (preset == nullptr ||
        querySingleRow(TABLE_GEQ_PRESETS, " WHERE profile_id=? AND custom_name=?",
                       {profileId, customName}, row, __LINE__) != 0) {
        ALOGE("GeqPreset doesn't exist!");
        return 1;
    }
    preset->setId(int64Of(textOf(row, "_id")));
    preset->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryProfileValue(const std::string& profileId, const std::string& customName,
                                      Profile* profile) {
    if (!checkOpen()) return 1;
    RowData row;
    if (profile == nullptr ||
        querySingleRow(TABLE_PROFILES, " WHERE profile_id=? AND custom_name=?",
                       {profileId, customName}, row, __LINE__) != 0) {
        ALOGE("Profile doesn't exist!");
        return 1;
    }
    profile->setId(int64Of(textOf(row, "_id")));
    profile->setName(textOf(row, "name"));
    profile->setMobility(boolOf(textOf(row, "is_mobility")));
    profile->setSelectedGeqPreset(string2Int(textOf(row, "selected_geq_preset_id")));
    profile->mValues = valuesOf(row);
    return 0;
}

namespace {

void fillEndpoint(const RowData& row, ProfileEndpoint* endpointRecord) {
    endpointRecord->setId(int64Of(textOf(row, "_id")));
    endpointRecord->setSelectedIeqPreset(string2Int(textOf(row, "selected_ieq_preset_id")));
    endpointRecord->mValues = valuesOf(row);
}

}  // namespace

int DatabaseHelper::queryEndpointValue(const std::string& profileId, const std::string& endpoint,
                                       const std::string& customName,
                                       ProfileEndpoint* endpointRecord) {
    if (!checkOpen()) return 1;
    RowData row;
    if (endpointRecord == nullptr ||
        querySingleRow(TABLE_PROFILE_ENDPOINTS,
                       " WHERE profile_id=? AND endpoint=? AND custom_name=?",
                       {profileId, endpoint, customName}, row, __LINE__) != 0) {
        ALOGE("Endpoint doesn't exist!");
        return 1;
    }
    fillEndpoint(row, endpointRecord);
    return 0;
}

void DatabaseHelper::queryEndpointValues(const std::string& profileId,
                                         const std::string& customName,
                                         const std::array<ProfileEndpoint*, kEndpointCount>& records,
                                         std::array<bool, kEndpointCount>& found) {
    std::vector<RowData> rows;
    bool read = false;
    {
        android::Mutex::Autolock lock(mLock);
        QueryFailure failure;
        read = mDb != nullptr &&
               readRowsLocked("SELECT * FROM " + schemaOf(TABLE_PROFILE_ENDPOINTS).name +
                                      " WHERE profile_id=? AND custom_name=?",
                              {profileId, customName}, rows, failure);
    }
    for (int e = 0; e < kEndpointCount; ++e) {
        const std::string name = endpointName(static_cast<Endpoint>(e));
        if (!read) {
            // The one-pass read failed: each endpoint on its own says why, as it always did.
            found[e] = queryEndpointValue(profileId, name, customName, records[e]) == 0;
            continue;
        }
        // The first row of the endpoint in table order, as a query of that endpoint alone finds.
        const RowData* match = nullptr;
        for (const RowData& row : rows) {
            if (textOf(row, "endpoint") == name) {
                match = &row;
                break;
            }
        }
        found[e] = records[e] != nullptr && match != nullptr;
        if (!found[e]) {
            ALOGE("Endpoint doesn't exist!");
            continue;
        }
        fillEndpoint(*match, records[e]);
    }
}

int DatabaseHelper::queryTuning(const std::string& name, Tuning* tuning) {
    if (!checkOpen()) return 1;
    RowData row;
    if (tuning == nullptr ||
        querySingleRow(TABLE_TUNINGS, " WHERE name=?", {name}, row, __LINE__) != 0) {
        ALOGE("Tuning doesn't exist!");
        return 1;
    }
    tuning->setEndpoint(textOf(row, "endpoint"));
    tuning->setMono(boolOf(textOf(row, "is_mono")));
    tuning->mValues = valuesOf(row);
    return 0;
}

int DatabaseHelper::queryDeviceTunings(const std::string& port,
                                       std::vector<std::unique_ptr<DeviceTuning>>& deviceTunings) {
    std::vector<RowData> rows;
    int result = queryRows("SELECT * FROM " + schemaOf(TABLE_DEVICE_TUNINGS).name +
                                   " WHERE port=?",
                           {port}, rows, __LINE__);
    for (const RowData& row : rows) {
        deviceTunings.push_back(std::make_unique<DeviceTuning>(
                int64Of(textOf(row, "_id")), textOf(row, "device"), textOf(row, "port"),
                textOf(row, "tuning_id")));
    }
    return result;
}

// ---- delete-and-insert updates ----

int DatabaseHelper::rewriteRow(const RowInsert& row, const std::string& customName,
                               const std::string& extraWhere,
                               const std::vector<std::string>& binds) {
    if (customName == kDefaultRowName) {
        ALOGE("the default value can't be updated, %d", __LINE__);
    }
    android::Mutex::Autolock lock(mLock);
    if (!checkOpenLocked()) return 1;
    const std::string& table = schemaOf(row.type).name;
    RowRewrite rewrite(mDb);
    if (rewrite.isActive() &&
        deleteRowsLocked(table,
                         "DELETE FROM " + table + " WHERE custom_name=? AND profile_id=?" +
                                 extraWhere,
                         binds) == 0 &&
        insertRowLocked(row, customName) == 0 && rewrite.commit() == 0) {
        return 0;
    }
    mRowCounts->forgetAll();  // the rewrite was rolled back
    return 1;
}

int DatabaseHelper::updateGeqValue(GeqPreset* preset, const std::string& customName) {
    if (preset == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(rowOf(preset, preset->getId()), customName, "",
                      {customName, int2String(preset->getProfileId())});
}

int DatabaseHelper::updateProfileValue(Profile* profile, const std::string& customName) {
    if (profile == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(rowOf(profile, profile->getId()), customName, "",
                      {customName, int2String(profile->getProfileId())});
}

int DatabaseHelper::updateProfileEndpointValue(ProfileEndpoint* endpoint,
                                               const std::string& customName) {
    if (endpoint == nullptr) {
        ALOGE("invalid value");
        return 1;
    }
    return rewriteRow(rowOf(endpoint, endpoint->getId()), customName, " AND endpoint=?",
                      {customName, int2String(endpoint->getProfileId()),
                       endpointName(endpoint->getEndpoint())});
}

}  // namespace korvi
