// The parameter catalogue and the static tables built from it.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

#include "model/GeqPreset.h"
#include "model/IeqPreset.h"
#include "model/Parameter.h"
#include "model/Port.h"
#include "model/Profile.h"
#include "model/ProfileEndpoint.h"
#include "model/Tuning.h"

namespace korvi {
namespace {

// The owning record of every parameter, one letter per number 0-95, written down independently
// of the code's sets: T Tuning, P Profile, E ProfileEndpoint, I IeqPreset, G GeqPreset, - none.
constexpr const char kOwners[] =
    "TTTTTTTTETTTTTETTTTTPEEEGGEEEEEEETEEIIIPPPPETTTETTTTTTTTTTTTTTTPPEETTETTTTTTTTTTTT-ETTETEETEEETP";

TEST(Catalogue, NumbersFollowTheColumnNamesWithTheOneKnownException) {
    static_assert(sizeof(kOwners) - 1 == kParameterCount);
    EXPECT_STREQ(kParameterNames[AUDIO_OPTIMIZER_ENABLE], "audio_optimizer_enable");
    EXPECT_STREQ(kParameterNames[CUSTOM_DRC_METADATA], "custom_drc_metadata");
    EXPECT_STREQ(kParameterNames[IEQ_ID], "ieq_id");
    EXPECT_STREQ(kParameterNames[VIRTUAL_BASS_TYPE], "virtual_bass_type");
    EXPECT_STREQ(kParameterNames[VOLUME_MODELER_ENABLE], "volume_modeler_enable");
    EXPECT_EQ(VIRTUAL_BASS_MIX_FREQUENCY, 72);
    EXPECT_EQ(VIRTUAL_BASS_MIX_FREQ_HIGH, 73);
    EXPECT_EQ(VOLUME_MODELER_ENABLE, 95);

    std::set<std::string> unique;
    for (int n = 0; n < kParameterCount; ++n) {
        unique.insert(kParameterNames[n]);
        if (n == 0) continue;
        const bool ascending = strcmp(kParameterNames[n - 1], kParameterNames[n]) < 0;
        // 72 "virtual_bass_mix_frequency" precedes 73 "virtual_bass_mix_freq_high" by design.
        EXPECT_EQ(ascending, n != 73) << n << " " << kParameterNames[n];
    }
    EXPECT_EQ(unique.size(), 96u);
}

TEST(Catalogue, EveryParameterHasExactlyTheOwnerOfTheCatalogue) {
    const struct {
        char letter;
        const std::set<Parameter>* valid;
        size_t size;
    } kRecords[] = {
        {'T', &Tuning::kValidParams, 56},   {'P', &Profile::kValidParams, 8},
        {'E', &ProfileEndpoint::kValidParams, 26}, {'I', &IeqPreset::kValidParams, 3},
        {'G', &GeqPreset::kValidParams, 2},
    };
    for (const auto& record : kRecords) {
        EXPECT_EQ(record.valid->size(), record.size) << record.letter;
        for (int n = 0; n < kParameterCount; ++n) {
            EXPECT_EQ(record.valid->count(static_cast<Parameter>(n)) == 1, kOwners[n] == record.letter)
                << "parameter " << n << " " << kParameterNames[n] << " record " << record.letter;
        }
    }
    EXPECT_EQ(kOwners[VIRTUAL_BASS_TYPE], '-');
}

TEST(Catalogue, ValueMapsIterateInParameterOrder) {
    std::map<Parameter, int> m;
    m[VOLUME_MODELER_ENABLE] = 0;
    m[AUDIO_OPTIMIZER_ENABLE] = 0;
    m[VIRTUAL_BASS_MIX_FREQ_HIGH] = 0;
    m[VIRTUAL_BASS_MIX_FREQUENCY] = 0;
    std::vector<Parameter> order;
    for (const auto& entry : m) order.push_back(entry.first);
    EXPECT_EQ(order, (std::vector<Parameter>{AUDIO_OPTIMIZER_ENABLE, VIRTUAL_BASS_MIX_FREQUENCY,
                                             VIRTUAL_BASS_MIX_FREQ_HIGH, VOLUME_MODELER_ENABLE}));
}

TEST(Catalogue, PortAndEndpointTables) {
    EXPECT_EQ(Tuning::kEndpNameToEndpoint.size(), 3u);
    EXPECT_EQ(Tuning::kEndpNameToEndpoint.at("speaker"), SPEAKER);
    EXPECT_EQ(Tuning::kEndpNameToEndpoint.at("headphone"), HEADPHONE);
    EXPECT_EQ(Tuning::kEndpNameToEndpoint.at("other"), OTHER);
    EXPECT_EQ(Tuning::kEndpNameToEndpoint.count("internal_speaker"), 0u);

    EXPECT_EQ(kPortNameToEndpoint.size(), 7u);
    const std::pair<const char*, Endpoint> kExpected[] = {
        {"internal_speaker", SPEAKER}, {"headphone", HEADPHONE}, {"bluetooth", HEADPHONE},
        {"usb", HEADPHONE}, {"hdmi", OTHER}, {"miracast", OTHER}, {"other", OTHER}};
    for (const auto& [name, endpoint] : kExpected) EXPECT_EQ(kPortNameToEndpoint.at(name), endpoint) << name;
    EXPECT_EQ(kPortNameToEndpoint.count("speaker"), 0u);

    EXPECT_STREQ(kPortNames[PORT_INTERNAL_SPEAKER], "internal_speaker");
    EXPECT_STREQ(kPortNames[PORT_HDMI], "hdmi");
    EXPECT_STREQ(kPortNames[PORT_MIRACAST], "miracast");
    EXPECT_STREQ(kPortNames[PORT_HEADPHONE], "headphone");
    EXPECT_STREQ(kPortNames[PORT_BLUETOOTH], "bluetooth");
    EXPECT_STREQ(kPortNames[PORT_USB], "usb");
    EXPECT_STREQ(kPortNames[6], "other");  // a port name without a Port
}

TEST(Catalogue, PortDevicePairsAreAOneToOneMapOverTheSixPorts) {
    std::map<Port, AndroidDevice> deviceForPort;
    std::map<AndroidDevice, Port> portForDevice;
    for (const auto& [port, device] : kPortDevicePairs) {
        EXPECT_TRUE(deviceForPort.emplace(port, device).second);
        EXPECT_TRUE(portForDevice.emplace(device, port).second);
    }
    ASSERT_EQ(deviceForPort.size(), 6u);
    ASSERT_EQ(portForDevice.size(), 6u);
    for (const auto& [port, device] : deviceForPort) EXPECT_EQ(portForDevice.at(device), port);
    EXPECT_EQ(deviceForPort.at(PORT_INTERNAL_SPEAKER), 0x2u);
    EXPECT_EQ(deviceForPort.at(PORT_HEADPHONE), 0x8u);
    EXPECT_EQ(deviceForPort.at(PORT_BLUETOOTH), 0x80u);
    EXPECT_EQ(deviceForPort.at(PORT_HDMI), 0x400u);
    EXPECT_EQ(deviceForPort.at(PORT_USB), 0x4000u);
    EXPECT_EQ(deviceForPort.at(PORT_MIRACAST), 0x8000u);
    EXPECT_EQ(portForDevice.count(AUDIO_DEVICE_OUT_WIRED_HEADSET), 0u);
}

TEST(CatalogueDeathTest, OutOfRangeNumbersAbort) {
    EXPECT_DEATH(parameterName(static_cast<Parameter>(96)), "invalid parameter number 96");
    EXPECT_DEATH(endpointName(static_cast<Endpoint>(3)), "invalid endpoint 3");
    EXPECT_STREQ(parameterName(GEQ_GAIN), "geq_gain");
    EXPECT_STREQ(endpointName(OTHER), "other");
}

}  // namespace
}  // namespace korvi
