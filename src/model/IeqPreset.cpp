#include "model/IeqPreset.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> IeqPreset::kValidParams = parametersOwnedBy({OWNER_IEQ_PRESET});

IeqPreset::IeqPreset(int presetId, const std::string& name) : IeqPreset(-1, presetId, name) {}

IeqPreset::IeqPreset(int64_t id, int presetId, const std::string& name)
    : ParameterValues(id, false), mPresetId(presetId), mName(name) {
    set(IEQ_ID, {presetId});
}

void IeqPreset::setName(const std::string& name) {
    mName = name;
    mDirty = true;
}

std::string IeqPreset::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "presetId", mPresetId);
    recordtext::line(out, "name", mName);
    return out + valuesToString();
}

}  // namespace korvi
