#include "model/Profile.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> Profile::kValidParams = parametersOwnedBy({OWNER_PROFILE});

Profile::Profile(int profileId, const std::string& name, bool mobility)
    : Profile(-1, profileId, name, mobility) {
    mDirty = true;
}

Profile::Profile(int64_t id, int profileId, const std::string& name, bool mobility)
    : ParameterValues(id, false),
      mProfileId(profileId),
      mName(name),
      mMobility(mobility),
      mSelectedGeqPreset(profileId) {}

void Profile::setName(const std::string& name) {
    mName = name;
    mDirty = true;
}

void Profile::setSelectedGeqPreset(int presetId) {
    mSelectedGeqPreset = presetId;
    mDirty = true;
}

bool Profile::equals(const Profile& other) const {
    if (this == &other) return true;
    if (mProfileId != other.mProfileId) return false;
    return ParameterValues::equals(other);
}

std::string Profile::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "profileId", mProfileId);
    recordtext::line(out, "name", mName);
    recordtext::line(out, "mobility", mMobility);
    recordtext::line(out, "selectedGeqPreset", mSelectedGeqPreset);
    return out + valuesToString();
}

}  // namespace korvi
