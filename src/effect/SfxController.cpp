#define LOG_TAG "SfxController"

#include "effect/SfxController.h"

#include <cutils/properties.h>
#include <log/log.h>
#include <utils/Mutex.h>

#include <string>

#include "context/AxContext.h"
#include "effect/SetParamCommand.h"

namespace korvi {

namespace {

// The audio scenario each known profile stands for; names are compared exactly.
const std::map<std::string, const char*> kScenarioForProfile = {
    {"Dynamic", "4"},
    {"Movie", "2"},
    {"Music", "1"},
    {"Voice", "3"},
};

constexpr const char* kScenarioProperty = "persist.vendor.audio.scenario";

}  // namespace

const std::set<AndroidDevice> SfxController::kDevices = {
    AUDIO_DEVICE_OUT_DEFAULT,        AUDIO_DEVICE_OUT_SPEAKER,
    AUDIO_DEVICE_OUT_WIRED_HEADPHONE, AUDIO_DEVICE_OUT_BLUETOOTH_A2DP,
    AUDIO_DEVICE_OUT_AUX_DIGITAL,    AUDIO_DEVICE_OUT_USB_DEVICE,
    AUDIO_DEVICE_OUT_REMOTE_SUBMIX,
};

SfxController::SfxController(int id, SfxEffect& effect) : mId(id), mEffect(&effect) {
    std::map<AndroidDevice, ParameterTranslator*> translators;
    for (AndroidDevice device : kDevices) {
        auto& translator = mTranslators[device];
        if (translator == nullptr) translator = std::make_unique<ParameterTranslator>();
        translators[device] = translator.get();
    }
    mSfxContext = std::make_unique<SfxContext>(translators);
}

SfxController::~SfxController() = default;

void SfxController::sendParameters(AndroidDevice target) {
    auto cmd = std::make_unique<SetParamCommand>(static_cast<int>(target));
    for (auto& [device, translator] : mTranslators) {
        cmd->setDeviceId(static_cast<int>(device));
        translator->translatePending(*cmd);
    }
    cmd->execute(*mEffect);
}

void SfxController::setSfxEffect(SfxEffect& effect, AxContext& context) {
    mEffect = &effect;
    auto cmd = std::make_unique<SetParamCommand>(static_cast<int>(AUDIO_DEVICE_OUT_DEFAULT));
    for (auto& [device, translator] : mTranslators) {
        cmd->setDeviceId(static_cast<int>(device));
        translator->translateAll(*cmd);
    }
    cmd->execute(*mEffect);
    // A barrier: a context update that was under way when the effect changed has finished by
    // now. Nothing is read under the lock.
    context.getLock().lock();
    context.getLock().unlock();
}

void SfxController::takeSelectedProfile(AxContext& context) {
    // The getters take the context's lock for each read; it is free again before the views are
    // updated.
    if (Profile* profile = context.getProfile(context.getSelectedProfile())) {
        mSfxContext->setProfile(*profile);
    }
    if (GeqPreset* geq = context.getSelectedProfileGeq()) mSfxContext->setGeqPreset(*geq);
}

bool SfxController::takeSelectedEndpoint(AxContext& context, Port port) {
    ProfileEndpoint* endpoint = context.getSelectedProfileEndpoint(port);
    if (endpoint == nullptr) return false;
    mSfxContext->setProfileEndpoint(port, *endpoint);
    // A port whose IEQ preset in force has no record keeps the preset it had.
    if (IeqPreset* ieq = context.getSelectedProfileIeq(port)) mSfxContext->setIeqPreset(port, *ieq);
    return true;
}

void SfxController::onLoad(AxContext& context) {
    ALOGI("onLoad()");
    takeSelectedProfile(context);
    for (const auto& [port, device] : SfxContext::kDeviceForPort) {
        if (!takeSelectedEndpoint(context, port)) {
            ALOGE("No profile endpoint found for port : %d", static_cast<int>(port));
        }
        if (Tuning* tuning = context.getSelectedTuning(port)) {
            mSfxContext->setTuning(port, *tuning);
        } else {
            ALOGE("No tuning found for port : %s", kPortNames[port]);
        }
    }
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

void SfxController::onSfxOnChanged(AxContext& /*context*/, bool /*on*/) {}

void SfxController::onSelectedProfileChanged(AxContext& context) {
    Profile* profile = context.getProfile(context.getSelectedProfile());
    const std::string name = profile != nullptr ? profile->getName() : "";
    ALOGI("Profile Changed to %s", name.c_str());
    takeSelectedProfile(context);
    // A port without an endpoint is skipped without a word here; the tunings stay as they are.
    for (const auto& [port, device] : SfxContext::kDeviceForPort) takeSelectedEndpoint(context, port);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
    setScenario(name);
}

void SfxController::setScenario(const std::string& profileName) {
    auto scenario = kScenarioForProfile.find(profileName);
    if (scenario == kScenarioForProfile.end()) {
        ALOGW("%s(): Unknown profile name %s for scenario", "onSelectedProfileChanged",
              profileName.c_str());
        return;
    }
    property_set(kScenarioProperty, scenario->second);
}

void SfxController::onSelectedProfileParameterChanged(AxContext& /*context*/, Profile& profile) {
    mSfxContext->setProfile(profile);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

void SfxController::onSelectedProfileEndpointChanged(AxContext& /*context*/, Port port,
                                                     ProfileEndpoint& endpoint) {
    mSfxContext->setProfileEndpoint(port, endpoint);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

void SfxController::onSelectedProfileIeqChanged(AxContext& /*context*/, Port port,
                                                IeqPreset& preset) {
    mSfxContext->setIeqPreset(port, preset);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

void SfxController::onSelectedProfileGeqChanged(AxContext& /*context*/, GeqPreset& preset) {
    mSfxContext->setGeqPreset(preset);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

void SfxController::onSelectedTuningChanged(AxContext& /*context*/, Port port, Tuning& tuning) {
    mSfxContext->setTuning(port, tuning);
    sendParameters(AUDIO_DEVICE_OUT_DEFAULT);
}

}  // namespace korvi
