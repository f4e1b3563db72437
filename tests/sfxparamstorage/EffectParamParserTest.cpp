// The blob parser: what it accepts, what it rejects and why, and how it walks entries, over
// blobs held in heap blocks of exactly their own size (aligned and not).
#include <gtest/gtest.h>

#include <sfxparamstorage/EffectParamParser.h>

#include <string>
#include <vector>

#include "BlobBuffer.h"

namespace korvi {
namespace {

using android::EffectParamParser;
using test::BlobBuffer;

constexpr int32_t kDvle = 0x656c7664;
constexpr int32_t kVol = 0x006c6f76;

struct Entry {
    int32_t device;
    int32_t paramId;
    std::vector<int32_t> values;
    bool operator==(const Entry& o) const { return device == o.device && paramId == o.paramId && values == o.values; }
};

// Walks a validated parser to the end.
std::vector<Entry> readAll(EffectParamParser& parser) {
    std::vector<Entry> entries;
    int32_t device = 0;
    int32_t paramId = 0;
    uint32_t count = 0;
    const int32_t* values = nullptr;
    parser.begin();
    while (parser.next(&device, &paramId, &count, &values)) {
        Entry e{device, paramId, {}};
        if (count == 0) {
            EXPECT_EQ(values, nullptr);
        } else {
            e.values.assign(values, values + count);
        }
        entries.push_back(e);
    }
    return entries;
}

std::string rejection(const std::vector<int32_t>& words) {
    BlobBuffer blob(words);
    EffectParamParser parser(blob.data(), blob.size());
    if (parser.validate()) {
        return "accepted";
    }
    // A rejected blob yields no entries, whatever begin() and next() are asked.
    parser.begin();
    int32_t device;
    int32_t paramId;
    uint32_t count;
    const int32_t* values;
    EXPECT_FALSE(parser.next(&device, &paramId, &count, &values));
    return parser.error();
}

TEST(EffectParamParser, WalksEveryEntryInOrderAlignedAndUnaligned) {
    const std::vector<int32_t> words = {
        0x40000000, 3,
        2, kDvle, 1, 1,
        -1, kVol, 0,
        8, 0x73626569, 4, -5, 0, 7, 2147483647,
    };
    for (bool unaligned : {false, true}) {
        SCOPED_TRACE(unaligned ? "unaligned" : "aligned");
        BlobBuffer blob(words, unaligned);
        EffectParamParser parser(blob.data(), blob.size());
        ASSERT_TRUE(parser.validate());
        EXPECT_STREQ(parser.error(), "");
        EXPECT_EQ(parser.targetDevice(), 0x40000000);
        EXPECT_EQ(parser.entryCount(), 3u);
        const std::vector<Entry> expected = {
            {2, kDvle, {1}}, {-1, kVol, {}}, {8, 0x73626569, {-5, 0, 7, 2147483647}}};
        EXPECT_TRUE(readAll(parser) == expected);
        // begin() rewinds: a second walk sees the same entries.
        EXPECT_TRUE(readAll(parser) == expected);
    }
    // The header alone is a valid blob without entries.
    EXPECT_EQ(rejection({2, 0}), "accepted");
}

TEST(EffectParamParser, RejectsEveryMalformedBlobWithItsReason) {
    EXPECT_EQ(rejection({}), "shorter than the two header words");
    EXPECT_EQ(rejection({2}), "shorter than the two header words");
    EXPECT_EQ(rejection({2, -1}), "negative entry count");
    EXPECT_EQ(rejection({2, 1}), "fewer entries than the entry count");
    EXPECT_EQ(rejection({2, 1, 2, kDvle}), "fewer entries than the entry count");
    EXPECT_EQ(rejection({2, 2, 2, kDvle, 1, 1}), "fewer entries than the entry count");
    EXPECT_EQ(rejection({2, 1, 2, kDvle, 2, 1}), "value count runs past the end");
    EXPECT_EQ(rejection({2, 1, 2, kDvle, 2147483647, 1}), "value count runs past the end");
    EXPECT_EQ(rejection({2, 1, 2, kDvle, 1, 1}), "accepted");
    EXPECT_EQ(rejection({2, 1, 2, kDvle, -1, 1}), "negative value count");
    EXPECT_EQ(rejection({2, 1, 2, kDvle, 1, 1, 0}), "words after the last entry");
    EXPECT_EQ(rejection({2, 0, 2, kDvle, 1, 1}), "words after the last entry");
    EXPECT_EQ(rejection({2, 0, 0}), "words after the last entry");
    // A second entry whose count is negative, after a good first one.
    EXPECT_EQ(rejection({2, 2, 2, kDvle, 0, 2, kVol, -3}), "negative value count");
}

TEST(EffectParamParser, RejectsSizesThatAreNotWholeWordsOrNoData) {
    const std::vector<int32_t> words = {2, 1, 2, kDvle, 1, 1};
    const auto* bytes = reinterpret_cast<const unsigned char*>(words.data());
    for (size_t size : {size_t{1}, size_t{7}, size_t{23}, size_t{25}}) {
        SCOPED_TRACE(size);
        // Build the block from as many bytes as exist; past the words it is zero.
        std::vector<unsigned char> padded(bytes, bytes + words.size() * 4);
        padded.resize(size, 0);
        BlobBuffer blob(padded.data(), size);
        EffectParamParser parser(blob.data(), blob.size());
        EXPECT_FALSE(parser.validate());
        EXPECT_STREQ(parser.error(), size < 8 && size % 4 == 0 ? "shorter than the two header words"
                                                               : "size is not a whole number of 32-bit words");
    }
    EffectParamParser none(nullptr, 24);
    EXPECT_FALSE(none.validate());
    EXPECT_STREQ(none.error(), "no data");
    EffectParamParser nothing(nullptr, 0);
    EXPECT_FALSE(nothing.validate());
    EXPECT_STREQ(nothing.error(), "shorter than the two header words");
}

TEST(EffectParamParser, ReadsNothingBeforeValidateAndStopsAtTheDeclaredCount) {
    BlobBuffer blob(std::vector<int32_t>{2, 1, 2, kDvle, 1, 1});
    EffectParamParser parser(blob.data(), blob.size());
    EXPECT_STREQ(parser.error(), "not validated");
    int32_t device = 7;
    int32_t paramId = 7;
    uint32_t count = 7;
    const int32_t* values = nullptr;
    parser.begin();
    EXPECT_FALSE(parser.next(&device, &paramId, &count, &values));
    EXPECT_EQ(device, 7);  // outputs untouched
    ASSERT_TRUE(parser.validate());
    parser.begin();
    EXPECT_TRUE(parser.next(&device, &paramId, &count, &values));
    EXPECT_FALSE(parser.next(&device, &paramId, &count, &values));
    EXPECT_FALSE(parser.next(&device, &paramId, &count, &values));
}

}  // namespace
}  // namespace korvi
