// korvictl blob, run as a process: a blob file and words on the command line, both decoded as the
// store would, and the exit statuses of a good blob, a refused one and a usage error.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace korvi {
namespace {

struct ToolRun {
    int status;
    std::string out;
};

// Runs korvictl with args (already shell-quoted where needed), stdout and stderr together.
ToolRun korvictl(const std::string& args) {
    const std::string command = std::string(KORVICTL_PATH) + " " + args + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    EXPECT_NE(pipe, nullptr);
    ToolRun run{-1, ""};
    if (pipe == nullptr) return run;
    char buffer[256];
    size_t n;
    while ((n = fread(buffer, 1, sizeof(buffer), pipe)) > 0) run.out.append(buffer, n);
    const int raw = pclose(pipe);
    run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return run;
}

TEST(BlobCommand, DecodesAFileAndWordsAsTheStoreWould) {
    const std::vector<int32_t> words = {0x40000000, 3, 2, 0x656c7664, 1, 1, 0x40000000, 0x73626569, 3, 1, 100, -6,
                                        -1, 0x006c6f76, 0};
    const std::string path = (std::filesystem::temp_directory_path() / ("blob-" + std::to_string(getpid()))).string();
    {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(words.size() * 4));
    }
    const char* expected =
        "target profile, 3 entries\n"
        "speaker DVLE 1\n"
        "profile IEBS 1 100 -6\n"
        "0xffffffff VOL\n";
    ToolRun fromFile = korvictl("blob " + path);
    EXPECT_EQ(fromFile.status, 0);
    EXPECT_EQ(fromFile.out, expected);
    std::filesystem::remove(path);

    ToolRun fromWords = korvictl("blob --words 0x40000000 3 2 0x656c7664 1 1 0x40000000 0x73626569 3 1 100 -6 "
                             "0xffffffff 0x006c6f76 0");
    EXPECT_EQ(fromWords.status, 0);
    EXPECT_EQ(fromWords.out, expected);

    ToolRun one = korvictl("blob --words 8 1 8 0x006c6f76 2 5 6");
    EXPECT_EQ(one.out, "target headphone, 1 entry\nheadphone VOL 5 6\n");
}

TEST(BlobCommand, RefusedBlobsAndBadArgumentsFailWithOneLine) {
    ToolRun refused = korvictl("blob --words 2 1 2 0x656c7664 2 1");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "korvictl: invalid parameter blob: value count runs past the end\n");

    ToolRun missing = korvictl("blob /nonexistent/blob.bin");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "korvictl: cannot read /nonexistent/blob.bin: No such file or directory\n");

    ToolRun badWord = korvictl("blob --words 2 0x1ffffffff");
    EXPECT_EQ(badWord.status, 2);
    EXPECT_EQ(badWord.out, "korvictl: not a 32-bit word: '0x1ffffffff' (try 'korvictl --help')\n");

    EXPECT_EQ(korvictl("blob").status, 2);
    EXPECT_EQ(korvictl("blob a b").status, 2);
}

}  // namespace
}  // namespace korvi
