#include "model/Tuning.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> Tuning::kValidParams = parametersOwnedBy({OWNER_TUNING});

const std::map<std::string, Endpoint> Tuning::kEndpNameToEndpoint = {
    {"speaker", SPEAKER},
    {"headphone", HEADPHONE},
    {"other", OTHER},
};

Tuning::Tuning(const std::string& name, Endpoint endpoint, bool mono)
    : ParameterValues(-1, true), mName(name), mEndpoint(endpoint), mMono(mono), mReadonly(true) {}

Tuning::Tuning(int64_t id, const std::string& name, Endpoint endpoint, bool mono, bool readonly)
    : ParameterValues(id, false), mName(name), mEndpoint(endpoint), mMono(mono), mReadonly(readonly) {}

void Tuning::setEndpoint(const std::string& name) {
    auto it = kEndpNameToEndpoint.find(name);
    if (it != kEndpNameToEndpoint.end()) mEndpoint = it->second;
}

std::string Tuning::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "name", mName);
    recordtext::line(out, "endpoint", mEndpoint);
    recordtext::line(out, "mono", mMono);
    recordtext::line(out, "readonly", mReadonly);
    return out + valuesToString();
}

}  // namespace korvi
