// Keeps the audio effect in step with the service's state. As an observer of the AxContext it
// pushes each announced change into its SfxContext, whose views mark the changed parameters in
// the per-device translators; it then collects every device's pending translations into one
// command and sends it through the SfxEffect.
//
// Every callback runs on the thread that changes the context; the SfxContext, the translators and
// the commands are only touched from there. Log tag: "SfxController".
#pragma once

#include <map>
#include <memory>
#include <set>

#include "context/OnAxContextChange.h"
#include "effect/ParameterTranslator.h"
#include "effect/SfxContext.h"
#include "effect/SfxEffect.h"
#include "model/AndroidDevice.h"

namespace korvi {

class SfxController : public OnAxContextChange {
public:
    // The devices that have a translator: the profile level (AUDIO_DEVICE_OUT_DEFAULT) and the
    // six port devices. Sends walk them in ascending order, so the profile level comes last.
    static const std::set<AndroidDevice> kDevices;

    // id is kept as an opaque identifier. The effect is borrowed and must outlive the controller
    // (or be replaced through setSfxEffect).
    SfxController(int id, SfxEffect& effect);
    ~SfxController() override;
    SfxController(const SfxController&) = delete;
    SfxController& operator=(const SfxController&) = delete;

    // Switches to another effect and sends it everything every view holds, in one command.
    void setSfxEffect(SfxEffect& effect, AxContext& context);
    // Sends what changed since the last send, every device in one command made for target; an
    // empty command sends nothing.
    void sendParameters(AndroidDevice target);

    void onLoad(AxContext& context) override;
    // Switching the effect on or off changes no parameter: nothing is sent.
    void onSfxOnChanged(AxContext& context, bool on) override;
    void onSelectedProfileChanged(AxContext& context) override;
    void onSelectedProfileParameterChanged(AxContext& context, Profile& profile) override;
    void onSelectedProfileEndpointChanged(AxContext& context, Port port,
                                          ProfileEndpoint& endpoint) override;
    void onSelectedProfileIeqChanged(AxContext& context, Port port, IeqPreset& preset) override;
    void onSelectedProfileGeqChanged(AxContext& context, GeqPreset& preset) override;
    void onSelectedTuningChanged(AxContext& context, Port port, Tuning& tuning) override;

    int getId() const { return mId; }
    SfxContext& getSfxContext() { return *mSfxContext; }

private:
    // The selected profile and its GEQ preset into the views.
    void takeSelectedProfile(AxContext& context);
    // The port's selected profile endpoint and IEQ preset into its view; false when the port has
    // no selected profile endpoint.
    bool takeSelectedEndpoint(AxContext& context, Port port);
    // The profile's name as the audio scenario property expects it.
    static void setScenario(const std::string& profileName);

    // Declared before the context so that they outlive the views that report to them.
    std::map<AndroidDevice, std::unique_ptr<ParameterTranslator>> mTranslators;
    std::unique_ptr<SfxContext> mSfxContext;
    int mId;
    SfxEffect* mEffect;
};

}  // namespace korvi
