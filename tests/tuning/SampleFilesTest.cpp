// The bundled sample device files read cleanly and give the records the rest of the service
// and the demo rely on.
#include <gtest/gtest.h>

#include "model/Port.h"
#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"
#include "tuning/TuningFileParser.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::TempDeviceRoot;

std::string dataFile(const std::string& relative) {
    return TempDeviceRoot::dataDir() + "/" + relative;
}

const char* const kCurrentFiles[] = {
    "vendor/etc/korvi/wem-default.xml",
    "vendor/etc/korvi/wem-fs19xx.xml",
    "data/vendor/korvi/wem-extra.xml",
};

TEST(SampleFiles, EveryFileReadsWithoutErrors) {
    const char* const all[] = {kCurrentFiles[0], kCurrentFiles[1], kCurrentFiles[2],
                               "formats/wem-3.2.0.xml", "formats/wem-3.2.2.xml",
                               "formats/wem-3.3.0.xml"};
    for (const char* file : all) {
        LogCapture logs;
        TuningFileParser parser;
        ASSERT_EQ(parser.setTuningFile(dataFile(file)), 0) << file;
        DeviceData* data = parser.getDeviceData();
        ASSERT_NE(data, nullptr);
        for (const test::LogLine& line : logs.lines()) {
            EXPECT_LT(line.priority, ANDROID_LOG_WARN) << file << ": " << line.tag << ": " << line.message;
        }
        EXPECT_FALSE(data->getTunings().empty()) << file;
        // Every device names a tuning of the file (the OEM file may name a factory tuning).
        for (DeviceTuning* device : data->getDeviceTunings()) {
            bool found = false;
            for (Tuning* tuning : data->getTunings()) found |= tuning->getName() == device->getTuning();
            EXPECT_TRUE(found) << file << ": " << device->getDevice();
        }
        // Every profile has its three endpoints.
        for (Profile* profile : data->getProfiles()) {
            int endpoints[kEndpointCount] = {};
            for (ProfileEndpoint* e : data->getProfileEndpoints()) {
                if (e->getProfileId() == profile->getProfileId()) ++endpoints[e->getEndpoint()];
            }
            for (int e = 0; e < kEndpointCount; ++e) {
                EXPECT_EQ(endpoints[e], 1) << file << ": profile " << profile->getName() << " endpoint " << e;
            }
        }
    }
}

TEST(SampleFiles, FactoryFileHasTheProfilesPresetsAndPortDefaults) {
    TuningFileParser parser(dataFile("vendor/etc/korvi/wem-default.xml"));
    DeviceData* data = parser.getDeviceData();
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(data->getFormatVersion(), "3.5.0");
    EXPECT_EQ(parser.getProfileName(0), "Dynamic");
    EXPECT_EQ(parser.getProfileName(1), "Movie");
    EXPECT_EQ(parser.getProfileName(2), "Music");
    EXPECT_EQ(parser.getProfileName(3), "Voice");
    EXPECT_GE(parser.getNumOfProfiles(), 5);
    EXPECT_EQ(data->getProfileEndpoints().size(), 3u * data->getProfiles().size());

    std::map<int, std::string> ieqNames;
    for (IeqPreset* preset : data->getIeqPresets()) {
        ieqNames[preset->getPresetId()] = preset->getName();
        EXPECT_EQ(preset->mValues[IEQ_FREQUENCY].size(), 20u) << preset->getName();
        EXPECT_EQ(preset->mValues[IEQ_TARGET].size(), 20u) << preset->getName();
    }
    EXPECT_EQ(ieqNames, (std::map<int, std::string>{{0, "off"}, {1, "detailed"}, {2, "balanced"}, {3, "warm"}}));

    // A GEQ preset of 20 bands per profile, the gains within the clients' range.
    EXPECT_EQ(data->getGeqPresets().size(), data->getProfiles().size());
    for (GeqPreset* preset : data->getGeqPresets()) {
        EXPECT_FALSE(parser.getProfileName(preset->getProfileId()).empty());
        ASSERT_EQ(preset->mValues[GEQ_GAIN].size(), 20u);
        EXPECT_EQ(preset->mValues[GEQ_FREQUENCY].size(), 20u);
        for (int gain : preset->mValues[GEQ_GAIN]) {
            EXPECT_GE(gain, -576);
            EXPECT_LE(gain, 576);
        }
    }

    // Every port (the seven names but "other") has its default device.
    std::set<std::string> devices;
    for (DeviceTuning* device : data->getDeviceTunings()) devices.insert(device->getDevice());
    for (const char* port : {"internal_speaker", "hdmi", "miracast", "headphone", "bluetooth", "usb"}) {
        EXPECT_EQ(devices.count(std::string("default_") + port), 1u) << port;
    }

    // Every endpoint carries the file's virtual-bass type and an IEQ switch.
    for (ProfileEndpoint* endpoint : data->getProfileEndpoints()) {
        EXPECT_EQ(endpoint->mValues[VIRTUAL_BASS_TYPE], std::vector<int>{parser.getVirtualBassType()});
        EXPECT_EQ(endpoint->mValues[IEQ_ENABLE].size(), 1u);
    }
}

TEST(SampleFiles, FactoryAndOemFilesAccumulateInOneParser) {
    TuningFileParser factory(dataFile("vendor/etc/korvi/wem-default.xml"));
    TuningFileParser oem(dataFile("data/vendor/korvi/wem-extra.xml"));
    TuningFileParser both(dataFile("vendor/etc/korvi/wem-default.xml"));
    ASSERT_EQ(both.setTuningFile(dataFile("data/vendor/korvi/wem-extra.xml")), 0);
    ASSERT_NE(factory.getDeviceData(), nullptr);
    ASSERT_NE(oem.getDeviceData(), nullptr);
    DeviceData* data = both.getDeviceData();
    EXPECT_EQ(data->getTunings().size(),
              factory.getDeviceData()->getTunings().size() + oem.getDeviceData()->getTunings().size());
    EXPECT_EQ(data->getDeviceTunings().size(), factory.getDeviceData()->getDeviceTunings().size() +
                                                   oem.getDeviceData()->getDeviceTunings().size());
    EXPECT_EQ(data->getProfiles().size(),
              factory.getDeviceData()->getProfiles().size() + oem.getDeviceData()->getProfiles().size());
}

}  // namespace
}  // namespace korvi
