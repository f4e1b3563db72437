// A listening profile ("Dynamic", "Movie", ...) with its profile-wide settings.
#pragma once

#include <string>

#include "model/ParameterValues.h"

namespace korvi {

class Profile : public ParameterValues {
public:
    static const std::set<Parameter> kValidParams;

    // Both select the profile's own GEQ preset (the preset id equals the profile id).
    Profile(int profileId, const std::string& name, bool mobility);
    Profile(int64_t id, int profileId, const std::string& name, bool mobility);

    int64_t getId() const override { return mId; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    int getProfileId() const { return mProfileId; }
    const std::string& getName() const { return mName; }
    bool isMobility() const { return mMobility; }
    int getSelectedGeqPreset() const { return mSelectedGeqPreset; }

    void setName(const std::string& name);
    // Does not mark the record dirty, on purpose: mobility is the profile's group in the tuning
    // file, set only while a file or a row is read; no client changes it, so setting it never
    // means the record has changes to write back.
    void setMobility(bool mobility) { mMobility = mobility; }
    void setSelectedGeqPreset(int presetId);

    // Same profile id and same values; the name, mobility and selected GEQ preset are ignored.
    bool equals(const Profile& other) const;

    std::string toString() const;

private:
    int mProfileId;
    std::string mName;
    bool mMobility;
    int mSelectedGeqPreset;
};

}  // namespace korvi
