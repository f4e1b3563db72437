// The bundled sample device files are what every later subsystem, the demo and the benchmarks
// run on, so they must be complete: every value element used, every record with every value it
// owns, values inside the ranges clients may set, every port with its default device. What each
// file yields as a whole is held by korvictl's golden outputs (tests/korvictl/golden).
#include <fstream>
#include <map>
#include <set>

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "model/Parameter.h"
#include "model/Port.h"
#include "support/LogCapture.h"
#include "tuning/SetterCollection.h"
#include "tuning/TuningFileParser.h"

namespace korvi {
namespace {

const std::string kData = KORVI_DATA_DIR;
const std::string kDefault = kData + "/vendor/etc/korvi/wem-default.xml";
const std::string kFs19xx = kData + "/vendor/etc/korvi/wem-fs19xx.xml";
const std::string kOem = kData + "/data/vendor/korvi/wem-extra.xml";
const std::vector<std::string> kAllFiles = {
        kDefault, kFs19xx, kOem, kData + "/formats/wem-3.2.0.xml",
        kData + "/formats/wem-3.2.2.xml", kData + "/formats/wem-3.3.0.xml",
};

std::string nameOf(const xmlNode* n) { return reinterpret_cast<const char*>(n->name); }

std::string attr(const xmlNode* n, const char* name) {
    xmlChar* v = xmlGetProp(n, reinterpret_cast<const xmlChar*>(name));
    std::string s = v != nullptr ? reinterpret_cast<const char*>(v) : "";
    xmlFree(v);
    return s;
}

std::vector<const xmlNode*> elements(const xmlNode* n) {
    std::vector<const xmlNode*> out;
    for (const xmlNode* c = n->children; c != nullptr; c = c->next) {
        if (c->type == XML_ELEMENT_NODE) out.push_back(c);
    }
    return out;
}

// Names of the elements that stand where the reader looks value elements up by name (below a
// profile, an endpoint_type and a tuning's data block), and the types of the presets, which
// reach the "ieq" and "geq" setters.
void collectValueElementNames(const std::string& path, std::set<std::string>& names) {
    xmlDoc* doc = xmlReadFile(path.c_str(), nullptr, 0);
    ASSERT_NE(doc, nullptr) << path;
    for (const xmlNode* top : elements(xmlDocGetRootElement(doc))) {
        const std::string kind = nameOf(top);
        if (kind == "preset") names.insert(attr(top, "type"));
        if (kind == "profile") {
            for (const xmlNode* c : elements(top)) {
                names.insert(nameOf(c));
                if (nameOf(c) != "endpoint_type") continue;
                for (const xmlNode* e : elements(c)) names.insert(nameOf(e));
            }
        }
        if (kind == "tuning") {
            for (const xmlNode* c : elements(top)) {
                if (nameOf(c) == "device_id") continue;
                for (const xmlNode* v : elements(c)) names.insert(nameOf(v));
                break;  // only the first other element is the data block
            }
        }
    }
    xmlFreeDoc(doc);
}

// The factory file alone uses every value element: it is the one the service starts from.
TEST(SampleFilesTest, EveryValueElementAppears) {
    EXPECT_EQ(SetterCollection::kAllValueSetters.size(), 81u);
    std::set<std::string> factory;
    collectValueElementNames(kDefault, factory);
    for (const ValueSetter* setter : SetterCollection::kAllValueSetters) {
        EXPECT_EQ(factory.count(setter->getNodeName()), 1u) << setter->getNodeName();
    }
}

TEST(SampleFilesTest, EveryFileReadsWithoutWarnings) {
    for (const std::string& file : kAllFiles) {
        test::LogCapture logs;
        TuningFileParser parser;
        ASSERT_EQ(parser.setTuningFile(file), 0) << file;
        for (const test::LogLine& line : logs.lines()) {
            EXPECT_LT(line.priority, ANDROID_LOG_WARN) << file << ": " << line.tag << ": " << line.message;
        }
    }
}

const std::vector<int>& valueOf(ParameterValues& record, Parameter p) {
    return record.mValues[p];
}

// Ranges clients may set (the parameter adapter's clamping table), which the files respect.
const std::map<Parameter, std::pair<int, int>> kClientRanges = {
        {VIRTUALIZER_ENABLE, {0, 1}}, {VOLUME_LEVELER_ENABLE, {0, 1}}, {DIALOG_ENHANCER_ENABLE, {0, 1}},
        {GRAPHIC_EQUALIZER_ENABLE, {0, 1}}, {IEQ_AMOUNT, {0, 16}}, {DIALOG_ENHANCER_AMOUNT, {0, 16}},
        {DIALOG_ENHANCER_DUCKING, {0, 16}}, {BASS_ENHANCER_ENABLE, {0, 1}}, {VIRTUAL_BASS_ENABLE, {0, 1}},
        {HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, {4, 64}}, {REVERB_SUPPRESSION_ENABLE, {0, 1}},
        {REVERB_SUPPRESSION_AMOUNT, {0, 9}}, {VOLUME_LEVELER_AMOUNT, {0, 10}},
};

void expectInClientRange(ParameterValues& record, const std::string& where) {
    for (const auto& [p, range] : kClientRanges) {
        if (record.getValidParams().count(p) == 0) continue;
        const std::vector<int>& v = valueOf(record, p);
        ASSERT_EQ(v.size(), 1u) << where << " " << kParameterNames[p];
        EXPECT_GE(v[0], range.first) << where << " " << kParameterNames[p];
        EXPECT_LE(v[0], range.second) << where << " " << kParameterNames[p];
    }
}

// Every value the record owns is present and non-empty.
void expectComplete(ParameterValues& record, const std::string& where) {
    for (const Parameter p : record.getValidParams()) {
        EXPECT_FALSE(valueOf(record, p).empty()) << where << " lacks " << kParameterNames[p];
    }
}

void checkFactoryFile(const std::string& path, bool monoSpeaker) {
    TuningFileParser parser;
    ASSERT_EQ(parser.setTuningFile(path), 0);
    DeviceData& data = *parser.getDeviceData();
    EXPECT_EQ(data.getFormatVersion(), "3.5.0");

    std::map<int, std::string> ieqNames;
    for (IeqPreset* preset : data.getIeqPresets()) {
        ieqNames[preset->getPresetId()] = preset->getName();
        EXPECT_EQ(valueOf(*preset, IEQ_FREQUENCY).size(), 20u) << preset->getName();
        EXPECT_EQ(valueOf(*preset, IEQ_TARGET).size(), 20u) << preset->getName();
    }
    EXPECT_EQ(ieqNames, (std::map<int, std::string>{{0, "off"}, {1, "detailed"}, {2, "balanced"}, {3, "warm"}}));

    std::map<int, std::string> profiles;
    for (Profile* profile : data.getProfiles()) {
        profiles[profile->getProfileId()] = profile->getName();
        expectComplete(*profile, profile->getName());
        expectInClientRange(*profile, profile->getName());
    }
    EXPECT_EQ(profiles, (std::map<int, std::string>{{0, "Dynamic"}, {1, "Movie"}, {2, "Music"}, {3, "Voice"}, {4, "Game"}}));

    std::set<int> geqProfiles;
    for (GeqPreset* preset : data.getGeqPresets()) {
        geqProfiles.insert(preset->getProfileId());
        EXPECT_EQ(valueOf(*preset, GEQ_FREQUENCY).size(), 20u);
        const std::vector<int>& gains = valueOf(*preset, GEQ_GAIN);
        EXPECT_EQ(gains.size(), 20u);
        for (const int g : gains) {
            EXPECT_GE(g, -576);
            EXPECT_LE(g, 576);
        }
    }
    EXPECT_EQ(geqProfiles, (std::set<int>{0, 1, 2, 3, 4}));

    std::set<std::pair<int, int>> endpoints;
    for (ProfileEndpoint* e : data.getProfileEndpoints()) {
        const std::string where = profiles[e->getProfileId()] + "/" + endpointName(e->getEndpoint());
        EXPECT_TRUE(endpoints.emplace(e->getProfileId(), e->getEndpoint()).second) << where;
        expectComplete(*e, where);
        expectInClientRange(*e, where);
        EXPECT_EQ(ieqNames.count(e->getSelectedIeqPreset()), 1u) << where;
        EXPECT_EQ(valueOf(*e, VIRTUAL_BASS_TYPE), std::vector<int>{2}) << where;
        EXPECT_EQ(valueOf(*e, IEQ_ENABLE).size(), 1u) << where;
    }
    EXPECT_EQ(endpoints.size(), 15u);

    std::map<std::string, Tuning*> tunings;
    std::set<int> channelCounts;
    for (Tuning* t : data.getTunings()) {
        EXPECT_TRUE(tunings.emplace(t->getName(), t).second) << t->getName();
        expectComplete(*t, t->getName());
        const int channels = valueOf(*t, OUTPUT_CHANNELS).at(0);
        channelCounts.insert(channels);
        // Only the mono-speaker file has mono tunings, and there exactly the speaker ones.
        EXPECT_EQ(t->isMono(), monoSpeaker && t->getEndpoint() == SPEAKER) << t->getName();
        EXPECT_TRUE(channels == 2 || channels == 4) << t->getName();
        // Per-band lists come in matching lengths; per-channel lists have one entry per channel.
        for (const Parameter p : {AUDIO_OPTIMIZER_FREQUENCY, AUDIO_OPTIMIZER_GAIN_L, AUDIO_OPTIMIZER_GAIN_R,
                                  AUDIO_OPTIMIZER_GAIN_LS, AUDIO_OPTIMIZER_GAIN_RS, REGULATOR_FREQUENCY,
                                  REGULATOR_THRESHOLD_LOW, REGULATOR_THRESHOLD_HIGH, REGULATOR_ISOLATED_BAND}) {
            EXPECT_EQ(valueOf(*t, p).size(), 20u) << t->getName() << " " << kParameterNames[p];
        }
        EXPECT_EQ(valueOf(*t, REGULATOR_STRESS_AMOUNT).size(), static_cast<size_t>(channels));
        EXPECT_EQ(valueOf(*t, OUTPUT_MIX_MATRIX).size(), static_cast<size_t>(channels * channels))
                << t->getName();
        EXPECT_EQ(valueOf(*t, COMPLEX_EQUALIZER_TUNING_LEFT).size(),
                  valueOf(*t, COMPLEX_EQUALIZER_TUNING_RIGHT_SURROUND).size());
    }
    if (!monoSpeaker) {
        EXPECT_EQ(channelCounts, (std::set<int>{2, 4}));
    }

    // Every port starts on "default_<port>"; every device names a tuning made for its port's
    // kind of endpoint; the named models are there.
    std::map<std::string, std::string> devicePorts;
    for (DeviceTuning* d : data.getDeviceTunings()) {
        EXPECT_TRUE(devicePorts.emplace(d->getDevice(), d->getPort()).second) << d->getDevice();
        ASSERT_EQ(tunings.count(d->getTuning()), 1u) << d->getDevice();
        ASSERT_EQ(kPortNameToEndpoint.count(d->getPort()), 1u) << d->getDevice();
        EXPECT_EQ(tunings[d->getTuning()]->getEndpoint(), kPortNameToEndpoint.at(d->getPort()))
                << d->getDevice();
    }
    for (int port = 0; port < kPortCount; ++port) {
        const std::string name = kPortNames[port];
        EXPECT_EQ(devicePorts["default_" + name], name);
    }
    std::map<std::string, int> namedPerPort;
    for (const auto& [device, port] : devicePorts) {
        if (device.rfind("default_", 0) != 0) ++namedPerPort[port];
    }
    EXPECT_EQ(namedPerPort, (std::map<std::string, int>{{"headphone", 2}, {"bluetooth", 1}, {"usb", 1}}));
}

TEST(SampleFilesTest, DefaultFactoryFileIsComplete) { checkFactoryFile(kDefault, false); }

TEST(SampleFilesTest, Fs19xxFactoryFileIsCompleteWithAMonoSpeaker) { checkFactoryFile(kFs19xx, true); }

TEST(SampleFilesTest, OemFileAddsOneTuningAndCollidesWithOne) {
    TuningFileParser factory;
    ASSERT_EQ(factory.setTuningFile(kDefault), 0);
    TuningFileParser oem;
    ASSERT_EQ(oem.setTuningFile(kOem), 0);
    EXPECT_EQ(oem.getDeviceData()->getFormatVersion(), factory.getDeviceData()->getFormatVersion());

    std::set<std::string> factoryTunings;
    for (Tuning* t : factory.getDeviceData()->getTunings()) factoryTunings.insert(t->getName());
    std::set<std::string> factoryDevices;
    for (DeviceTuning* d : factory.getDeviceData()->getDeviceTunings()) factoryDevices.insert(d->getDevice());
    std::vector<std::string> added, colliding;
    for (Tuning* t : oem.getDeviceData()->getTunings()) {
        expectComplete(*t, t->getName());
        (factoryTunings.count(t->getName()) != 0 ? colliding : added).push_back(t->getName());
    }
    EXPECT_EQ(added, std::vector<std::string>{"oem_neckband_n7"});
    EXPECT_EQ(colliding, std::vector<std::string>{"earbuds_e2"});
    std::map<std::string, int> devicesPerTuning;
    for (DeviceTuning* d : oem.getDeviceData()->getDeviceTunings()) {
        EXPECT_EQ(factoryDevices.count(d->getDevice()), 0u) << d->getDevice();
        ++devicesPerTuning[d->getTuning()];
    }
    EXPECT_EQ(devicesPerTuning, (std::map<std::string, int>{{"oem_neckband_n7", 2}, {"earbuds_e2", 1}}));
    EXPECT_TRUE(oem.getDeviceData()->getProfiles().empty());
}

TEST(SampleFilesTest, AmplifierTypeFileNamesAKnownAmplifier) {
    std::ifstream in(kData + "/sys/kernel/smartpa/smartpa_type");
    std::string type;
    std::getline(in, type);
    EXPECT_TRUE(type == "none" || type == "aw882xx" || type == "fs19xx") << type;
}

}  // namespace
}  // namespace korvi
