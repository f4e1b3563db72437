// korvictl blob, run as a process: a blob file and words on the command line, both decoded as the
// store would, and the exit statuses of a good blob, a refused one and a usage error.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/ToolRun.h"

namespace korvi {
namespace {

using korvi::test::runKorvictlMerged;
using korvi::test::ToolRun;

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
    ToolRun fromFile = runKorvictlMerged("blob " + path);
    EXPECT_EQ(fromFile.status, 0);
    EXPECT_EQ(fromFile.out, expected);
    std::filesystem::remove(path);

    ToolRun fromWords = runKorvictlMerged("blob --words 0x40000000 3 2 0x656c7664 1 1 0x40000000 0x73626569 3 1 100 -6 "
                             "0xffffffff 0x006c6f76 0");
    EXPECT_EQ(fromWords.status, 0);
    EXPECT_EQ(fromWords.out, expected);

    ToolRun one = runKorvictlMerged("blob --words 8 1 8 0x006c6f76 2 5 6");
    EXPECT_EQ(one.out, "target headphone, 1 entry\nheadphone VOL 5 6\n");
}

TEST(BlobCommand, RefusedBlobsAndBadArgumentsFailWithOneLine) {
    ToolRun refused = runKorvictlMerged("blob --words 2 1 2 0x656c7664 2 1");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "korvictl: invalid parameter blob: value count runs past the end\n");

    ToolRun missing = runKorvictlMerged("blob /nonexistent/blob.bin");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.out, "korvictl: cannot read /nonexistent/blob.bin: No such file or directory\n");

    ToolRun badWord = runKorvictlMerged("blob --words 2 0x1ffffffff");
    EXPECT_EQ(badWord.status, 2);
    EXPECT_EQ(badWord.out, "korvictl: not a 32-bit word: '0x1ffffffff' (try 'korvictl --help')\n");

    EXPECT_EQ(runKorvictlMerged("blob").status, 2);
    EXPECT_EQ(runKorvictlMerged("blob a b").status, 2);
}

}  // namespace
}  // namespace korvi
