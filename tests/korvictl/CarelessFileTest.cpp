// korvictl inspect on a careless tuning file: every value the service reads differently from what
// the author wrote becomes a warning with its line, and the values the report shows are the ones
// the warnings name, because the lint reads numbers exactly as the reader does.
#include <gtest/gtest.h>

#include <string>

#include "support/ToolRun.h"

namespace korvi::test {
namespace {

const std::string kCareless = std::string(KORVI_SOURCE_DIR) + "/tests/korvictl/careless-tuning.xml";

TEST(CarelessFile, EveryMisreadValueIsAWarningAndTheReportShowsWhatTheServiceRead) {
    const ToolRun run = runKorvictl({"inspect", "--strict", kCareless});
    EXPECT_EQ(run.status, 3) << run.err;
    const std::string& f = kCareless;
    const std::string expected =
            "\nWarnings: 12\n" +
            f + ":9: warning: ieq preset \"0\" has 2 frequency values but 3 target values; the "
                "service pairs them in order, so bands are mispaired [band-mismatch]\n" +
            f + ":13: warning: frequency=\"\" in a band of ieq preset \"0\" is empty; the service "
                "reads no number for this band [empty-list-item]\n" +
            f + ":18: warning: id=\"99999999999\" in a preset: 99999999999 does not fit in 32 "
                "bits; the service reads 2147483647 [number-overflow]\n" +
            f + ":26: warning: duplicate GEQ preset for profile 2147483647 (first at line 18) "
                "[duplicate]\n" +
            f + ":34: warning: value=\"abc\" in profile 0 \"Dynamic\" is not plain decimal; the "
                "service reads 0 and ignores \"abc\" [not-a-number]\n" +
            f + ":35: warning: value=\"12abc\" in profile 0 \"Dynamic\" is not plain decimal; the "
                "service reads 12 and ignores \"abc\" [not-a-number]\n" +
            f + ":38: warning: value=\"1e3\" in profile 0 \"Dynamic\" endpoint speaker is not "
                "plain decimal; the service reads 1 and ignores \"e3\" [not-a-number]\n" +
            f + ":39: warning: value=\"0x10\" in profile 0 \"Dynamic\" endpoint speaker is not "
                "plain decimal; the service reads 0 and ignores \"x10\" [not-a-number]\n" +
            f + ":48: warning: profile id 3 is outside 0..1 (the file has 2 profiles); the service "
                "can never select this profile [profile-id-range]\n" +
            f + ":59: warning: tuning \"speaker\": mono_device \"yes\" is neither \"true\" nor "
                "\"false\"; the service reads it as not mono [not-a-boolean]\n" +
            f + ":62: warning: value=\"32, 99999999999, 16\" in tuning \"speaker\": 99999999999 "
                "does not fit in 32 bits; the service reads 32 and ignores the rest "
                "[number-overflow]\n" +
            f + ":63: warning: value=\"1,,,2\" in tuning \"speaker\" has an empty list item; the "
                "service skips it and reads 1,2 [empty-list-item]\n";
    const size_t at = run.out.find("\nWarnings: ");
    ASSERT_NE(at, std::string::npos) << run.out;
    EXPECT_EQ(run.out.substr(at), expected);

    // The values behind the warnings, as the reader stored them.
    for (const char* line : {"      ieq_frequency = 141, 9000\n      ieq_target = 0, 0, 0\n",
                             "      reverb_suppression_amount = 12\n"
                             "      volume_modeler_enable = 0\n",
                             "        dialog_enhancer_amount = 1\n",
                             "  tuning \"speaker\", endpoint speaker, mono no\n",
                             "      complex_equalizer_tuning_left = 32\n"
                             "      complex_equalizer_tuning_right = 1, 2\n"}) {
        EXPECT_NE(run.out.find(line), std::string::npos) << line;
    }
}

}  // namespace
}  // namespace korvi::test
