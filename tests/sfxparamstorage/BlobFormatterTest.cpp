// Readable blobs: one line per entry with device names, codes and values, and one error line for
// anything the store would refuse (every reason is checked in the parser tests).
#include <gtest/gtest.h>

#include <vector>

#include "BlobBuffer.h"
#include "effect/BlobFormatter.h"

namespace korvi {
namespace {

using test::BlobBuffer;

TEST(BlobFormatter, RendersOneLinePerEntryWithNamesCodesAndValues) {
    const std::vector<int> blob = {
        0x40000000, 5,
        0x2, 0x656c7664, 1, 1,                 // "DVLE" on the speaker
        0x40000000, 0x006c6f76, 0, // "VOL" at the profile level, no values
        -1, 0x73626569, 3, -20, 0, 2147483647, // before any device was set
        0x4, 0x61627276, 1, -2147483648,       // "VRBA" on a device with no name
        0x8, 0x006c6f76, 2, 5, 6,
    };
    const char* expected =
        "speaker DVLE 1\n"
        "profile VOL\n"
        "0xffffffff IEBS -20 0 2147483647\n"
        "0x4 VRBA -2147483648\n"
        "headphone VOL 5 6\n";
    EXPECT_EQ(BlobFormatter::format(blob), expected);
    // The same text from a blob that is not aligned in memory.
    BlobBuffer unaligned(std::vector<int32_t>(blob.begin(), blob.end()), true);
    EXPECT_EQ(BlobFormatter::format(unaligned.data(), unaligned.size()), expected);
    EXPECT_EQ(BlobFormatter::format(std::vector<int>{2, 0}), "");
}

// speaker, headphone and profile are named in the rendering test above.
TEST(BlobFormatter, NamesTheSevenDevicesAndWritesOthersInHex) {
    const std::pair<int32_t, const char*> cases[] = {
        {0x80, "bluetooth_a2dp"}, {0x400, "aux_digital"}, {0x4000, "usb_device"}, {0x8000, "remote_submix"},
        {0, "0x0"}, {0x4000000, "0x4000000"}, {0x40000002, "0x40000002"}};
    for (const auto& [device, text] : cases) EXPECT_EQ(BlobFormatter::deviceText(device), text);
}

TEST(BlobFormatter, ReadsCodesBackFromIdsAndHexForIdsNoCodeYields) {
    EXPECT_EQ(BlobFormatter::codeText(0x656c7664), "DVLE");
    EXPECT_EQ(BlobFormatter::codeText(0x006c6f76), "VOL");
    EXPECT_EQ(BlobFormatter::codeText(0x00000070), "P");
    // Non-letters pass through the id rule unchanged.
    EXPECT_EQ(BlobFormatter::codeText(0x00326576), "VE2");
    // The printable range ends on both sides: '!' and '~' are code bytes, blank and DEL are not.
    EXPECT_EQ(BlobFormatter::codeText(0x007e6121), "!A~");
    EXPECT_EQ(BlobFormatter::codeText(0x007f6121), "0x007f6121");
    // Never made by the rule: upper-case bytes, a hole, control or non-ASCII bytes, 0.
    EXPECT_EQ(BlobFormatter::codeText(0x454c5644), "0x454c5644");
    EXPECT_EQ(BlobFormatter::codeText(0x65006476), "0x65006476");
    EXPECT_EQ(BlobFormatter::codeText(0x656c0a64), "0x656c0a64");
    EXPECT_EQ(BlobFormatter::codeText(static_cast<int32_t>(0xe56c7664)), "0xe56c7664");
    EXPECT_EQ(BlobFormatter::codeText(0x20202020), "0x20202020");
    EXPECT_EQ(BlobFormatter::codeText(0), "0x00000000");
}

TEST(BlobFormatter, AnInvalidBlobIsOneErrorLine) {
    EXPECT_EQ(BlobFormatter::format(std::vector<int>{}), "invalid parameter blob: shorter than the two header words\n");
    EXPECT_EQ(BlobFormatter::format(std::vector<int>{2, 1, 2, 0x656c7664, 1, 1, 9}),
              "invalid parameter blob: words after the last entry\n");
    const int words[] = {2, 1, 2, 0x656c7664, 1, 1};
    EXPECT_EQ(BlobFormatter::format(words, 10), "invalid parameter blob: size is not a whole number of 32-bit words\n");
}

}  // namespace
}  // namespace korvi
