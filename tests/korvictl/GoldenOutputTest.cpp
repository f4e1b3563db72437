// korvictl run as the built program on real files, each output compared whole with a file under
// tests/korvictl/golden/. Paths below the source tree are written relative to it, so the files do
// not depend on where the checkout lives.
//
// After an intended change of an output, rewrite the golden files and review their diff:
//   KORVI_UPDATE_GOLDEN=1 build/tests/test_korvictl --gtest_filter='GoldenOutput*'
//   git diff tests/korvictl/golden
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/TempDeviceRoot.h"
#include "support/ToolRun.h"

namespace korvi::test {
namespace {

const std::string kSource = std::string(KORVI_SOURCE_DIR) + "/";
const std::string kGoldenDir = kSource + "tests/korvictl/golden/";
const std::string kFaulty = "tests/korvictl/faulty-tuning.xml";

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

std::string relativeToSource(std::string text) {
    for (size_t at; (at = text.find(kSource)) != std::string::npos;) text.erase(at, kSource.size());
    return text;
}

struct GoldenCase {
    std::string golden;             // file name under golden/
    std::vector<std::string> args;  // a FILE argument is relative to the source tree
    int status;
};

// Each sample file and each test file in every output form the tool has (the older-format samples
// number their profiles 0 and 2, which --strict reports); a case may share a golden
// file with another when the output must be the same (--strict changes only the exit status).
const std::vector<GoldenCase> kCases = {
        {"params.txt", {"params"}, 0},
        {"wem-default.txt", {"inspect", "data/vendor/etc/korvi/wem-default.xml"}, 0},
        {"wem-default.txt", {"inspect", "--strict", "data/vendor/etc/korvi/wem-default.xml"}, 0},
        {"wem-fs19xx.txt", {"inspect", "--strict", "data/vendor/etc/korvi/wem-fs19xx.xml"}, 0},
        {"wem-fs19xx.json", {"inspect", "--json", "data/vendor/etc/korvi/wem-fs19xx.xml"}, 0},
        {"wem-extra.txt", {"inspect", "--strict", "data/data/vendor/korvi/wem-extra.xml"}, 0},
        {"wem-3.2.0.txt", {"inspect", "--strict", "data/formats/wem-3.2.0.xml"}, 3},
        {"wem-3.2.2.txt", {"inspect", "--strict", "data/formats/wem-3.2.2.xml"}, 3},
        {"wem-3.3.0.txt", {"inspect", "--strict", "data/formats/wem-3.3.0.xml"}, 3},
        {"faulty-tuning.txt", {"inspect", kFaulty}, 0},
        {"faulty-tuning.txt", {"inspect", "--strict", kFaulty}, 3},
        {"faulty-tuning.brief.txt", {"inspect", "--brief", kFaulty}, 0},
        {"faulty-tuning.json", {"inspect", "--json", "--strict", kFaulty}, 3},
        {"comment-before-first-child.txt", {"inspect", "tests/korvictl/comment-before-first-child.xml"}, 0},
        {"v322-overrides.txt", {"inspect", "tests/korvictl/v322-overrides.xml"}, 0},
        {"escaped-names.txt", {"inspect", "tests/korvictl/escaped-names.xml"}, 0},
        {"escaped-names.json", {"inspect", "--json", "tests/korvictl/escaped-names.xml"}, 0},
};

TEST(GoldenOutput, EachOutputMatchesItsGoldenFile) {
    const bool update = getenv("KORVI_UPDATE_GOLDEN") != nullptr;
    for (const GoldenCase& c : kCases) {
        std::vector<std::string> args = c.args;
        if (args.size() > 1) args.back() = kSource + args.back();
        SCOPED_TRACE(c.golden);
        const ToolRun run = runKorvictl(args);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(run.err, "");
        const std::string out = relativeToSource(run.out);
        if (update) {
            std::ofstream(kGoldenDir + c.golden, std::ios::binary) << out;
        } else {
            EXPECT_EQ(out, readFile(kGoldenDir + c.golden));
        }
    }
}

TEST(GoldenOutput, ReaderLogGoesToStderrOnlyWithLog) {
    const ToolRun logged = runKorvictl({"inspect", "--log", kSource + kFaulty});
    EXPECT_EQ(logged.status, 0);
    EXPECT_EQ(relativeToSource(logged.out), readFile(kGoldenDir + "faulty-tuning.txt"));
    EXPECT_NE(logged.err.find("There is no <data> in Tuning section"), std::string::npos) << logged.err;
}

TEST(KorvictlErrors, BrokenFilesAndBadArgumentsFailWithOneLine) {
    TempDeviceRoot root;
    struct Case {
        std::vector<std::string> args;
        int status;
        std::string errPrefix;  // the whole of stderr starts with this and is one line
    };
    const std::string broken = root.write("broken.xml", "<?xml version=\"1.0\"?>\n<korvi_tuning>\n    <data>\n</korvi_tuning>\n");
    const std::vector<Case> cases = {
            {{"inspect", root.path("missing.xml")}, 1,
             "korvictl: inspect: " + root.path("missing.xml") + ": cannot read: No such file or directory\n"},
            {{"inspect", root.dir()}, 1, "korvictl: inspect: " + root.dir() + ": cannot read: is a directory\n"},
            {{"inspect", root.write("empty.xml", "")}, 1,
             "korvictl: inspect: " + root.path("empty.xml") + ": line 1: not well-formed XML: Document is empty\n"},
            {{"inspect", broken}, 1, "korvictl: inspect: " + broken + ": line 4: not well-formed XML: "},
            {{"inspect", root.write("text.xml", "wem-default\n")}, 1,
             "korvictl: inspect: " + root.path("text.xml") + ": line 1: not well-formed XML: "},
            {{"inspect"}, 2, "korvictl: "},
            {{"inspect", "--colour", broken}, 2, "korvictl: "},
            {{"inspect", broken, broken}, 2, "korvictl: "},
            {{"params", "extra"}, 2, "korvictl: params takes no arguments"},
            {{"frobnicate"}, 2, "korvictl: unknown command 'frobnicate'"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args.back());
        const ToolRun run = runKorvictl(c.args);
        EXPECT_EQ(run.status, c.status);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind(c.errPrefix, 0), 0u) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
    }
}

TEST(KorvictlErrors, HelpListsCommandsAndDescribesEach) {
    const ToolRun list = runKorvictl({"--help"});
    EXPECT_EQ(list.status, 0);
    for (const char* command : {"\n  params ", "\n  inspect ", "\n  blob "}) {
        EXPECT_NE(list.out.find(command), std::string::npos) << command << list.out;
    }
    const ToolRun inspect = runKorvictl({"inspect", "--help"});
    EXPECT_EQ(inspect.status, 0);
    EXPECT_EQ(inspect.out.rfind("usage: korvictl inspect [--brief | --json] [--strict] [--log] FILE\n", 0), 0u);
    EXPECT_NE(inspect.out.find("  not-indented "), std::string::npos);
    const ToolRun params = runKorvictl({"params", "--help"});
    EXPECT_EQ(params.status, 0);
    EXPECT_EQ(params.out.rfind("usage: korvictl params", 0), 0u) << params.out;
}

}  // namespace
}  // namespace korvi::test
