// korvictl inspect, run as the built program on real files: what it prints, what it warns about
// (with the right line numbers) and the exit status a script sees.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "MiniJson.h"
#include "support/ToolRun.h"

namespace korvi::test {
namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

class TuningReportCommandTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/korvictl-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        mDir = pattern;
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(mDir, ignored);
    }

    ToolRun korvictl(const std::vector<std::string>& args) const { return runKorvictl(args); }

    std::string write(const std::string& name, const std::string& content) const {
        const std::string path = mDir + "/" + name;
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::string mDir;
};

const std::string kData = KORVI_DATA_DIR;
const std::string kFaulty = std::string(KORVI_SOURCE_DIR) + "/tests/korvictl/faulty-tuning.xml";

const std::vector<std::string> kSampleFiles = {
        "vendor/etc/korvi/wem-default.xml", "vendor/etc/korvi/wem-fs19xx.xml",
        "data/vendor/korvi/wem-extra.xml",  "formats/wem-3.2.0.xml",
        "formats/wem-3.2.2.xml",            "formats/wem-3.3.0.xml",
};

// The 1-based number of the first line of path that contains text.
long lineOf(const std::string& path, const std::string& text) {
    std::ifstream in(path);
    std::string line;
    for (long n = 1; std::getline(in, line); ++n) {
        if (line.find(text) != std::string::npos) return n;
    }
    ADD_FAILURE() << text << " not in " << path;
    return -1;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

TEST_F(TuningReportCommandTest, EverySampleFileReadsWithoutWarnings) {
    for (const std::string& file : kSampleFiles) {
        SCOPED_TRACE(file);
        if (file.compare(0, 8, "formats/") == 0) {
            // The older-format samples number their two profiles 0 and 2: the one warning.
            const std::string path = kData + "/" + file;
            const ToolRun run = korvictl({"inspect", "--strict", path});
            EXPECT_EQ(run.status, 3);
            EXPECT_NE(run.out.find("\nWarnings: 1\n" + path + ":" +
                                   std::to_string(lineOf(path, "<profile id=\"2\"")) +
                                   ": warning: profile id 2 is outside 0..1 (the file has 2 "
                                   "profiles); the service can never select this profile "
                                   "[profile-id-range]\n"),
                      std::string::npos)
                    << run.out;
            continue;
        }
        const ToolRun run = korvictl({"inspect", "--strict", kData + "/" + file});
        EXPECT_EQ(run.status, 0) << run.out << run.err;
        EXPECT_EQ(run.err, "");
        EXPECT_NE(run.out.find("\nNo warnings.\n"), std::string::npos) << run.out;
        EXPECT_EQ(run.out.find("warning:"), std::string::npos) << run.out;
    }
}

TEST_F(TuningReportCommandTest, FactoryFileShowsItsRecords) {
    const ToolRun run = korvictl({"inspect", kData + "/vendor/etc/korvi/wem-default.xml"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string& out = run.out;
    for (const char* expected : {
                 "  format version  3.5.0 (current format)\n",
                 "  tool version    2.11.3\n",
                 "  virtual bass    type 2\n",
                 "\nIEQ presets: 4\n  preset 0 \"off\", 20 bands\n",
                 "\nGEQ presets: 5\n  preset of profile 0, 20 bands\n",
                 "\nProfiles: 5\n  profile 0 \"Dynamic\", mobility yes, GEQ preset 0\n"
                 "      custom_drc_metadata = 1, 0, 0, 0\n",
                 "    endpoint speaker, IEQ preset 2 \"balanced\"\n"
                 "        bass_enhancer_enable = 0\n",
                 "\nTunings: 9\n  tuning \"internal_speaker\", endpoint speaker, mono no\n"
                 "    device \"default_internal_speaker\" on port internal_speaker\n",
                 "  tuning \"external_display\", endpoint other, mono no\n"
                 "    device \"default_hdmi\" on port hdmi\n"
                 "    device \"default_miracast\" on port miracast\n",
                 "      output_mix_matrix = 16384, 0, 0, 0, 0, 16384, 0, 0, 0, 0, 16384, 0, 0, 0, 0, "
                 "16384\n",
         }) {
        EXPECT_NE(out.find(expected), std::string::npos) << "missing: " << expected;
    }
    // The IEQ preset's id is the preset's id, not one of its values.
    EXPECT_EQ(out.find("ieq_id"), std::string::npos);
    // Tunings stand in file order.
    EXPECT_LT(out.find("tuning \"internal_speaker\""), out.find("tuning \"external_display\""));
    EXPECT_LT(out.find("tuning \"bt500\""), out.find("tuning \"usb_dac_u1\""));
}

TEST_F(TuningReportCommandTest, BriefLeavesOutOnlyTheValues) {
    const ToolRun full = korvictl({"inspect", kFaulty});
    const ToolRun brief = korvictl({"inspect", "--brief", kFaulty});
    ASSERT_EQ(brief.status, 0) << brief.err;
    std::string expected;
    for (const std::string& line : linesOf(full.out)) {
        if (line.find(" = ") == std::string::npos || line.find(": warning: ") != std::string::npos) {
            expected += line + "\n";
        }
    }
    EXPECT_EQ(brief.out, expected);
    EXPECT_NE(brief.out.find("\nWarnings: 11\n"), std::string::npos);
}

TEST_F(TuningReportCommandTest, OlderFormatsSayHowTheyAreRead) {
    const ToolRun v320 = korvictl({"inspect", kData + "/formats/wem-3.2.0.xml"});
    EXPECT_NE(v320.out.find("  format version  3.2.0 (3.2 family)\n"), std::string::npos);
    EXPECT_NE(v320.out.find("  profile 2 \"Music\", mobility no, GEQ preset 2\n"),
              std::string::npos);
    EXPECT_NE(v320.out.find("        headphone_virtualizer_steerer_source_distance = 4\n"),
              std::string::npos);

    const ToolRun v322 = korvictl({"inspect", kData + "/formats/wem-3.2.2.xml"});
    EXPECT_NE(v322.out.find("(3.2 family, with the 3.2.2 defaults)"), std::string::npos);

    const ToolRun v330 = korvictl({"inspect", kData + "/formats/wem-3.3.0.xml"});
    EXPECT_NE(v330.out.find("  format version  3.3.0 (3.3.0 format)\n"), std::string::npos);
    EXPECT_NE(v330.out.find("  profile 2 \"Music\", mobility yes, GEQ preset 2\n"),
              std::string::npos);
    EXPECT_NE(v330.out.find("    endpoint headphone, IEQ preset 1 \"detailed\"\n"),
              std::string::npos)
            << v330.out;
}

TEST_F(TuningReportCommandTest, FaultyFileReportsEachFaultOnceAtItsLine) {
    const std::map<std::string, std::string> kExpected = {
            {"unknown-element", "dialog-enhancer-ammount"},
            {"ignored-element", "ieq_preset=\"0\""},
            {"duplicate", "<tuning name=\"headphone_wired\" endpoint_type=\"headphone\" mono_device=\"false\" orientation=\"0\" output_channels=\"2\">\n        <device_id id=\"studio"},
            {"dropped-tuning", "name=\"hdmi_only\""},
            {"dangling-device", "id=\"default_hdmi\""},
            {"missing-ieq-preset", "ieq_preset=\"7\""},
            {"missing-endpoint", "name=\"Movie\""},
            {"unknown-endpoint", "endpoint_type=\"earphone\""},
            {"unknown-port", "endpoint_port=\"headset\""},
            {"not-indented", "<data><bass-enhancer-boost"},
            {"misplaced-value", "<dialog-enhancer-enable value=\"true\"/>"},
    };
    const std::string file = readFile(kFaulty);
    const ToolRun run = korvictl({"inspect", kFaulty});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    EXPECT_NE(run.out.find("\nWarnings: 11\n"), std::string::npos) << run.out;

    std::map<std::string, std::vector<std::string>> byKind;
    for (const std::string& line : linesOf(run.out)) {
        if (line.find(": warning: ") == std::string::npos) continue;
        const size_t open = line.rfind(" [");
        ASSERT_NE(open, std::string::npos) << line;
        byKind[line.substr(open + 2, line.size() - open - 3)].push_back(line);
    }
    EXPECT_EQ(byKind.size(), kExpected.size());
    for (const auto& [kind, marker] : kExpected) {
        SCOPED_TRACE(kind);
        ASSERT_EQ(byKind[kind].size(), 1u) << run.out;
        // The marker may span lines; the warning names the line the marker starts on.
        const size_t at = file.find(marker);
        ASSERT_NE(at, std::string::npos) << marker;
        const long line = 1 + std::count(file.begin(), file.begin() + static_cast<long>(at), '\n');
        EXPECT_EQ(byKind[kind][0].rfind(kFaulty + ":" + std::to_string(line) + ": warning: ", 0), 0u)
                << byKind[kind][0];
    }
    // What the messages tell the author.
    EXPECT_NE(run.out.find("(did you mean <dialog-enhancer-amount>?)"), std::string::npos);
    EXPECT_NE(run.out.find("selects IEQ preset 7, which this file does not define"),
              std::string::npos);
    EXPECT_NE(run.out.find("profile 1 \"Movie\" has no endpoint_type for other"),
              std::string::npos);
    EXPECT_NE(run.out.find("duplicate tuning name \"headphone_wired\" (first at line " +
                           std::to_string(lineOf(kFaulty, "<tuning name=\"headphone_wired\"")) +
                           ")"),
              std::string::npos);
    // The dropped tuning's device is still delivered, pointing at nothing.
    EXPECT_NE(run.out.find("\nDevices without a tuning: 1\n"
                           "  device \"default_hdmi\" on port hdmi -> tuning \"hdmi_only\"\n"),
              std::string::npos);
    // A disabled IEQ is stored as preset 0, whatever the include says.
    EXPECT_NE(run.out.find("  profile 1 \"Movie\", mobility yes, GEQ preset 1\n"
                           "      volume_modeler_enable = 1\n"
                           "    endpoint speaker, IEQ preset 2 \"balanced\"\n"
                           "        ieq_enable = 1\n"
                           "        virtual_bass_type = 2\n"
                           "    endpoint headphone, IEQ preset 0 \"off\"\n"
                           "        ieq_enable = 0\n"),
              std::string::npos)
            << run.out;
    // The skipped first child really is missing from the record, as the warning says.
    const size_t speaker = run.out.find("tuning \"internal_speaker\"");
    const size_t next = run.out.find("tuning \"headphone_wired\"");
    ASSERT_LT(speaker, next);
    const std::string speakerText = run.out.substr(speaker, next - speaker);
    EXPECT_EQ(speakerText.find("bass_enhancer_boost"), std::string::npos) << speakerText;
    EXPECT_NE(speakerText.find("bass_enhancer_width = 16"), std::string::npos) << speakerText;

    const ToolRun strict = korvictl({"inspect", "--strict", kFaulty});
    EXPECT_EQ(strict.status, 3);
    EXPECT_EQ(strict.out, run.out);
}

TEST_F(TuningReportCommandTest, PositionalLevelsMustStartRightAfterTheLineBreak) {
    // Preset bands and matrix rows are reached by stepping to the second child node level by
    // level; a comment in that place hides everything below it.
    const std::string path = write("comments.xml", R"(<?xml version="1.0"?>
<korvi_tuning>
    <format_version major="3" minor="5" maintenance="0"/>
    <preset id="0" name="off" type="ieq">
        <!-- flat -->
        <data>
            <ieq-bands>
                <band_ieq frequency="47" target="0"/>
            </ieq-bands>
        </data>
    </preset>
    <preset id="0" name="dynamic" type="geq">
        <data>
            <!-- one band -->
            <geq-bands>
                <band_geq frequency="47" gain="16"/>
            </geq-bands>
        </data>
    </preset>
    <tuning name="speaker" endpoint_type="speaker" mono_device="false" orientation="0" output_channels="2">
        <device_id id="default_internal_speaker" endpoint_port="internal_speaker"/>
        <data>
            <output-mode>
                <!-- identity -->
                <matrix>
                    <row value="16384, 0"/>
                </matrix>
            </output-mode>
        </data>
    </tuning>
    <tuning name="headphone" endpoint_type="headphone" mono_device="false" orientation="0" output_channels="2">
        <device_id id="default_headphone" endpoint_port="headphone"/>
        <data>
            <output-mode>
                <!-- no matrix: nothing is hidden -->
            </output-mode>
            <!-- a comment before an element that is read by name is harmless -->
            <bass-enhancer-boost value="128"/>
        </data>
    </tuning>
</korvi_tuning>
)");
    const ToolRun run = korvictl({"inspect", path});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("\nWarnings: 3\n"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find(path + ":4: warning: <preset> must have its first child element right "
                                  "after the line break; the reader steps to the second child node "
                                  "and finds a comment, so it does not read the preset's bands"),
              std::string::npos)
            << run.out;
    EXPECT_NE(run.out.find(path + ":13: warning: <data> must have its first child element"),
              std::string::npos)
            << run.out;
    EXPECT_NE(run.out.find(path + ":23: warning: <output-mode> must have its first child element"),
              std::string::npos)
            << run.out;
    // What the service makes of it agrees: no bands, no matrix, but the boost is read.
    EXPECT_NE(run.out.find("  preset 0 \"off\", 0 bands\n"), std::string::npos);
    EXPECT_NE(run.out.find("  preset of profile 0, 0 bands\n"), std::string::npos);
    EXPECT_NE(run.out.find("      output_mix_matrix = (empty)\n"), std::string::npos);
    EXPECT_NE(run.out.find("      bass_enhancer_boost = 128\n"), std::string::npos);
}

TEST_F(TuningReportCommandTest, OlderFormatsWarnWhereTheReaderOverridesTheFile) {
    const std::string path = write("v322.xml", R"(<?xml version="1.0"?>
<korvi_tuning>
    <format_version major="3" minor="2" maintenance="2"/>
    <preset id="ieq_off" type="ieq">
        <data>
            <ieq-bands>
                <band_ieq frequency="47" target="0"/>
            </ieq-bands>
        </data>
    </preset>
    <profile id="0" name="Dynamic">
        <ieq-enable value="1"/>
        <endpoint_type id="speaker">
            <include preset="ieq_off"/>
            <headphone-virtualizer-steerer-source-distance value="20"/>
            <virtualizer-start-band value="3"/>
        </endpoint_type>
        <ieq-amount value="8"/>
        <endpoint_type id="headphone">
        </endpoint_type>
        <endpoint_type id="other">
        </endpoint_type>
    </profile>
    <tuning name="speaker" endpoint_type="speaker" mono_device="false" orientation="0" output_channels="2">
        <device_id id="default_internal_speaker" endpoint_port="internal_speaker"/>
        <data>
            <bass-mbdrc-enable value="1"/>
        </data>
    </tuning>
</korvi_tuning>
)");
    const ToolRun run = korvictl({"inspect", path});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("\nWarnings: 6\n"), std::string::npos) << run.out;
    for (const char* expected : {
                 ":11: warning: profile 0 \"Dynamic\" has no <include preset=...>; the service "
                 "selects IEQ preset 0 \"off\" for its endpoints [missing-ieq-preset]\n",
                 ":14: warning: <include> in an endpoint is not read in 3.2 files",
                 ":15: warning: <headphone-virtualizer-steerer-source-distance> in profile 0 "
                 "\"Dynamic\" endpoint speaker is replaced by the reader in format 3.2.2 (it "
                 "stores 4) [ignored-element]\n",
                 ":16: warning: <virtualizer-start-band> in profile 0 \"Dynamic\" endpoint speaker "
                 "is replaced by the reader in format 3.2.2 (it stores 0) [ignored-element]\n",
                 ":18: warning: <ieq-amount> of profile 0 \"Dynamic\" reaches only the "
                 "endpoint_types after it; put it before the first one [ignored-element]\n",
                 ":27: warning: <bass-mbdrc-enable> in tuning \"speaker\" is replaced by the reader "
                 "in format 3.2.2 (it stores 0) [ignored-element]\n",
         }) {
        EXPECT_NE(run.out.find(path + expected), std::string::npos) << expected << run.out;
    }
    // The records show what the warnings say.
    const std::string speaker = run.out.substr(run.out.find("    endpoint speaker"));
    EXPECT_NE(speaker.find("        headphone_virtualizer_steerer_source_distance = 4\n"),
              std::string::npos);
    EXPECT_NE(speaker.find("        virtualizer_start_band = 0\n"), std::string::npos);
    EXPECT_NE(run.out.find("      bass_mbdrc_enable = 0\n"), std::string::npos);
}

TEST_F(TuningReportCommandTest, NamesNeverBreakALineAndSurviveJsonUnchanged) {
    const std::string path = write("names.xml", R"(<?xml version="1.0"?>
<korvi_tuning>
    <format_version major="3" minor="5" maintenance="0"/>
    <profile id="0" name="Caf&#233; &quot;Live&quot;&#10;\ 2" group="mobility">
        <endpoint_type id="speaker">
        </endpoint_type>
    </profile>
</korvi_tuning>
)");
    const ToolRun text = korvictl({"inspect", path});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("  profile 0 \"Caf\u00e9 \\\"Live\\\"\\n\\\\ 2\", mobility yes"),
              std::string::npos)
            << text.out;
    EXPECT_NE(text.out.find(path + ":4: warning: profile 0 \"Caf\u00e9 \\\"Live\\\"\\n\\\\ 2\" has no "
                                   "endpoint_type for headphone, other [missing-endpoint]\n"),
              std::string::npos)
            << text.out;

    const ToolRun json = korvictl({"inspect", "--json", path});
    ASSERT_EQ(json.status, 0) << json.err;
    EXPECT_EQ(Json::parse(json.out)["profiles"][0]["name"].text, "Caf\u00e9 \"Live\"\n\\ 2");
}

TEST_F(TuningReportCommandTest, JsonCarriesTheSameAsTheText) {
    const ToolRun run = korvictl({"inspect", "--json", kData + "/vendor/etc/korvi/wem-fs19xx.xml"});
    ASSERT_EQ(run.status, 0) << run.err;
    const Json doc = Json::parse(run.out);
    EXPECT_EQ(doc["format_version"].text, "3.5.0");
    EXPECT_EQ(doc["format_family"].text, "current");
    EXPECT_EQ(doc["tool_version"].text, "2.11.3");
    EXPECT_EQ(doc["virtual_bass_type"].number, 2);
    ASSERT_EQ(doc["ieq_presets"].items.size(), 4u);
    EXPECT_EQ(doc["ieq_presets"][1]["name"].text, "detailed");
    ASSERT_EQ(doc["geq_presets"].items.size(), 5u);
    ASSERT_EQ(doc["profiles"].items.size(), 5u);
    const Json& voice = doc["profiles"][3];
    EXPECT_EQ(voice["name"].text, "Voice");
    EXPECT_TRUE(voice["mobility"].flag);
    ASSERT_EQ(voice["endpoints"].items.size(), 3u);
    EXPECT_EQ(voice["endpoints"][2]["endpoint"].text, "other");
    // Voice keeps its IEQ off on "other" outputs.
    EXPECT_EQ(voice["endpoints"][2]["selected_ieq_preset"].number, 0);
    EXPECT_EQ(voice["endpoints"][2]["values"]["ieq_enable"].ints(), std::vector<int>{0});
    EXPECT_EQ(doc["profiles"][0]["endpoints"][1]["selected_ieq_preset"].number, 3);
    const Json& speaker = doc["tunings"][0];
    EXPECT_EQ(speaker["name"].text, "internal_speaker_mono");
    EXPECT_TRUE(speaker["mono"].flag);
    ASSERT_EQ(speaker["devices"].items.size(), 1u);
    EXPECT_EQ(speaker["devices"][0]["id"].text, "default_internal_speaker");
    EXPECT_EQ(speaker["values"]["output_mix_matrix"].ints(),
              (std::vector<int>{8192, 8192, 8192, 8192}));
    EXPECT_EQ(doc["tunings"].items.size(), 9u);
    EXPECT_TRUE(doc["devices_without_tuning"].items.empty());
    EXPECT_TRUE(doc["warnings"].items.empty());

    const ToolRun faulty = korvictl({"inspect", "--json", "--strict", kFaulty});
    EXPECT_EQ(faulty.status, 3);
    const Json f = Json::parse(faulty.out);
    ASSERT_EQ(f["warnings"].items.size(), 11u);
    // Ordered by line, and each as the text output has it.
    const std::string text = korvictl({"inspect", kFaulty}).out;
    long previous = 0;
    for (const Json& w : f["warnings"].items) {
        EXPECT_GE(w["line"].number, previous);
        previous = w["line"].number;
        if (w["kind"].text == "not-indented") {
            EXPECT_EQ(w["line"].number, lineOf(kFaulty, "<data><bass-enhancer-boost"));
        }
        const std::string textLine = kFaulty + ":" + std::to_string(w["line"].number) +
                                     ": warning: " + w["message"].text + " [" + w["kind"].text + "]\n";
        EXPECT_NE(text.find(textLine), std::string::npos) << textLine;
    }
    EXPECT_EQ(f["devices_without_tuning"][0]["tuning"].text, "hdmi_only");
}

TEST_F(TuningReportCommandTest, BrokenFilesFailWithOneLine) {
    struct Case {
        std::string path;
        std::string expected;
    };
    const std::vector<Case> cases = {
            {mDir + "/missing.xml", ": cannot read: No such file or directory\n"},
            {mDir, ": cannot read: is a directory\n"},
            {write("empty.xml", ""), ": line 1: not well-formed XML: Document is empty\n"},
            {write("broken.xml", "<?xml version=\"1.0\"?>\n<korvi_tuning>\n    <data>\n</korvi_tuning>\n"),
             ": line 4: not well-formed XML: "},
            {write("text.xml", "wem-default\n"), ": line 1: not well-formed XML: "},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        const ToolRun run = korvictl({"inspect", c.path});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(linesOf(run.err).size(), 1u) << run.err;
        EXPECT_EQ(run.err.rfind("korvictl: inspect: " + c.path + c.expected, 0), 0u) << run.err;
    }
}

TEST_F(TuningReportCommandTest, UsageHelpAndReaderLog) {
    const ToolRun help = korvictl({"inspect", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out.rfind("usage: korvictl inspect [--brief | --json] [--strict] [--log] FILE\n", 0), 0u);
    EXPECT_NE(help.out.find("  not-indented "), std::string::npos);

    const ToolRun list = korvictl({"--help"});
    EXPECT_NE(list.out.find("  inspect "), std::string::npos);

    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"inspect"}, {"inspect", "--colour", kFaulty},
          {"inspect", kFaulty, kFaulty}}) {
        const ToolRun run = korvictl(args);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(linesOf(run.err).size(), 1u) << run.err;
    }
    // The faulty file makes the reader log the dropped tuning, but only with --log.
    EXPECT_EQ(korvictl({"inspect", kFaulty}).err, "");
    const ToolRun logged = korvictl({"inspect", "--log", kFaulty});
    EXPECT_EQ(logged.status, 0);
    EXPECT_NE(logged.err.find("There is no <data> in Tuning section"), std::string::npos) << logged.err;
}

}  // namespace
}  // namespace korvi::test
