// The profile-wide effective values the effect is fed from: merged from the selected profile and
// its GEQ preset. Every value that really changes is reported to the observer at once.
#pragma once

#include "model/GeqPreset.h"
#include "model/ParamChangeObserver.h"
#include "model/ParameterValues.h"
#include "model/Profile.h"

namespace korvi {

class ProfileParameters : public ParameterValues {
public:
    // The union of Profile's and GeqPreset's admissible parameters (10).
    static const std::set<Parameter> kValidParams;

    // Binds the observer to this view at once, with OTHER and not mono. The observer is
    // borrowed and must outlive the view.
    explicit ProfileParameters(ParamChangeObserver* observer);

    // A view is never stored.
    int64_t getId() const override { return -1; }
    const std::set<Parameter>& getValidParams() const override { return kValidParams; }

    // Both keep a borrowed pointer to the record, then merge its values.
    void setProfile(Profile& profile);
    void setGeqPreset(GeqPreset& preset);

    Profile* getProfile() const { return mProfile; }
    GeqPreset* getGeqPreset() const { return mGeqPreset; }

    // Merges a record's values in ascending parameter order, reporting each real change before
    // the next one is merged. An empty list is merged like any other value here (unlike the
    // device view): a profile-wide value that a record empties is reported as changed.
    void updateParams(ParameterValues& source);

protected:
    bool admits(Parameter parameter) const override;

private:
    Profile* mProfile = nullptr;
    GeqPreset* mGeqPreset = nullptr;
    ParamChangeObserver* mObserver;
};

}  // namespace korvi
