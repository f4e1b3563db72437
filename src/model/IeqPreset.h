// An intelligent-equaliser preset (a target curve), known to clients by its preset id.
#pragma once

#include <string>

#include "model/ParameterValues.h"

namespace korvi {

class IeqPreset : public ParameterValues {
public:
    static const std::set<Parameter> kValidParams;

    // Both store IEQ_ID = {presetId} through set(), so even a preset read from the database
    // starts dirty; the settings store relies on that and so must this class.
    IeqPreset(int presetId, const std::string& name);
    IeqPreset(int64_t id, int presetId, const std::string& name);

    int64_t getId() const override { return mId; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    int getPresetId() const { return mPresetId; }
    const std::string& getName() const { return mName; }
    void setName(const std::string& name);

    std::string toString() const;

private:
    int mPresetId;
    std::string mName;
};

}  // namespace korvi
