// The effect device context: which view each device and port has, which translator each view
// reports to, and that its setters reach exactly the port's view and only real changes.
#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "effect/SfxContext.h"
#include "EffectTestSupport.h"

namespace korvi {
namespace {

using test::entriesOf;

constexpr AndroidDevice kAll[] = {AUDIO_DEVICE_OUT_SPEAKER,        AUDIO_DEVICE_OUT_WIRED_HEADPHONE,
                                  AUDIO_DEVICE_OUT_BLUETOOTH_A2DP, AUDIO_DEVICE_OUT_AUX_DIGITAL,
                                  AUDIO_DEVICE_OUT_USB_DEVICE,     AUDIO_DEVICE_OUT_REMOTE_SUBMIX,
                                  AUDIO_DEVICE_OUT_DEFAULT};

class SfxContextTest : public testing::Test {
protected:
    SfxContextTest() {
        for (AndroidDevice d : kAll) mPointers[d] = &mTranslators[d];
        mContext = std::make_unique<SfxContext>(mPointers);
    }

    // The devices whose translator has something pending, emptied afterwards.
    std::vector<uint32_t> pendingDevices() {
        std::vector<uint32_t> devices;
        for (auto& [device, translator] : mTranslators) {
            if (translator.pendingCount() == 0) continue;
            devices.push_back(device);
            SetParamCommand cmd(0);
            translator.translatePending(cmd);
        }
        return devices;
    }

    std::map<AndroidDevice, ParameterTranslator> mTranslators;
    std::map<AndroidDevice, ParameterTranslator*> mPointers;
    std::unique_ptr<SfxContext> mContext;
};

TEST_F(SfxContextTest, EachDeviceHasItsOwnViewObservedByItsTranslator) {
    const std::map<Port, AndroidDevice> pairs = {
        {PORT_INTERNAL_SPEAKER, AUDIO_DEVICE_OUT_SPEAKER}, {PORT_HDMI, AUDIO_DEVICE_OUT_AUX_DIGITAL},
        {PORT_MIRACAST, AUDIO_DEVICE_OUT_REMOTE_SUBMIX},   {PORT_HEADPHONE, AUDIO_DEVICE_OUT_WIRED_HEADPHONE},
        {PORT_BLUETOOTH, AUDIO_DEVICE_OUT_BLUETOOTH_A2DP}, {PORT_USB, AUDIO_DEVICE_OUT_USB_DEVICE},
    };
    EXPECT_EQ(SfxContext::kDeviceForPort, pairs);
    std::map<AndroidDevice, Port> inverse;
    for (const auto& [port, device] : pairs) inverse[device] = port;
    EXPECT_EQ(SfxContext::kPortForDevice, inverse);

    ParameterValues* profile = mContext->getParameters(AUDIO_DEVICE_OUT_DEFAULT);
    EXPECT_NE(dynamic_cast<ProfileParameters*>(profile), nullptr);
    EXPECT_EQ(mTranslators[AUDIO_DEVICE_OUT_DEFAULT].getSource(), profile);
    std::set<ParameterValues*> views{profile};
    for (const auto& [port, device] : pairs) {
        DeviceParameters* view = mContext->getDeviceParameters(port);
        ASSERT_NE(view, nullptr) << port;
        EXPECT_EQ(mContext->getParameters(device), view);
        EXPECT_EQ(mTranslators[device].getSource(), view);
        EXPECT_EQ(mTranslators[device].getEndpoint(), OTHER);
        views.insert(view);
    }
    EXPECT_EQ(views.size(), 7u);
    EXPECT_EQ(mContext->getParameters(AUDIO_DEVICE_OUT_EARPIECE), nullptr);
    EXPECT_EQ(mContext->getDeviceParameters(static_cast<Port>(kPortCount)), nullptr);

    // Devices missing from the translator map get views without an observer (and null entries).
    std::map<AndroidDevice, ParameterTranslator*> partial{{AUDIO_DEVICE_OUT_DEFAULT, &mTranslators[AUDIO_DEVICE_OUT_DEFAULT]}};
    SfxContext sparse(partial);
    EXPECT_EQ(partial.size(), 7u);
    EXPECT_EQ(partial[AUDIO_DEVICE_OUT_SPEAKER], nullptr);
    Tuning tuning("internal_speaker", SPEAKER, false);
    tuning.set(VOLUME_LEVELER_ENABLE, {1});
    sparse.setTuning(PORT_INTERNAL_SPEAKER, tuning);
    EXPECT_EQ(sparse.getDeviceParameters(PORT_INTERNAL_SPEAKER)->mValues[VOLUME_LEVELER_ENABLE],
              std::vector<int>{1});
}

TEST_F(SfxContextTest, SettersReachThePortsViewAndOnlyRealChanges) {
    Profile profile(0, "Dynamic", true);
    profile.set(REVERB_SUPPRESSION_AMOUNT, {3});
    GeqPreset geq(0);
    geq.set(GEQ_GAIN, {1, 2});
    IeqPreset ieq(2, "balanced");
    ieq.set(IEQ_TARGET, {4, 5});
    ProfileEndpoint endpoint(0, HEADPHONE, 0);
    endpoint.set(VOLUME_LEVELER_ENABLE, {1});
    Tuning tuning("headphone_usb", HEADPHONE, true);
    tuning.set(VOLUME_LEVELER_AMOUNT, {4});

    mContext->setProfile(profile);
    EXPECT_EQ(pendingDevices(), std::vector<uint32_t>{AUDIO_DEVICE_OUT_DEFAULT});
    mContext->setGeqPreset(geq);
    EXPECT_EQ(pendingDevices(), std::vector<uint32_t>{AUDIO_DEVICE_OUT_DEFAULT});
    mContext->setIeqPreset(PORT_BLUETOOTH, ieq);
    EXPECT_EQ(pendingDevices(), std::vector<uint32_t>{AUDIO_DEVICE_OUT_BLUETOOTH_A2DP});
    mContext->setProfileEndpoint(PORT_MIRACAST, endpoint);
    EXPECT_EQ(pendingDevices(), std::vector<uint32_t>{AUDIO_DEVICE_OUT_REMOTE_SUBMIX});
    mContext->setTuning(PORT_USB, tuning);
    EXPECT_EQ(pendingDevices(), std::vector<uint32_t>{AUDIO_DEVICE_OUT_USB_DEVICE});
    EXPECT_EQ(mTranslators[AUDIO_DEVICE_OUT_USB_DEVICE].getEndpoint(), HEADPHONE);
    EXPECT_TRUE(mTranslators[AUDIO_DEVICE_OUT_USB_DEVICE].isMono());
    auto* usb = mContext->getDeviceParameters(PORT_USB);
    EXPECT_EQ(usb->getTuning(), &tuning);
    EXPECT_EQ(mContext->getDeviceParameters(PORT_HDMI)->getTuning(), nullptr);
    EXPECT_EQ(mContext->getDeviceParameters(PORT_HDMI)->getProfile(), &profile);

    // The same records again change nothing; a port without a device is ignored.
    mContext->setProfile(profile);
    mContext->setGeqPreset(geq);
    mContext->setIeqPreset(PORT_BLUETOOTH, ieq);
    mContext->setProfileEndpoint(PORT_MIRACAST, endpoint);
    mContext->setTuning(PORT_USB, tuning);
    mContext->setIeqPreset(static_cast<Port>(kPortCount), ieq);
    EXPECT_TRUE(pendingDevices().empty());
}

}  // namespace
}  // namespace korvi
