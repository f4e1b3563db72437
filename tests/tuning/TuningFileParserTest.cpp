// The tuning-file parser on real files of every format family: the records field by field, the
// defaults each family adds, dropped tunings, both endpoint tables and accumulation.
#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <stdexcept>

#include "support/LogCapture.h"
#include "support/TempDeviceRoot.h"
#include "tuning/TuningFileParser.h"

namespace korvi {
namespace {

using test::LogCapture;
using test::TempDeviceRoot;
using Values = std::vector<int>;
using ValueMap = std::map<Parameter, Values>;

// The one record of a DeviceData set whose getter yields key; fails the test (by throwing) when
// there is none or more than one.
template <typename T, typename R, typename K>
T& one(const std::set<T*>& records, R (T::*get)() const, const K& key) {
    std::vector<T*> found;
    for (T* record : records) {
        if ((record->*get)() == key) found.push_back(record);
    }
    if (found.size() != 1) throw std::runtime_error("not exactly one record for " + ::testing::PrintToString(key));
    return *found[0];
}

ProfileEndpoint& endpointOf(DeviceData& data, int profileId, Endpoint endpoint) {
    ProfileEndpoint* found = nullptr;
    for (ProfileEndpoint* e : data.getProfileEndpoints()) {
        if (e->getProfileId() == profileId && e->getEndpoint() == endpoint) {
            if (found != nullptr) throw std::runtime_error("two endpoints");
            found = e;
        }
    }
    if (found == nullptr) throw std::runtime_error("no endpoint " + std::to_string(profileId));
    return *found;
}

// The current format, with the version elements after everything they govern.
const char* kCurrentFile = R"(<?xml version="1.0" encoding="UTF-8"?>
<korvi_tuning>
    <preset id="7" name="x" type="ieq">
        <data>
            <ieq-bands>
                <band_ieq frequency="47" target="13"/>
                <band_ieq frequency="141" target="-4"/>
            </ieq-bands>
        </data>
    </preset>
    <preset id="2abc" name="balanced" type="ieq"/>
    <preset id="1" name="movie" type="geq">
        <data>
            <geq-bands>
                <band_geq frequency="47" gain="64"/>
                <band_geq frequency="141" gain="-32"/>
            </geq-bands>
        </data>
    </preset>
    <preset id="9" name="unknown" type="peq"/>
    <profile id="1" name="Movie" group="mobility">
        <drc-metadata value="1, 0, 0, 0"/>
        <ieq-enable value="1"/>
        <ieq-amount value="9"/>
        <reverb-suppression-amount value="5"/>
        <endpoint_type id="speaker">
            <include ieq_preset="7"/>
            <ieq-enable value="true"/>
            <ieq-amount value="10"/>
            <dialog-enhancer-amount value="6"/>
            <no-such-element value="3"/>
        </endpoint_type>
        <endpoint_type id="headphone">
            <dialog-enhancer-enable value="false"/>
            <include ieq_preset="3"/>
        </endpoint_type>
        <endpoint_type id="usb">
            <include/>
            <volume-leveler-amount value="4"/>
        </endpoint_type>
    </profile>
    <profile id="3" name="Voice">
        <endpoint_type id="other">
            <include ieq_preset="2"/>
        </endpoint_type>
    </profile>
    <tuning name="spk_stereo" endpoint_type="usb" mono_device="TRUE" orientation="1" output_channels="4">
        <device_id id="default_internal_speaker" endpoint_port="internal_speaker"/>
        <!-- the data block follows the devices -->
        <device_id id="spk_alt" endpoint_port="hdmi"/>
        <data>
            <bass-enhancer-boost value="192"/>
            <virtual-bass-src-freqs frequency_low="35" frequency_high="160"/>
        </data>
        <device_id id="after_data" endpoint_port="usb"/>
    </tuning>
    <tuning name="hp_mono" endpoint_type="headphone" mono_device="true" orientation="0" output_channels="2">
        <device_id id="default_headphone" endpoint_port="headphone"/>
        <data>
            <height-filter-mode value="2"/>
        </data>
    </tuning>
    <tuning name="no_data" endpoint_type="other">
        <device_id id="orphan_a" endpoint_port="usb"/>
        <device_id id="orphan_b" endpoint_port="bluetooth"/>
    </tuning>
    <tuning name="empty" endpoint_type="other"/>
    <authorized_technologies>
        <!-- the first element child carries the virtual-bass type -->
        <technology name="virtual-bass" virtual_bass_process="3"/>
    </authorized_technologies>
    <tool_version major="2" minor="11" maintenance="3"/>
    <format_version major="3" minor="5" maintenance="0"/>
</korvi_tuning>
)";

TEST(TuningFileParser, CurrentFormatRecordsFieldByField) {
    TempDeviceRoot root;
    LogCapture logs;
    TuningFileParser parser;
    ASSERT_EQ(parser.setTuningFile(root.write("vendor/etc/korvi/wem-default.xml", kCurrentFile)), 0);
    ASSERT_TRUE(parser.isParsed());
    DeviceData& data = *parser.getDeviceData();

    EXPECT_EQ(data.getFormatVersion(), "3.5.0");
    EXPECT_EQ(data.getToolVersion(), "2.11.3");
    EXPECT_EQ(data.getSignature(), "");
    EXPECT_EQ(parser.getVirtualBassType(), 3);
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, "TuningFileParser", "xml version: 3.5.0")) << logs.dump();
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, "TuningFileParser",
                              "parseAuthorizedTechnologies, mVirtualBassType = 3"));
    EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, "TuningFileParser",
                              "parseProfileEndpoint:usb, parse the include ieq preset"));

    // IEQ presets: id and name as written (atoi rules for the id); the unknown type makes nothing.
    ASSERT_EQ(data.getIeqPresets().size(), 2u);
    IeqPreset& x = one(data.getIeqPresets(), &IeqPreset::getPresetId, 7);
    EXPECT_EQ(x.getName(), "x");
    EXPECT_TRUE(x.isDirty());
    EXPECT_EQ(x.mValues, (ValueMap{{IEQ_ID, {7}}, {IEQ_FREQUENCY, {47, 141}}, {IEQ_TARGET, {13, -4}}}));
    EXPECT_EQ(one(data.getIeqPresets(), &IeqPreset::getPresetId, 2).getName(), "balanced");

    ASSERT_EQ(data.getGeqPresets().size(), 1u);
    EXPECT_EQ(one(data.getGeqPresets(), &GeqPreset::getProfileId, 1).mValues,
              (ValueMap{{GEQ_FREQUENCY, {47, 141}}, {GEQ_GAIN, {64, -32}}}));

    // Profiles: the profile-level IEQ switch and amount are not stored in the profile.
    EXPECT_EQ(parser.getNumOfProfiles(), 2);
    ASSERT_EQ(data.getProfiles().size(), 2u);
    Profile& movie = one(data.getProfiles(), &Profile::getProfileId, 1);
    EXPECT_EQ(movie.getName(), "Movie");
    EXPECT_TRUE(movie.isMobility());
    EXPECT_EQ(movie.getSelectedGeqPreset(), 1);
    EXPECT_EQ(movie.mValues, (ValueMap{{CUSTOM_DRC_METADATA, {1, 0, 0, 0}}, {REVERB_SUPPRESSION_AMOUNT, {5}}}));
    EXPECT_FALSE(one(data.getProfiles(), &Profile::getProfileId, 3).isMobility());  // no group
    EXPECT_EQ(parser.getProfileName(3), "Voice");
    EXPECT_EQ(parser.getProfileName(2), "");

    // Endpoints: a leading include selects the preset; a later one is ignored; an unknown id is
    // an "other" endpoint. Nothing of the 3.2 family is added, the virtual-bass type always is.
    ASSERT_EQ(data.getProfileEndpoints().size(), 4u);
    EXPECT_EQ(endpointOf(data, 1, SPEAKER).getSelectedIeqPreset(), 7);
    EXPECT_EQ(endpointOf(data, 1, SPEAKER).mValues,
              (ValueMap{{IEQ_ENABLE, {1}}, {IEQ_AMOUNT, {10}}, {DIALOG_ENHANCER_AMOUNT, {6}}, {VIRTUAL_BASS_TYPE, {3}}}));
    EXPECT_EQ(endpointOf(data, 1, HEADPHONE).getSelectedIeqPreset(), 0);
    EXPECT_EQ(endpointOf(data, 1, HEADPHONE).mValues,
              (ValueMap{{DIALOG_ENHANCER_ENABLE, {0}}, {VIRTUAL_BASS_TYPE, {3}}}));
    EXPECT_EQ(endpointOf(data, 1, OTHER).getSelectedIeqPreset(), 0);  // an include without ieq_preset reads 0
    EXPECT_EQ(endpointOf(data, 1, OTHER).mValues, (ValueMap{{VOLUME_LEVELER_AMOUNT, {4}}, {VIRTUAL_BASS_TYPE, {3}}}));
    EXPECT_EQ(endpointOf(data, 3, OTHER).getSelectedIeqPreset(), 2);
    EXPECT_EQ(endpointOf(data, 3, OTHER).mValues, (ValueMap{{VIRTUAL_BASS_TYPE, {3}}}));

    // Tunings: an unknown endpoint_type is a speaker; mono only for the exact text "true".
    ASSERT_EQ(data.getTunings().size(), 2u);
    Tuning& stereo = one(data.getTunings(), &Tuning::getName, "spk_stereo");
    EXPECT_EQ(stereo.getEndpoint(), SPEAKER);
    EXPECT_FALSE(stereo.isMono());
    EXPECT_TRUE(stereo.isDirty());
    EXPECT_EQ(stereo.mValues, (ValueMap{{ORIENTATION, {1}}, {OUTPUT_CHANNELS, {4}}, {BASS_ENHANCER_BOOST, {192}},
                                        {VIRTUAL_BASS_SRC_FREQ_LOW, {35}}, {VIRTUAL_BASS_SRC_FREQ_HIGH, {160}}}));
    Tuning& mono = one(data.getTunings(), &Tuning::getName, "hp_mono");
    EXPECT_EQ(mono.getEndpoint(), HEADPHONE);
    EXPECT_TRUE(mono.isMono());
    EXPECT_EQ(mono.mValues, (ValueMap{{ORIENTATION, {0}}, {OUTPUT_CHANNELS, {2}}, {HEIGHT_FILTER_MODE, {2}}}));

    // Device tunings: only the leading device_id elements; those of a dropped tuning stay.
    ASSERT_EQ(data.getDeviceTunings().size(), 5u);
    auto device = [&](const char* id) -> DeviceTuning& {
        return one(data.getDeviceTunings(), &DeviceTuning::getDevice, std::string(id));
    };
    EXPECT_EQ(device("default_internal_speaker").getPort(), "internal_speaker");
    EXPECT_EQ(device("default_internal_speaker").getTuning(), "spk_stereo");
    EXPECT_TRUE(device("default_internal_speaker").isDirty());
    EXPECT_EQ(device("spk_alt").getPort(), "hdmi");
    EXPECT_EQ(device("orphan_b").getTuning(), "no_data");
    EXPECT_EQ(device("orphan_a").getPort(), "usb");
    EXPECT_EQ(device("default_headphone").getTuning(), "hp_mono");
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "There is no <data> in Tuning section"), 2u)
        << logs.dump();
}

// The 3.2 family: IEQ presets named by text, one include and IEQ switch per profile.
std::string family32File(const std::string& maintenance) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<korvi_tuning>
    <format_version major="3" minor="2" maintenance=")" + maintenance + R"("/>
    <tool_version major="1" minor="8" maintenance="2"/>
    <authorized_technologies>
        <technology virtual_bass_process="5"/>
    </authorized_technologies>
    <preset id="ieq_warm" name="Cosy" type="ieq">
        <data>
            <ieq-bands>
                <band_ieq frequency="47" target="-10"/>
            </ieq-bands>
        </data>
    </preset>
    <preset id="of" name="Short" type="ieq"/>
    <profile id="2" name="Music" group="mobility">
        <endpoint_type id="speaker">
            <include ieq_preset="1"/>
            <virtualizer-start-band value="7"/>
        </endpoint_type>
        <include preset="ieq_balanced"/>
        <ieq-enable value="1"/>
        <ieq-amount value="9"/>
        <endpoint_type id="headphone">
            <hearing-protection-enable value="1"/>
        </endpoint_type>
        <endpoint_type id="bluetooth"/>
    </profile>
    <tuning name="spk" endpoint_type="speaker" mono_device="false" orientation="0" output_channels="2">
        <device_id id="default_internal_speaker" endpoint_port="internal_speaker"/>
        <data>
            <bass-mbdrc-enable value="1"/>
            <bass-enhancer-boost value="100"/>
        </data>
    </tuning>
</korvi_tuning>
)";
}

// 3.2.2 also forces hearing protection, the virtualizer start band and the MBDRC off. Version
// tests are prefix tests: 3.2.25 begins with "3.2.2" and gets every 3.2.2 default.
TEST(TuningFileParser, Format32FamilyAddsProfileLevelIeqAndFamilyDefaults) {
    TempDeviceRoot root;
    for (const std::string maintenance : {"0", "2", "25"}) {
        SCOPED_TRACE(maintenance);
        const bool is322 = maintenance != "0";
        LogCapture logs;
        TuningFileParser parser;
        ASSERT_EQ(parser.setTuningFile(root.write("wem-3.2.x.xml", family32File(maintenance))), 0);
        DeviceData& data = *parser.getDeviceData();
        EXPECT_EQ(data.getFormatVersion(), "3.2." + maintenance);
        EXPECT_EQ(parser.getVirtualBassType(), 2);  // the authorized technologies are not read
        EXPECT_TRUE(logs.contains(ANDROID_LOG_DEBUG, "TuningFileParser", "parseProfile, parse the ieq preset"));

        // Presets by text: the canonical name replaces the written one; a two-letter id is invalid.
        ASSERT_EQ(data.getIeqPresets().size(), 2u);
        IeqPreset& warm = one(data.getIeqPresets(), &IeqPreset::getPresetId, 3);
        EXPECT_EQ(warm.getName(), "warm");
        EXPECT_EQ(warm.mValues[IEQ_TARGET], Values{-10});
        EXPECT_EQ(one(data.getIeqPresets(), &IeqPreset::getPresetId, 0).getName(), "off");
        EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "name is invalid, 296"), 1u) << logs.dump();

        Profile& music = one(data.getProfiles(), &Profile::getProfileId, 2);
        EXPECT_FALSE(music.isMobility());  // never in this family
        EXPECT_TRUE(music.mValues.empty());

        // Every endpoint takes the profile's include; the IEQ switch and amount reach only the
        // endpoints that follow them; the endpoint's own include is not read.
        ASSERT_EQ(data.getProfileEndpoints().size(), 3u);
        ValueMap speaker{{IEQ_ENABLE, {0}}, {IEQ_AMOUNT, {0}}, {VIRTUALIZER_START_BAND, {is322 ? 0 : 7}},
                         {HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, {4}}, {VIRTUAL_BASS_TYPE, {2}}};
        ValueMap headphone{{IEQ_ENABLE, {1}}, {IEQ_AMOUNT, {9}}, {HEARING_PROTECTION_ENABLE, {is322 ? 0 : 1}},
                           {HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE, {4}}, {VIRTUAL_BASS_TYPE, {2}}};
        if (is322) {
            speaker[HEARING_PROTECTION_ENABLE] = {0};
            headphone[VIRTUALIZER_START_BAND] = {0};
        }
        EXPECT_EQ(endpointOf(data, 2, SPEAKER).getSelectedIeqPreset(), 2);
        EXPECT_EQ(endpointOf(data, 2, SPEAKER).mValues, speaker);
        EXPECT_EQ(endpointOf(data, 2, HEADPHONE).getSelectedIeqPreset(), 2);
        EXPECT_EQ(endpointOf(data, 2, HEADPHONE).mValues, headphone);
        ProfileEndpoint& other = endpointOf(data, 2, OTHER);
        EXPECT_EQ(other.getSelectedIeqPreset(), 2);
        EXPECT_EQ(other.mValues[IEQ_AMOUNT], Values{9});

        Tuning& spk = one(data.getTunings(), &Tuning::getName, "spk");
        EXPECT_EQ(spk.mValues[BASS_MBDRC_ENABLE], Values{is322 ? 0 : 1});
        EXPECT_EQ(spk.mValues[BASS_ENHANCER_BOOST], Values{100});
    }
}

TEST(TuningFileParser, A320LookalikeVersionIsReadAsTheCurrentFormat) {
    // 3.20.1 does not begin with "3.2.": read as the current format.
    std::string current = family32File("1");
    current.replace(current.find(R"(minor="2")"), 9, R"(minor="20")");
    TempDeviceRoot root;
    TuningFileParser parser(root.write("wem-3.20.1.xml", current));
    DeviceData& data = *parser.getDeviceData();
    EXPECT_EQ(data.getFormatVersion(), "3.20.1");
    EXPECT_EQ(parser.getVirtualBassType(), 5);
    ProfileEndpoint& speaker = endpointOf(data, 2, SPEAKER);
    EXPECT_EQ(speaker.getSelectedIeqPreset(), 1);  // its own include, by number
    EXPECT_EQ(speaker.mValues.count(HEADPHONE_VIRTUALIZER_STEERER_SOURCE_DISTANCE), 0u);
    EXPECT_TRUE(one(data.getProfiles(), &Profile::getProfileId, 2).isMobility());
}

TEST(TuningFileParser, Format330NamesPresetsAndIncludesByText) {
    TempDeviceRoot root;
    TuningFileParser parser(root.write("wem-3.3.0.xml", R"(<korvi_tuning>
    <format_version major="3" minor="3" maintenance="0"/>
    <preset id="ieq_detailed" name="Sharp" type="ieq"/>
    <profile id="0" name="Dynamic" group="mobility">
        <ieq-enable value="1"/>
        <endpoint_type id="speaker">
            <include preset="ieq_warm" ieq_preset="2"/>
            <ieq-enable value="1"/>
        </endpoint_type>
        <endpoint_type id="headphone">
            <include preset="balanced_warm"/>
        </endpoint_type>
        <endpoint_type id="other">
            <include preset="warm_off"/>
        </endpoint_type>
    </profile>
</korvi_tuning>
)"));
    DeviceData& data = *parser.getDeviceData();
    EXPECT_EQ(parser.getVirtualBassType(), 1);  // no authorized technologies
    EXPECT_EQ(one(data.getIeqPresets(), &IeqPreset::getPresetId, 1).getName(), "detailed");
    EXPECT_TRUE(one(data.getProfiles(), &Profile::getProfileId, 0).isMobility());
    EXPECT_EQ(endpointOf(data, 0, SPEAKER).getSelectedIeqPreset(), 3);
    EXPECT_EQ(endpointOf(data, 0, SPEAKER).mValues, (ValueMap{{IEQ_ENABLE, {1}}, {VIRTUAL_BASS_TYPE, {1}}}));
    EXPECT_EQ(endpointOf(data, 0, HEADPHONE).getSelectedIeqPreset(), 2);
    EXPECT_EQ(endpointOf(data, 0, OTHER).getSelectedIeqPreset(), 0);
}

// Preset ids read like atoi (blanks, a sign, digits up to the first other character), except
// that numbers too large for an int are clamped.
TEST(TuningFileParser, PresetIdsReadLikeAtoiButClamp) {
    std::string presets;
    for (const char* id : {" \t+4", "-2x", "99999999999", "-99999999999", "-", ""}) {
        presets += std::string("    <preset id=\"") + id + "\" name=\"n\" type=\"ieq\"/>\n";
    }
    TempDeviceRoot root;
    TuningFileParser parser(root.write("ids.xml", "<korvi_tuning>\n" + presets + "</korvi_tuning>\n"));
    std::multiset<int> ids;
    for (IeqPreset* preset : parser.getDeviceData()->getIeqPresets()) ids.insert(preset->getPresetId());
    EXPECT_EQ(ids, (std::multiset<int>{INT_MIN, -2, 0, 0, 4, INT_MAX}));
}

TEST(TuningFileParser, IeqPresetNamesAreTestedInAFixedOrder) {
    TuningFileParser parser;
    LogCapture logs;
    EXPECT_EQ(parser.getIeqPresetIdByName("of"), 0);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "name is invalid, 296"), 1u);
    EXPECT_EQ(parser.getIeqPresetIdByName("ieq_off"), 0);
    EXPECT_EQ(parser.getIeqPresetIdByName("warm_off"), 0);
    EXPECT_EQ(parser.getIeqPresetIdByName("balanced_warm"), 2);
    EXPECT_EQ(parser.getIeqPresetIdByName("warm_detailed"), 3);
    EXPECT_EQ(parser.getIeqPresetIdByName("ieq_detailed"), 1);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "name is invalid, 296"), 1u);
    EXPECT_EQ(parser.getIeqPresetIdByName("Warm"), 0);  // case-sensitive
    EXPECT_EQ(parser.getIeqPresetIdByName(""), 0);
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "name is invalid, 296"), 3u) << logs.dump();
}

TEST(TuningFileParser, FailedFilesChangeNothingAndAFreshParserIsEmpty) {
    TempDeviceRoot root;
    TuningFileParser parser;
    EXPECT_EQ(parser.getNumOfProfiles(), 0);

    LogCapture logs;
    EXPECT_EQ(parser.setTuningFile(""), -22);
    EXPECT_EQ(parser.setTuningFile(root.path("vendor/etc/korvi/missing.xml")), -22);
    EXPECT_EQ(parser.setTuningFile(root.write("bad.xml", "<korvi_tuning><profile>")), -22);
    EXPECT_FALSE(parser.isParsed());
    EXPECT_EQ(parser.getDeviceData(), nullptr);
    EXPECT_TRUE(logs.containsText("TagIterator", "Invalide xml file path")) << logs.dump();

    // A good file, then a bad one: the first result stays.
    ASSERT_EQ(parser.setTuningFile(root.write("good.xml", kCurrentFile)), 0);
    DeviceData* data = parser.getDeviceData();
    EXPECT_EQ(parser.setTuningFile(root.path("missing.xml")), -22);
    EXPECT_EQ(parser.getDeviceData(), data);
    EXPECT_EQ(data->getProfiles().size(), 2u);
    EXPECT_TRUE(parser.isParsed());
}

// A second file adds its records to the first; a repeated profile id makes another profile and
// the later name wins; a profile without id is profile 0.
TEST(TuningFileParser, ASecondFileAddsItsRecordsToTheFirst) {
    TempDeviceRoot root;
    std::string extra = root.write("data/vendor/korvi/wem-extra.xml", R"(<korvi_tuning>
    <format_version major="3" minor="5" maintenance="1"/>
    <tool_version major="2" minor="12" maintenance="0"/>
    <profile id="4" name="Game">
        <endpoint_type id="speaker"/>
    </profile>
    <profile id="1" name="Film"/>
    <profile name="NoId"/>
    <tuning name="oem_usb_dac" endpoint_type="other" mono_device="false" orientation="0" output_channels="2">
        <device_id id="Korvi DAC" endpoint_port="usb"/>
        <data>
            <bass-enhancer-boost value="50"/>
        </data>
    </tuning>
</korvi_tuning>
)");
    TuningFileParser parser;
    ASSERT_EQ(parser.setTuningFile(root.write("vendor/etc/korvi/wem-default.xml", kCurrentFile)), 0);
    ASSERT_EQ(parser.setTuningFile(extra), 0);
    DeviceData& data = *parser.getDeviceData();
    EXPECT_EQ(data.getFormatVersion(), "3.5.1");
    EXPECT_EQ(data.getToolVersion(), "2.12.0");
    EXPECT_EQ(parser.getNumOfProfiles(), 5);
    EXPECT_EQ(data.getIeqPresets().size(), 2u);
    EXPECT_EQ(data.getGeqPresets().size(), 1u);
    EXPECT_EQ(data.getProfiles().size(), 5u);
    EXPECT_EQ(data.getProfileEndpoints().size(), 5u);
    EXPECT_EQ(data.getTunings().size(), 3u);
    EXPECT_EQ(data.getDeviceTunings().size(), 6u);
    EXPECT_EQ(parser.getProfileName(4), "Game");
    EXPECT_EQ(parser.getProfileName(1), "Film");
    EXPECT_EQ(parser.getProfileName(0), "NoId");
    EXPECT_EQ(parser.getProfileName(3), "Voice");
    // The virtual-bass type of the first file carries on into the second one's endpoints.
    EXPECT_EQ(endpointOf(data, 4, SPEAKER).mValues[VIRTUAL_BASS_TYPE], Values{3});
    EXPECT_EQ(one(data.getTunings(), &Tuning::getName, "oem_usb_dac").getEndpoint(), OTHER);
    EXPECT_EQ(one(data.getDeviceTunings(), &DeviceTuning::getDevice, "Korvi DAC").getTuning(),
              "oem_usb_dac");
    EXPECT_EQ(one(data.getTunings(), &Tuning::getName, "spk_stereo").getEndpoint(), SPEAKER);
}

// Nested entities that would expand to hundreds of megabytes: the XML library refuses the document, so the
// reader neither expands them into attribute texts nor runs out of memory.
TEST(TuningFileParser, ExplodingEntitiesAreRefused) {
    // a is 40 characters; b to h each hold ten of the one before: h stands for 400 MB.
    std::string doc = "<?xml version=\"1.0\"?>\n<!DOCTYPE r [\n<!ENTITY a \"" + std::string(40, 'a') + "\">\n";
    for (char e = 'b'; e <= 'h'; ++e) {
        doc += std::string("<!ENTITY ") + e + " \"";
        for (int i = 0; i < 10; ++i) doc += std::string("&") + char(e - 1) + ";";
        doc += "\">\n";
    }
    doc += "]>\n<r>\n    <format_version major=\"&h;\" minor=\"1\" maintenance=\"0\"/>\n"
           "    <profile id=\"1\" name=\"&h;\"/>\n</r>\n";
    TempDeviceRoot root;
    std::string path = root.write("laughs.xml", doc);
    TuningFileParser parser;
    EXPECT_EQ(parser.setTuningFile(path), -22);
    EXPECT_EQ(parser.getDeviceData(), nullptr);
    EXPECT_EQ(parser.getNumOfProfiles(), 0);
}

// Entering an element steps over its first child node: written without line breaks, the first
// child element is the one lost. An element without any children has nothing to walk.
TEST(TuningFileParser, UnindentedFilesLoseEachFirstChildElement) {
    TempDeviceRoot root;
    std::string path = root.write("flat.xml",
        R"(<korvi_tuning><format_version major="3" minor="5" maintenance="0"/>)"
        R"(<profile id="1" name="P"><endpoint_type id="speaker"/><endpoint_type id="headphone">)"
        R"(<include ieq_preset="2"/><ieq-enable value="0"/></endpoint_type></profile>)"
        R"(<tuning name="bare" endpoint_type="other"/>)"
        R"(<tuning name="t"><device_id id="skipped" endpoint_port="usb"/>)"
        R"(<device_id id="kept" endpoint_port="usb"/><data><bass-enhancer-boost value="1"/>)"
        R"(<bass-enhancer-width value="2"/></data></tuning></korvi_tuning>)");
    LogCapture logs;
    TuningFileParser parser(path);
    DeviceData& data = *parser.getDeviceData();
    // The root's first child is read: only entering an element skips.
    EXPECT_EQ(data.getFormatVersion(), "3.5.0");
    ASSERT_EQ(data.getProfileEndpoints().size(), 1u);
    EXPECT_EQ(endpointOf(data, 1, HEADPHONE).getSelectedIeqPreset(), 0);  // the include was the skipped node
    EXPECT_EQ(endpointOf(data, 1, HEADPHONE).mValues, (ValueMap{{IEQ_ENABLE, {0}}, {VIRTUAL_BASS_TYPE, {1}}}));

    ASSERT_EQ(data.getTunings().size(), 1u);
    // Missing orientation and channel attributes read as 0.
    EXPECT_EQ(one(data.getTunings(), &Tuning::getName, "t").mValues,
              (ValueMap{{BASS_ENHANCER_WIDTH, {2}}, {ORIENTATION, {0}}, {OUTPUT_CHANNELS, {0}}}));
    ASSERT_EQ(data.getDeviceTunings().size(), 1u);
    EXPECT_EQ((*data.getDeviceTunings().begin())->getDevice(), "kept");
    EXPECT_EQ(logs.count(ANDROID_LOG_ERROR, "TuningFileParser", "There is no <data> in Tuning section"), 1u)
        << logs.dump();
}

}  // namespace
}  // namespace korvi
