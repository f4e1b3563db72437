#include "effect/SfxContext.h"

namespace korvi {

namespace {

std::map<Port, AndroidDevice> makeDeviceForPort() {
    std::map<Port, AndroidDevice> map;
    for (const auto& [port, device] : kPortDevicePairs) map.emplace(port, device);
    return map;
}

std::map<AndroidDevice, Port> makePortForDevice() {
    std::map<AndroidDevice, Port> map;
    for (const auto& [port, device] : kPortDevicePairs) map.emplace(device, port);
    return map;
}

}  // namespace

const std::map<Port, AndroidDevice> SfxContext::kDeviceForPort = makeDeviceForPort();
const std::map<AndroidDevice, Port> SfxContext::kPortForDevice = makePortForDevice();

SfxContext::SfxContext(std::map<AndroidDevice, ParameterTranslator*>& translators)
    : mProfileParameters(
          std::make_unique<ProfileParameters>(translators[AUDIO_DEVICE_OUT_DEFAULT])) {
    for (const auto& [port, device] : kDeviceForPort) {
        // When two ports share a device, the first port's view stays.
        if (mDeviceParameters.count(device) != 0) continue;
        mDeviceParameters.emplace(device, std::make_unique<DeviceParameters>(translators[device]));
    }
}

ParameterValues* SfxContext::getParameters(AndroidDevice device) {
    if (device == AUDIO_DEVICE_OUT_DEFAULT) return mProfileParameters.get();
    return mDeviceParameters[device].get();
}

DeviceParameters* SfxContext::getDeviceParameters(Port port) {
    auto device = kDeviceForPort.find(port);
    if (device == kDeviceForPort.end()) return nullptr;
    return mDeviceParameters[device->second].get();
}

void SfxContext::setProfile(Profile& profile) {
    mProfileParameters->setProfile(profile);
    for (auto& [device, view] : mDeviceParameters) {
        // getParameters() may have left null entries for devices without a view.
        if (view != nullptr) view->setProfile(profile);
    }
}

void SfxContext::setGeqPreset(GeqPreset& preset) {
    mProfileParameters->setGeqPreset(preset);
}

void SfxContext::setIeqPreset(Port port, IeqPreset& preset) {
    if (DeviceParameters* view = getDeviceParameters(port)) view->setIeqPreset(preset);
}

void SfxContext::setProfileEndpoint(Port port, ProfileEndpoint& endpoint) {
    if (DeviceParameters* view = getDeviceParameters(port)) view->setProfileEndpoint(endpoint);
}

void SfxContext::setTuning(Port port, Tuning& tuning) {
    if (DeviceParameters* view = getDeviceParameters(port)) view->setTuning(tuning);
}

}  // namespace korvi
