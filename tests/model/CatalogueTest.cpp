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

TEST(Catalogue, PortAndEndpointTables) {
    EXPECT_EQ(Tuning::kEndpNameToEndpoint,
              (std::map<std::string, Endpoint>{{"speaker", SPEAKER}, {"headphone", HEADPHONE}, {"other", OTHER}}));
    EXPECT_EQ(kPortNameToEndpoint, (std::map<std::string, Endpoint>{
                                           {"internal_speaker", SPEAKER}, {"headphone", HEADPHONE},
                                           {"bluetooth", HEADPHONE}, {"usb", HEADPHONE}, {"hdmi", OTHER},
                                           {"miracast", OTHER}, {"other", OTHER}}));
    // The seventh name, "other", has no Port of its own.
    EXPECT_EQ(std::vector<std::string>(std::begin(kPortNames), std::end(kPortNames)),
              (std::vector<std::string>{"internal_speaker", "hdmi", "miracast", "headphone", "bluetooth", "usb",
                                        "other"}));
    // One device per port and one port per device, in the order the device maps are built from.
    std::vector<std::pair<Port, unsigned>> pairs;
    for (const auto& [port, device] : kPortDevicePairs) pairs.emplace_back(port, device);
    EXPECT_EQ(pairs, (std::vector<std::pair<Port, unsigned>>{
                             {PORT_INTERNAL_SPEAKER, 0x2u}, {PORT_HEADPHONE, 0x8u}, {PORT_BLUETOOTH, 0x80u},
                             {PORT_HDMI, 0x400u}, {PORT_USB, 0x4000u}, {PORT_MIRACAST, 0x8000u}}));
}

TEST(CatalogueDeathTest, OutOfRangeNumbersAbort) {
    EXPECT_DEATH(parameterName(static_cast<Parameter>(96)), "invalid parameter number 96");
    EXPECT_DEATH(endpointName(static_cast<Endpoint>(3)), "invalid endpoint 3");
    EXPECT_STREQ(parameterName(GEQ_GAIN), "geq_gain");
    EXPECT_STREQ(endpointName(OTHER), "other");
}

}  // namespace
}  // namespace korvi
