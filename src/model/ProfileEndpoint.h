// The settings of one profile for one kind of endpoint.
#pragma once

#include <string>

#include "model/Endpoint.h"
#include "model/ParameterValues.h"

namespace korvi {

class ProfileEndpoint : public ParameterValues {
public:
    static const std::set<Parameter> kValidParams;

    ProfileEndpoint(int profileId, Endpoint endpoint, int selectedIeqPreset);
    ProfileEndpoint(int64_t id, int profileId, Endpoint endpoint, int selectedIeqPreset);

    int64_t getId() const override { return mId; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    int getProfileId() const { return mProfileId; }
    Endpoint getEndpoint() const { return mEndpoint; }
    int getSelectedIeqPreset() const { return mSelectedIeqPreset; }
    void setSelectedIeqPreset(int presetId);

    // Endpoint, profile id and selected IEQ preset, in that order, then the values.
    bool equals(const ProfileEndpoint& other) const;

    std::string toString() const;

private:
    int mProfileId;
    Endpoint mEndpoint;
    int mSelectedIeqPreset;
};

}  // namespace korvi
