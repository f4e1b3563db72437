// Platform output-device values (the audio_devices_t constants). A device value is compared as a
// whole number, never as a bit mask; only the six the ports stand for are ever looked up.
#pragma once

#include <cstdint>

namespace korvi {

enum AndroidDevice : uint32_t {
    AUDIO_DEVICE_NONE = 0x0,
    AUDIO_DEVICE_OUT_EARPIECE = 0x1,
    AUDIO_DEVICE_OUT_SPEAKER = 0x2,
    AUDIO_DEVICE_OUT_WIRED_HEADSET = 0x4,
    AUDIO_DEVICE_OUT_WIRED_HEADPHONE = 0x8,
    AUDIO_DEVICE_OUT_BLUETOOTH_SCO = 0x10,
    AUDIO_DEVICE_OUT_BLUETOOTH_A2DP = 0x80,
    AUDIO_DEVICE_OUT_BLUETOOTH_A2DP_HEADPHONES = 0x100,
    AUDIO_DEVICE_OUT_AUX_DIGITAL = 0x400,
    AUDIO_DEVICE_OUT_USB_ACCESSORY = 0x2000,
    AUDIO_DEVICE_OUT_USB_DEVICE = 0x4000,
    AUDIO_DEVICE_OUT_REMOTE_SUBMIX = 0x8000,
    AUDIO_DEVICE_OUT_USB_HEADSET = 0x4000000,
    // The platform's default output. On the effect side it stands for the profile level: its
    // entries carry the profile-wide settings, and a blob made for every device names it as target.
    AUDIO_DEVICE_OUT_DEFAULT = 0x40000000,
};

// The device value that stands for the profile level on the effect side.
inline constexpr uint32_t kProfileLevelDevice = AUDIO_DEVICE_OUT_DEFAULT;

// The name of one of the six port devices ("speaker", "headphone", ...), or null for any other.
const char* androidDeviceName(uint32_t device);

}  // namespace korvi
