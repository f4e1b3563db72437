#include "model/ProfileEndpoint.h"

#include "model/RecordText.h"

namespace korvi {

const std::set<Parameter> ProfileEndpoint::kValidParams =
    parametersOwnedBy({OWNER_PROFILE_ENDPOINT});

ProfileEndpoint::ProfileEndpoint(int profileId, Endpoint endpoint, int selectedIeqPreset)
    : ProfileEndpoint(-1, profileId, endpoint, selectedIeqPreset) {
    mDirty = true;
}

ProfileEndpoint::ProfileEndpoint(int64_t id, int profileId, Endpoint endpoint, int selectedIeqPreset)
    : ParameterValues(id, false),
      mProfileId(profileId),
      mEndpoint(endpoint),
      mSelectedIeqPreset(selectedIeqPreset) {}

void ProfileEndpoint::setSelectedIeqPreset(int presetId) {
    mSelectedIeqPreset = presetId;
    mDirty = true;
}

bool ProfileEndpoint::equals(const ProfileEndpoint& other) const {
    if (this == &other) return true;
    if (mEndpoint != other.mEndpoint) return false;
    if (mProfileId != other.mProfileId) return false;
    if (mSelectedIeqPreset != other.mSelectedIeqPreset) return false;
    return ParameterValues::equals(other);
}

std::string ProfileEndpoint::toString() const {
    std::string out;
    recordtext::line(out, "id", mId);
    recordtext::line(out, "profileId", mProfileId);
    recordtext::line(out, "endpoint", mEndpoint);
    recordtext::line(out, "selectedIeqPreset", mSelectedIeqPreset);
    return out + valuesToString();
}

}  // namespace korvi
