// The six output ports for which the service keeps a selected tuning, profile-endpoint and IEQ
// preset, and the port names used for them in tuning and database text.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "model/AndroidDevice.h"
#include "model/Endpoint.h"

namespace korvi {

enum Port : int32_t {
    PORT_INTERNAL_SPEAKER = 0,
    PORT_HDMI = 1,
    PORT_MIRACAST = 2,
    PORT_HEADPHONE = 3,
    PORT_BLUETOOTH = 4,
    PORT_USB = 5,
};

inline constexpr int kPortCount = 6;

// Port names by Port value; index 6, "other", names no Port: it is the port name of tunings made
// for an output that is none of the six.
inline constexpr const char* kPortNames[kPortCount + 1] = {
    "internal_speaker", "hdmi", "miracast", "headphone", "bluetooth", "usb", "other",
};

// Which kind of endpoint a tuning for a port must be made for. Bluetooth and USB outputs count as
// headphones, HDMI and wireless display as "other", on purpose. File-local: every translation
// unit that includes this header has its own identical copy.
static const std::map<std::string, Endpoint> kPortNameToEndpoint = {
    {"internal_speaker", SPEAKER}, {"headphone", HEADPHONE}, {"bluetooth", HEADPHONE},
    {"usb", HEADPHONE},            {"hdmi", OTHER},          {"miracast", OTHER},
    {"other", OTHER},
};

// The platform output device each port stands for, in the order the device maps are built from.
inline constexpr std::pair<Port, AndroidDevice> kPortDevicePairs[kPortCount] = {
    {PORT_INTERNAL_SPEAKER, AUDIO_DEVICE_OUT_SPEAKER},
    {PORT_HEADPHONE, AUDIO_DEVICE_OUT_WIRED_HEADPHONE},
    {PORT_BLUETOOTH, AUDIO_DEVICE_OUT_BLUETOOTH_A2DP},
    {PORT_HDMI, AUDIO_DEVICE_OUT_AUX_DIGITAL},
    {PORT_USB, AUDIO_DEVICE_OUT_USB_DEVICE},
    {PORT_MIRACAST, AUDIO_DEVICE_OUT_REMOTE_SUBMIX},
};

}  // namespace korvi
