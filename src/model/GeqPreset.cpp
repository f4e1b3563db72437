#include "model/GeqPreset.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> GeqPreset::kValidParams = parametersOwnedBy({OWNER_GEQ_PRESET});

GeqPreset::GeqPreset(int profileId) : ParameterValues(-1, true), mProfileId(profileId) {}

GeqPreset::GeqPreset(int64_t id, int profileId) : ParameterValues(id, false), mProfileId(profileId) {}

bool GeqPreset::equals(const GeqPreset& other) const {
    if (this == &other) return true;
    if (mProfileId != other.mProfileId) return false;
    return ParameterValues::equals(other);
}

std::string GeqPreset::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "profileId", mProfileId);
    return out + valuesToString();
}

}  // namespace korvi
