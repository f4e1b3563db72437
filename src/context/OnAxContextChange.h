// What the service state announces to those who act on it (the effect controller first of all).
// Every reference passed points into the context's own records and is valid only for the duration
// of the call: an observer copies what it keeps.
#pragma once

#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Port.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {

class AxContext;

class OnAxContextChange {
public:
    virtual ~OnAxContextChange() = default;

    // The observer was just registered, or the context (re)loaded its state: take everything
    // afresh from the context.
    virtual void onLoad(AxContext& context) = 0;
    virtual void onSfxOnChanged(AxContext& context, bool on) = 0;
    // Another profile became the selected one (or the selected one was reset or reloaded).
    virtual void onSelectedProfileChanged(AxContext& context) = 0;
    // A profile-level value of the selected profile changed.
    virtual void onSelectedProfileParameterChanged(AxContext& context, Profile& profile) = 0;
    // An endpoint-level value of the selected profile changed for the endpoint feeding port.
    virtual void onSelectedProfileEndpointChanged(AxContext& context, Port port,
                                                  ProfileEndpoint& endpoint) = 0;
    // The IEQ preset in force for port changed (or was selected again).
    virtual void onSelectedProfileIeqChanged(AxContext& context, Port port, IeqPreset& preset) = 0;
    virtual void onSelectedProfileGeqChanged(AxContext& context, GeqPreset& preset) = 0;
    virtual void onSelectedTuningChanged(AxContext& context, Port port, Tuning& tuning) = 0;
};

}  // namespace korvi
