#define LOG_TAG "ParameterValues"
// Name lookups of the model's enumerations.
#include "model/AndroidDevice.h"
#include "model/Endpoint.h"
#include "model/Parameter.h"

#include <log/log.h>

namespace korvi {

const char* parameterName(Parameter parameter) {
    LOG_ALWAYS_FATAL_IF(!isValidParameter(parameter), "invalid parameter number %d",
                        static_cast<int>(parameter));
    return kParameterNames[parameter];
}

std::set<Parameter> parametersOwnedBy(std::initializer_list<ParameterOwner> owners) {
    std::set<Parameter> result;
    for (int n = 0; n < kParameterCount; ++n) {
        for (ParameterOwner owner : owners) {
            if (kParameterOwners[n] == owner) result.insert(static_cast<Parameter>(n));
        }
    }
    return result;
}

const char* endpointName(Endpoint endpoint) {
    static constexpr const char* kEndpointNames[kEndpointCount] = {"speaker", "headphone", "other"};
    const unsigned value = static_cast<unsigned>(endpoint);
    LOG_ALWAYS_FATAL_IF(value >= kEndpointCount, "invalid endpoint %u", value);
    return kEndpointNames[value];
}

const char* androidDeviceName(uint32_t device) {
    switch (device) {
        case AUDIO_DEVICE_OUT_SPEAKER: return "speaker";
        case AUDIO_DEVICE_OUT_WIRED_HEADPHONE: return "headphone";
        case AUDIO_DEVICE_OUT_BLUETOOTH_A2DP: return "bluetooth_a2dp";
        case AUDIO_DEVICE_OUT_AUX_DIGITAL: return "aux_digital";
        case AUDIO_DEVICE_OUT_USB_DEVICE: return "usb_device";
        case AUDIO_DEVICE_OUT_REMOTE_SUBMIX: return "remote_submix";
        case kProfileLevelDevice: return "profile";
        default: return nullptr;
    }
}

}  // namespace korvi
