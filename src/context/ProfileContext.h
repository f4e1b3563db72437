// The working state of one profile (its profile record, one record per endpoint and its GEQ
// preset) side by side with the factory values of the same profile. Every record is borrowed
// from the Provider, which owns and caches them. No lock of its own: it is only used under the
// lock of the AxContext that owns it.
#pragma once

#include <memory>
#include <set>
#include <vector>

#include "model/Endpoint.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"

namespace korvi {

class Provider;

class ProfileContext {
public:
    // The factory records of a profile as they were at the first load. They are copies: the
    // provider refreshes its cached records in place, and the defaults must not follow it.
    struct Defaults {
        Defaults(Provider* provider, int id);
        Profile* mProfile = nullptr;
        std::set<ProfileEndpoint*> mProfileEndpoints;
        GeqPreset* mGeqPreset = nullptr;

    private:
        std::unique_ptr<Profile> mProfileCopy;
        std::vector<std::unique_ptr<ProfileEndpoint>> mEndpointCopies;
        std::unique_ptr<GeqPreset> mGeqCopy;
    };

    // Loads nothing.
    ProfileContext(Provider* provider, int id);
    ~ProfileContext();
    ProfileContext(const ProfileContext&) = delete;
    ProfileContext& operator=(const ProfileContext&) = delete;

    int getId() const { return mId; }

    // Loads the working records; the factory records only at the first load.
    void load();
    // 0 when every record reached the database.
    int save();
    // Puts the working profile, endpoints and GEQ preset back to the factory values.
    void reset();
    // Puts only the working GEQ preset back to the factory values.
    void resetGeq();

    Profile* getProfile() const { return mProfile; }
    GeqPreset* getSelectedGeqPreset() const { return mGeqPreset; }
    // Ends the process when the profile has no record for endpoint.
    ProfileEndpoint* getProfileEndpoint(Endpoint endpoint) const;
    // The IEQ preset in force for endpoint: the selected one when "ieq-enable" is on, else
    // preset 0. Reading "ieq-enable" adds an empty entry to the record when it has none.
    IeqPreset* getSelectedIeqPreset(Endpoint endpoint);

    bool isModified() const;
    bool isProfileSpecificSettingsModified() const;
    bool isGeqModified() const;

    // For tests and tools: the factory records kept, null before the first load.
    const Defaults* getDefaults() const { return mDefaults.get(); }
    const std::set<ProfileEndpoint*>& getProfileEndpoints() const { return mProfileEndpoints; }

private:
    // Whether the profile record or an endpoint record differs from its factory record.
    bool profileOrEndpointsModified() const;

    Provider* mProvider;
    int mId;
    Profile* mProfile = nullptr;
    std::set<ProfileEndpoint*> mProfileEndpoints;
    GeqPreset* mGeqPreset = nullptr;
    std::unique_ptr<Defaults> mDefaults;
};

}  // namespace korvi
