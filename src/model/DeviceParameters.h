// The per-device effective values the effect is fed from: merged from the selected profile, the
// profile-endpoint chosen for the device's endpoint, the selected IEQ preset and the device's
// tuning. Every value that really changes is reported to the observer at once.
#pragma once

#include "model/IeqPreset.h"
#include "model/ParamChangeObserver.h"
#include "model/ParameterValues.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {

class DeviceParameters : public ParameterValues {
public:
    // Every parameter except the ten profile-wide ones (86): the Tuning, ProfileEndpoint and
    // IeqPreset sets plus VIRTUAL_BASS_TYPE, which only this view admits.
    static const std::set<Parameter> kValidParams;

    // Binds the observer to this view at once, with OTHER and not mono. The observer is
    // borrowed and must outlive the view.
    explicit DeviceParameters(ParamChangeObserver* observer);

    // A view is never stored.
    int64_t getId() const override { return -1; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    // Each keeps a borrowed pointer to the record, then merges its values. A profile holds only
    // profile-wide parameters, so setProfile records the pointer and changes no value.
    void setProfile(Profile& profile);
    void setProfileEndpoint(ProfileEndpoint& endpoint);
    void setIeqPreset(IeqPreset& preset);
    // Re-binds the observer with the tuning's endpoint and mono flag before merging, so that the
    // observer knows the endpoint kind when it hears of the tuning's values.
    void setTuning(Tuning& tuning);

    Profile* getProfile() const { return mProfile; }
    ProfileEndpoint* getProfileEndpoint() const { return mProfileEndpoint; }
    IeqPreset* getIeqPreset() const { return mIeqPreset; }
    Tuning* getTuning() const { return mTuning; }

    // Merges a record's values in ascending parameter order, reporting each real change before
    // the next one is merged. An empty list is skipped here (unlike the profile view): a device
    // value is never emptied by a record that lacks it.
    void updateParams(ParameterValues& source);

protected:
    bool admits(Parameter parameter) const override;

private:
    Profile* mProfile = nullptr;
    ProfileEndpoint* mProfileEndpoint = nullptr;
    IeqPreset* mIeqPreset = nullptr;
    Tuning* mTuning = nullptr;
    ParamChangeObserver* mObserver;
};

}  // namespace korvi
