// The common base of every object that carries parameter values: the stored records and the
// effective views. It holds the record's row id, a dirty flag telling the settings store that the
// record must be written back, and the values, one list of integers per parameter.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "model/Parameter.h"

namespace korvi {

class ParameterValues {
public:
    virtual int64_t getId() const { return mId; }
    virtual bool isDirty() const { return mDirty; }
    virtual void setDirty(bool dirty) { mDirty = dirty; }
    virtual ~ParameterValues() = default;
    // The settings store writes the row id it gave a record back into it.
    void setId(int64_t id) { mId = id; }
    // The parameters this kind of record admits; checkAndUpdate refuses every other one.
    virtual const std::set<Parameter>& getValidParams() const = 0;

    // Stores a copy of values (inserting or replacing the whole list) and marks the record dirty,
    // always: also for an equal value and for a parameter the record does not admit.
    void set(Parameter parameter, const std::vector<int>& values);

    // Stores values when the parameter is admissible and the values differ from the stored ones;
    // returns true when the stored value changed. An admissible parameter is present afterwards,
    // possibly empty, even when false is returned.
    bool checkAndUpdate(Parameter parameter, const std::vector<int>& values);

    // Same value maps (same parameters, equal lists); ids, dirty flags and the fields of the
    // derived records are not compared.
    bool equals(const ParameterValues& other) const;

    // One "column_name=v1,v2,\n" line per present parameter in ascending order; IEQ_ID is left
    // out because an IEQ preset prints its id itself.
    std::string valuesToString() const;

    // Ordered by parameter number; readers iterate it directly.
    std::map<Parameter, std::vector<int>> mValues;

protected:
    ParameterValues(int64_t id, bool dirty) : mId(id), mDirty(dirty) {}
    ParameterValues(const ParameterValues&) = default;
    ParameterValues& operator=(const ParameterValues&) = default;

    // Merges every admissible value of source into this record in one ordered walk of both maps,
    // with the rule of checkAndUpdate, and calls changed(parameter) for each value that really
    // changed, before the next one is merged. Empty lists are skipped when skipEmpty is set.
    template <typename Changed>
    void mergeFrom(const ParameterValues& source, bool skipEmpty, Changed changed) {
        auto at = mValues.begin();
        for (const auto& [parameter, values] : source.mValues) {
            if ((skipEmpty && values.empty()) || !admits(parameter)) continue;
            while (at != mValues.end() && at->first < parameter) ++at;
            if (at == mValues.end() || at->first != parameter) {
                at = mValues.emplace_hint(at, parameter, std::vector<int>());
            }
            if (at->second == values) continue;
            at->second = values;
            mDirty = true;
            changed(parameter);
        }
    }

    // Whether getValidParams() holds parameter; the views answer from a flag table, since they
    // ask on every merge.
    virtual bool admits(Parameter parameter) const { return getValidParams().count(parameter) != 0; }

    int64_t mId;
    bool mDirty;
};

}  // namespace korvi
