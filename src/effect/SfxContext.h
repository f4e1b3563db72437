// The effective parameter views the effect is fed from: one profile-wide view and one view per
// output device, each observed by the translator of its device, so that every value a setter here
// really changes is marked for translation.
#pragma once

#include <map>
#include <memory>

#include "effect/ParameterTranslator.h"
#include "model/AndroidDevice.h"
#include "model/DeviceParameters.h"
#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Port.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/ProfileParameters.h"
#include "model/Tuning.h"

namespace korvi {

class SfxContext {
public:
    // The platform output device each port stands for, and back.
    static const std::map<Port, AndroidDevice> kDeviceForPort;
    static const std::map<AndroidDevice, Port> kPortForDevice;

    // Makes the profile view, observed by the translator of AUDIO_DEVICE_OUT_DEFAULT, and one
    // device view per device of kDeviceForPort, observed by that device's translator. A device
    // without a translator gets a view with no observer (and a null entry in translators). The
    // translators are borrowed and must outlive this context.
    explicit SfxContext(std::map<AndroidDevice, ParameterTranslator*>& translators);
    SfxContext(const SfxContext&) = delete;
    SfxContext& operator=(const SfxContext&) = delete;

    // The profile view for AUDIO_DEVICE_OUT_DEFAULT, else the device's view; null for a device
    // without one (which leaves a null entry behind).
    ParameterValues* getParameters(AndroidDevice device);
    // The view of the port's device; null for a port without a device.
    DeviceParameters* getDeviceParameters(Port port);

    // The profile view, then every device view in ascending device order, take the profile.
    void setProfile(Profile& profile);
    // Only the profile view takes a GEQ preset.
    void setGeqPreset(GeqPreset& preset);
    // The per-port setters do nothing for a port whose device has no view.
    void setIeqPreset(Port port, IeqPreset& preset);
    void setProfileEndpoint(Port port, ProfileEndpoint& endpoint);
    // Also re-binds the device's translator with the tuning's endpoint kind and mono flag.
    void setTuning(Port port, Tuning& tuning);

private:
    std::unique_ptr<ProfileParameters> mProfileParameters;
    std::map<AndroidDevice, std::unique_ptr<DeviceParameters>> mDeviceParameters;
};

}  // namespace korvi
